#include "captures/sipView.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using tool::SipView;
using tool::StartLine;

constexpr std::string_view kSdp = "v=0\r\no=- 1 1 IN IP4 192.0.2.1\r\ns=-\r\nt=0 0\r\n";

TEST(SipView, TakesAMessageApart) {
  const SipView view("INVITE sip:bob@example.com SIP/2.0\r\nv: SIP/2.0/UDP 192.0.2.1\r\ni : abc\r\n\r\nbody");
  EXPECT_EQ(view.kind(), StartLine::request);
  EXPECT_EQ(view.method(), "INVITE");
  EXPECT_EQ(view.requestUri(), "sip:bob@example.com");
  EXPECT_EQ(view.status(), 0);
  EXPECT_EQ(view.value("Call-ID"), "abc");
  EXPECT_EQ(view.value("call-id"), "abc");
  EXPECT_EQ(view.value("From"), std::nullopt);
  EXPECT_EQ(view.body(), "body");
}

TEST(SipView, TakesAResponseApart) {
  const SipView view("SIP/2.0 486 Busy Here\nCall-ID:abc\n\n");
  EXPECT_EQ(view.kind(), StartLine::response);
  EXPECT_EQ(view.status(), 486);
  EXPECT_EQ(view.method(), "");
  EXPECT_EQ(view.requestUri(), "");
  EXPECT_EQ(view.value("Call-ID"), "abc");
  EXPECT_EQ(view.body(), "");
}

TEST(SipView, KnowsCompactForms) {
  const SipView view("SIP/2.0 200 OK\r\nF: a\r\nt: b\r\nm: c\r\nx: d\r\nq: e\r\n\r\n");
  EXPECT_EQ(view.value("From"), "a");
  EXPECT_EQ(view.value("To"), "b");
  EXPECT_EQ(view.value("Contact"), "c");
  EXPECT_EQ(view.value("Session-Expires"), "d");
  EXPECT_EQ(view.value("Content-Type"), std::nullopt);
  EXPECT_EQ(view.fields().size(), 5U);
}

TEST(SipView, GivesAllValuesOfAName) {
  const SipView view("SIP/2.0 200 OK\r\nVia: one\r\nv: two, three\r\nCall-ID: a\r\nVIA:\r\n\r\n");
  EXPECT_EQ(view.values("Via"), (std::vector<std::string_view>{"one", "two, three", ""}));
}

TEST(SipView, PutsFoldedLinesTogether) {
  const SipView view("SIP/2.0 200 OK\r\nSubject: one\r\n two \r\n\tthree\r\nTo: x\r\n\r\n");
  EXPECT_EQ(tool::unfolded(view.value("Subject").value()), "one two three");
  EXPECT_EQ(view.value("To"), "x");
  EXPECT_EQ(tool::unfolded("a\n b\r\n\t c"), "a b c");
  EXPECT_EQ(tool::unfolded("plain  text"), "plain  text");
}

TEST(SipView, PassesOverLinesThatAreNoFields) {
  const SipView view("SIP/2.0 200 OK\r\nnonsense\r\n\tfolded: x\r\nTo: x\r\n\r\nFrom: y");
  EXPECT_EQ(view.value("To"), "x");
  EXPECT_EQ(view.value("From"), std::nullopt);
}

TEST(SipView, EndsABodyAtItsLength) {
  EXPECT_EQ(SipView("SIP/2.0 200 OK\r\nl: 3\r\n\r\nabcdef").body(), "abc");
  EXPECT_EQ(SipView("SIP/2.0 200 OK\r\nl: 9\r\n\r\nabcdef").body(), "abcdef");
  EXPECT_EQ(SipView("SIP/2.0 200 OK\r\nl: x\r\n\r\nabcdef").body(), "abcdef");
  EXPECT_EQ(SipView("SIP/2.0 200 OK\r\nl: 99999999999999999999999\r\n\r\nabcdef").body(), "abcdef");
  EXPECT_EQ(SipView("SIP/2.0 200 OK\r\nTo: x").body(), "");
  EXPECT_EQ(SipView("").body(), "");
}

struct SdpCase {
  std::string name;
  std::string fields;
  std::string body;
  bool isThere;
};

TEST(SipView, FindsTheSdpOfABody) {
  const std::string sdp(kSdp);
  const std::string parts =
      "preamble\r\n--x\r\nContent-Type: application/pidf+xml\r\n\r\n<a/>\r\n--x\r\n"
      "Content-Type: application/sdp\r\n\r\n" +
      sdp + "\r\n--x--\r\n";
  const SdpCase cases[] = {
      {"a body", "Content-Type: application/sdp\r\n", sdp, true},
      {"a compact form and parameters", "c: Application/SDP;charset=utf-8\r\n", sdp, true},
      {"a length", "c: application/sdp\r\nl: " + std::to_string(sdp.size()) + "\r\n", sdp + "behind", true},
      {"a part", "Content-Type: multipart/mixed;boundary=x\r\n", parts, true},
      {"no type", "", sdp, false},
      {"another type", "Content-Type: text/plain\r\n", sdp, false},
      {"no body", "Content-Type: application/sdp\r\n", "", false},
      {"an encoding", "Content-Type: application/sdp\r\nContent-Encoding: gzip\r\n", sdp, false},
      {"no such part", "Content-Type: multipart/mixed;boundary=y\r\n", parts, false},
  };
  for (const SdpCase& one : cases) {
    const std::string text = "SIP/2.0 200 OK\r\n" + one.fields + "\r\n" + one.body;
    const SipView view(text);
    EXPECT_EQ(view.sdp(), one.isThere ? std::optional(kSdp) : std::nullopt) << one.name;
  }
}

TEST(SipView, IsUsedForOneMessageAfterAnother) {
  SipView view("SIP/2.0 200 OK\r\nTo: a\r\n\r\n");
  view.read("BYE sip:b SIP/2.0\r\nFrom: b\r\n\r\n");
  EXPECT_EQ(view.value("To"), std::nullopt);
  EXPECT_EQ(view.value("From"), "b");
  EXPECT_EQ(view.method(), "BYE");
}

}  // namespace
