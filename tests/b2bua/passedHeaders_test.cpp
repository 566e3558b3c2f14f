#include <passedHeaders.h>

#include "calls.h"
#include "rawParty.h"

// Headers that go on to the other side by a list.

using b2bua::checkPassedHeader;
using Words = std::vector<std::string>;

namespace {

constexpr milliseconds kLongestWait{5'000};

const std::string kOffer =
    "v=0\r\no=alice 21 4 IN IP4 192.0.2.10\r\ns=-\r\nc=IN IP4 192.0.2.10\r\nt=0 0\r\nm=audio 49170 RTP/AVP 8\r\n";
const std::string kAnswer =
    "v=0\r\no=bob 33 9 IN IP4 192.0.2.20\r\ns=-\r\nc=IN IP4 192.0.2.20\r\nt=0 0\r\nm=audio 30000 RTP/AVP 8\r\n";

/// The lines of a message's header that begin like one of these, in their order.
Words linesOf(const std::string& message, const Words& begins) {
  Words lines;
  const std::string head = message.substr(0, message.find("\r\n\r\n") + 2);
  for (std::size_t at = 0, end = 0; (end = head.find("\r\n", at)) != std::string::npos; at = end + 2) {
    const std::string line = head.substr(at, end - at);
    for (const std::string& begin : begins) {
      if (line.starts_with(begin)) lines.push_back(line);
    }
  }
  return lines;
}

std::string repeated(const std::string& text, std::size_t count) {
  std::string all;
  for (std::size_t i = 0; i < count; ++i) all += text;
  return all;
}

class PassedHeaders : public Calls {
 protected:
  void start(const std::vector<std::string>& options = {}) {
    engine_ = std::make_unique<Engine>(folder_, "127.0.0.1", target_.port(), options);
    ASSERT_FALSE(engine_->address().empty());
  }

  /// @param lines  headers of an INVITE
  /// @return the INVITE that the target gets
  std::string invite(const std::string& lines) {
    caller_.request(engine_->address(), {.call = ++number_, .body = kOffer, .header = lines});
    return target_.receive("INVITE ", "", kLongestWait);
  }

  const RawParty caller_;
  const RawParty target_;
  std::unique_ptr<Engine> engine_;
  int number_ = 0;
};

}  // namespace

TEST(PassedHeaderNames, AreTokens) {
  for (const char* name : {"X-*", "x-a", "P-*", "History-Info", "User-Agent", "Reason"})
    EXPECT_EQ(checkPassedHeader(name), "") << name;
  for (const char* name : {"", "*", "X-*-a", "X-**", "X a", "X:", "X-\r\nVia"})
    EXPECT_EQ(checkPassedHeader(name), std::string("no name of a header: ") + name);
}

TEST(PassedHeaderNames, AreNoneOfTheEnginesOwn) {
  for (const char* name : {"Via", "ROUTE", "Contact", "c*", "Content-Type", "Content-*", "v", "Max-Forwards",
                           "R*", "To", "call-id", "CSeq", "Supported", "Session-*", "t*", "Warning"})
    EXPECT_EQ(checkPassedHeader(name), std::string("a header of the engine's own: ") + name);
}

TEST_F(PassedHeaders, GoOnThroughTheWholeCall) {
  start();
  const Words all = {"P-Asserted", "Privacy", "Diversion", "X-", "x-", "Subject", "User-Agent"};
  const std::string invited = invite(
      "X-First: 1;a=\"b, c\"\r\nSubject: none\r\nP-Asserted-Identity: \"A\" <sip:a@192.0.2.1>, <tel:+1>\r\n"
      "Privacy: id;critical\r\nDiversion: <sip:b@192.0.2.1>;reason=unconditional\r\nx-second: \t 2  \r\n"
      "X-Folded: one\r\n two\r\nUser-Agent: me\r\n");
  // The stack has those that it knows in front of the others.
  EXPECT_EQ(linesOf(invited, all),
            (Words{"Privacy: id;critical", "X-First: 1;a=\"b, c\"",
                   "P-Asserted-Identity: \"A\" <sip:a@192.0.2.1>, <tel:+1>",
                   "Diversion: <sip:b@192.0.2.1>;reason=unconditional", "x-second: 2", "X-Folded: one two"}))
      << invited;

  target_.respond(engine_->address(), invited, "180 Ringing\r\nX-Ring: tone");
  EXPECT_EQ(linesOf(caller_.receive("SIP/2.0 180 ", "", kLongestWait), all), Words{"X-Ring: tone"});
  target_.respond(engine_->address(), invited,
                  "200 OK\r\nServer: he\r\nP-Asserted-Identity: <sip:c@192.0.2.2>", kAnswer);
  const std::string accepted = caller_.receive("SIP/2.0 200 ", "", kLongestWait);
  EXPECT_EQ(linesOf(accepted, {"P-", "X-", "Server"}), Words{"P-Asserted-Identity: <sip:c@192.0.2.2>"});

  const std::string tag = toTagOf(accepted);
  caller_.request(engine_->address(), {.method = "ACK", .toTag = tag});
  EXPECT_NE(target_.receive("ACK ", "", kLongestWait), "");
  caller_.request(engine_->address(),
                  {.method = "BYE", .cseq = 2, .toTag = tag, .header = "X-Why: done\r\nSubject: no\r\n"});
  EXPECT_EQ(linesOf(target_.receive("BYE ", "", kLongestWait), all), Words{"X-Why: done"});
}

TEST_F(PassedHeaders, OfARefusalGoOn) {
  start();
  target_.respond(engine_->address(), invite(""), "486 Busy Here\r\nX-Until: noon\r\nWarning: 399 t \"x\"");
  const std::string refused = caller_.receive("SIP/2.0 486 ", "", kLongestWait);
  EXPECT_EQ(linesOf(refused, {"X-", "Warning"}), Words{"X-Until: noon"});
}

TEST_F(PassedHeaders, AreThoseOfTheList) {
  start({"--pass-headers", "Subject,user-*"});
  const std::string invited =
      invite("X-Other: 1\r\nSubject: s\r\nUser-Agent: u\r\nUser-To-User: 00\r\nPrivacy: id\r\n");
  EXPECT_EQ(linesOf(invited, {"X-", "Subject", "User-", "Privacy"}),
            (Words{"Subject: s", "User-Agent: u", "User-To-User: 00"}));
}

// 32 of them, and 8192 bytes with what is between them: 8 of 1022 bytes and 7 CR LF are 8190, one more is too much.
TEST_F(PassedHeaders, AreLimitedInNumberAndSize) {
  start();
  EXPECT_EQ(linesOf(invite(repeated("X-A: 1\r\n", 40)), {"X-A"}).size(), 32U);
  EXPECT_EQ(linesOf(invite(repeated("X-B: " + repeated("b", 1'017) + "\r\n", 9)), {"X-B"}).size(), 8U);
  EXPECT_EQ(linesOf(invite("X-C: " + repeated("c", 9'000) + "\r\nX-D: 1\r\n"), {"X-C", "X-D"}),
            Words{"X-D: 1"});
}

// What a lenient receiver might take for a line's end is one, or does not go on.
TEST_F(PassedHeaders, HoldNoLineEnds) {
  start();
  const std::string invited = invite("X-A: 1\rX-B: 2\r\nX-C: 3\x01\r\nX-D: 4\r\n");
  EXPECT_EQ(linesOf(invited, {"X-"}), (Words{"X-A: 1", "X-B: 2", "X-D: 4"})) << invited;
}
