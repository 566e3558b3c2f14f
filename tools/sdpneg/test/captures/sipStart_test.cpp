#include "captures/sipStart.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using namespace std::string_view_literals;
using tool::Beginning;
using tool::beginningOf;
using tool::findBeginning;
using tool::findHeaderEnd;
using tool::findWholeBeginning;
using tool::StartLine;
using tool::startLineOf;

TEST(SipStart, TellsRequestsAndResponses) {
  for (const std::string_view line :
       {"INVITE sip:bob@example.com SIP/2.0"sv, "OPTIONS sips:example.com;a=b SIP/2.0"sv,
        "ACK tel:+15551234 SIP/2.0"sv, "x-y.z!%*_+`'~ urn:service:sos SIP/2.0"sv,
        "INVITE sip:[2001:db8::1]:5060 SIP/2.0"sv}) {
    EXPECT_EQ(startLineOf(line), StartLine::request) << line;
  }
  for (const std::string_view line :
       {"SIP/2.0 200 OK"sv, "SIP/2.0 100 "sv, "SIP/2.0 699"sv, "SIP/2.0 180 Ça sonne"sv}) {
    EXPECT_EQ(startLineOf(line), StartLine::response) << line;
  }
}

TEST(SipStart, TakesNothingElse) {
  for (const std::string_view line : {""sv,
                                      "SIP/2.0"sv,
                                      "SIP/2.0 "sv,
                                      "SIP/2.0 20"sv,
                                      "SIP/2.0 2000"sv,
                                      "SIP/2.0 700 x"sv,
                                      "SIP/2.0 099 x"sv,
                                      "SIP/2.0 2x0 x"sv,
                                      "SIP/2.0  200 OK"sv,
                                      "SIP/3.0 200 OK"sv,
                                      "sip/2.0 200 OK"sv,
                                      " SIP/2.0 200 OK"sv,
                                      "INVITE SIP/2.0"sv,
                                      "INVITE  SIP/2.0"sv,
                                      "INVITE bob SIP/2.0"sv,
                                      "INVITE :bob SIP/2.0"sv,
                                      "INVITE sip:bob SIP/2.1"sv,
                                      "INVITE sip:bob SIP/2.0 "sv,
                                      "INVITE sip:bob  SIP/2.0"sv,
                                      "INVITE sip:a b SIP/2.0"sv,
                                      "INVITE  sip:bob SIP/2.0"sv,
                                      "INV(TE sip:bob SIP/2.0"sv,
                                      "GET / HTTP/1.1"sv,
                                      " INVITE sip:bob SIP/2.0"sv,
                                      "INVITE sip:bob\0 SIP/2.0"sv,
                                      "Via: SIP/2.0/UDP 192.0.2.1"sv}) {
    EXPECT_EQ(startLineOf(line), StartLine::none) << line;
  }
}

TEST(SipStart, TakesMethodsOf32Characters) {
  EXPECT_EQ(startLineOf(std::string(31, 'M') + " sip:b SIP/2.0"), StartLine::request);
  EXPECT_EQ(startLineOf(std::string(32, 'M') + " sip:b SIP/2.0"), StartLine::request);
  EXPECT_EQ(startLineOf(std::string(33, 'M') + " sip:b SIP/2.0"), StartLine::none);
}

TEST(SipStart, WaitsForAStartLineAsLongAsItCanBecomeOne) {
  for (const std::string_view line : {"INVITE sip:bob@example.com SIP/2.0\r\n"sv, "SIP/2.0 200 OK\n"sv}) {
    EXPECT_EQ(beginningOf(line), Beginning::whole) << line;
    const std::size_t content = line.find_first_of("\r\n");
    for (std::size_t size = 1; size <= content; ++size) {
      EXPECT_EQ(beginningOf(line.substr(0, size)), Beginning::partial) << line.substr(0, size);
    }
  }
  EXPECT_EQ(beginningOf("INVITE sip:bob SIP/2.0\r"), Beginning::partial);
  for (const std::string_view line :
       {""sv, "\r\nINVITE sip:b SIP/2.0\r\n"sv, "INVITE bob S"sv, "INVITE sip:bob H"sv, "SIP/2.0 x"sv,
        "\x80\x01"sv, "INVITE sip:b\x01"sv, "INVITE sip:b SIP/2.0x"sv, "a@b"sv}) {
    EXPECT_NE(beginningOf(line), Beginning::whole) << line;
  }
  EXPECT_EQ(beginningOf("INVITE bob S"), Beginning::none);
  EXPECT_EQ(beginningOf("INVITE sip:bob H"), Beginning::none);
  EXPECT_EQ(beginningOf("INVITE sip:b\x01"), Beginning::none);
  EXPECT_EQ(beginningOf("a@b"), Beginning::none);
}

TEST(SipStart, WaitsNoLongerThanStartLinesAre) {
  const std::string front = "INVITE sip:";
  EXPECT_EQ(beginningOf(front + std::string(tool::kMaxStartLine - front.size(), 'b')), Beginning::partial);
  EXPECT_EQ(beginningOf(front + std::string(tool::kMaxStartLine - front.size() + 1, 'b')), Beginning::none);
}

TEST(SipStart, IsFoundWhereALineBegins) {
  EXPECT_EQ(findBeginning("body\r\nINVITE sip:b SIP/2.0\r\n", 0), 6U);
  EXPECT_EQ(findBeginning("body INVITE sip:b SIP/2.0\r\n", 0), 27U);
  EXPECT_EQ(findBeginning("a=b\nSIP/2", 0), 4U);
  EXPECT_EQ(findWholeBeginning("a=b\nSIP/2", 0), 9U);
  EXPECT_EQ(findWholeBeginning("a=b\nSIP/2.0 200 OK\n", 4), 4U);
  EXPECT_EQ(findBeginning("", 0), 0U);
}

TEST(SipStart, EndsAHeaderAtItsEmptyLine) {
  EXPECT_EQ(findHeaderEnd("a\r\nb: c\r\n\r\nbody", 0), 11U);
  EXPECT_EQ(findHeaderEnd("a\nb: c\n\nbody", 0), 8U);
  EXPECT_EQ(findHeaderEnd("a\r\nb: c\n\r\n", 0), 10U);
  EXPECT_EQ(findHeaderEnd("a\r\nb: c\r\n\r", 0), std::string_view::npos);
  EXPECT_EQ(findHeaderEnd("", 0), std::string_view::npos);
}

}  // namespace
