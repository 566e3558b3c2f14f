#include <gtest/gtest.h>

#include <limits>
#include <string>

#include "modifiersTestSupport.h"
#include "sdpModifiers.h"

// The session version of the o-line (RFC 4566 5.2): replaced by a given one, and raised by one.

namespace {

constexpr unsigned short kUnset = 54321;

TextEdit replaceVersion(unsigned int version, unsigned short& oLineEnd) {
  return [version, &oLineEnd](char* sdp) {
    return sdpModifications::sdpReplaceVersionNumber(sdp, version, oLineEnd);
  };
}

TextEdit replaceVersionLong(long long version, unsigned short& oLineEnd) {
  return [version, &oLineEnd](char* sdp) {
    return sdpModifications::sdpReplaceVersionNumberLong(sdp, version, oLineEnd);
  };
}

// --- the version replaced

struct Replacement {
  const char* name;
  std::string before;
  unsigned int version;
  std::string after;
  unsigned short oLineEnd;
};

class VersionReplacement : public testing::TestWithParam<Replacement> {};

TEST_P(VersionReplacement, PutsTheVersionBetweenTheSecondAndTheThirdBlankOfTheText) {
  const Replacement& one = GetParam();
  unsigned short oLineEnd = kUnset;
  expectEdit(one.before, replaceVersion(one.version, oLineEnd), 0, one.after);
  EXPECT_EQ(oLineEnd, one.oLineEnd);
  oLineEnd = kUnset;
  expectEdit(one.before, replaceVersionLong(one.version, oLineEnd), 0, one.after);
  EXPECT_EQ(oLineEnd, one.oLineEnd);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, VersionReplacement,
    testing::Values(
        Replacement{"sameLength", "v=0\r\no=- 5 7 IN IP4 1.2.3.4\r\n", 8, "v=0\r\no=- 5 8 IN IP4 1.2.3.4\r\n",
                    29},
        Replacement{"longer", "v=0\r\no=- 5 7 IN IP4 1.2.3.4\r\ns=-\r\n", 4294967295U,
                    "v=0\r\no=- 5 4294967295 IN IP4 1.2.3.4\r\ns=-\r\n", 38},
        Replacement{"shorter", "v=0\r\no=- 5 777 IN IP4 1.2.3.4\r\ns=-\r\n", 0,
                    "v=0\r\no=- 5 0 IN IP4 1.2.3.4\r\ns=-\r\n", 29},
        Replacement{"bareLf", "v=0\no=- 5 7 IN IP4 1.2.3.4\ns=-\n", 8, "v=0\no=- 5 8 IN IP4 1.2.3.4\ns=-\n",
                    27},
        Replacement{"notANumberBefore", "v=0\r\no=- 5 x! IN IP4 1.2.3.4\r\n", 12,
                    "v=0\r\no=- 5 12 IN IP4 1.2.3.4\r\n", 30},
        Replacement{"emptyFieldBetweenTwoBlanks", "v=0\r\no=- 5  7 IN\r\n", 8, "v=0\r\no=- 5 8 7 IN\r\n", 19},
        Replacement{"oLineIsTheFirst", "o=- 5 7 IN\n", 123, "o=- 5 123 IN\n", 13},
        Replacement{"loneCrIsNoLineEnd", "v=0\ro=- 5 7 IN\rs=-\n", 8, "v=0\ro=- 5 8 IN\rs=-\n", 19},
        Replacement{"bytesAbove127", "v=0\r\no=\xC3\xBC 5 \xFF\x80 IN\r\n", 8, "v=0\r\no=\xC3\xBC 5 8 IN\r\n",
                    18}),
    [](const auto& tested) { return tested.param.name; });

// Kept: the blanks are counted from the text's start, not from the o-line, so that one in front of the o-line
// has another field replaced.
INSTANTIATE_TEST_SUITE_P(
    BlanksCountFromTheTextsStart, VersionReplacement,
    testing::Values(
        Replacement{"aBlankBeforeTheOLine", "v=0 x\r\no=a 5 7 IN IP4 1.2.3.4\r\n", 8,
                    "v=0 x\r\no=a 8 7 IN IP4 1.2.3.4\r\n", 31},
        Replacement{"allBlanksBeforeTheOLine", "s=a b c\r\no=- 5 7 IN\r\n", 8, "s=a b 8 5 7 IN\r\n", 16},
        Replacement{"theTextEndsBehindTheVersionWithoutAThirdBlank", "v=0\r\no=-\r\nt=0 0 0\r\ns=-\r\n", 8,
                    "v=0\r\no=-\r\nt=0 0 8", 10},
        Replacement{"theOLineBehindTheField", "x a b c d\no=1\n", 8, "x a 8 c d\no=1\n", 14},
        Replacement{"theOLinesOldPlaceIsInAnotherLineNow", "x a b c d\no=1\n", 888, "x a 888 c d\no=1\n", 12},
        Replacement{"anOLineInsideAValue", "v=0\r\ni=(o=IN IP4 192.168.1.100)\r\no=- 5 7 IN\r\n", 8,
                    "v=0\r\ni=(o=IN IP4 8 5 7 IN\r\n", 27}),
    [](const auto& tested) { return tested.param.name; });

TEST(ReplaceVersionNumberLong, WritesTheWholeRangeOf64Bits) {
  unsigned short oLineEnd = 0;
  expectEdit(bodyWith("o=- 5 7 IN"), replaceVersionLong(std::numeric_limits<long long>::max(), oLineEnd), 0,
             bodyWith("o=- 5 9223372036854775807 IN"));
  EXPECT_EQ(oLineEnd, 5 + 28 + 2);
  expectEdit(bodyWith("o=- 5 7 IN"), replaceVersionLong(std::numeric_limits<long long>::min(), oLineEnd), 0,
             bodyWith("o=- 5 -9223372036854775808 IN"));
  EXPECT_EQ(oLineEnd, 5 + 29 + 2);
}

TEST(ReplaceVersionNumber, TracesItsStart) {
  unsigned short oLineEnd = 0;
  SdpBuffer buffer(bodyWith("o=- 5 7 IN"));
  TraceCapture trace;
  sdpModifications::sdpReplaceVersionNumber(buffer.data(), 8, oLineEnd);
  EXPECT_EQ(trace.takeLines(), (Traces{{8, 4, "Entering sdpReplaceVersionNumber() method."},
                                       {8, 4, "The version of o-line has been replaced. Exiting..."}}));
  sdpModifications::sdpReplaceVersionNumberLong(buffer.data(), 8, oLineEnd);
  EXPECT_EQ(trace.takeLines(), (Traces{{8, 4, "Entering sdpReplaceVersionNumberLong() method."},
                                       {8, 4, "The version of o-line has been replaced. Exiting..."}}));
}

struct Refusal {
  const char* name;
  std::string before;
  TraceLine reason;
};

const TraceLine kNoOLine = {4, 3, "No <oline> found. Exiting."};
const TraceLine kBadEnd = {4, 3, "Bad <oline> termination. Exiting."};

class VersionReplacementRefusal : public testing::TestWithParam<Refusal> {};

TEST_P(VersionReplacementRefusal, ChangesNothingAndSaysWhy) {
  const Refusal& one = GetParam();
  unsigned short oLineEnd = kUnset;
  {
    TraceCapture trace;
    SdpBuffer buffer(one.before);
    sdpModifications::sdpReplaceVersionNumber(buffer.data(), 88, oLineEnd);
    EXPECT_EQ(trace.takeLines(), (Traces{{8, 4, "Entering sdpReplaceVersionNumber() method."}, one.reason}));
  }
  expectUntouched(one.before, replaceVersion(88, oLineEnd), 1);
  expectUntouched(one.before, replaceVersionLong(88, oLineEnd), 1);
  EXPECT_EQ(oLineEnd, kUnset);
}

INSTANTIATE_TEST_SUITE_P(Cases, VersionReplacementRefusal,
                         testing::Values(Refusal{"empty", "", kNoOLine},  //
                                         Refusal{"noOLine", "v=0\r\ns=- 1 2 3\r\n", kNoOLine},
                                         Refusal{"noOLineInFrontOfTheNul",
                                                 "v=0\r\n" + std::string("\0o=- 1 2 3\r\n", 12), kNoOLine},
                                         Refusal{"prefixOnly", "v=0\r\no=", kBadEnd},
                                         Refusal{"noBlank", "v=0\r\no=-\r\n", kBadEnd},
                                         Refusal{"oneBlank", "v=0\r\no=- 5\r\n", kBadEnd},
                                         Refusal{"endsBehindTheSecondBlank", "v=0\r\no=- 5 ", kBadEnd},
                                         Refusal{"endsInTheVersion", "v=0\r\no=- 5 7", kBadEnd},
                                         Refusal{"noThirdBlank", "v=0\r\no=- 5 7\r\n", kBadEnd},
                                         Refusal{"unterminated", "v=0\r\no=- 5 7 IN IP4 1.2.3.4", kBadEnd},
                                         Refusal{"crOnly", "v=0\ro=- 5 7 IN IP4 1.2.3.4\r", kBadEnd},
                                         Refusal{"theOnlyLfStoodInTheReplacedField", "x=a b c\no=1\n e",
                                                 kBadEnd}),
                         [](const auto& tested) { return tested.param.name; });

TEST(ReplaceVersionNumber, RefusesANullTextAndOneWithoutNul) {
  unsigned short oLineEnd = kUnset;
  TraceCapture trace;
  for (const bool isLong : {false, true}) {
    const std::string name = isLong ? "sdpReplaceVersionNumberLong" : "sdpReplaceVersionNumber";
    const TextEdit edit = isLong ? replaceVersionLong(8, oLineEnd) : replaceVersion(8, oLineEnd);
    EXPECT_EQ(edit(nullptr), 1);
    EXPECT_EQ(trace.takeLines(),
              (Traces{{8, 4, "Entering " + name + "() method."},
                      {4, 3, name + "(): The SDP buffer is null or holds no end of text. Exiting."}}));
    expectUntouched(withoutNul("o=- 5 7 IN\r\n"), edit, 1);
    trace.takeLines();
  }
  EXPECT_EQ(oLineEnd, kUnset);
}

/// A text of `length` characters whose version 7 can grow, and what it is with another version, cut to the
/// capacity.
struct Filled {
  explicit Filled(std::size_t length) : before(filledTo(length, bodyWith("o=- 5 7 IN"))) {}
  std::string with(const std::string& version) const {
    std::string after = before;
    return after.replace(after.find("7 IN"), 1, version).substr(0, kLongestBody);
  }
  std::string before;
};

TEST(ReplaceVersionNumber, CutsTheTextAtItsCapacity) {
  for (const std::size_t length : {kLongestBody - 3, kLongestBody - 2, kLongestBody - 1, kLongestBody}) {
    const Filled text(length);
    unsigned short oLineEnd = 0;
    expectEdit(text.before, replaceVersion(123, oLineEnd), 0, text.with("123"));
    EXPECT_EQ(oLineEnd, 5 + 12 + 2);
    expectEdit(text.before, replaceVersion(9, oLineEnd), 0, text.with("9"));
    EXPECT_EQ(oLineEnd, 5 + 10 + 2);
  }
}

TEST(ReplaceVersionNumber, RefusesWhenTheCutTakesTheOLinesEnd) {
  const auto filledLine = [](std::size_t length) {
    const std::string line = "v=0\no=- 5 7 ";
    return line + std::string(length - line.size() - 1, 'a') + "\n";
  };
  unsigned short oLineEnd = kUnset;
  expectUntouched(filledLine(kLongestBody), replaceVersion(10, oLineEnd), 1);
  EXPECT_EQ(oLineEnd, kUnset);
  std::string grown = filledLine(kLongestBody - 1);
  expectEdit(filledLine(kLongestBody - 1), replaceVersion(10, oLineEnd), 0, grown.replace(10, 1, "10"));
  EXPECT_EQ(oLineEnd, kLongestBody);
  std::string full = filledLine(kLongestBody);
  expectEdit(filledLine(kLongestBody), replaceVersion(8, oLineEnd), 0, full.replace(10, 1, "8"));
  EXPECT_EQ(oLineEnd, kLongestBody);
}

TEST(ReplaceVersionNumber, CutsTheVersionItselfAtTheCapacity) {
  const auto ending = [](std::size_t room) {  // the second blank leaves `room` characters behind it
    return "o=\n" + std::string(kLongestBody - room - 5, 'x') + "  ";
  };
  for (const std::size_t room : {0U, 1U, 2U, 3U, 4U}) {
    unsigned short oLineEnd = 0;
    ASSERT_EQ(ending(room).size(), kLongestBody - room);
    expectEdit(ending(room), replaceVersion(123, oLineEnd), 0,
               ending(room) + std::string("123").substr(0, room));
    EXPECT_EQ(oLineEnd, 3);
  }
}

// --- the version raised

struct Raise {
  const char* name;
  std::string before;
  std::string after;
};

class VersionRaise : public testing::TestWithParam<Raise> {};

TEST_P(VersionRaise, WritesTheNextVersion) {
  expectEdit(GetParam().before, sdpModifications::sdpIncVersion, 0, GetParam().after);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, VersionRaise,
    testing::Values(
        Raise{"inPlace", bodyWith("o=- 5 41 IN IP4 1.2.3.4"), bodyWith("o=- 5 42 IN IP4 1.2.3.4")},
        Raise{"carryIntoASecondDigit", bodyWith("o=- 5 9 IN IP4 1.2.3.4"),
              bodyWith("o=- 5 10 IN IP4 1.2.3.4")},
        Raise{"carryIntoAThirdDigit", bodyWith("o=- 5 99 IN"), bodyWith("o=- 5 100 IN")},
        Raise{"zero", bodyWith("o=- 5 0 IN"), bodyWith("o=- 5 1 IN")},
        Raise{"beyond32Bits", bodyWith("o=- 5 4294967295 IN"), bodyWith("o=- 5 4294967296 IN")},
        Raise{"leadingZeroTakenByTheCarry", bodyWith("o=- 5 099 IN"), bodyWith("o=- 5 100 IN")},
        Raise{"leadingZerosStay", bodyWith("o=- 5 007 IN"), bodyWith("o=- 5 008 IN")},
        Raise{"leadingZerosGiveWayToTheCarry", bodyWith("o=- 5 000123999 IN"),
              bodyWith("o=- 5 000124000 IN")},
        Raise{"zerosAlone", bodyWith("o=- 5 000 IN"), bodyWith("o=- 5 001 IN")},
        Raise{"nineBehindAZero", bodyWith("o=- 5 09 IN"), bodyWith("o=- 5 10 IN")},
        Raise{"ninesAlone", bodyWith("o=- 5 999 IN"), bodyWith("o=- 5 1000 IN")},
        Raise{"anIdOfTheClock", bodyWith("o=ZEV 000123456 000123456 IN"),
              bodyWith("o=ZEV 000123456 000123457 IN")},
        Raise{"moreZerosThanDigitsOf64Bits", bodyWith("o=- 5 " + std::string(100, '0') + "19 IN"),
              bodyWith("o=- 5 " + std::string(100, '0') + "20 IN")},
        Raise{"largestButOneOf64BitsBehindZeros", bodyWith("o=- 5 009223372036854775806 IN"),
              bodyWith("o=- 5 009223372036854775807 IN")},
        Raise{"negative", bodyWith("o=- 5 -5 IN"), bodyWith("o=- 5 -4 IN")},
        Raise{"leastOf64Bits", bodyWith("o=- 5 -9223372036854775808 IN"),
              bodyWith("o=- 5 -9223372036854775807 IN")},
        Raise{"largestButOneOf64Bits", bodyWith("o=- 5 9223372036854775806 IN"),
              bodyWith("o=- 5 9223372036854775807 IN")},
        Raise{"threeFields", bodyWith("o=- 5 9"), bodyWith("o=- 5 10")},
        Raise{"threeFieldsWithBareLf", "o=- 5 9\ns=-\n", "o=- 5 10\ns=-\n"},
        Raise{"doubledBlanksAreOne", bodyWith("o=-   5  9 IN"), bodyWith("o=-   5  10 IN")},
        Raise{"crIsNoSeparator", bodyWith("o=a\rb 5 9 IN"), bodyWith("o=a\rb 5 10 IN")},
        Raise{"aLetterCountsAsZero", bodyWith("o=- 5 a IN"), bodyWith("o=- 5 1 IN")},
        Raise{"whatFollowsTheDigitsIsOverwritten", bodyWith("o=- 5 9x IN"), bodyWith("o=- 5 10 IN")},
        Raise{"aLoneSignCountsAsZero", bodyWith("o=- 5 - IN"), bodyWith("o=- 5 1 IN")},
        Raise{"belowTheLeastOf64BitsIsThat", bodyWith("o=- 5 -9223372036854775809 IN"),
              bodyWith("o=- 5 -9223372036854775807 IN")},
        Raise{"aSignCounts", bodyWith("o=- 5 -3 IN"), bodyWith("o=- 5 -2 IN")},
        Raise{"blankBehindThePrefix", bodyWith("o= 5 9 IN"), bodyWith("o= 5 10 IN")},
        Raise{"blanksInFrontOfTheOLineDoNotCount", "v=0 x y\r\no=- 5 9 IN\r\n", "v=0 x y\r\no=- 5 10 IN\r\n"},
        Raise{"anOLineInsideAValue", "i=(o=IN IP4 9 )\r\no=- 5 7 IN\r\n",
              "i=(o=IN IP4 10 )\r\no=- 5 7 IN\r\n"},
        Raise{"bytesAbove127", bodyWith("o=\xFF \x80 9 IN"), bodyWith("o=\xFF \x80 10 IN")}),
    [](const auto& tested) { return tested.param.name; });

TEST(IncVersion, AnOLineOfFewerThanThreeFieldsStaysAsItIs) {
  for (const char* line : {"o=", "o=-", "o=- 5", "o=- 5 ", "o=-\t5\t9", "o=-\r5\r9"}) {
    expectUntouched(bodyWith(line), sdpModifications::sdpIncVersion, 0);
  }
}

TEST(IncVersion, TracesStartAndEnd) {
  TraceCapture trace;
  for (const char* line : {"o=- 5 9 IN", "o=- 5"}) {
    SdpBuffer buffer(bodyWith(line));
    sdpModifications::sdpIncVersion(buffer.data());
    EXPECT_EQ(trace.takeLines(),
              (Traces{{8, 4, "Entering sdpIncVersion() method."},
                      {8, 4, "The version of o-line has been increased by one. Exiting..."}}));
  }
}

const TraceLine kPastLongest = {4, 3, "Attempt to increment <oline> version past maximum length. Exiting."};

class VersionRaiseRefusal : public testing::TestWithParam<Refusal> {};

TEST_P(VersionRaiseRefusal, ChangesNothingAndSaysWhy) {
  const Refusal& one = GetParam();
  {
    TraceCapture trace;
    SdpBuffer buffer(one.before);
    sdpModifications::sdpIncVersion(buffer.data());
    EXPECT_EQ(trace.takeLines(), (Traces{{8, 4, "Entering sdpIncVersion() method."}, one.reason}));
  }
  expectUntouched(one.before, sdpModifications::sdpIncVersion, 1);
}

const TraceLine kNoNul = {4, 3, "sdpIncVersion(): The SDP buffer is null or holds no end of text. Exiting."};
const TraceLine kNoRoom = {4, 3, "sdpIncVersion(): The raised version does not fit the SDP buffer. Exiting."};

INSTANTIATE_TEST_SUITE_P(
    Cases, VersionRaiseRefusal,
    testing::Values(Refusal{"empty", "", kNoOLine},  //
                    Refusal{"noOLine", "v=0\r\ns=- 1 2\r\n", kNoOLine},
                    Refusal{"prefixOnly", "v=0\r\no=", kBadEnd},  //
                    Refusal{"unterminated", "v=0\r\no=- 5 9 IN", kBadEnd},
                    Refusal{"unterminatedInTheVersion", "v=0\r\no=- 5 9", kBadEnd},
                    Refusal{"unterminatedWithCr", "v=0\r\no=- 5 9 IN\r", kBadEnd},
                    Refusal{"word", bodyWith("o=- 5 abc IN"), kPastLongest},
                    Refusal{"numberThenWord", bodyWith("o=- 5 12a IN"), kPastLongest},
                    Refusal{"plusSign", bodyWith("o=- 5 +5 IN"), kPastLongest},
                    Refusal{"tabIsNoSeparator", bodyWith("o=- 5 9\t9 IN"), kPastLongest},
                    Refusal{"bytesAbove127", bodyWith("o=- 5 \xB2\xB3 IN"), kPastLongest},
                    Refusal{"wordBehindZeros", bodyWith("o=- 5 007a IN"), kPastLongest},
                    Refusal{"largestOf64BitsBehindAZero", bodyWith("o=- 5 09223372036854775807 IN"),
                            kPastLongest},
                    Refusal{"wouldLoseItsSign", bodyWith("o=- 5 -1 IN"), kPastLongest},
                    Refusal{"wouldLoseADigit", bodyWith("o=- 5 -10 IN"), kPastLongest},
                    Refusal{"justAbove64Bits", bodyWith("o=- 5 9223372036854775808 IN"), kPastLongest},
                    Refusal{"noRoomForTheCarry", filledTo(kLongestBody, bodyWith("o=- 5 9 IN")), kNoRoom},
                    Refusal{"noNul", withoutNul("o=- 5 9 IN\r\n"), kNoNul}),
    [](const auto& tested) { return tested.param.name; });

TEST(IncVersion, NeedsRoomForTheCarryOnly) {
  expectEdit(filledTo(kLongestBody - 1, bodyWith("o=- 5 9 IN")), sdpModifications::sdpIncVersion, 0,
             filledTo(kLongestBody, bodyWith("o=- 5 10 IN")));
  expectEdit(filledTo(kLongestBody, bodyWith("o=- 5 8 IN")), sdpModifications::sdpIncVersion, 0,
             filledTo(kLongestBody, bodyWith("o=- 5 9 IN")));
}

TEST(IncVersion, RefusesANullText) {
  TraceCapture trace;
  EXPECT_EQ(sdpModifications::sdpIncVersion(nullptr), 1);
  EXPECT_EQ(trace.takeLines(), (Traces{{8, 4, "Entering sdpIncVersion() method."}, kNoNul}));
}

// --- hostile o-lines

/// An o-line and what each edit makes of it; an empty result is a refusal, which changes nothing.
struct Hostile {
  const char* name;
  std::string line;
  std::string replaced;  ///< its version replaced by 8
  std::string raised;
};

class HostileOriginLine : public testing::TestWithParam<Hostile> {};

TEST_P(HostileOriginLine, IsEditedRightOrRefused) {
  const Hostile& one = GetParam();
  const std::string before = "v=0\r\n" + one.line + "\r\ns=-\r\n";
  const auto expect = [&](const TextEdit& edit, const std::string& line) {
    if (line.empty()) return expectUntouched(before, edit, 1);
    if (line == one.line) return expectUntouched(before, edit, 0);
    expectEdit(before, edit, 0, "v=0\r\n" + line + "\r\ns=-\r\n");
  };
  unsigned short oLineEnd = 0;
  expect(replaceVersion(8, oLineEnd), one.replaced);
  expect(replaceVersionLong(8, oLineEnd), one.replaced);
  expect(sdpModifications::sdpIncVersion, one.raised);
  const TextEdit rebuild = [&](char* sdp) {
    return sdpModifications::sdpModifyOLine(sdp, "1", "2", "10.0.0.1", oLineEnd);
  };
  expect(rebuild, "o=ZEV 1 2 IN IP4 10.0.0.1");
}

const std::string kFortyDigits(40, '7');
const std::string kLongField(18000, 'f');

INSTANTIATE_TEST_SUITE_P(
    Cases, HostileOriginLine,
    testing::Values(
        Hostile{"twoFields", "o=- 5", "", "o=- 5"}, Hostile{"threeFields", "o=- 5 7", "", "o=- 5 8"},
        Hostile{"eightFields", "o=- 5 9 IN IP4 1.2.3.4 x y", "o=- 5 8 IN IP4 1.2.3.4 x y",
                "o=- 5 10 IN IP4 1.2.3.4 x y"},
        Hostile{"versionOf40Digits", "o=- 5 " + kFortyDigits + " IN IP4 1.2.3.4", "o=- 5 8 IN IP4 1.2.3.4",
                ""},
        Hostile{"versionOf18000Digits", "o=- 5 " + std::string(18000, '9') + " IN", "o=- 5 8 IN", ""},
        Hostile{"largestVersionOf64Bits", "o=- 5 9223372036854775807 IN IP4 1.2.3.4",
                "o=- 5 8 IN IP4 1.2.3.4", ""},
        Hostile{"leastVersionOf64Bits", "o=- 5 -9223372036854775808 IN", "o=- 5 8 IN",
                "o=- 5 -9223372036854775807 IN"},
        Hostile{"overlongUserName", "o=" + kLongField + " 5 9 IN", "o=" + kLongField + " 5 8 IN",
                "o=" + kLongField + " 5 10 IN"},
        Hostile{"overlongAddress", "o=- 5 9 IN IP4 " + kLongField, "o=- 5 8 IN IP4 " + kLongField,
                "o=- 5 10 IN IP4 " + kLongField},
        Hostile{"conversions", "o=%s%n 5 9 IN IP4 %s%n", "o=%s%n 5 8 IN IP4 %s%n", "o=%s%n 5 10 IN IP4 %s%n"},
        Hostile{"crInTheVersion", "o=- 5 9\r9 IN", "o=- 5 8 IN", ""}),
    [](const auto& tested) { return tested.param.name; });

}  // namespace
