#include <algorithm>

#include "../testFiles.h"
#include "calls.h"
#include "rawParty.h"

// Bodies that nobody should send: each INVITE gets a final answer, and the next call works.

namespace {

constexpr std::size_t kLargestBody = 60'000;  ///< leaves room for the headers in a datagram
constexpr milliseconds kLongestAnswer{5'000};

const std::string kGoodOffer =
    "v=0\n"
    "o=alice 21 4 IN IP4 192.0.2.10\n"
    "s=-\n"
    "c=IN IP4 192.0.2.10\n"
    "t=0 0\n"
    "m=audio 49170 RTP/AVP 8\n";

const std::string kGoodAnswer =
    "v=0\n"
    "o=bob 33 9 IN IP4 192.0.2.20\n"
    "s=-\n"
    "c=IN IP4 192.0.2.20\n"
    "t=0 0\n"
    "m=audio 30000 RTP/AVP 8\n";

std::string repeated(const std::string& piece, std::size_t count) {
  std::string text;
  for (std::size_t i = 0; i < count; ++i) text += piece;
  return text;
}

std::string everyByte() {
  std::string bytes;
  for (int i = 0; i < 1024; ++i) bytes += static_cast<char>(i * 7 % 256);
  return bytes;
}

using NamedBodies = std::vector<std::pair<std::string, std::string>>;

/// The test's own, as they go over the wire.
NamedBodies ownBodies() {
  const std::string session = withCrLf("v=0\no=- 1 1 IN IP4 192.0.2.10\ns=-\nc=IN IP4 192.0.2.10\nt=0 0\n");
  const std::string audio = "m=audio 49170 RTP/AVP 8\r\n";
  return {
      {"one letter", "x"},
      {"empty lines", "\r\n\r\n\r\n"},
      {"every byte", everyByte()},
      {"NULs", std::string("v=0\r\n\0\0\0o=- 1 1 IN IP4 192.0.2.10\r\n", 36)},
      {"a long line", repeated("A", kLargestBody)},
      {"thousands of m-lines", repeated("m=audio 1 RTP/AVP 0\r\n", 2'500)},
      {"no m-line", session},
      {"an empty m-line", session + "m=\r\n"},
      {"a bare m-line", session + "m=audio\r\n"},
      {"a huge port", session + "m=audio 99999999999999999999 RTP/AVP 8\r\n"},
      {"thousands of formats", session + "m=audio 49170 RTP/AVP" + repeated(" 8", 5'000) + "\r\n"},
      {"thousand attributes", session + audio + repeated("a=rtpmap:96 X/8000\r\n", 1'000)},
      {"a long attribute", session + audio + "a=fmtp:96 " + repeated("p=1;", 5'000) + "\r\n"},
      {"hundreds of keys",
       session + audio + repeated("a=crypto:1 AES_CM_128_HMAC_SHA1_80 inline:AAAA\r\n", 500)},
      {"a long group", session + "a=group:ANAT" + repeated(" 1", 3'000) + "\r\n" + audio},
      {"percent signs", session + audio + "a=" + repeated("%s%n", 1'000) + "\r\n"},
      {"no line end", "v=0\no=- 1 1 IN IP4 192.0.2.10\ns=-\nt=0 0\nm=audio 49170 RTP/AVP 8"},
      {"a SIP message", "SIP/2.0 200 OK\r\nVia: SIP/2.0/UDP 127.0.0.1\r\nContent-Length: -1\r\n\r\n"},
  };
}

/// Makes a call with a body, and ends it if it was answered.
/// @return the final status of the INVITE; 0 when there was none, -1 when the BYE got none
int statusOfCall(const RawParty& caller, const std::string& engine, int call, const std::string& body) {
  const std::string response = caller.ask(engine, {.call = call, .body = body}, kLongestAnswer);
  const int status = statusOf(response);
  if (status == 0) return 0;
  // The ACK to a refusal belongs to the INVITE, the one to a 200 does not.
  const std::string tag = toTagOf(response);
  caller.request(engine,
                 {.method = "ACK", .call = call, .toTag = tag, .branch = status < 300 ? "" : "INVITE1"});
  if (status >= 300) return status;
  const RawRequest bye = {.method = "BYE", .call = call, .cseq = 2, .toTag = tag};
  return statusOf(caller.ask(engine, bye, kLongestAnswer)) == 200 ? status : -1;
}

class HostileBodies : public Calls {
 protected:
  /// Calls with one body after the other, and with a good one after each.
  void expectEachIsAnswered(const NamedBodies& bodies, const std::string& policy) {
    folder_.write("answer.sdp", withCrLf(kGoodAnswer));
    const std::string port = freePort();
    // One call follows the other at once: what a machine does in a second is no overload here.
    Engine engine(folder_, "127.0.0.1", port,
                  {"--policy", folder_.write("policy", policy), "--max-invites", "1000000"});
    ASSERT_FALSE(engine.address().empty());
    const Sipp target = startTarget(folder_, "call-target", "127.0.0.1", port, {});
    const RawParty caller;
    int number = 0;
    for (const auto& [name, body] : bodies) {
      const int status = statusOfCall(caller, engine.address(), ++number, body);
      ASSERT_TRUE(status == 200 || (status >= 400 && status < 700)) << name << ": status " << status;
      ASSERT_EQ(statusOfCall(caller, engine.address(), ++number, withCrLf(kGoodOffer)), 200)
          << "after " << name;
    }
    const Counters counters = engine.stop();
    const long calls = static_cast<long>(2 * bodies.size());
    EXPECT_EQ(counters.at("calls"), calls);
    EXPECT_EQ(counters.at("established") + counters.at("failed"), calls);
    EXPECT_EQ(counters.at("malformed"), 0);
    EXPECT_EQ(counters.at("active"), 0);
    // The target has got each good body as it was.
    const std::vector<std::string> arrived = bodiesOf(target.received());
    EXPECT_GE(static_cast<std::size_t>(std::count(arrived.begin(), arrived.end(), kGoodOffer)),
              bodies.size());
  }
};

}  // namespace

TEST_F(HostileBodies, OfTheTestsOwnGetAnAnswer) { expectEachIsAnswered(ownBodies(), ""); }

TEST_F(HostileBodies, OfTheTestsOwnGetAnAnswerUnderAPolicy) {
  expectEachIsAnswered(ownBodies(),
                       "audio-codecs = PCMA, PCMU\nvideo = cap 128 1\nice = remove\nsecurity = plain\n"
                       "address-family = ipv4\nconnection-address = 192.0.2.10\n");
}

// These leave the good body as it is.
TEST_F(HostileBodies, OfTheTestsOwnGetAnAnswerUnderRequestsByName) {
  expectEachIsAnswered(
      ownBodies(),
      "from-caller = unbundle; strip-attributes x-*\n"
      "to-target = keep-codecs PCMA,PCMU audio; set-profile RTP/AVP; anchor 192.0.2.10 49170; "
      "direction sendrecv\n");
}

TEST_F(HostileBodies, OfTheCorpusGetAnAnswer) {
  if (corpusFolder().empty()) GTEST_SKIP() << "SDP_CORPUS_DIR is not set";
  NamedBodies bodies;
  for (const auto& file : sdpFilesBelow(corpusFolder())) {
    const std::string body = readBytes(file);
    if (!body.empty() && body.size() <= kLargestBody) bodies.push_back({file.string(), body});
  }
  ASSERT_FALSE(bodies.empty());
  expectEachIsAnswered(bodies, "audio-codecs = PCMA, PCMU, OPUS\nice = remove\nsecurity = best-effort-1\n");
}
