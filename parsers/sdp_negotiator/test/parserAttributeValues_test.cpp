#include <gtest/gtest.h>

#include <array>
#include <climits>
#include <string>
#include <vector>

#include "parserTestSupport.h"
#include "sdpNegotiatorParser.h"
#include "traceCapture.h"

// The values of ptime, mptime, silenceSupp, ecan and gpmd attributes. Angle brackets are part of the
// messages.

namespace {

using P = sdpParserMessage;
using Lines = std::vector<TraceLine>;
using Periods = std::vector<int>;

const Lines nothing;
const Lines badPtime = {{4, 3, "Invalid a=ptime:<attribute>"}};
const Lines mptimeStart = {{4, 3, "a=mptime:<...> cannnot start with '-'."}};
const Lines mptimeValue = {{4, 3, "a=mptime:<...> contains invalid values."}};
const Lines mptimeNumber = {{4, 3, "a=mptime:<...> must have same no. of packetizations as m=<...> codecs"}};
const Lines badSilence = {{4, 3, "Invalid a=silenceSupp:<attribute>..."}};
const Lines noEcan = {{2, 2, "Illegal a=ecan:<attribute>..."}};
const Lines badEcan = {{2, 2, "Unrecognized ecan value"}};
const Lines badGpmd = {{2, 2, "Unrecognized gpmd value : SUCCESS returned"}};

struct PtimeResult {
  int status;
  int first;
  int second;
  bool operator==(const PtimeResult&) const = default;
};

/// What a ptime value makes of the periods 77 and 88; nothing behind them may change.
PtimeResult ptimeOf(const std::string& value, const Lines& traces) {
  const TraceCapture capture;
  sSdpParsedData data = emptySummary();
  data.packetizationPeriod[0] = 77;
  data.packetizationPeriod[1] = 88;
  const int status = P::setCodecPtime(data, ExactText(value));
  EXPECT_EQ(capture.lines(), traces) << value;
  EXPECT_EQ(data.packetizationPeriod[2], SDP_PACKETIZATION_NOT_SET);
  return {status, data.packetizationPeriod[0], data.packetizationPeriod[1]};
}

struct MptimeResult {
  int status;
  Periods periods;  ///< up to the first that was not written
};

MptimeResult mptimeOf(const std::string& value, int formats, const Lines& traces) {
  const TraceCapture capture;
  const auto periods = std::make_unique_for_overwrite<unsigned char[]>(MAX_SDP_NEGOTIATOR_AUDIO_CODECS);
  std::fill_n(periods.get(), MAX_SDP_NEGOTIATOR_AUDIO_CODECS, SDP_PACKETIZATION_NOT_SET);
  MptimeResult result{P::setCodecMptime(periods.get(), formats, ExactText(value)), {}};
  EXPECT_EQ(capture.lines(), traces) << value;
  for (int i = 0; i < MAX_SDP_NEGOTIATOR_AUDIO_CODECS && periods[static_cast<std::size_t>(i)] != 255; ++i) {
    result.periods.push_back(periods[static_cast<std::size_t>(i)]);
  }
  return result;
}

std::string repeated(const std::string& text, int times) {
  std::string result;
  for (int i = 0; i < times; ++i) result += text;
  return result;
}

/// Whether a summary is one in which nothing was parsed but for one member, set back here.
template <class Member>
bool onlyChanged(sSdpParsedData data, Member sSdpParsedData::*member) {
  data.*member = 0;
  return data.isInitialized();
}

const std::string oddTexts[] = {"\x80", "\xFF", "on\xFF", "\xC3\xA4 on", std::string(60000, 'x'), "%s%n%s"};

}  // namespace

TEST(Ptime, ValidValues) {
  const struct {
    const char* value;
    PtimeResult result;
  } rows[] = {
      {"20", {0, 20, 88}},      {"0", {0, 0, 88}},  {"020", {0, 20, 88}},      {" 20 ", {0, 20, 88}},
      {"2 0", {0, 2, 88}},      {" ", {0, 0, 88}},  {"", {0, 0, 88}},          {"20-30", {0, 20, 30}},
      {"20 - 30", {0, 20, 30}}, {"1-2", {0, 1, 2}}, {"20-30 40", {0, 20, 30}}, {" - ", {0, 0, 0}},
  };
  for (const auto& row : rows) EXPECT_EQ(ptimeOf(row.value, nothing), row.result) << row.value;
}

TEST(Ptime, OnlyTheVeryFirstAndLastCharacterMayNotBeAHyphen) {
  // Kept: a blank before or behind makes the hyphen acceptable, the missing number is 0.
  EXPECT_EQ(ptimeOf(" -20", nothing), (PtimeResult{0, 0, 20}));
  EXPECT_EQ(ptimeOf("20- ", nothing), (PtimeResult{0, 20, 0}));
}

TEST(Ptime, InvalidValuesChangeNothing) {
  for (const char* value : {"-20", "20-", "-", "--", "20--30", "20-30-40", "20-30-", "20ms", "x", "20,30",
                            "+20", "20.0", "20\t", "20\n", "20\r", "2\x80", "\xB2", "0x14"}) {
    EXPECT_EQ(ptimeOf(value, badPtime), (PtimeResult{1, 77, 88})) << value;
  }
}

TEST(Ptime, NumbersBeyondAByteReadAsNotGiven) {
  for (const char* value : {"255", "256", "276", "300", "65535", "65536", "65556", "2147483648", "4294967295",
                            "4294967296", "4294967316", "18446744073709551636"}) {
    EXPECT_EQ(ptimeOf(value, nothing), (PtimeResult{0, 255, 88})) << value;
    EXPECT_EQ(ptimeOf("20-" + std::string(value), nothing), (PtimeResult{0, 20, 255})) << value;
    EXPECT_EQ(ptimeOf(std::string(value) + "-20", nothing), (PtimeResult{0, 255, 20})) << value;
  }
  EXPECT_EQ(ptimeOf("254", nothing), (PtimeResult{0, 254, 88}));
  EXPECT_EQ(ptimeOf("0000000000254", nothing), (PtimeResult{0, 254, 88}));
}

TEST(Ptime, LongValues) {
  EXPECT_EQ(ptimeOf(std::string(60000, '9'), nothing), (PtimeResult{0, 255, 88}));
  EXPECT_EQ(ptimeOf(std::string(60000, ' ') + "20", nothing), (PtimeResult{0, 20, 88}));
  EXPECT_EQ(ptimeOf(std::string(60000, '-'), badPtime), (PtimeResult{1, 77, 88}));
  for (const std::string& value : oddTexts) EXPECT_EQ(ptimeOf(value, badPtime).status, 1);
}

TEST(Ptime, NullIsSuccessWithoutChange) {
  const TraceCapture capture;
  sSdpParsedData data = emptySummary();
  EXPECT_EQ(P::setCodecPtime(data, nullptr), 0);
  EXPECT_TRUE(data.isInitialized());
  EXPECT_EQ(capture.lines(), nothing);
}

TEST(Mptime, OnePeriodForEachFormat) {
  const struct {
    const char* value;
    Periods periods;
  } rows[] = {
      {"10", {10}},
      {"20", {20}},
      {"30", {30}},
      {"20 - 30", {20, 20, 30}},
      {"10 - - 20 -", {10, 10, 10, 20, 20}},
      {"  20   30  ", {20, 30}},
      {"\n20\n30\n", {20, 30}},
      {"", {}},
      {" \n", {}},
  };
  for (const auto& row : rows) {
    const MptimeResult result = mptimeOf(row.value, static_cast<int>(row.periods.size()), nothing);
    EXPECT_EQ(result.status, 0) << row.value;
    EXPECT_EQ(result.periods, row.periods) << row.value;
  }
}

TEST(Mptime, CannotStartWithAHyphen) {
  for (const char* value : {"-", "- 20", " - 20", "\n-"}) {
    const MptimeResult result = mptimeOf(value, 2, mptimeStart);
    EXPECT_EQ(result.status, 1) << value;
    EXPECT_EQ(result.periods, Periods{}) << value;
  }
}

TEST(Mptime, OnlyThreePeriodsAreValid) {
  for (const char* word : {"40", "0", "255", "276", "4294967316", "020", "+20", "-20", "--", "20-", "20,30",
                           "20\t30", "20\r", "20\x80", "\xFF", "2", "200", "x"}) {
    EXPECT_EQ(mptimeOf(word, 1, mptimeValue).status, 1) << word;
    const MptimeResult result = mptimeOf("20 - " + std::string(word) + " 30", 4, mptimeValue);
    EXPECT_EQ(result.status, 1) << word;
    EXPECT_EQ(result.periods, (Periods{20, 20})) << word;  // what was read before stays
  }
  for (const std::string& value : oddTexts) EXPECT_EQ(mptimeOf(value, 1, mptimeValue).status, 1);
}

TEST(Mptime, TheNumberOfPeriodsMustBeThatOfTheFormats) {
  for (const int formats : {0, 1, 3, 64, -1, -2, INT_MIN, INT_MAX}) {
    const MptimeResult result = mptimeOf("20 30", formats, mptimeNumber);
    EXPECT_EQ(result.status, 1) << formats;
    EXPECT_EQ(result.periods, (Periods{20, 30})) << formats;  // and are kept nevertheless
  }
  EXPECT_EQ(mptimeOf("", 1, mptimeNumber).status, 1);
}

TEST(Mptime, MoreFormatsThanTheListHolds) {
  EXPECT_EQ(mptimeOf(repeated("20 ", 20), 20, nothing).periods, Periods(20, 20));
  EXPECT_EQ(mptimeOf(repeated("20 ", 21), 21, nothing).periods, Periods(20, 20));
  EXPECT_EQ(mptimeOf(repeated("20 ", 64), 64, nothing).status, 0);
  EXPECT_EQ(mptimeOf("10" + repeated(" -", 63), 64, nothing).periods, Periods(20, 10));
  EXPECT_EQ(mptimeOf(repeated("20 ", 20) + "25", 21, mptimeValue).status, 1);
  EXPECT_EQ(mptimeOf(repeated("30 ", 20000), 64, mptimeNumber).periods, Periods(20, 30));
}

TEST(Mptime, NullTextsAndLists) {
  const TraceCapture capture;
  std::array<unsigned char, 20> periods = {};
  EXPECT_EQ(P::setCodecMptime(periods.data(), 3, nullptr), 0);
  EXPECT_EQ(P::setCodecMptime(nullptr, 3, nullptr), 0);
  EXPECT_EQ(P::setCodecMptime(nullptr, 2, "20 -"), 0);
  EXPECT_EQ(periods, (std::array<unsigned char, 20>{}));
  EXPECT_EQ(capture.lines(), nothing);
}

TEST(SilenceSuppression, TheFirstWordDecides) {
  const struct {
    const char* value;
    int state;
  } rows[] = {{"-", 0},           {"on", 1},        {"off", 2},  {"off - - - -", 2}, {"on off", 1},
              {"  on - g711", 1}, {"\noff\non", 2}, {"- on", 0}, {"on\n", 1}};
  for (const auto& row : rows) {
    const TraceCapture capture;
    sSdpParsedData data = emptySummary();
    data.silenceSuppression = 99;
    EXPECT_EQ(P::setSilenceSuppression(data, ExactText(row.value)), 0) << row.value;
    EXPECT_EQ(data.silenceSuppression, row.state) << row.value;
    EXPECT_TRUE(onlyChanged(data, &sSdpParsedData::silenceSuppression)) << row.value;
    EXPECT_EQ(capture.lines(), nothing) << row.value;
  }
}

TEST(SilenceSuppression, OtherWordsFail) {
  std::vector<std::string> values = {"",  " ",  "\n", "On",   "OFF",  "onx",
                                     "o", "of", "--", "on\t", "on\r", "x on"};
  values.insert(values.end(), std::begin(oddTexts), std::end(oddTexts));
  for (const std::string& value : values) {
    const TraceCapture capture;
    sSdpParsedData data = emptySummary();
    data.silenceSuppression = 99;
    EXPECT_EQ(P::setSilenceSuppression(data, ExactText(value)), 1) << value;
    EXPECT_EQ(data.silenceSuppression, 99) << value;
    EXPECT_EQ(capture.lines(), badSilence) << value;
  }
}

TEST(SilenceSuppression, NullIsSuccessWithoutChange) {
  const TraceCapture capture;
  sSdpParsedData data = emptySummary();
  EXPECT_EQ(P::setSilenceSuppression(data, nullptr), 0);
  EXPECT_TRUE(data.isInitialized());
  EXPECT_EQ(capture.lines(), nothing);
}

TEST(EchoCancellation, TheFirstWordDecides) {
  const struct {
    const char* value;
    int state;
  } rows[] = {{"-", 0}, {"on", 1}, {"off", 2}, {"on G168", 1}, {"  off x", 2}, {"\non\noff", 1}};
  for (const auto& row : rows) {
    const TraceCapture capture;
    sSdpParsedData data = emptySummary();
    data.echoCancellation = 99;
    EXPECT_EQ(P::setEchoCancellation(data, ExactText(row.value)), 0) << row.value;
    EXPECT_EQ(data.echoCancellation, row.state) << row.value;
    EXPECT_TRUE(onlyChanged(data, &sSdpParsedData::echoCancellation)) << row.value;
    EXPECT_EQ(capture.lines(), nothing) << row.value;
  }
}

TEST(EchoCancellation, OtherWordsAreTracedButNoFailure) {
  struct Row {
    std::string value;
    const Lines* traces;
  };
  std::vector<Row> rows = {{"", &noEcan},       {" ", &noEcan},   {" \n ", &noEcan},  {"On", &badEcan},
                           {"fb on", &badEcan}, {"of", &badEcan}, {"on\t", &badEcan}, {"--", &badEcan}};
  for (const std::string& text : oddTexts) rows.push_back({text, &badEcan});
  for (const auto& row : rows) {
    const TraceCapture capture;
    sSdpParsedData data = emptySummary();
    data.echoCancellation = 99;
    EXPECT_EQ(P::setEchoCancellation(data, ExactText(row.value)), 0) << row.value;
    EXPECT_EQ(data.echoCancellation, 99) << row.value;
    EXPECT_EQ(capture.lines(), *row.traces) << row.value;
  }
}

TEST(EchoCancellation, NullIsSuccessWithoutChange) {
  const TraceCapture capture;
  sSdpParsedData data = emptySummary();
  EXPECT_EQ(P::setEchoCancellation(data, nullptr), 0);
  EXPECT_TRUE(data.isInitialized());
  EXPECT_EQ(capture.lines(), nothing);
}

TEST(VoiceBandData, YesSetsThreeFields) {
  for (const std::string value : {"0 vbd=yes", "8 vbd=yes", "0vbd=yes", "8 x=1;vbd=yes;y", "8 vbd=no;vbd=yes",
                                  "0 vbd=yesterday", "08 vbd=yes", "80 vbd=yes"}) {
    const TraceCapture capture;
    sSdpParsedData data = emptySummary();
    data.echoCancellation = FEATURE_STATE_ON;
    EXPECT_EQ(P::setVoiceBandData(data, ExactText(value)), 0) << value;
    EXPECT_EQ(data.silenceSuppression, 2) << value;
    EXPECT_EQ(data.echoCancellation, 2) << value;
    EXPECT_EQ(data.gainControl, 44) << value;
    EXPECT_EQ(capture.lines(), nothing) << value;
  }
}

TEST(VoiceBandData, OtherValuesChangeNothing) {
  const struct {
    std::string value;
    int result;
    const Lines* traces;
  } rows[] = {
      {"0 vbd=no", 1, &nothing},
      {"8 vbd=no", 1, &nothing},
      {"8 vbd=none", 1, &nothing},
      {"8vbd=no", 1, &nothing},
      {"0", 0, &nothing},
      {"8 ", 0, &nothing},
      {"8 vbd=", 0, &nothing},
      {"8 vbd=ye", 0, &nothing},
      {"8 vbd=n", 0, &nothing},
      {"8 vbd==yes", 0, &nothing},
      {"8 VBD=YES", 0, &nothing},
      {"8 VBD=NO", 0, &nothing},
      {"8 vbd = yes", 0, &nothing},
      {"8 vbd=\371es", 0, &nothing},
      {"8" + std::string(60000, 'v'), 0, &nothing},
      {"8" + std::string(60000, 'v') + "vbd=no", 1, &nothing},
      {"", 0, &badGpmd},
      {" 8 vbd=yes", 0, &badGpmd},
      {"9 vbd=yes", 0, &badGpmd},
      {"18 vbd=yes", 0, &badGpmd},
      {"97 vbd=no", 0, &badGpmd},
      {"vbd=yes", 0, &badGpmd},
      {"\xB0 vbd=yes", 0, &badGpmd},
      {"%s%n vbd=yes", 0, &badGpmd},
  };
  for (const auto& row : rows) {
    const TraceCapture capture;
    sSdpParsedData data = emptySummary();
    EXPECT_EQ(P::setVoiceBandData(data, ExactText(row.value)), row.result) << row.value;
    EXPECT_TRUE(data.isInitialized()) << row.value;
    EXPECT_EQ(capture.lines(), *row.traces) << row.value;
  }
}

TEST(VoiceBandData, NullIsSuccessWithoutChange) {
  const TraceCapture capture;
  sSdpParsedData data = emptySummary();
  EXPECT_EQ(P::setVoiceBandData(data, nullptr), 0);
  EXPECT_TRUE(data.isInitialized());
  EXPECT_EQ(capture.lines(), nothing);
}
