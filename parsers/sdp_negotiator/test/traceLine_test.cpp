#include <gtest/gtest.h>

#include <climits>
#include <cstring>
#include <string>
#include <thread>

#include "sdpNegotiatorTrace.h"
#include "traceFakeFacility.h"

namespace {

constexpr std::size_t longestLine = 20479;
const std::string errorPrefix = "SDP_NEGOTIATOR_ERROR:";
const std::string infoPrefix = "SDP_NEGOTIATOR_INFO:";

/// For formats that the compiler cannot see or would refuse.
int (*const writeUnchecked)(int, int, const char*, ...) = cNegotTraceManager::writeTraceMsg;

class TraceLine : public testing::Test {
 protected:
  void SetUp() override {
    fake.reset();
    fake.flagsOn = 2;
  }
  void TearDown() override { fake.reset(); }

  std::string onlyLine() {
    EXPECT_EQ(fake.lines.size(), 1u);
    return fake.lines.empty() ? "" : fake.lines[0].text;
  }

  FakeFacility& fake = fakeFacility();
};

TEST_F(TraceLine, IsPrefixedFormattedAndHandedOn) {
  cNegotTraceManager::writeTraceMsg(4, 3, "Invalid port number (%d) entry.", 80);
  EXPECT_EQ(onlyLine(), "SDP_NEGOTIATOR_ERROR:Invalid port number (80) entry.");
  EXPECT_EQ(fake.lines[0].handle, 5);
  EXPECT_EQ(fake.lines[0].flag, 4);
  EXPECT_EQ(fake.lines[0].type, 7200);
  EXPECT_EQ(fake.lines[0].level, 3);
}

TEST_F(TraceLine, IsNotWrittenWhileInfoIsOff) {
  fake.flagsOn = ~2u;
  fake.traceResult = 7;
  for (int flag : {1, 2, 4, 8}) {
    EXPECT_EQ(cNegotTraceManager::writeTraceMsg(flag, 4, "line %s", "text"), 0) << flag;
  }
  EXPECT_TRUE(fake.lines.empty());
}

TEST_F(TraceLine, IsWrittenForEveryFlagWhileInfoAloneIsOn) {
  for (int flag : {1, 2, 4, 8}) cNegotTraceManager::writeTraceMsg(flag, 4, "line");
  EXPECT_EQ(fake.lines.size(), 4u);
}

TEST_F(TraceLine, AsksForInfoWhateverItsFlag) {
  for (int flag : {1, 2, 4, 8}) cNegotTraceManager::writeTraceMsg(flag, 4, "line");
  const std::vector<std::pair<int, int>> expected(4, {5, 2});
  EXPECT_EQ(fake.flagTests, expected);
}

TEST_F(TraceLine, ResultIsWhatTheFacilityReturned) {
  for (int result : {0, 1, -1, 4711}) {
    fake.traceResult = result;
    EXPECT_EQ(cNegotTraceManager::writeTraceMsg(4, 3, "line"), result);
  }
}

/// Gives the facility's handle of the library back at its end.
class UnregisteredHandle {
 public:
  explicit UnregisteredHandle(int* handle) : handle_(handle), former_(*handle) { *handle = -1; }
  ~UnregisteredHandle() { *handle_ = former_; }
  UnregisteredHandle(const UnregisteredHandle&) = delete;
  UnregisteredHandle& operator=(const UnregisteredHandle&) = delete;

 private:
  int* handle_;
  int former_;
};

TEST_F(TraceLine, IsUpToTheFacilityWhenNotRegistered) {
  ASSERT_FALSE(fake.callsAtLoad.empty());
  const UnregisteredHandle unregistered(fake.callsAtLoad[0].handleAddress);
  cNegotTraceManager::writeTraceMsg(4, 3, "line");
  fake.flagsOn = 0;
  cNegotTraceManager::writeTraceMsg(4, 3, "line");
  EXPECT_EQ(fake.flagTests, (std::vector<std::pair<int, int>>{{-1, 2}, {-1, 2}}));
  EXPECT_EQ(onlyLine(), errorPrefix + "line");
  EXPECT_EQ(fake.lines[0].handle, -1);
}

TEST_F(TraceLine, GoesThroughTheGlobalManagerOnly) {
  fake.registerHandle = 6;
  const cNegotTraceManager other;
  cNegotTraceManager::writeTraceMsg(4, 3, "line");
  ASSERT_EQ(fake.lines.size(), 1u);
  EXPECT_EQ(fake.lines[0].handle, 5);
}

TEST_F(TraceLine, PrefixFollowsTheFlag) {
  const struct {
    int flag;
    const char* prefix;
  } cases[] = {
      {0, "SDP_NEGOTIATOR_DEBUG:"},        {1, "SDP_NEGOTIATOR_DEBUG:"},
      {2, "SDP_NEGOTIATOR_INFO:"},         {3, "SDP_NEGOTIATOR_INFO:"},
      {4, "SDP_NEGOTIATOR_ERROR:"},        {5, "SDP_NEGOTIATOR_ERROR:"},
      {6, "SDP_NEGOTIATOR_DETAIL:"},       {7, "SDP_NEGOTIATOR_DETAIL:"},
      {8, "SDP_NEGOTIATOR_DETAIL:"},       {9, "SDP_NEGOTIATOR_DETAIL:"},
      {16, "SDP_NEGOTIATOR_DETAIL:"},      {-1, "SDP_NEGOTIATOR_DEBUG:"},
      {-2, "SDP_NEGOTIATOR_DETAIL:"},      {INT_MIN, "SDP_NEGOTIATOR_DETAIL:"},
      {INT_MAX, "SDP_NEGOTIATOR_DETAIL:"},
  };
  for (const auto& [flag, prefix] : cases) {
    SCOPED_TRACE(flag);
    fake.lines.clear();
    cNegotTraceManager::writeTraceMsg(flag, 4, "text");
    EXPECT_EQ(onlyLine(), std::string(prefix) + "text");
    EXPECT_EQ(fake.lines[0].flag, flag);
  }
}

TEST(TracePrefixes, StandInRowsOf25PaddedWithNuls) {
  static_assert(sizeof SDP_NEGOTIATOR_RTT_STR == 100 && sizeof SDP_NEGOTIATOR_RTT_STR[0] == 25);
  const char* const expected[] = {
      "SDP_NEGOTIATOR_DEBUG:", "SDP_NEGOTIATOR_INFO:", "SDP_NEGOTIATOR_ERROR:", "SDP_NEGOTIATOR_DETAIL:"};
  for (std::size_t row = 0; row < 4; ++row) {
    std::string padded = expected[row];
    EXPECT_EQ(padded.find('%'), std::string::npos);  // prefixes serve as formats
    padded.resize(25, '\0');
    EXPECT_EQ(std::string(SDP_NEGOTIATOR_RTT_STR[row], 25), padded);
  }
}

TEST_F(TraceLine, IsThePrefixAloneForANullFormat) {
  writeUnchecked(2, 2, nullptr);
  EXPECT_EQ(onlyLine(), infoPrefix);
}

TEST_F(TraceLine, IsThePrefixAloneForAnEmptyFormat) {
  writeUnchecked(2, 2, "");
  EXPECT_EQ(onlyLine(), infoPrefix);
}

TEST_F(TraceLine, IsThePrefixAloneWhenTheMessageCannotBeFormatted) {
  const wchar_t noCharacter[] = {0x7fffffff, 0};
  cNegotTraceManager::writeTraceMsg(2, 2, "text before %ls", noCharacter);
  EXPECT_EQ(onlyLine(), infoPrefix);
}

TEST_F(TraceLine, KeepsPerCentSignsOfArguments) {
  cNegotTraceManager::writeTraceMsg(8, 4, "SDP is %s", "s=100%\r\ni=%s%n%d%%\r\n");
  EXPECT_EQ(onlyLine(), "SDP_NEGOTIATOR_DETAIL:SDP is s=100%\r\ni=%s%n%d%%\r\n");
}

TEST_F(TraceLine, FormatsEveryKindOfArgument) {
  cNegotTraceManager::writeTraceMsg(1, 1, "%d %u %lu %s %c %x %% %-4d| %.*s %5.2f", -1, 4000000000u,
                                    4294967296ul, "text", 'c', 255u, 7, 3, "abcdef", 1.5);
  EXPECT_EQ(onlyLine(), "SDP_NEGOTIATOR_DEBUG:-1 4000000000 4294967296 text c ff % 7   | abc  1.50");
}

struct CutCase {
  const char* name;
  int excess;  // how far the format reaches beyond the end of the line
  const char* tail;
  const char* expectedTail;  // what the line ends with in place of it
};

class TraceCut : public TraceLine, public testing::WithParamInterface<CutCase> {};

/// Fills the line so that the format's tail ends `excess` characters behind its end.
TEST_P(TraceCut, EndsTheLine) {
  const auto& [name, excess, tail, expectedTail] = GetParam();
  const std::size_t filler =
      longestLine - infoPrefix.size() - std::strlen(tail) + static_cast<std::size_t>(excess);
  const std::string before(filler, 'f');
  writeUnchecked(2, 2, (before + tail).c_str(), 5);
  EXPECT_EQ(onlyLine(), infoPrefix + before + expectedTail);
}

INSTANTIATE_TEST_SUITE_P(
    Formats, TraceCut,
    testing::Values(CutCase{"FitsExactly", 0, "end", "end"}, CutCase{"OneTooMany", 1, "end", "en"},
                    CutCase{"TwoTooMany", 2, "end", "e"}, CutCase{"ConversionFitsExactly", 0, "%d", "5"},
                    CutCase{"ConversionAtTheCut", 1, "%dx", "5"}, CutCase{"ConversionCut", 1, "%d", ""},
                    CutCase{"PerCentPairAtTheCut", 1, "%%x", "%"}, CutCase{"PerCentPairCut", 1, "%%", ""},
                    CutCase{"SecondPerCentPairCut", 1, "%%%%", "%"},
                    CutCase{"PerCentPairBeforeText", 1, "%%dxx", "%dx"},
                    CutCase{"CutBehindFlags", 1, "a%-d", "a"}, CutCase{"CutBehindWidth", 1, "a%08d", "a"},
                    CutCase{"CutBehindPrecision", 1, "a%.3d", "a"},
                    CutCase{"CutBehindLength", 1, "a%hhd", "a"}, CutCase{"CutInsideLength", 2, "a%hhd", "a"},
                    CutCase{"CutBehindPosition", 1, "a%1$d", "a"},
                    CutCase{"WholeConversionBeforeTheCutOne", 1, "%d%s", "5"}),
    [](const auto& cut) { return cut.param.name; });

TEST_F(TraceLine, CutsAFormatOfAnyLength) {
  const std::string format(100000, 'f');
  writeUnchecked(4, 3, format.c_str());
  EXPECT_EQ(onlyLine(), errorPrefix + format.substr(0, longestLine - errorPrefix.size()));
}

TEST_F(TraceLine, CutsTheFormattedLine) {
  for (const int distance : {-1, 0, 1, 2, 100}) {
    SCOPED_TRACE(distance);
    fake.lines.clear();
    const std::string start = infoPrefix + "SDP=";
    const std::string body(longestLine - start.size() + static_cast<std::size_t>(distance), 'b');
    cNegotTraceManager::writeTraceMsg(2, 2, "SDP=%s", body.c_str());
    EXPECT_EQ(onlyLine(), (start + body).substr(0, longestLine));
  }
}

TEST_F(TraceLine, CutsAWholeBodyWithPerCentSigns) {
  const std::string body(20480, '%');
  cNegotTraceManager::writeTraceMsg(8, 4, "%s", body.c_str());
  EXPECT_EQ(onlyLine(), ("SDP_NEGOTIATOR_DETAIL:" + body).substr(0, longestLine));
}

TEST_F(TraceLine, ComesWholeFromEachOfSeveralThreads) {
  constexpr int threadCount = 4;
  constexpr int linesOfEach = 200;
  std::vector<std::thread> threads;
  threads.reserve(threadCount);
  for (int i = 0; i < threadCount; ++i) {
    threads.emplace_back([i] {
      const std::string text(5000, static_cast<char>('a' + i));
      for (int n = 0; n < linesOfEach; ++n) cNegotTraceManager::writeTraceMsg(4, i, "%d:%s", n, text.c_str());
    });
  }
  for (auto& thread : threads) thread.join();

  ASSERT_EQ(fake.lines.size(), static_cast<std::size_t>(threadCount * linesOfEach));
  int next[threadCount] = {};
  for (const auto& line : fake.lines) {
    std::string expected = errorPrefix;
    expected.append(std::to_string(next[line.level]++)).append(":");
    expected.append(5000, static_cast<char>('a' + line.level));
    ASSERT_EQ(line.text, expected);
  }
}

}  // namespace
