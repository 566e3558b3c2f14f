#include <gtest/gtest.h>

#include "process.h"

// sdpneg answer: what it writes, and what it ends with.

namespace {

const std::string head = "v=0\r\no=- 1 1 IN IP4 192.0.2.1\r\ns=-\r\nc=IN IP4 192.0.2.1\r\nt=0 0\r\n";
const std::string offer = head + "m=audio 4000 RTP/AVP 0 8 9\r\na=rtcp-mux\r\n";
const std::string local =
    "v=0\no=me 7 3 IN IP4 192.0.2.2\ns=us\nc=IN IP4 192.0.2.2\nt=9 9\nm=audio 5000 RTP/AVP 9 8\na=ptime:20\n";
const std::string answerHead = "v=0\r\no=me 7 3 IN IP4 192.0.2.2\r\ns=us\r\nc=IN IP4 192.0.2.2\r\nt=0 0\r\n";

std::string answerOf(const std::string& formats) {
  return answerHead + "m=audio 5000 RTP/AVP " + formats + "\r\na=ptime:20\r\n";
}

class AnswerCommand : public testing::Test {
 protected:
  std::string offerFile() const { return folder_.path("offer.sdp"); }
  std::string localFile() const { return folder_.path("local.sdp"); }
  void SetUp() override {
    folder_.write("offer.sdp", offer);
    folder_.write("local.sdp", local);
  }
  const TemporaryFolder folder_;
};

TEST_F(AnswerCommand, WritesTheAnswer) {
  const struct {
    std::vector<std::string> options;
    std::string formats;
  } cases[] = {
      {{}, "8 9"},         {{"--prefer", "offer"}, "8 9"},           {{"--prefer=local"}, "9 8"},
      {{"--single"}, "8"}, {{"--single", "--prefer", "local"}, "9"}, {{"--setup", "passive"}, "8 9"}};
  for (const auto& each : cases) {
    std::vector<std::string> arguments = {"answer", "--local", localFile()};
    arguments.insert(arguments.end(), each.options.begin(), each.options.end());
    arguments.push_back(offerFile());
    const Outcome outcome = runSdpneg(arguments);
    EXPECT_EQ(outcome.out, answerOf(each.formats)) << testing::PrintToString(each.options);
    EXPECT_EQ(outcome.err, "");
    EXPECT_EQ(outcome.status, 0);
  }
}

TEST_F(AnswerCommand, TakesThePassiveRoleOnWish) {
  const std::string keys =
      "m=audio 4000 UDP/TLS/RTP/SAVP 8\r\na=fingerprint:sha-256 AA\r\na=setup:actpass\r\n";
  const std::string secureOffer = folder_.write("secure.sdp", head + keys);
  const std::string answer = answerHead + replaced(keys, "4000", "5000");
  const std::string ours = folder_.write("ours.sdp", replaced(answer, "t=0 0", "t=5 5"));
  EXPECT_EQ(runSdpneg({"answer", "--local", ours, secureOffer}).out, replaced(answer, "actpass", "active"));
  EXPECT_EQ(runSdpneg({"answer", "--setup", "passive", "--local", ours, secureOffer}).out,
            replaced(answer, "actpass", "passive"));
}

TEST_F(AnswerCommand, ReadsOneBodyFromStandardInputAndMessages) {
  EXPECT_EQ(runSdpneg({"answer", "--local", localFile(), "-"}, {.input = offer}).out, answerOf("8 9"));
  EXPECT_EQ(runSdpneg({"answer", "--local", "-", offerFile()}, {.input = local}).out, answerOf("8 9"));
  const std::string message =
      "INVITE sip:a@example.org SIP/2.0\r\nContent-Type: application/sdp\r\nContent-Length: " +
      std::to_string(offer.size()) + "\r\n\r\n" + offer;
  EXPECT_EQ(runSdpneg({"answer", "--local", localFile(), "-"}, {.input = message}).out, answerOf("8 9"));
}

TEST_F(AnswerCommand, GoesOnFromTheAnswerBefore) {
  const std::string previous = folder_.write("previous.sdp", replaced(answerOf("8 9"), "me 7 3", "me 55 9"));
  const std::vector<std::string> arguments = {"answer", "--local", localFile(), "--previous", previous};
  std::vector<std::string> same = arguments;
  same.push_back(offerFile());
  EXPECT_EQ(runSdpneg(same).out, replaced(answerOf("8 9"), "me 7 3", "me 55 9"));
  std::vector<std::string> other = arguments;
  other.insert(other.end(), {"--single", offerFile()});
  EXPECT_EQ(runSdpneg(other).out, replaced(answerOf("8"), "me 7 3", "me 55 10"));
}

TEST_F(AnswerCommand, SaysWhyThereIsNone) {
  const std::string secret = "KEEPTHISKEYOFFTHESCREEN";
  const std::string refused = folder_.write(
      "refused.sdp", head + "m=audio 4000 RTP/SAVP 8\r\na=crypto:1 AES_CM_128_HMAC_SHA1_80 inline:" + secret +
                         "\r\nm=video 0 RTP/AVP 31\r\nm=text\r\n");
  const Outcome none = runSdpneg({"answer", "--local", localFile(), refused});
  EXPECT_EQ(none.out, "");
  EXPECT_EQ(none.err, "sdpneg: " + refused + ": no section would be accepted\nsdpneg: " + refused +
                          ":6: section 1 (audio): only one side is protected\nsdpneg: " + refused +
                          ":8: section 2 (video): disabled\nsdpneg: " + refused +
                          ":9: section 3: an unreadable m-line\n");
  EXPECT_EQ(none.status, 1);

  const Outcome broken = runSdpneg({"answer", "--local", localFile(), "-"}, {.input = "hello\r\n"});
  EXPECT_EQ(broken.out, "");
  EXPECT_EQ(broken.err, "sdpneg: (standard input): the offer is no session description\n");
  EXPECT_EQ(broken.status, 1);

  const Outcome empty = runSdpneg({"answer", "--local", "-", offerFile()}, {.input = head});
  EXPECT_EQ(empty.out, "");
  EXPECT_EQ(empty.err, "sdpneg: (standard input): the local description has no section\n");
  EXPECT_EQ(empty.status, 2);
}

TEST_F(AnswerCommand, AnswersOffersWithoutMediaInKind) {
  const Outcome outcome =
      runSdpneg({"answer", "--local", localFile(), "-"}, {.input = head + "m=audio 0 RTP/AVP 18 0\r\n"});
  EXPECT_EQ(outcome.out, answerHead + "m=audio 0 RTP/AVP 18\r\n");
  EXPECT_EQ(outcome.status, 0);
  EXPECT_EQ(runSdpneg({"answer", "--local", localFile(), "-"}, {.input = head}).out, answerHead);
}

TEST_F(AnswerCommand, RefusesWrongArguments) {
  const std::vector<std::vector<std::string>> wrong = {
      {},
      {offerFile()},
      {"--local", localFile()},
      {"--local", localFile(), offerFile(), offerFile()},
      {"--local", localFile(), "--prefer", "mine", offerFile()},
      {"--local", localFile(), "--setup", "active", offerFile()},
      {"--local", localFile(), "--setup", "", offerFile()},
      {"--local", "-", "-"},
      {"--local", localFile(), "--previous", "-", "-"},
      {"--local", localFile(), "--nothing", offerFile()}};
  for (const std::vector<std::string>& words : wrong) {
    std::vector<std::string> arguments = {"answer"};
    arguments.insert(arguments.end(), words.begin(), words.end());
    const Outcome outcome = runSdpneg(arguments, {.input = offer});
    EXPECT_EQ(outcome.status, 64) << testing::PrintToString(words);
    EXPECT_EQ(outcome.out, "");
    EXPECT_TRUE(outcome.err.ends_with("Try 'sdpneg answer --help' for more.\n")) << outcome.err;
  }
}

TEST_F(AnswerCommand, SaysWhichInputsCannotBeRead) {
  const std::string missing = folder_.path("missing.sdp");
  const Outcome outcome = runSdpneg({"answer", "--local", missing, "--previous", missing, missing});
  const std::string line = "sdpneg: " + missing + ": cannot be read: No such file or directory\n";
  EXPECT_EQ(outcome.err, line + line + line);
  EXPECT_EQ(outcome.out, "");
  EXPECT_EQ(outcome.status, 2);
}

}  // namespace
