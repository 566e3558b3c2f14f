#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <string>

#include "../src/codecLookup.h"
#include "sdpDataDefinitions.h"

// The codec tables row by row, and the lookups in them.

namespace {

const struct {
  const char* encodingName;
  const char* textName;
  int value;
  int kind;
} audioRows[] = {
    {"PCMA", "G711ALAW64K", 1, 1},
    {"PCMA@56", "G711ALAW56K", 2, 1},
    {"PCMU", "G711ULAW64K", 3, 1},
    {"PCMU@56", "G711ULAW56K", 4, 1},
    {"G722", "G722_64K", 5, 1},
    {"G722@56", "G722_56K", 6, 1},
    {"G722@48", "G722_48K", 7, 1},
    {"G723", "G7231", 8, 1},
    {"G728", "G728", 9, 1},
    {"G729", "G729", 10, 1},
    {"G729A", "G729ANNEXA", 11, 1},
    {"NOT_SPECIFIED", "IS11172_CAP", 12, 1},
    {"NOT_SPECIFIED", "IS13818_CAP", 13, 1},
    {"G729B", "G729WANNEXB", 14, 1},
    {"G729AB", "G729ANNEXAWANNEXB", 15, 1},
    {"NOT_SPECIFIED", "G7231ANX_CAP", 16, 1},
    {"NOT_SPECIFIED", "GSMFULLRATE", 17, 1},
    {"NOT_SPECIFIED", "GSMHALFRATE", 18, 1},
    {"NOT_SPECIFIED", "GSMENHFRATE", 19, 1},
    {"G726-40", "G726_40", 20, 1},
    {"G726-32", "G726_32", 21, 1},
    {"G726-24", "G726_24", 22, 1},
    {"G726-16", "G726_16", 23, 1},
    {"G729E", "G729E", 24, 1},
    {"NOT_SPECIFIED", "T38_LOOSE", 25, 3},
    {"NOT_SPECIFIED", "T_38_FAX", 25, 3},
    {"iLBC", "ILBC", 26, 1},
    {"BV16", "BV16", 27, 1},
    {"NOT_SPECIFIED", "T38_IMAGE", 28, 3},
    {"telephone-event", "TELEPHONE_EVENT", 29, 0},
    {"CLEARMODE", "CLEARMODE", 30, 0},
    {"AMR", "AMR", 31, 1},
    {"AMR-WB", "AMR_WB", 32, 1},
    {"MP4A-LATM/32000", "AAC_LC", 33, 1},
    {"G7221/32000@24", "G7221_24", 34, 1},
    {"G7221/32000@32", "G7221_32", 35, 1},
    {"G7221/32000@48", "G7221_48", 36, 1},
    {"NOT_SPECIFIED", "COMFORT_NOISE", 37, 1},
    {"OPUS", "OPUS", 38, 1},
    {"", "", 0, 0},
};

const struct {
  const char* encodingName;
  int value;
} videoRows[] = {
    {"H263", 1}, {"H264", 2}, {"MPEG4", 3},      {"Ce1B", 4},       {"JPEG", 5}, {"nv", 6},    {"H261", 7},
    {"MPV", 8},  {"MP2T", 9}, {"H263-1998", 10}, {"H263-2000", 11}, {"VP8", 12}, {"H224", 13}, {"", 0},
};

TEST(AudioCodecTable, HasTheseRows) {
  static_assert(std::size(audioCodecTable) == 40 && std::size(audioRows) == 40);
  for (std::size_t i = 0; i < std::size(audioRows); ++i) {
    SCOPED_TRACE(i);
    EXPECT_STREQ(audioCodecTable[i].encodingName, audioRows[i].encodingName);
    EXPECT_STREQ(audioCodecTable[i].textName, audioRows[i].textName);
    EXPECT_EQ(audioCodecTable[i].value, audioRows[i].value);
    EXPECT_EQ(audioCodecTable[i].kind, audioRows[i].kind);
  }
}

TEST(VideoCodecTable, HasTheseRows) {
  static_assert(std::size(videoCodecTable) == 14 && std::size(videoRows) == 14);
  for (std::size_t i = 0; i < std::size(videoRows); ++i) {
    SCOPED_TRACE(i);
    EXPECT_STREQ(videoCodecTable[i].encodingName, videoRows[i].encodingName);
    EXPECT_EQ(videoCodecTable[i].value, videoRows[i].value);
  }
}

int valueOfEncodingName(const char* name) {
  return sdpneg::codecValue(audioCodecTable, &audioCodecRow::encodingName, name);
}

int valueOfTextName(const char* name) {
  return sdpneg::codecValue(audioCodecTable, &audioCodecRow::textName, name);
}

int valueOfVideoName(const char* name) {
  return sdpneg::codecValue(videoCodecTable, &videoCodecRow::encodingName, name);
}

std::string textNameOf(std::uint8_t value) {
  return sdpneg::codecName(audioCodecTable, &audioCodecRow::textName, value);
}

std::string videoNameOf(std::uint8_t value) {
  return sdpneg::codecName(videoCodecTable, &videoCodecRow::encodingName, value);
}

TEST(CodecLookup, FindsEveryNameOfItsOwn) {
  for (const auto& row : audioRows) {
    SCOPED_TRACE(row.textName);
    EXPECT_EQ(valueOfTextName(row.textName), row.value);
    if (std::string(row.encodingName) != "NOT_SPECIFIED") {
      EXPECT_EQ(valueOfEncodingName(row.encodingName), row.value);
    }
  }
  for (const auto& row : videoRows) EXPECT_EQ(valueOfVideoName(row.encodingName), row.value);
}

TEST(CodecLookup, TakesTheFirstRowOfASharedName) { EXPECT_EQ(valueOfEncodingName("NOT_SPECIFIED"), 12); }

// Both names stand for the capability; only the first is ever given for it.
TEST(CodecLookup, TakesTheFirstNameOfASharedValue) {
  EXPECT_EQ(textNameOf(25), "T38_LOOSE");
  EXPECT_EQ(valueOfTextName("T38_LOOSE"), 25);
  EXPECT_EQ(valueOfTextName("T_38_FAX"), 25);
}

TEST(CodecLookup, IgnoresAsciiCase) {
  EXPECT_EQ(valueOfTextName("g729"), 10);
  EXPECT_EQ(valueOfEncodingName("pcmu"), 3);
  EXPECT_EQ(valueOfEncodingName("Telephone-EVENT"), 29);
  EXPECT_EQ(valueOfEncodingName("ILBC"), 26);
  EXPECT_EQ(valueOfEncodingName("opus"), 38);
  EXPECT_EQ(valueOfVideoName("h264"), 2);
  EXPECT_EQ(valueOfVideoName("NV"), 6);
}

TEST(CodecLookup, GivesNoCodecForOtherNames) {
  for (const char* name :
       {"", " ", "PCM", "PCMUX", "PCMU ", " PCMU", "PCMU/8000", "PCMU@57", "G7", "G711ULAW", "pcm\xd5",
        "\x80", "G726_40@", "H26", "VP9", "@CMU", "`CMU", "PCMA\nPCMU"}) {
    SCOPED_TRACE(name);
    EXPECT_EQ(valueOfEncodingName(name), 0);
    EXPECT_EQ(valueOfTextName(name), 0);
    EXPECT_EQ(valueOfVideoName(name), 0);
  }
  EXPECT_EQ(valueOfEncodingName(nullptr), 0);
  EXPECT_EQ(valueOfTextName(nullptr), 0);
  EXPECT_EQ(valueOfVideoName(nullptr), 0);
  EXPECT_EQ(valueOfEncodingName(std::string(100000, 'P').c_str()), 0);
}

TEST(CodecLookup, KeepsTheColumnsApart) {
  EXPECT_EQ(valueOfEncodingName("G711ULAW64K"), 0);
  EXPECT_EQ(valueOfTextName("PCMU"), 0);
  EXPECT_EQ(valueOfVideoName("PCMU"), 0);
  EXPECT_EQ(valueOfEncodingName("H264"), 0);
}

// '@' and '`', '[' and '{' differ in the bit that tells the cases of letters apart.
TEST(CodecLookup, FoldsLettersOnly) {
  EXPECT_EQ(valueOfEncodingName("PCMU@56"), 4);
  EXPECT_EQ(valueOfEncodingName("PCMU`56"), 0);
  EXPECT_EQ(valueOfEncodingName("AMR-WB"), 32);
  EXPECT_EQ(valueOfEncodingName("AMR\rWB"), 0);
}

TEST(CodecLookup, NamesEveryValue) {
  for (const auto& row : audioRows) {
    const std::string name = std::string(row.textName) == "T_38_FAX" ? "T38_LOOSE" : row.textName;
    EXPECT_EQ(textNameOf(static_cast<std::uint8_t>(row.value)), name);
  }
  for (const auto& row : videoRows) {
    EXPECT_EQ(videoNameOf(static_cast<std::uint8_t>(row.value)), row.encodingName);
  }
}

TEST(CodecLookup, GivesAnEmptyTextForOtherValues) {
  for (int value = 39; value <= 255; ++value) EXPECT_EQ(textNameOf(static_cast<std::uint8_t>(value)), "");
  for (int value = 14; value <= 255; ++value) EXPECT_EQ(videoNameOf(static_cast<std::uint8_t>(value)), "");
  EXPECT_EQ(textNameOf(0), "");
  EXPECT_EQ(videoNameOf(0), "");
}

TEST(CodecLookup, GivesTheTablesOwnTexts) {
  EXPECT_EQ(sdpneg::codecName(audioCodecTable, &audioCodecRow::textName, 3), audioCodecTable[2].textName);
  EXPECT_EQ(sdpneg::codecName(videoCodecTable, &videoCodecRow::encodingName, 2),
            videoCodecTable[1].encodingName);
}

}  // namespace
