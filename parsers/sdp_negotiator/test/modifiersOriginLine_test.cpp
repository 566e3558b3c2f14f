#include <gtest/gtest.h>
#include <sys/time.h>

#include <memory>
#include <string>

#include "modifiersTestSupport.h"
#include "sdpModifiers.h"
#include "sdpModifiers/originLine.h"

// The o-line (RFC 4566 5.2) rebuilt from values, and the session ids that serve it.

namespace {

constexpr unsigned short kUnset = 54321;

// --- the line rebuilt

TextEdit modify(const char* id, const char* version, const char* ip, unsigned short& oLineEnd) {
  return
      [=, &oLineEnd](char* sdp) { return sdpModifications::sdpModifyOLine(sdp, id, version, ip, oLineEnd); };
}

struct Rebuilding {
  const char* name;
  std::string before;
  const char* ip;
  std::string after;
  unsigned short oLineEnd;
};

class OriginLineRebuilding : public testing::TestWithParam<Rebuilding> {};

TEST_P(OriginLineRebuilding, ReplacesAllFromTheOLineToTheSLine) {
  const Rebuilding& one = GetParam();
  unsigned short oLineEnd = kUnset;
  expectEdit(one.before, modify("12", "345", one.ip, oLineEnd), 0, one.after);
  EXPECT_EQ(oLineEnd, one.oLineEnd);
}

// "o=ZEV 12 345 IN IP4 " and "o=ZEV 12 345 IN IP6 " have 20 characters.
INSTANTIATE_TEST_SUITE_P(
    Cases, OriginLineRebuilding,
    testing::Values(
        Rebuilding{"givenIPv4", bodyWith("o=- 5 7 IN IP4 1.2.3.4"), "10.0.0.1",
                   bodyWith("o=ZEV 12 345 IN IP4 10.0.0.1"), 35},
        Rebuilding{"givenIPv6", bodyWith("o=- 5 7 IN IP4 1.2.3.4"), "fe80::1",
                   bodyWith("o=ZEV 12 345 IN IP6 fe80::1"), 34},
        Rebuilding{"givenIPv4OnAnIPv6Line", bodyWith("o=- 5 7 IN IP6 fe80::1"), "10.0.0.1",
                   bodyWith("o=ZEV 12 345 IN IP4 10.0.0.1"), 35},
        Rebuilding{"noIpOnAnIPv6Line", bodyWith("o=- 5 7 IN IP6 fe80::1"), nullptr,
                   bodyWith("o=ZEV 12 345 IN IP6 ::"), 29},
        Rebuilding{"noIpOnAnIPv4Line", bodyWith("o=- 5 7 IN IP4 1.2.3.4"), nullptr,
                   bodyWith("o=ZEV 12 345 IN IP4 0.0.0.0"), 34},
        Rebuilding{"ip6BehindTheSLineDoesNotCount", "o=- 5 7 IN IP4 1.2.3.4\r\ns=IP6\r\n", nullptr,
                   "o=ZEV 12 345 IN IP4 0.0.0.0\r\ns=IP6\r\n", 29},
        Rebuilding{"ip6InFrontOfTheOLineDoesNotCount", "v=IP6\r\no=- 5 7 IN IP4 1.2.3.4\r\ns=-\r\n", nullptr,
                   "v=IP6\r\no=ZEV 12 345 IN IP4 0.0.0.0\r\ns=-\r\n", 36},
        Rebuilding{"ip6InALineBetweenCounts", "o=- 5 7 IN IP4 1.2.3.4\r\ni=IP6\r\ns=-\r\n", nullptr,
                   "o=ZEV 12 345 IN IP6 ::\r\ns=-\r\n", 24},
        Rebuilding{"linesBetweenGo", "v=0\r\no=- 5 7 IN IP4 1.2.3.4\r\ni=info\r\nx=y\r\ns=-\r\n", "10.0.0.1",
                   "v=0\r\no=ZEV 12 345 IN IP4 10.0.0.1\r\ns=-\r\n", 35},
        Rebuilding{"bareLf", "v=0\no=- 5 7 IN IP4 1.2.3.4\ns=-\nt=0 0\n", "10.0.0.1",
                   "v=0\no=ZEV 12 345 IN IP4 10.0.0.1\r\ns=-\nt=0 0\n", 34},
        Rebuilding{"nothingBetween", "o=s=", "10.0.0.1", "o=ZEV 12 345 IN IP4 10.0.0.1\r\ns=", 30},
        Rebuilding{"anSLineInsideTheUserName", "o=boss=1 5 7 IN IP4 1.2.3.4\r\ns=-\r\n", "10.0.0.1",
                   "o=ZEV 12 345 IN IP4 10.0.0.1\r\ns=1 5 7 IN IP4 1.2.3.4\r\ns=-\r\n", 30},
        Rebuilding{"anOLineInsideAValue", "v=0\r\ni=(o=IN IP4 1.2.3.4)\r\no=- 5 7\r\ns=-\r\n", "10.0.0.1",
                   "v=0\r\ni=(o=ZEV 12 345 IN IP4 10.0.0.1\r\ns=-\r\n", 38},
        Rebuilding{"bytesAbove127", "o=\xFF\x80\r\ns=\xC3\xBC\r\n", "10.0.0.1",
                   "o=ZEV 12 345 IN IP4 10.0.0.1\r\ns=\xC3\xBC\r\n", 30}),
    [](const auto& tested) { return tested.param.name; });

TEST(ModifyOLine, TracesTheValuesAndTheOutcome) {
  unsigned short oLineEnd = 0;
  TraceCapture trace;
  SdpBuffer buffer(bodyWith("o=- 5 7 IN IP4 1.2.3.4"));
  sdpModifications::sdpModifyOLine(buffer.data(), "%s%n", "%1000000d", "10.0.0.1", oLineEnd);
  EXPECT_EQ(
      trace.takeLines(),
      (Traces{{8, 4, "Entering sdpModifyOLine() method. sessionId=[%s%n] version=[%1000000d] ip=[10.0.0.1]"},
              {2, 2, "The o-line has been changed. Exiting..."}}));
  buffer.expectText(bodyWith("o=ZEV %s%n %1000000d IN IP4 10.0.0.1"));
  sdpModifications::sdpModifyOLine(buffer.data(), "1", "2", nullptr, oLineEnd);
  EXPECT_EQ(trace.takeLines(),
            (Traces{{8, 4, "Entering sdpModifyOLine() method. sessionId=[1] version=[2] ip=[(null)]"},
                    {2, 2, "The o-line has been changed. Exiting..."}}));
}

struct RebuildingRefusal {
  const char* name;
  std::string before;
  const char* ip;
  TraceLine reason;
};

const TraceLine kBadIp = {2, 3, "sdpModifyOLine(): The provided IP is not valid, exiting"};
const TraceLine kNoOriginLine = {2, 2, "The o-line is not present within the SDP. Exiting..."};
const TraceLine kNoSessionName = {2, 2, "The s-line is not present within the SDP. Exiting..."};
const TraceLine kNoTextEnd = {4, 3,
                              "sdpModifyOLine(): The SDP buffer is null or holds no end of text. Exiting."};

class OriginLineRebuildingRefusal : public testing::TestWithParam<RebuildingRefusal> {};

TEST_P(OriginLineRebuildingRefusal, ChangesNothingAndSaysWhy) {
  const RebuildingRefusal& one = GetParam();
  unsigned short oLineEnd = kUnset;
  {
    TraceCapture trace;
    SdpBuffer buffer(one.before);
    modify("12", "345", one.ip, oLineEnd)(buffer.data());
    const std::string ip = one.ip != nullptr ? one.ip : "(null)";
    EXPECT_EQ(
        trace.takeLines(),
        (Traces{{8, 4, "Entering sdpModifyOLine() method. sessionId=[12] version=[345] ip=[" + ip + "]"},
                one.reason}));
  }
  expectUntouched(one.before, modify("12", "345", one.ip, oLineEnd), 1);
  EXPECT_EQ(oLineEnd, kUnset);
}

const std::string kLongWord(9000, '1');

INSTANTIATE_TEST_SUITE_P(
    Cases, OriginLineRebuildingRefusal,
    testing::Values(
        RebuildingRefusal{"empty", "", nullptr, kNoOriginLine},
        RebuildingRefusal{"noOLine", "v=0\r\ns=-\r\n", nullptr, kNoOriginLine},
        RebuildingRefusal{"noSLine", "v=0\r\no=- 5 7 IN IP4 1.2.3.4\r\n", nullptr, kNoSessionName},
        RebuildingRefusal{"sLineOnlyInFront", "s=-\r\no=- 5 7 IN IP4 1.2.3.4\r\n", nullptr, kNoSessionName},
        RebuildingRefusal{"endsInTheSLinesPrefix", "o=- 5 7\r\ns", nullptr, kNoSessionName},
        RebuildingRefusal{"word", bodyWith("o=- 5 7 IN IP6 fe80::1"), "abc", kBadIp},
        RebuildingRefusal{"emptyIp", bodyWith("o=- 5 7 IN"), "", kBadIp},
        RebuildingRefusal{"ipWithABlank", bodyWith("o=- 5 7 IN"), "10.0.0.1 ", kBadIp},
        RebuildingRefusal{"ipOfThreeNumbers", bodyWith("o=- 5 7 IN"), "10.0.0", kBadIp},
        RebuildingRefusal{"ipWithANumberTooLarge", bodyWith("o=- 5 7 IN"), "10.0.0.256", kBadIp},
        RebuildingRefusal{"ipWithAZone", bodyWith("o=- 5 7 IN"), "fe80::1%eth0", kBadIp},
        RebuildingRefusal{"overlongIp", bodyWith("o=- 5 7 IN"), kLongWord.c_str(), kBadIp},
        RebuildingRefusal{"noNul", withoutNul("o=- 5 7 IN\r\ns=-\r\n"), nullptr, kNoTextEnd}),
    [](const auto& tested) { return tested.param.name; });

TEST(ModifyOLine, RefusesANullText) {
  unsigned short oLineEnd = kUnset;
  TraceCapture trace;
  EXPECT_EQ(sdpModifications::sdpModifyOLine(nullptr, "1", "2", nullptr, oLineEnd), 1);
  EXPECT_EQ(trace.takeLines(),
            (Traces{{8, 4, "Entering sdpModifyOLine() method. sessionId=[1] version=[2] ip=[(null)]"},
                    {2, 2, "The raw sdp buffer is empty. Exiting..."}}));
  EXPECT_EQ(sdpModifications::sdpModifyOLine(nullptr, nullptr, oLineEnd), 1);
  EXPECT_EQ(oLineEnd, kUnset);
}

// "o=ZEV " + id + " " + version + " IN IP4 0.0.0.0\r\n" has 24 characters beside id and version.
TEST(ModifyOLine, ALineOf336CharactersIsWhole) {
  const std::string id(311, '1');
  unsigned short oLineEnd = 0;
  expectEdit(bodyWith("o=- 5 7 IN"), modify(id.c_str(), "2", nullptr, oLineEnd), 0,
             bodyWith("o=ZEV " + id + " 2 IN IP4 0.0.0.0"));
  EXPECT_EQ(oLineEnd, 5 + 336);
}

TEST(ModifyOLine, ALineOfMoreIsCutAndEndsTheText) {
  for (const std::size_t length : {312U, 313U, 330U, 331U, 20479U, 30000U}) {
    const std::string id(length, '1');
    const std::string cut = ("o=ZEV " + id + " 2 IN IP4 0.0.0.0\r\n").substr(0, 336);
    unsigned short oLineEnd = 0;
    expectEdit(bodyWith("o=- 5 7 IN"), modify(id.c_str(), "2", nullptr, oLineEnd), 1, "v=0\r\n" + cut);
    EXPECT_EQ(oLineEnd, 5 + 336);
    TraceCapture trace;
    SdpBuffer buffer(bodyWith("o=- 5 7 IN"));
    modify(id.c_str(), "2", nullptr, oLineEnd)(buffer.data());
    EXPECT_EQ(trace.count(2, 2, "Bad termination of s-line. Exiting..."), 1);
    EXPECT_EQ(trace.lines().size(), 2U);
  }
}

// The new line "o=ZEV 1 2 IN IP4 10.0.0.1\r\n" has 27 characters, the old one 12.
TEST(ModifyOLine, RefusesWhatDoesNotFit) {
  const std::string before = "o=- 5 7 IN\r\ns=-\r\n";
  const std::string after = "o=ZEV 1 2 IN IP4 10.0.0.1\r\ns=-\r\n";
  unsigned short oLineEnd = kUnset;
  expectUntouched(filledTo(kLongestBody - 14, before), modify("1", "2", "10.0.0.1", oLineEnd), 1);
  expectUntouched(filledTo(kLongestBody, before), modify("1", "2", "10.0.0.1", oLineEnd), 1);
  EXPECT_EQ(oLineEnd, kUnset);
  for (const std::size_t room : {0U, 1U}) {
    expectEdit(filledTo(kLongestBody - 15 - room, before), modify("1", "2", "10.0.0.1", oLineEnd), 0,
               filledTo(kLongestBody - room, after));
    EXPECT_EQ(oLineEnd, 27);
  }
  TraceCapture trace;
  SdpBuffer buffer(filledTo(kLongestBody - 14, before));
  modify("1", "2", "10.0.0.1", oLineEnd)(buffer.data());
  EXPECT_EQ(trace.count(4, 3, "sdpModifyOLine(): The new o-line does not fit the SDP buffer. Exiting."), 1);
  EXPECT_EQ(trace.lines().size(), 2U);
}

TEST(ModifyOLine, RefusesACutLineThatDoesNotFit) {
  const std::string id(400, '1');
  const std::string cut = ("o=ZEV " + id).substr(0, 336);
  const auto endingWithOrigin = [](std::size_t at) { return filledTo(at, "v=0\r\n") + "o=- 5 7\r\ns=-\r\n"; };
  unsigned short oLineEnd = kUnset;
  expectUntouched(endingWithOrigin(kLongestBody - 335), modify(id.c_str(), "2", nullptr, oLineEnd), 1);
  EXPECT_EQ(oLineEnd, kUnset);
  expectEdit(endingWithOrigin(kLongestBody - 336), modify(id.c_str(), "2", nullptr, oLineEnd), 1,
             filledTo(kLongestBody - 336, "v=0\r\n") + cut);
  EXPECT_EQ(oLineEnd, kLongestBody);
}

TEST(ModifyOLine, TheShortFormTakesOneFreshIdTwice) {
  unsigned short oLineEnd = 0;
  SdpBuffer buffer(bodyWith("o=- 5 7 IN IP4 1.2.3.4"));
  ASSERT_EQ(sdpModifications::sdpModifyOLine(buffer.data(), "10.0.0.1", oLineEnd), 0);
  const std::string after = buffer.data();
  const std::size_t idAt = std::string("v=0\r\no=ZEV ").size();
  const std::string id = after.substr(idAt, after.find(' ', idAt) - idAt);
  EXPECT_GE(id.size(), 7U);
  EXPECT_LE(id.size(), 9U);
  EXPECT_EQ(id.find_first_not_of("0123456789"), std::string::npos) << id;
  buffer.expectText(bodyWith("o=ZEV " + id + " " + id + " IN IP4 10.0.0.1"));
  EXPECT_EQ(oLineEnd, after.find("s=-"));
  expectUntouched(
      bodyWith("o=- 5 7"), [&](char* sdp) { return sdpModifications::sdpModifyOLine(sdp, "abc", oLineEnd); },
      1);
}

// --- session ids

struct Time {
  long seconds;
  long microseconds;
  const char* held;
  const char* id;
};

TEST(SessionId, IsTheEndOfTheSecondsAndTheStartOfTheMicroseconds) {
  const Time times[] = {{1700000123, 45678, "", "000123456"},
                        {1700000123, 7, "", "0001237"},
                        {1700000123, 0, "", "0001230"},
                        {1700000123, 42, "", "00012342"},
                        {1700000123, 999999, "", "000123999"},
                        {1234567, 100, "abcdefghi", "234567100"},
                        {123456, 45678, "abcdefghi", "abcdef456"},
                        {0, 7, "abcdefghi", "abcdef7"},
                        {5, 45678, "ab", "ab456"},
                        {5, 45678, "", "456"},
                        {99999999999, 999999, "x", "999999999"}};
  for (const Time& time : times) {
    const auto id = std::make_unique<char[]>(10);  // exactly what an id may take
    std::string(time.held).copy(id.get(), 9);
    sdpneg::composeSessionId(id.get(), time.seconds, time.microseconds);
    EXPECT_STREQ(id.get(), time.id);
  }
}

TEST(SessionId, IsOfTheTimeOfDay) {
  timeval before{};
  timeval after{};
  gettimeofday(&before, nullptr);
  char id[10];
  EXPECT_EQ(sdpModifications::generateOLine(id), id);
  gettimeofday(&after, nullptr);
  const std::string text = id;
  ASSERT_GE(text.size(), 7U);
  const long seconds = std::stol(text.substr(0, 6));
  EXPECT_TRUE(seconds == before.tv_sec % 1000000 || seconds == after.tv_sec % 1000000) << text;
  EXPECT_EQ(text.find_first_not_of("0123456789"), std::string::npos);
  EXPECT_EQ(sdpModifications::generateOLine(nullptr), nullptr);
}

}  // namespace
