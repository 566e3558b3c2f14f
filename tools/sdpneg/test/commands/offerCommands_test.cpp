#include "rewriteCases.h"

// The commands that compare a body with those that came before it.

namespace {

using namespace rewriting;

const std::string session = "v=0\r\no=ann 17 18 IN IP4 192.0.2.10\r\ns=-\r\nc=IN IP4 192.0.2.10\r\nt=0 0\r\n";
const std::string pcmu = "a=rtpmap:0 PCMU/8000\r\n";
const std::string pcma = "a=rtpmap:8 PCMA/8000\r\n";
const std::string offer = session + "m=audio 49170 RTP/AVP 0 8\r\n" + pcmu + pcma;
const std::string pcmuOffer = session + "m=audio 49170 RTP/AVP 0\r\n" + pcmu;
const std::string video = "m=video 49172 RTP/AVP 31\r\n";

/// An answer of the other side.
std::string answering(const std::string& text) {
  return replaced(replaced(text, "o=ann 17 18 IN IP4 192.0.2.10", "o=bob 5 6 IN IP4 192.0.2.20"),
                  "c=IN IP4 192.0.2.10", "c=IN IP4 192.0.2.20");
}

std::string withVersion(const std::string& text, const std::string& version) {
  return replaced(text, "o=ann 17 18 ", "o=ann 17 " + version + " ");
}

/// Attributes that no description holds all of.
std::string manyAttributes() {
  std::string lines;
  for (int i = 0; i < 300; ++i) lines += "a=note\r\n";
  return lines;
}

struct Run {
  const char* name;
  std::string command;
  std::vector<std::string> bodies;
  int status;
  std::string out;
  std::string why = {};  ///< on standard error behind the name of the body that it is about
};

std::ostream& operator<<(std::ostream& out, const Run& each) { return out << each.name; }

class OfferCommands : public testing::TestWithParam<Run> {};

TEST_P(OfferCommands, GiveResultReasonAndStatus) {
  const TemporaryFolder folder;
  std::vector<std::string> arguments = {GetParam().command};
  for (const std::string& body : GetParam().bodies) {
    arguments.push_back(folder.write(std::to_string(arguments.size()) + ".sdp", body));
  }
  const Outcome outcome = runSdpneg(arguments);
  EXPECT_EQ(withoutTime(outcome.out), GetParam().out);
  EXPECT_EQ(replaced(outcome.err, folder.path() + "/", ""), GetParam().why);
  EXPECT_EQ(outcome.status, GetParam().status);
}

const Run runs[] = {
    {"aCodecThatIsNoLongerOffered",
     "update-answer",
     {answering(offer), offer, withVersion(pcmuOffer, "19")},
     0,
     renewed(answering(pcmuOffer))},
    {"videoThatIsNew",
     "update-answer",
     {answering(offer), offer, offer + video},
     0,
     renewed(answering(offer) + "m=video 0 RTP/AVP 31\r\n")},
    {"anOfferOfTheSame",
     "update-answer",
     {answering(offer), offer, withVersion(offer, "19")},
     0,
     answering(offer)},
    {"anOfferFromElsewhere",
     "update-answer",
     {answering(offer), offer, answering(offer)},
     1,
     "",
     "sdpneg: 1.sdp: Different IPs between the two Offers. Exiting\n"},
    {"anOfferOfAnotherPort",
     "update-answer",
     {answering(offer), offer, replaced(offer, "49170", "49180")},
     1,
     "",
     "sdpneg: 1.sdp: Different ports between the two Offers. Exiting.\n"},
    {"aSecureAnswer",
     "update-answer",
     {answering(replaced(offer, "RTP/AVP", "RTP/SAVP")), offer, offer},
     1,
     "",
     "sdpneg: 1.sdp: The sdpAnswer contains security. Cannot update the SDP.\n"},
    {"anAnswerThatIsNoSdp",
     "update-answer",
     {"hello\n", offer, offer},
     2,
     "",
     "sdpneg: 1.sdp:1:1: expected a first line \"v=\", found \"hello\"\n"},
    {"theNextVersion", "version-increased", {offer, withVersion(offer, "19")}, 0, "yes\n"},
    {"theNextVersionOfAnotherBody", "version-increased", {offer, withVersion(pcmuOffer, "19")}, 0, "yes\n"},
    {"theSameVersion", "version-increased", {offer, offer}, 1, "no\n"},
    {"theVersionAfterTheNext", "version-increased", {offer, withVersion(offer, "20")}, 1, "no\n"},
    {"theVersionBefore", "version-increased", {withVersion(offer, "19"), offer}, 1, "no\n"},
    {"theNextVersionOfAnotherSession",
     "version-increased",
     {offer, replaced(offer, "ann 17 18", "ann 16 19")},
     1,
     "no\n"},
    {"aBodyThatIsTooLong",
     "version-increased",
     {offer, offer + std::string(20480 - offer.size() - 2, '\n') + "\r\n"},
     2,
     "",
     "sdpneg: 2.sdp: the body is longer than the 20479 characters that requests take\n"},
    {"alignOfAsManyMLines",
     "align",
     {offer, answering(pcmuOffer)},
     0,
     replaced(answering(pcmuOffer), "o=bob 5 6 IN IP4 192.0.2.20", "o=ann 17 19 IN IP4 192.0.2.10")},
    {"alignOfFewerMLines", "align", {offer + video, pcmuOffer}, 0, withVersion(pcmuOffer, "19") + video},
    {"alignOfMoreMLines", "align", {offer, offer + video}, 0, withVersion(offer, "19") + video},
    {"alignWithTheLargestVersion",
     "align",
     {withVersion(offer, "9223372036854775807"), offer},
     1,
     "",
     "sdpneg: 2.sdp: sdpModifyVersionAndMlines(): The session version cannot be raised. Exiting.\n"},
    {"alignWithABlankInTheUserName",
     "align",
     {replaced(offer, "o=ann ", "o=Ann Lee "), offer},
     1,
     "",
     "sdpneg: 1.sdp: by the library's count \"IN\" of the o-line is field 5 and not 4, so another field would be taken for the version\n"},
    {"alignOfABodyThatCannotBeWrittenAnew",
     "align",
     {offer + video, offer + manyAttributes()},
     1,
     "",
     "sdpneg: 2.sdp: correctMLines(): A description does not hold all lines of its SDP. Exiting.\n"},
    // Its m-lines stay, so that it need not be written anew.
    {"alignOfMoreMLinesInABodyThatCannotBeWrittenAnew",
     "align",
     {offer, offer + video + manyAttributes()},
     0,
     withVersion(offer, "19") + video + manyAttributes()}};

INSTANTIATE_TEST_SUITE_P(Runs, OfferCommands, testing::ValuesIn(runs),
                         [](const auto& each) { return std::string(each.param.name); });

class OfferFiles : public testing::Test {
 protected:
  TemporaryFolder folder;
  std::string file = folder.write("offer.sdp", offer);
  std::string next = folder.write("next.sdp", withVersion(offer, "19"));
};

TEST_F(OfferFiles, OneIsReadFromStandardInput) {
  EXPECT_EQ(runSdpneg({"version-increased", "-", next}, {.input = offer}).out, "yes\n");
  EXPECT_EQ(runSdpneg({"version-increased", file, "-"}, {.input = offer}).out, "no\n");
  EXPECT_EQ(runSdpneg({"align", file, "-"}, {.input = offer}).out, withVersion(offer, "19"));
  EXPECT_EQ(runSdpneg({"update-answer", "-", file, next}, {.input = answering(offer)}).out, answering(offer));
}

TEST_F(OfferFiles, ASipMessageGivesItsBody) {
  const std::string message =
      folder.write("invite.sip",
                   "INVITE sip:bob@example.com SIP/2.0\r\nContent-Type: application/sdp\r\nContent-Length: " +
                       std::to_string(offer.size()) + "\r\n\r\n" + offer);
  EXPECT_EQ(runSdpneg({"version-increased", message, next}).out, "yes\n");
  EXPECT_EQ(runSdpneg({"align", next, message}).out, withVersion(offer, "20"));
}

TEST_F(OfferFiles, WrongUsageIsRefused) {
  for (const std::vector<std::string>& arguments : {std::vector<std::string>{"version-increased", "-", "-"},
                                                    {"version-increased", file},
                                                    {"align", file},
                                                    {"align", file, file, file},
                                                    {"update-answer", file, file},
                                                    {"update-answer", "-", file, "-"},
                                                    {"align", "--diff", file, file}}) {
    const Outcome outcome = runSdpneg(arguments, {.input = offer});
    EXPECT_EQ(outcome.status, 64) << testing::PrintToString(arguments);
    EXPECT_EQ(outcome.out, "");
  }
}

TEST_F(OfferFiles, EveryInputThatIsWrongIsNamed) {
  for (const std::string command : {"version-increased", "align"}) {
    const Outcome outcome = runSdpneg({command, folder.path("a"), folder.path("b")});
    EXPECT_EQ(outcome.err, "sdpneg: " + folder.path("a") + ": cannot be read: No such file or directory\n" +
                               "sdpneg: " + folder.path("b") +
                               ": cannot be read: No such file or directory\n");
    EXPECT_EQ(outcome.status, 2);
  }
}

TEST_F(OfferFiles, TraceShowsTheLinesOfTheRequest) {
  const Outcome outcome = runSdpneg({"version-increased", "--trace", file, next});
  EXPECT_EQ(outcome.out, "yes\n");
  EXPECT_TRUE(outcome.err.find("Entered isSdpVersionIncrease()\n") != std::string::npos) << outcome.err;
  EXPECT_TRUE(runSdpneg({"align", "--trace", file, next}).err.find("compareNumberOfMLines()") !=
              std::string::npos);
}

}  // namespace
