#include "report/callLines.h"

#include <gtest/gtest.h>

#include "report/names.h"
#include "report/times.h"

namespace {

const tool::Palette kPlain(false);

/// A call that is over, with two things that are wrong.
tool::Call endedCall() {
  tool::Call call;
  call.number = 3;
  call.start = 1763805600123456;  // 2025-11-22 10:00:00.123456
  call.from = "sip:alice@example.org";
  call.to = "sip:bob@example.com";
  call.state = tool::CallState::ended;
  call.result = 200;
  call.codecs = {"opus", "PCMA"};
  call.security = "dtls";
  call.messages.resize(2);
  call.messages[0].number = 7;
  call.messages[1].number = 9;
  call.troubles = {{"one-way", 0, 1, 12, false, "nobody sends"},
                   {"dtmf-clock", 1, 0, 0, true, "no common clock"},
                   {"one-way", 1, 2, 0, false, "x\ny"}};
  return call;
}

TEST(CallLine, TellsACall) {
  EXPECT_EQ(tool::callLine(endedCall(), kPlain),
            "3      2025-11-22 10:00:00.123  alice@example.org           bob@example.com             "
            "ended 200      opus,PCMA       dtls       one-way (2), dtmf-clock\n");
}

TEST(CallLine, OfACallOfWhichLittleIsKnown) {
  tool::Call call;
  call.number = 1;
  EXPECT_EQ(tool::callLine(call, kPlain),
            "1      -                        -                           -                           "
            "ringing        -               -\n");
  call.isGivenUp = true;
  EXPECT_EQ(tool::callLine(call, kPlain),
            "1      -                        -                           -                           "
            "ringing        -               -          not whole\n");
}

TEST(CallLine, ShowsHostileTextsAsPrintableOnes) {
  tool::Call call = endedCall();
  call.from = "tel:\x1B[2J";
  call.codecs = {"\x07"};
  const std::string line = tool::callLine(call, kPlain);
  EXPECT_NE(line.find("tel:\\x1B[2J"), std::string::npos) << line;
  EXPECT_NE(line.find("\\x07"), std::string::npos) << line;
}

TEST(CallLine, HeadingStandsAboveTheColumns) {
  EXPECT_EQ(tool::callLineHeading(kPlain),
            "CALL   START (UTC)              FROM                        TO                          "
            "RESULT         CODECS          SECURITY   ODD\n");
}

TEST(TroubleLines, NameTheMessageByItsNumber) {
  EXPECT_EQ(tool::troubleLines(endedCall(), kPlain),
            "call 3, message 7, line 12, section 1: one-way: nobody sends\n"
            "call 3, message 9: dtmf-clock: no common clock\n"
            "call 3, message 9, section 2: one-way: x\\x0Ay\n");
}

TEST(Times, AreWrittenInUtc) {
  EXPECT_EQ(tool::readableTime(1763805600123456), "2025-11-22 10:00:00.123");
  EXPECT_EQ(tool::readableTime(0), "1970-01-01 00:00:00.000");
  EXPECT_EQ(tool::readableTime(-1), "1969-12-31 23:59:59.999");
  EXPECT_EQ(tool::readableTime(std::nullopt), "-");
}

TEST(Times, BeyondTheYearsOfFourDigitsAreNone) {
  EXPECT_EQ(tool::readableTime(253402300799999999), "9999-12-31 23:59:59.999");
  EXPECT_EQ(tool::readableTime(253402300800000000), "-");
  EXPECT_EQ(tool::readableTime(INT64_MAX), "-");
  EXPECT_EQ(tool::readableTime(INT64_MIN), "-");
}

TEST(Times, BetweenAreSeconds) {
  EXPECT_EQ(tool::secondsBetween(1000000, 3500999), "2.500");
  EXPECT_EQ(tool::secondsBetween(3500000, 1000000), "-2.500");
  EXPECT_EQ(tool::secondsBetween(1, std::nullopt), "-");
  EXPECT_EQ(tool::secondsBetween(INT64_MIN, INT64_MAX), "18446744073709.551");
}

TEST(Names, AreFoundByAddressAndPort) {
  tool::Names names;
  EXPECT_TRUE(tool::addName(names, "192.0.2.1=sbc"));
  EXPECT_TRUE(tool::addName(names, "192.0.2.1:5070=engine"));
  EXPECT_TRUE(tool::addName(names, "[2001:db8::1]:5060=six"));
  const auto label = [&](const char* endpoint) {
    return tool::labelOf(names, *tool::parseEndpoint(endpoint));
  };
  EXPECT_EQ(label("192.0.2.1:5060"), "sbc");
  EXPECT_EQ(label("192.0.2.1"), "sbc");
  EXPECT_EQ(label("192.0.2.1:5070"), "engine");
  EXPECT_EQ(label("[2001:db8::1]:5060"), "six");
  EXPECT_EQ(label("[2001:db8::1]:5061"), "[2001:db8::1]:5061");
}

TEST(Names, RefuseWhatIsNoAssignment) {
  tool::Names names;
  for (const char* text : {"", "192.0.2.1", "192.0.2.1=", "=sbc", "host=sbc", "192.0.2.1:99999=sbc"})
    EXPECT_FALSE(tool::addName(names, text)) << text;
}

}  // namespace
