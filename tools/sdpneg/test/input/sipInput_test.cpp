#include <gtest/gtest.h>

#include "bodies.h"
#include "process.h"

namespace {

const std::string body(bodies::audioCall);

/// What is shown of the body alone, but for the lines of its m-lines.
const Outcome& bare() {
  static const Outcome outcome = runSdpneg({"inspect"}, {.input = body});
  return outcome;
}

std::string invite(const std::string& fields, const std::string& content) {
  return "INVITE sip:bob@example.com SIP/2.0\nVia: SIP/2.0/UDP 192.0.2.1\n" + fields + "\n" + content;
}

/// Inspects a message that holds the usual body from a line on.
void expectBody(const std::string& message, int bodyLine, const std::string& notes = "") {
  const Outcome outcome = runSdpneg({"inspect"}, {.input = message});
  const std::string line = std::to_string(bodyLine + 6);
  const std::string shown =
      replaced(bare().out, "\n  1       7     ", "\n  1       " + line + std::string(6 - line.size(), ' '));
  EXPECT_EQ(outcome.out, shown) << message;
  EXPECT_EQ(outcome.err, notes);
  EXPECT_EQ(outcome.status, 0);
}

void expectProblem(const std::string& message, const std::string& line) {
  const Outcome outcome = runSdpneg({"inspect"}, {.input = message});
  EXPECT_EQ(outcome.err, "sdpneg: (standard input):" + line + "\n") << message;
  EXPECT_EQ(outcome.status, 2);
}

TEST(SipMessage, GivesItsBody) {
  expectBody(invite("Content-Type: application/sdp\nContent-Length: 168\n", body), 6);
  expectBody("SIP/2.0 200 OK\nContent-Type: application/sdp\n\n" + body, 4);
  expectBody("\n\nsip/2.0 200 OK\n\n" + body, 5);
}

TEST(SipMessage, MayEndItsLinesInCrLf) {
  const std::string message = withCrLf(invite("Content-Type: application/sdp\nContent-Length: 178\n", body));
  const Outcome outcome = runSdpneg({"inspect"}, {.input = message});
  EXPECT_EQ(outcome.err, "");
  EXPECT_EQ(outcome.out, replaced(replaced(bare().out, "168 bytes", "178 bytes"), "\n  1       7     ",
                                  "\n  1       12    "));
}

TEST(SipMessage, MayHaveCompactAndFoldedFields) {
  expectBody(invite("c: APPLICATION/SDP ; x=y\nl:168\n", body), 6);
  expectBody(invite("Content-Type:\n application/sdp\nSubject: a\n\tb\nl :\n  168\n", body), 10);
}

TEST(SipMessage, IsCutAtItsContentLength) {
  expectBody(invite("l: 168\n", body + "\n\n"), 5);
  expectBody(
      invite("l: 168\n", body + "SIP/2.0 100 Trying\n"), 5,
      "sdpneg: (standard input):3:1: note: Content-Length is 168, but 187 bytes follow the header; those behind it are not read\n");
}

TEST(SipMessage, ShorterThanItsContentLengthIsNoted) {
  expectBody(invite("l: 178\n", body), 5,
             "sdpneg: (standard input):3:1: note: Content-Length is 178, but 168 bytes follow the header\n");
}

TEST(SipMessage, WithAProblemGivesItsPlaceInTheFile) {
  expectProblem(withCrLf(invite("c: application/sdp\n", std::string(bodies::browserOffer))),
                "9:9: the port of m-line 1 (audio), 9, is below 1024");
  expectProblem(invite("c: application/sdp\n", "v=0\nm=audio x\n"), "6:9: expected a port, found \"x\"");
}

TEST(SipMessage, WithoutSdpSaysWhatItHas) {
  expectProblem(invite("Content-Type: text/plain\n", "hello\n"),
                "3:1: the body is \"text/plain\", not application/sdp");
  expectProblem(invite("l: 0\n", ""), "5:1: the SIP message has no body");
  expectProblem("OPTIONS sip:a@example.com SIP/2.0\nl: 0", "2:5: the SIP message has no body");
  expectProblem(invite("c: multipart/mixed;boundary=b\ne: gzip\n", "?"),
                "4:1: the body is encoded as \"gzip\", which is not read");
  expectProblem(invite("Content-Encoding: gzip\n", body),
                "3:1: the body is encoded as \"gzip\", which is not read");
}

const std::string sdpPart = "Content-Type: application/sdp\n\n" + body;

TEST(MultipartBody, GivesItsSdpPart) {
  const std::string parts =
      "preamble\n--b 1\nContent-Type: text/plain\n\nv=9\n\n--b 1\n" + sdpPart + "\n--b 1--\nend\n";
  expectBody(invite("Content-Type: multipart/mixed;\n charset=x; boundary=\"b 1\"\n", parts), 15);
}

TEST(MultipartBody, MayHaveCrLfAndBinaryParts) {
  const std::string parts = withCrLf("--b\nContent-Type: application/ISUP\n\n") +
                            std::string("\0\1\xff\r", 4) + withCrLf("\n--b\n" + sdpPart + "\n--b--\n");
  const std::string message = withCrLf(invite("c: multipart/mixed;boundary=b\n", "")) + parts;
  const Outcome outcome = runSdpneg({"inspect"}, {.input = message});
  EXPECT_EQ(outcome.err, "");
  EXPECT_NE(outcome.out.find("  stored            plain, 178 bytes\n"), std::string::npos);
  EXPECT_NE(outcome.out.find("\n  1       18    audio"), std::string::npos);
}

TEST(MultipartBody, WhoseBoundaryFollowsTheLastLineKeepsItsLineEnd) {
  expectBody(invite("c: multipart/mixed;boundary=b\n", "--b\n" + sdpPart + "--b--\n"), 8);
}

TEST(MultipartBody, MayHoldAnother) {
  const std::string inner = "--in\nContent-Type: text/html\n\n<p>\n--in\n" + sdpPart + "\n--in--\n";
  expectBody(invite("c: multipart/mixed; boundary=out\n",
                    "--out\nContent-Type: multipart/alternative; boundary=in\n\n" + inner + "--out--\n"),
             15);
}

TEST(MultipartBody, MayLackItsEnd) {
  expectBody(invite("c: multipart/mixed; boundary=b\n", "--b \n" + sdpPart), 8);
}

TEST(MultipartBody, DoesNotTakeALongerBoundaryForItsOwn) {
  const std::string parts = "--bb\n" + sdpPart + "--b\nContent-Type: text/plain\n\nx\n--b--\n";
  expectProblem(invite("c: multipart/mixed; boundary=b\n", parts),
                "3:1: the multipart body has no part application/sdp");
}

TEST(MultipartBody, WithoutWhatItNeedsIsRefused) {
  expectProblem(invite("c: multipart/mixed\n", "--b\n" + sdpPart), "3:1: the multipart body has no boundary");
  expectProblem(invite("c: multipart/mixed;boundary=\"b\n", ""), "5:1: the SIP message has no body");
  expectProblem(
      invite("c: multipart/mixed; boundary=b\n",
             "--b\nContent-Type: application/sdp\nContent-Transfer-Encoding: base64\n\ndj0wCg==\n--b--\n"),
      "7:1: the body is encoded as \"base64\", which is not read");
}

TEST(MultipartBody, NestedWithoutEndIsRefused) {
  std::string content;
  for (int i = 0; i < 20000; ++i) {
    content +=
        "--b\nc: multipart/mixed; boundary=b" + std::string(static_cast<std::size_t>(i % 3), 'b') + "\n\n";
  }
  const Outcome outcome =
      runSdpneg({"inspect"}, {.input = invite("c: multipart/mixed; boundary=b\n", content)});
  EXPECT_EQ(outcome.status, 2);
  EXPECT_NE(outcome.err.find("multipart"), std::string::npos);
}

TEST(SipMessage, MayHaveHeadersOfAnySize) {
  std::string fields;
  for (int i = 0; i < 5000; ++i) fields += "X-" + std::to_string(i) + ": " + std::string(100, 'x') + "\n y\n";
  const Outcome outcome = runSdpneg({"inspect"}, {.input = invite(fields, body)});
  EXPECT_EQ(outcome.err, "");
  EXPECT_EQ(outcome.status, 0);
}

}  // namespace
