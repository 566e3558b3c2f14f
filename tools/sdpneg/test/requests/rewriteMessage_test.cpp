#include <gtest/gtest.h>

#include "bodies.h"
#include "process.h"

namespace {

const std::string body(bodies::audioCall);
const std::string added = "a=recvonly\r\n";

std::string invite(const std::string& fields, const std::string& content) {
  return "INVITE sip:bob@example.com SIP/2.0\nVia: SIP/2.0/UDP 192.0.2.1\n" + fields + "\n" + content;
}

/// Makes the audio of a message receive only, which adds a line of 12 bytes to the body.
void expectRewritten(const std::string& message, const std::string& expected, const std::string& notes = "") {
  const Outcome outcome = runSdpneg({"rewrite", "mode", "recvonly"}, {.input = message});
  EXPECT_EQ(outcome.out, expected);
  EXPECT_EQ(outcome.err, notes);
  EXPECT_EQ(outcome.status, 0);
}

TEST(RewriteMessage, CorrectsTheContentLength) {
  ASSERT_EQ(body.size(), 168U);
  expectRewritten(invite("Content-Length: 168\nc: application/sdp\n", body),
                  invite("Content-Length: 180\nc: application/sdp\n", body + added));
  expectRewritten(invite("l:168\n", body), invite("l:180\n", body + added));
  expectRewritten(invite("Content-length :\n\t 168 \nX: y\n", body),
                  invite("Content-length :\n\t 180 \nX: y\n", body + added));
}

TEST(RewriteMessage, MayEndItsLinesInCrLf) {
  expectRewritten(withCrLf(invite("l: 178\n", body)), withCrLf(invite("l: 190\n", body)) + added);
}

TEST(RewriteMessage, WithoutContentLengthGetsNone) {
  expectRewritten(invite("", body), invite("", body + added));
  expectRewritten(
      invite("l: many\n", body), invite("l: many\n", body + added),
      "sdpneg: (standard input):3:1: note: Content-Length is \"many\", which is no length, and does not matter\n");
}

TEST(RewriteMessage, KeepsWhatFollowsItsBody) {
  expectRewritten(invite("l: 168\n", body + "\n\n"), invite("l: 180\n", body + added + "\n\n"));
  expectRewritten(
      invite("l: 168\n", body + "SIP/2.0 100 Trying\n"),
      invite("l: 180\n", body + added + "SIP/2.0 100 Trying\n"),
      "sdpneg: (standard input):3:1: note: Content-Length is 168, but 187 bytes follow the header; those behind it are not read\n");
}

TEST(RewriteMessage, WhoseContentLengthWasWrongGetsTheRightOne) {
  expectRewritten(
      invite("l: 178\n", body), invite("l: 180\n", body + added),
      "sdpneg: (standard input):3:1: note: Content-Length is 178, but 168 bytes follow the header\n");
}

TEST(RewriteMessage, WithSeveralContentLengthsGetsAllCorrected) {
  expectRewritten(invite("l: 168\nContent-Length: 168\n", body),
                  invite("l: 180\nContent-Length: 180\n", body + added));
}

TEST(RewriteMessage, MayHaveAnyNumberOfContentLengths) {
  std::string before = "l: 168\n";
  std::string after = "l: 180\n";
  for (int i = 0; i < 100000; ++i) {
    before += "l:1\n";
    after += "l:180\n";
  }
  const Outcome outcome = runSdpneg({"rewrite", "mode", "recvonly"}, {.input = invite(before, body)});
  EXPECT_TRUE(outcome.out == invite(after, body + added)) << outcome.out.size();
  EXPECT_EQ(outcome.err, "");
}

TEST(RewriteMessage, IsUntouchedByARefusedRequest) {
  const std::string message = invite("l: 166\n", std::string(bodies::faxCall));
  const Outcome outcome = runSdpneg({"rewrite", "silence", "on"}, {.input = message});
  EXPECT_EQ(outcome.out, "");
  EXPECT_EQ(outcome.status, 1);
}

TEST(RewriteMessage, ShowsItsWholeDiff) {
  const Outcome outcome =
      runSdpneg({"rewrite", "--diff", "mode", "recvonly"}, {.input = invite("l: 168\n", body)});
  EXPECT_NE(outcome.out.find("\n-l: 168\n+l: 180\n"), std::string::npos);
  EXPECT_NE(outcome.out.find("\n+a=recvonly\\x0D\n"), std::string::npos);
}

/// A message with a multipart body. Its Content-Length is that body's size.
std::string multipart(const std::string& content) {
  return invite("c: multipart/mixed;boundary=b\nl: " + std::to_string(content.size()) + "\n", content);
}

std::string parts(const std::string& fields, const std::string& sdp, const std::string& between) {
  return "preamble\n--b\nContent-Type: text/plain\nContent-Length: 4\n\nv=9\n\n--b\nContent-Type: application/sdp\n" +
         fields + "\n" + sdp + between + "--b--\nend\n";
}

TEST(RewriteMultipart, ReplacesThePartInItsPlace) {
  expectRewritten(multipart(parts("", body, "\n")), multipart(parts("", body + added, "\n")));
  expectRewritten(multipart(parts("", body, "")), multipart(parts("", body + added, "")));
}

TEST(RewriteMultipart, CorrectsTheLengthOfThePart) {
  expectRewritten(multipart(parts("l: 168\n", body, "\n")), multipart(parts("l: 180\n", body + added, "\n")));
  expectRewritten(multipart(parts("l: 5\n", body, "\n")), multipart(parts("l: 180\n", body + added, "\n")));
}

TEST(RewriteMultipart, LeavesALineEndOutThatTheLengthLeftOut) {
  // The line end before a boundary belongs to that: one byte is not counted before, two are not afterwards, as
  // the new last line ends in CR LF.
  expectRewritten(multipart(parts("l: 167\n", body, "")), multipart(parts("l: 179\n", body + added, "")));
}

TEST(RewriteMultipart, CountsTheDigitsThatALengthGains) {
  std::string small =
      "v=0\no=ann 1 2 IN IP4 192.0.2.1\ns=\nc=IN IP4 192.0.2.1\nt=0 0\nm=audio 5004 RTP/AVP 0\n";
  ASSERT_LE(small.size(), 95U);
  small.insert(small.find("\nc="), std::string(96 - small.size(), 'x'));
  const std::string before = parts("l: 96\n", small, "\n");
  const std::string after = parts("l: 108\n", small + added, "\n");
  ASSERT_EQ(after.size(), before.size() + 13);
  expectRewritten(multipart(before), multipart(after));
}

TEST(RewriteMultipart, MayHoldAnother) {
  const auto nested = [](const std::string& length, const std::string& sdp) {
    const std::string inner = "--in\nc: application/sdp\nl: " + length + "\n\n" + sdp + "\n--in--\n";
    return multipart("--b\nc: multipart/related;boundary=in\nl: " + std::to_string(inner.size()) + "\n\n" +
                     inner + "\n--b--\n");
  };
  expectRewritten(nested("168", body), nested("180", body + added));
}

}  // namespace
