#include <multipart.h>
#include <reasons.h>

#include "calls.h"
#include "rawParty.h"

// What the other side and the log learn of a body that cannot be used, and bodies with several parts.

namespace {

constexpr milliseconds kLongestWait{5'000};

const std::string kSession = "v=0\r\no=- 1 1 IN IP4 192.0.2.10\r\ns=-\r\nc=IN IP4 192.0.2.10\r\nt=0 0\r\n";
const std::string kAudio = "m=audio 49170 RTP/AVP 8\r\n";

const std::string kMixed = "multipart/mixed;boundary=\"next one\"";

std::string partOf(const std::string& headers, const std::string& content) {
  return "--next one\r\n" + headers + "\r\n" + content + "\r\n";
}

const std::string kSdpPart = partOf("Content-Type: application/sdp\r\n", kSession + kAudio);
const std::string kOtherPart = partOf(
    "Content-Type: application/isup;version=itu-t92+\r\nContent-Disposition: signal;handling=optional\r\n",
    std::string("\x01\x00\x49\x00", 4));
const std::string kEnd = "--next one--\r\n";

/// An engine without a policy.
class Reasons : public Calls {
 protected:
  std::string ask(const RawRequest& asked) const {
    return caller_.ask(engine_.address(), asked, kLongestWait);
  }

  const RawParty caller_;
  const RawParty target_;
  Engine engine_{folder_, "127.0.0.1", target_.port()};
};

}  // namespace

TEST(Secrets, AreCutOutOfReasons) {
  const std::string expected = ": expected a letter, found ";
  const struct {
    const char* line;
    const char* found;
    const char* rest;
  } cases[] = {
      {"acrypto:1 SECRET", "'crypto:1 SECRET'", "in crypto"},
      {"a=CRYPTO:1 SECRET", "'CRET'", "in crypto"},
      {"  key-mgmt:mikey SECRET", "'SECRET'", "in key-mgmt"},
      {"a=ice-pwd:SECRET", "'CRET'", "in ice-pwd"},
      {"inline:SECRET", "'nline:SECRET'", "in inline"},
      {"k clear:SECRET", "'clear:SECRET'", "in k"},
      {"foo", "'oo'", "found 'oo'"},
  };
  for (const auto& each : cases) {
    const std::string reason = std::string("line 2, column 3") + expected + each.found;
    const std::string cut = std::string("line 2, column 3: expected a letter, ") + each.rest;
    EXPECT_EQ(b2bua::withoutSecrets(reason, std::string("v=0\r\n") + each.line + "\r\ns=-\r\n"), cut);
    EXPECT_EQ(b2bua::withoutSecrets(reason, std::string("v=0\n") + each.line), cut);
    EXPECT_EQ(b2bua::withoutSecrets(reason, std::string("v=0\r") + each.line + "\rs=-"), cut);
  }
  // Other lines may be shown; and where there is none, nothing is read.
  EXPECT_EQ(b2bua::withoutSecrets("line 1, column 1: expected, found 'x'", "x\na=crypto:1"),
            "line 1, column 1: expected, found 'x'");
  EXPECT_EQ(b2bua::withoutSecrets("line 9, column 1: expected, found 'x'", "x"),
            "line 9, column 1: expected, found 'x'");
  EXPECT_EQ(b2bua::withoutSecrets("no allowed audio codec", "a=crypto:1"), "no allowed audio codec");
}

TEST(Secrets, InternalNamesAreForTheLog) {
  for (const char* internal :
       {"The SDP size=30133 exceeds MAX_SDP_PROTOCOL_DATA_SIZE=20480", "setPort(): illegal port", "noOfMDs"})
    EXPECT_EQ(b2bua::toldReason(internal), "the body cannot be used");
  for (const char* told : {"no plain media", "Invalid port number found in m=audio: 77777",
                           "line 8, column 2: expected a line, found 'aB_c()'"})
    EXPECT_EQ(b2bua::toldReason(told), told);
}

TEST_F(Reasons, HoldNoKeys) {
  const std::string response = ask({.body = kSession + kAudio + "b=crypto:1 AES inline:SECRET\r\n"});
  EXPECT_EQ(statusOf(response), 488) << response;
  EXPECT_TRUE(headerOf(response, "Warning").ends_with(", in crypto\"")) << response;
  EXPECT_NE(engine_.log().find(", in crypto"), std::string::npos) << engine_.log();
  EXPECT_EQ(engine_.log().find("SECRET"), std::string::npos) << engine_.log();
}

TEST_F(Reasons, TellALineThatReadersTakeForDifferentThings) {
  const struct {
    std::string body;
    const char* reason;
  } cases[] = {
      {kSession + kAudio + "acrypto:1 AES inline:SECRET\r\n", "line 7: not a lower-case letter and '='"},
      {kSession + kAudio + " a=crypto:1 AES inline:SECRET\r\n", "line 7: not a lower-case letter and '='"},
      {kSession + "i=x\ra=crypto:1 AES inline:SECRET\r\n" + kAudio, "line 6: a CR that ends no line"},
      {kSession + std::string("i=\0SECRET\r\n", 11) + kAudio, "line 6: a NUL"},
      {"\r\n" + kSession + kAudio, "line 1: the first line is no v-line"},
      {kSession + "m=SECRET 49170 RTP/AVP\r\n", "line 6: unreadable m-line"},
      {kSession + kAudio + "m=SECRET 65536 RTP/AVP 8\r\n", "line 7: unreadable m-line"},
  };
  int call = 0;
  for (const auto& each : cases) {
    const std::string response = ask({.call = ++call, .body = each.body});
    EXPECT_EQ(statusOf(response), 488) << response;
    EXPECT_EQ(headerOf(response, "Warning"), "399 " + engine_.address() + " \"" + each.reason + "\"");
    EXPECT_NE(engine_.log().find(std::string(" body refused: ") + each.reason + "\n"), std::string::npos)
        << engine_.log();
  }
  EXPECT_EQ(engine_.log().find("SECRET"), std::string::npos) << engine_.log();
  EXPECT_EQ(engine_.stop().at("refused_bodies"), call);
}

TEST_F(Reasons, AreNotNeededForABodyOfTheGreatestLength) {
  constexpr std::size_t kGreatest = 20'480;
  std::string body = kSession + kAudio + "a=x:";
  body.append(kGreatest - 2 - body.size(), 'x').append("\r\n");
  caller_.request(engine_.address(), {.body = body});
  const std::string invited = target_.receive("INVITE ", "", kLongestWait);
  EXPECT_TRUE(invited.ends_with("\r\n\r\n" + body)) << engine_.log();
}

TEST_F(Reasons, AreNotNeededForABodyInAnySpelling) {
  const std::string canonical =
      kSession + "a=setup:actpass\r\n" + kAudio + "a=rtpmap:8 PCMA/8000\r\na=Own: x \r\n";
  const std::string odd =
      "v=0\no=- 1 1 IN IP4 192.0.2.10\ns=-\n\nc=IN IP4 192.0.2.10\r\nt=0 0\n\r\na=SETUP:actpass\n"
      "m=Audio\t049170  rtp/avp 8 \na=RtpMap:8 PCMA/8000\na=Own: x ";
  int call = 0;
  for (const std::string& body : {canonical, odd}) {
    caller_.request(engine_.address(), {.call = ++call, .body = body});
    const std::string invited = target_.receive("INVITE ", "", kLongestWait);
    EXPECT_TRUE(invited.ends_with("\r\n\r\n" + canonical)) << invited;
    target_.respond(engine_.address(), invited, "486 Busy Here");
    EXPECT_EQ(statusOf(caller_.receive("SIP/2.0 486 ", "", kLongestWait)), 486);
  }
}

TEST_F(Reasons, HoldNoNamesOfTheLibrary) {
  const std::string response = ask({.body = kSession + kAudio + "a=" + std::string(30'000, 'x') + "\r\n"});
  EXPECT_EQ(headerOf(response, "Warning"), "399 " + engine_.address() + " \"the body cannot be used\"");
  EXPECT_NE(engine_.log().find("MAX_SDP_PROTOCOL_DATA_SIZE"), std::string::npos) << engine_.log();
}

TEST(Multipart, HasOneSdpPart) {
  using b2bua::sdpPartOf;
  const std::string sdp = kSession + kAudio;
  EXPECT_EQ(sdpPartOf(kSdpPart + kEnd, "next one"), sdp);
  EXPECT_EQ(sdpPartOf("preamble\r\n" + kOtherPart + kSdpPart + kOtherPart + kEnd + "epilogue", "next one"),
            sdp);
  EXPECT_EQ(sdpPartOf("--b\ncontent-type : Application/SDP;charset=utf-8\n\nv=0\n--b--", "b"), "v=0\r\n");
  // The line end in front of the delimiter is not the last line's, which gets one.
  EXPECT_EQ(sdpPartOf("--b\r\nContent-Type: application/sdp\r\n\r\nv=0\r\n--b--\r\n", "b"), "v=0\r\n");
}

TEST(Multipart, IsOtherwiseNotRead) {
  using b2bua::sdpPartOf;
  EXPECT_EQ(sdpPartOf("", "b"), std::nullopt);
  EXPECT_EQ(sdpPartOf("v=0\r\n", "b"), std::nullopt);
  EXPECT_EQ(sdpPartOf(kOtherPart + kEnd, "next one"), std::nullopt);
  EXPECT_EQ(sdpPartOf("--b\r\nContent-Type: application/sdp\r\n\r\nv=0\r\n", "b"), std::nullopt);
  EXPECT_EQ(sdpPartOf("--b", "b"), std::nullopt);
  EXPECT_EQ(sdpPartOf("--b--", "b"), std::nullopt);
  EXPECT_EQ(
      sdpPartOf(
          "--b\r\nContent-Type: application/sdp\r\nContent-Transfer-Encoding: base64\r\n\r\ndj0w\r\n--b--",
          "b"),
      std::nullopt);
  EXPECT_EQ(
      sdpPartOf(kSdpPart +
                    partOf("Content-Type: text/x\r\nContent-Disposition: x; handling=REQUIRED\r\n", "x") +
                    kEnd,
                "next one"),
      std::nullopt);
}

TEST_F(Reasons, AreNotGivenForAMultipartInvite) {
  caller_.request(engine_.address(), {.body = kOtherPart + kSdpPart + kEnd, .contentType = kMixed});
  const std::string invited = target_.receive("INVITE ", "", kLongestWait);
  EXPECT_EQ(headerOf(invited, "Content-Type"), "application/sdp");
  EXPECT_TRUE(invited.ends_with("\r\n\r\n" + kSession + kAudio)) << invited;
  // An answer may come in this form too.
  const std::string answer = kOtherPart + kSdpPart + kEnd;
  target_.send(
      engine_.address(),
      "SIP/2.0 200 OK\r\nVia: " + headerOf(invited, "Via") + "\r\nFrom: " + headerOf(invited, "From") +
          "\r\nTo: " + headerOf(invited, "To") + ";tag=raw\r\nCall-ID: " + headerOf(invited, "Call-ID") +
          "\r\nCSeq: 1 INVITE\r\nContact: <sip:bob@" + target_.address() + ">\r\nContent-Type: " + kMixed +
          "\r\nContent-Length: " + std::to_string(answer.size()) + "\r\n\r\n" + answer);
  const std::string response = caller_.receive("SIP/2.0 200 ", "", kLongestWait);
  EXPECT_TRUE(response.ends_with("\r\n\r\n" + kSession + kAudio)) << response;
}

TEST_F(Reasons, AreNoSdpInAMultipartInvite) {
  EXPECT_EQ(statusOf(ask({.call = 1, .body = kOtherPart + kEnd, .contentType = kMixed})), 415);
  EXPECT_EQ(statusOf(ask({.call = 2, .body = kSdpPart + kEnd, .contentType = "multipart/mixed"})), 415);
  EXPECT_EQ(statusOf(ask({.call = 3, .body = kSdpPart + kEnd, .contentType = "multipart/mixed;boundary=x"})),
            415);
}
