#include <gtest/gtest.h>

#include <map>
#include <set>
#include <string>

#include "parserTestSupport.h"
#include "sdpNegotiatorParser.h"
#include "sdpNegotiatorParser/videoCodecRules.h"

// Which video codec a name and format stand for, static payload types, and H.264 levels.

namespace {

using P = sdpParserMessage;

int codecOf(const std::string& name, const std::string& format = "97") {
  return P::convertVideoCodec(ExactText(name), ExactText(format));
}

int levelOf(const std::string& profileLevelId) {
  return P::decodeH264ProfileString(ExactText(profileLevelId));
}

int formatLevelOf(const std::vector<std::string>& attributes, const std::string& format = "97") {
  return P::decodeH264ProfileId(Attributes(attributes), ExactText(format));
}

int mediaCodecOf(const std::string& body, const std::string& format) {
  const ExactText text(body);
  return P::getMediaCodec(text, text.end(), ExactText(format));
}

std::string upper(std::string text) {
  for (char& c : text) c = c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
  return text;
}

std::string hexByte(int value) {
  constexpr char digits[] = "0123456789abcdef";
  return {digits[value / 16], digits[value % 16]};
}

const std::string videoLines =
    "m=video 5006 RTP/AVP 97 98\r\na=rtpmap:97 H264/90000\r\na=rtpmap:98 VP8/90000\r\n"
    "a=rtpmap:99 theora/90000\r\n";

}  // namespace

TEST(VideoCodec, NamesByTheirBeginning) {
  const struct {
    const char* name;
    int codec;
  } rows[] = {
      {"H263-1998", 10}, {"H263-2000", 11}, {"H263", 1},         {"H263_L40", 1},    {"H263_L45", 1},
      {"H264", 2},       {"H264_L1B", 2},   {"H264_L1_2", 2},    {"H264_L1_3", 2},   {"H264_L3", 2},
      {"H264_L4", 2},    {"MPEG4", 3},      {"MPEG4_P2_L0B", 3}, {"MPEG4_P2_L2", 3}, {"Ce1B", 4},
      {"JPEG", 5},       {"nv", 6},         {"H261", 7},         {"MPV", 8},         {"MP2T", 9},
      {"MPEG2", 9},      {"VP8", 12},       {"H224", 13},
  };
  for (const auto& row : rows) {
    const std::string name = row.name;
    for (const std::string& each : {name, name + "/90000", name + "X", name + "\xFF"}) {
      EXPECT_EQ(codecOf(each), row.codec) << each;
    }
    EXPECT_EQ(codecOf("X" + name), 0) << name;
    EXPECT_EQ(codecOf(" " + name), 0) << name;
  }
}

TEST(VideoCodec, NamesOfTheCodecTable) {
  std::set<int> known;
  for (const videoCodecRow& row : videoCodecTable) {
    EXPECT_EQ(codecOf(row.encodingName), row.value) << row.encodingName;
    known.insert(row.value);
  }
  for (const sdpneg::VideoRule& rule : sdpneg::kVideoRules)
    EXPECT_TRUE(known.contains(rule.codec)) << rule.text;
}

TEST(VideoCodec, NamesAreCaseSensitiveExceptVp8) {
  for (const char* name : {"h263", "h263-1998", "h264", "mpeg4", "CE1B", "ce1b", "jpeg", "NV", "h261", "mpv",
                           "mp2t", "mpeg2", "h224"}) {
    EXPECT_EQ(codecOf(name), 0) << name;
  }
  for (const char* name : {"VP8", "vp8", "Vp8/90000", "vP8"}) EXPECT_EQ(codecOf(name), 12) << name;
}

TEST(VideoCodec, NamesOfNoCodec) {
  for (const char* name : {"", "H", "H26", "H262", "H265", "H222", "VP", "VP9", "MP", "MPEG", "MPEG1", "MP2",
                           "n", "Ce1", "JPE", "AV1", "\x80", "H2\2664", "V\3208"}) {
    EXPECT_EQ(codecOf(name), 0) << name;
  }
  EXPECT_EQ(codecOf(std::string(60000, 'H')), 0);
}

TEST(VideoCodec, FormatsOfStaticPayloadTypes) {
  const std::map<int, int> codecs = {{34, 1}, {25, 4}, {26, 5}, {28, 6}, {31, 7}, {32, 8}};
  for (int number = 0; number <= 255; ++number) {
    const auto row = codecs.find(number);
    EXPECT_EQ(codecOf("unknown", std::to_string(number)), row == codecs.end() ? 0 : row->second) << number;
  }
  for (const char* format : {"034", "34 ", " 34", "3", "340", "\2634", ""}) {
    EXPECT_EQ(codecOf("unknown", format), 0) << format;
  }
}

TEST(VideoCodec, TheNameIsComparedWith33NotTheFormat) {
  EXPECT_EQ(codecOf("33", "33"), 9);
  EXPECT_EQ(codecOf("33", "97"), 9);
  EXPECT_EQ(codecOf("unknown", "33"), 0);
  EXPECT_EQ(codecOf("33/90000", "33"), 0);
}

TEST(VideoCodec, TheFirstRuleThatMatchesDecides) {
  EXPECT_EQ(codecOf("H263-1998", "34"), 10);
  EXPECT_EQ(codecOf("H263-2000", "25"), 11);
  EXPECT_EQ(codecOf("H264", "34"), 1);  // the format stands before all names but those of H263
  EXPECT_EQ(codecOf("H264", "25"), 2);
  EXPECT_EQ(codecOf("JPEG", "25"), 4);
  EXPECT_EQ(codecOf("JPEG", "28"), 5);
  EXPECT_EQ(codecOf("nv", "26"), 5);
  EXPECT_EQ(codecOf("H261", "28"), 6);
  EXPECT_EQ(codecOf("MPV", "31"), 7);
  EXPECT_EQ(codecOf("MPEG2", "32"), 8);
  EXPECT_EQ(codecOf("VP8", "34"), 1);
  EXPECT_EQ(codecOf("H224", "32"), 8);
}

TEST(VideoCodec, NullTexts) {
  EXPECT_EQ(P::convertVideoCodec(nullptr, "34"), 0);
  EXPECT_EQ(P::convertVideoCodec(nullptr, nullptr), 0);
  EXPECT_EQ(P::convertVideoCodec("VP8", nullptr), 12);
  EXPECT_EQ(P::convertVideoCodec("unknown", nullptr), 0);
}

TEST(StaticPayload, ExactlyThirteenTexts) {
  const std::set<int> accepted = {0, 4, 8, 9, 15, 18, 25, 26, 28, 31, 32, 33, 34};
  for (int number = -10; number <= 300; ++number) {
    EXPECT_EQ(P::isStaticPayload(ExactText(std::to_string(number))), accepted.contains(number)) << number;
  }
}

TEST(StaticPayload, TheWholeTextMustMatch) {
  EXPECT_FALSE(P::isStaticPayload(nullptr));
  for (const std::string text :
       {"", "00", "08", "+8", " 8", "8 ", "8\r\n", "8x", "H264", "\xB8", "4294967304"}) {
    EXPECT_FALSE(P::isStaticPayload(ExactText(text))) << text;
  }
  EXPECT_FALSE(P::isStaticPayload(ExactText(std::string(60000, '0'))));
}

TEST(H264Level, AllLevelBytes) {
  const std::map<std::string, int> levels = {
      {"0a", 0}, {"0b", 2},  {"0c", 3},  {"0d", 4},  {"14", 5},  {"15", 6},  {"16", 7},  {"1e", 8},
      {"1f", 9}, {"20", 10}, {"28", 11}, {"29", 12}, {"2a", 13}, {"32", 14}, {"33", 15},
  };
  for (int value = 0; value <= 255; ++value) {
    const std::string byte = hexByte(value);
    const auto row = levels.find(byte);
    const int expected = row == levels.end() ? 0 : row->second;
    EXPECT_EQ(levelOf("42e0" + byte), expected) << byte;
    EXPECT_EQ(levelOf("42e0" + upper(byte)), expected) << byte;
    EXPECT_EQ(levelOf("4dzz" + byte), byte == "0b" ? 0 : expected) << byte;
  }
}

TEST(H264Level, ConstraintsTellLevel1bFrom11) {
  for (int digit = 0; digit < 16; ++digit) {
    const std::string text = hexByte(digit).substr(1);
    const int expected = digit % 2 != 0 ? 1 : 2;
    EXPECT_EQ(levelOf("42" + text + "00b"), expected) << text;
    EXPECT_EQ(levelOf("42" + upper(text) + "f0B"), expected) << text;
  }
  for (const char digit : {'g', 'G', 'z', ' ', '/', ':', '@', '`', '-', '\xE1', '\xFF'}) {
    EXPECT_EQ(levelOf(std::string("42") + digit + "00b"), 0) << digit;
  }
}

TEST(H264Level, OnlyThreeProfiles) {
  for (int value = 0; value <= 255; ++value) {
    const std::string byte = hexByte(value);
    const int expected = value == 0x42 || value == 0x4D || value == 0x58 ? 9 : 0;
    EXPECT_EQ(levelOf(byte + "e01f"), expected) << byte;
    EXPECT_EQ(levelOf(upper(byte) + "e01f"), expected) << byte;
  }
}

TEST(H264Level, TextsThatAreTooShort) {
  const std::string text = "42e01f";
  for (std::size_t length = 0; length < text.size(); ++length) {
    EXPECT_EQ(levelOf(text.substr(0, length)), -1) << length;
  }
  EXPECT_EQ(levelOf("zzzzz"), -1);
  EXPECT_EQ(P::decodeH264ProfileString(nullptr), -1);
}

TEST(H264Level, SixCharactersAreLookedAt) {
  EXPECT_EQ(levelOf("42e01f;packetization-mode=1"), 9);
  EXPECT_EQ(levelOf("42e01f" + std::string(60000, 'f')), 9);
  EXPECT_EQ(levelOf("42e0;packetization-mode=1"), 0);
  EXPECT_EQ(levelOf("42e01;"), 0);
  EXPECT_EQ(levelOf("zzzzzz"), 0);
  EXPECT_EQ(levelOf(" 42e01f"), 0);
  for (std::size_t at : {0U, 1U, 4U, 5U}) {
    for (int byte = 0x80; byte <= 0xFF; ++byte) {
      std::string text = "42e01f";
      text[at] = static_cast<char>(byte);
      EXPECT_EQ(levelOf(text), 0) << byte << " at " << at;
    }
  }
}

TEST(H264Level, SixCharactersNeedNoNul) {
  const auto six = std::make_unique_for_overwrite<char[]>(6);
  std::string("42e01f").copy(six.get(), 6);
  EXPECT_EQ(P::decodeH264ProfileString(six.get()), 9);
}

TEST(H264FormatLevel, TheFirstLineThatHasOneDecides) {
  const struct {
    std::vector<std::string> attributes;
    int level;
  } rows[] = {
      {{"fmtp:97 profile-level-id=42e01f"}, 9},
      {{"fmtp:97 packetization-mode=1;profile-level-id=4D0028;max-fs=1"}, 11},
      {{"rtpmap:97 H264/90000", "fmtp:98 profile-level-id=42e00b", "fmtp:97 profile-level-id=42f00b"}, 1},
      {{"fmtp:97 profile-level-id=42e0", "fmtp:97 profile-level-id=42e01f"}, 9},
      {{"fmtp:97 packetization-mode=1", "fmtp:97 profile-level-id=42e01f"}, 9},
      {{"fmtp:97 profile-level-id=64001f", "fmtp:97 profile-level-id=42e01f"}, 0},  // unknown, but decoded
      {{"fmtp:97 profile-level-id=42e00c", "fmtp:97 profile-level-id=42e01f"}, 3},
      {{"fmtp:97 profile-level-id=;profile-level-id=42e01f"}, 0},  // the first one in the line
      {{}, 0},
      {{"rtpmap:97 profile-level-id=42e01f"}, 0},
      {{"FMTP:97 profile-level-id=42e01f"}, 0},
      {{"fmtp:97 Profile-Level-Id=42e01f"}, 0},
      {{"fmtp:97 profile-level-id:42e01f"}, 0},
      {{"fmtp: 97 profile-level-id=42e01f"}, 0},
  };
  for (const auto& row : rows)
    EXPECT_EQ(formatLevelOf(row.attributes), row.level) << testing::PrintToString(row.attributes);
}

TEST(H264FormatLevel, NamesAndFormatsAreComparedByTheirBeginning) {
  // Kept: a format also finds the line of one that begins with it.
  EXPECT_EQ(formatLevelOf({"fmtp:97 profile-level-id=42e01f"}, "9"), 9);
  EXPECT_EQ(formatLevelOf({"fmtp:97 profile-level-id=42e01f"}, "97 p"), 9);
  EXPECT_EQ(formatLevelOf({"fmtp:97 profile-level-id=42e01f"}, "970"), 0);
  EXPECT_EQ(formatLevelOf({"fmtpX:97 profile-level-id=42e01f"}), 9);
  EXPECT_EQ(formatLevelOf({"xfmtp:97 profile-level-id=42e01f"}), 0);
}

TEST(H264FormatLevel, LinesWithoutAWholeProfileLevelId) {
  for (const char* line :
       {"fmtp", "fmtp:", "fmtp:97", "fmtp:97 ", "fmtp:97 =", "fmtp:97 ==", "fmtp:97 ;",
        "fmtp:97 profile-level-id", "fmtp:97 profile-level-id=", "fmtp:97 profile-level-id=;",
        "fmtp:97 profile-level-id=42e01", "fmtp:97 profile-level-id=42e"}) {
    EXPECT_EQ(formatLevelOf({line, "fmtp:97 profile-level-id=42e01f"}), 9) << line;
    EXPECT_EQ(formatLevelOf({line}), 0) << line;
  }
}

TEST(H264FormatLevel, ValuesThatFillTheirField) {
  const std::string parameter = ";profile-level-id=42e01f";
  const std::string filler(SDP_ATTRIBUTE_VALUE_SIZE - 1 - 3 - parameter.size(), 'x');
  EXPECT_EQ(formatLevelOf({"fmtp:97 " + filler + parameter}), 9);
  EXPECT_EQ(formatLevelOf({"fmtp:97 x" + filler + parameter}), 0);  // the last digit is cut
}

TEST(H264FormatLevel, NullArgumentsAndCorruptCounts) {
  EXPECT_EQ(P::decodeH264ProfileId(nullptr, "97"), 0);
  EXPECT_EQ(P::decodeH264ProfileId(Attributes({"fmtp:97 profile-level-id=42e01f"}), nullptr), 0);
  std::vector<std::string> lines(SDP_ATTRIBUTE_CAPACITY, "fmtp:98 mode=1");
  lines.back() = "fmtp:97 profile-level-id=42e01f";
  const Attributes full(lines);
  full->count = 1000;
  EXPECT_EQ(P::decodeH264ProfileId(full, "97"), 9);
  full->count = -5;
  EXPECT_EQ(P::decodeH264ProfileId(full, "97"), 0);
}

TEST(MediaCodec, StaticPayloadTypesAreTheirOwnName) {
  const std::map<std::string, int> codecs = {{"25", 4}, {"26", 5}, {"28", 6}, {"31", 7}, {"32", 8},
                                             {"33", 9}, {"34", 1}, {"0", 0},  {"4", 0},  {"8", 0},
                                             {"9", 0},  {"15", 0}, {"18", 0}};
  for (const auto& [format, codec] : codecs) {
    EXPECT_EQ(mediaCodecOf("m=video 5006 RTP/AVP 97\r\na=rtpmap:" + format + " H264/90000\r\n", format),
              codec)
        << format;
    EXPECT_EQ(P::getMediaCodec(nullptr, nullptr, format.c_str()), codec) << format;
  }
}

TEST(MediaCodec, OtherFormatsNeedAnRtpmapLine) {
  EXPECT_EQ(mediaCodecOf(videoLines, "97"), 2);
  EXPECT_EQ(mediaCodecOf(videoLines, "98"), 12);
  EXPECT_EQ(mediaCodecOf(videoLines, "99"), 0);
  EXPECT_EQ(mediaCodecOf(videoLines, "100"), 0);
  EXPECT_EQ(mediaCodecOf("m=video 5006 RTP/AVP 97\r\na=rtpmap:97\r\n", "97"), 0);
  EXPECT_EQ(mediaCodecOf("x\na=rtpmap:97 33\r\n", "97"), 9);
  EXPECT_EQ(mediaCodecOf("x\na=rtpmap:97 33" + std::string(100, ' ') + "\r\n", "97"), 0);
}

TEST(MediaCodec, LinesBehindTheEndDoNotCount) {
  const ExactText text(videoLines);
  const char* second = text + videoLines.find("\na=rtpmap:98");
  EXPECT_EQ(P::getMediaCodec(text, second, "97"), 2);
  EXPECT_EQ(P::getMediaCodec(text, second, "98"), 0);
  EXPECT_EQ(P::getMediaCodec(text, second + 1, "98"), 12);
}

TEST(MediaCodec, NullArguments) {
  EXPECT_EQ(P::getMediaCodec("x", "x", nullptr), 0);
  EXPECT_EQ(P::getMediaCodec(nullptr, nullptr, "97"), 0);
  const ExactText text(videoLines);
  EXPECT_EQ(P::getMediaCodec(text, nullptr, "97"), 0);
  EXPECT_EQ(P::getMediaCodec(nullptr, text.end(), "97"), 0);
  EXPECT_EQ(P::getMediaCodec(text, text.end(), nullptr), 0);
  EXPECT_EQ(P::getMediaCodec(text, text.end(), ""), 0);
}

TEST(MediaCodec, LongNames) {
  EXPECT_EQ(mediaCodecOf("x\na=rtpmap:97 H264" + std::string(60000, 'x') + "\r\n", "97"), 2);
  EXPECT_EQ(mediaCodecOf("x\na=rtpmap:" + std::string(60000, '9') + " H264\r\n", "97"), 0);
}
