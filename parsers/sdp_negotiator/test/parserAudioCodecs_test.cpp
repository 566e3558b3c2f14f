#include <gtest/gtest.h>

#include <climits>
#include <iterator>
#include <map>
#include <string>

#include "parserTestSupport.h"
#include "sdpNegotiatorParser.h"
#include "sdpNegotiatorParser/audioCodecRules.h"

// Which audio codec a format stands for, by its payload type or by its rtpmap and fmtp lines.

namespace {

using P = sdpParserMessage;

/// The codec's text name in the codec table, "" for none.
std::string textName(int codec) {
  for (const audioCodecRow& row : audioCodecTable) {
    if (row.value == codec) return row.textName;
  }
  return "(not in the table)";
}

int codecOf(const std::string& format, const std::vector<std::string>& attributes = {}) {
  return P::convertCodec(ExactText(format), Attributes(attributes));
}

/// The codec of an encoding, told by an rtpmap line.
int codecOfEncoding(const std::string& encoding) { return codecOf("97", {"rtpmap:97 " + encoding}); }

}  // namespace

TEST(StaticAudioPayload, AllNumbers) {
  struct Row {
    int codec;
    const char* textName;
  };
  const std::map<int, Row> rows = {
      {0, {3, "G711ULAW64K"}}, {2, {21, "G726_32"}},        {4, {8, "G7231"}}, {8, {1, "G711ALAW64K"}},
      {9, {5, "G722_64K"}},    {13, {37, "COMFORT_NOISE"}}, {15, {9, "G728"}}, {18, {10, "G729"}},
  };
  for (int number = -300; number <= 300; ++number) {
    const auto row = rows.find(number);
    const Row expected = row == rows.end() ? Row{0, ""} : row->second;
    const int codec = codecOf(std::to_string(number));
    EXPECT_EQ(codec, expected.codec) << number;
    EXPECT_EQ(textName(codec), expected.textName) << number;
  }
}

TEST(StaticAudioPayload, NeverNeedsAttributeLines) {
  EXPECT_EQ(P::convertCodec("18", nullptr), 10);
  EXPECT_EQ(codecOf("18", {"rtpmap:18 AMR/8000"}), 10);
}

TEST(StaticAudioPayload, WhatBeginsWithZeroIsPcmuUnlessItIsAnotherNumber) {
  for (const char* format : {"0", "00", "0000000000000", "0x12", "0-", "0 8", "0.8"}) {
    EXPECT_EQ(codecOf(format, {"rtpmap:97 AMR/8000"}), 3) << format;
  }
  const std::map<std::string, int> numbers = {{"02", 21}, {"04", 8},   {"08", 1},  {"09", 5},   {"013", 37},
                                              {"015", 9}, {"018", 10}, {"008", 1}, {"08/1", 1}, {"01", 0},
                                              {"03", 0},  {"07", 0},   {"019", 0}, {"0128", 0}, {"097", 31}};
  for (const auto& [format, codec] : numbers) {
    EXPECT_EQ(codecOf(format, {"rtpmap:97 AMR/8000"}), codec) << format;
  }
}

TEST(StaticAudioPayload, TextsThatAreNoNumber) {
  EXPECT_EQ(P::convertCodec(nullptr, nullptr), 0);
  for (const char* format : {"", "t38", "*", "x8", "-", "+", "-0", "PCMU", "webrtc-datachannel"}) {
    EXPECT_EQ(codecOf(format), 0) << format;
  }
}

TEST(StaticAudioPayload, TheNumberThatAFormatBeginsWithCounts) {
  EXPECT_EQ(codecOf("8x"), 1);
  EXPECT_EQ(codecOf("18/1"), 10);
  EXPECT_EQ(codecOf("97 ", {"rtpmap:97 AMR/8000"}), 31);
}

TEST(StaticAudioPayload, NumbersBeyondTheirTypeDoNotWrap) {
  // Each would be a known payload type modulo a power of two.
  for (const char* format : {"4294967296", "4294967304", "264", "18446744073709551624", "4294967393",
                             "-4294967288", "2147483648", "-2147483649"}) {
    EXPECT_EQ(codecOf(format, {"rtpmap:97 AMR/8000"}), 0) << format;
  }
  EXPECT_EQ(codecOf(std::string(60000, '9')), 0);
  EXPECT_EQ(codecOf(std::string(60000, ' ') + "8"), 1);
}

TEST(DynamicAudioPayload, AllNamedEncodings) {
  const struct {
    const char* encoding;
    int codec;
    const char* textName;
  } rows[] = {
      {"G726-16", 23, "G726_16"},
      {"G726-24", 22, "G726_24"},
      {"G726-32", 21, "G726_32"},
      {"G726-40", 20, "G726_40"},
      {"AMR-WB", 32, "AMR_WB"},
      {"AMR", 31, "AMR"},
      {"telephone-event", 29, "TELEPHONE_EVENT"},
      {"CN", 37, "COMFORT_NOISE"},
      {"CLEARMODE", 30, "CLEARMODE"},
      {"iLBC", 26, "ILBC"},
      {"opus", 38, "OPUS"},
  };
  EXPECT_EQ(std::size(rows), std::size(sdpneg::kDynamicAudioRules));
  for (const auto& row : rows) {
    const std::string name = row.encoding;
    for (const std::string& encoding : {name, name + "/8000", name + "/48000/2", name + "X"}) {
      EXPECT_EQ(codecOfEncoding(encoding), row.codec) << encoding;
    }
    const int cut = name == "AMR-WB" ? 31 : 0;  // "AMR-W" still begins with "AMR"
    EXPECT_EQ(codecOfEncoding(name.substr(0, name.size() - 1)), cut) << name;
    EXPECT_EQ(codecOfEncoding("X" + name), 0) << name;
    EXPECT_EQ(textName(row.codec), row.textName);
  }
}

TEST(DynamicAudioPayload, AllEncodingsWithARate) {
  const struct {
    const char* encoding;
    const char* rate;
    int codec;
    const char* textName;
  } rows[] = {
      {"MP4A-LATM/90000", "96000", 33, "AAC_LC"},
      {"G7221/16000", "24000", 34, "G7221_24"},
      {"G7221/16000", "32000", 35, "G7221_32"},
      {"G7221/32000", "48000", 36, "G7221_48"},
  };
  EXPECT_EQ(std::size(rows), std::size(sdpneg::kRateAudioRules));
  for (const auto& row : rows) {
    const std::string rtpmap = "rtpmap:97 " + std::string(row.encoding);
    const std::string rate = row.rate;
    EXPECT_EQ(codecOf("97", {rtpmap, "fmtp:97 bitrate=" + rate}), row.codec);
    EXPECT_EQ(codecOf("97", {"fmtp:97 " + rate, rtpmap}), row.codec);
    EXPECT_EQ(codecOf("97", {rtpmap, "fmtp:97 x=1", "fmtp:97 bitrate=" + rate + ";y"}), row.codec);
    EXPECT_EQ(codecOf("97", {rtpmap}), 0);
    EXPECT_EQ(codecOf("97", {rtpmap, "fmtp:98 bitrate=" + rate}), 0);
    EXPECT_EQ(codecOf("97", {rtpmap, "fmtp:97 bitrate=" + rate.substr(0, 4)}), 0);
    EXPECT_EQ(textName(row.codec), row.textName);
  }
}

TEST(DynamicAudioPayload, ARateCountsInTheFirstParameterWordOnly) {
  const std::string rtpmap = "rtpmap:97 G7221/16000";
  EXPECT_EQ(codecOf("97", {rtpmap, "fmtp:97 mode=1; bitrate=24000"}), 0);
  EXPECT_EQ(codecOf("97", {rtpmap, "fmtp:97 mode=1;bitrate=24000"}), 34);
  EXPECT_EQ(codecOf("97", {rtpmap, "fmtp:24000"}), 0);
}

TEST(DynamicAudioPayload, RatesAreTriedInRisingOrder) {
  const std::string rtpmap = "rtpmap:97 G7221/16000";
  EXPECT_EQ(codecOf("97", {rtpmap, "fmtp:97 48000,32000,24000"}), 34);
  EXPECT_EQ(codecOf("97", {rtpmap, "fmtp:97 48000,32000"}), 35);
  EXPECT_EQ(codecOf("97", {rtpmap, "fmtp:97 48000", "fmtp:97 24000"}), 36);  // lines before rates
}

TEST(DynamicAudioPayload, RatesBelongToTheirEncoding) {
  EXPECT_EQ(codecOf("97", {"rtpmap:97 MP4A-LATM/90000", "fmtp:97 bitrate=24000"}), 0);
  EXPECT_EQ(codecOf("97", {"rtpmap:97 G7221/16000", "fmtp:97 bitrate=96000"}), 0);
  EXPECT_EQ(codecOf("97", {"rtpmap:97 PCMA/8000", "fmtp:97 bitrate=24000"}), 0);
}

TEST(DynamicAudioPayload, EncodingsAreCaseSensitiveExceptComfortNoise) {
  for (const char* encoding : {"g726-16", "amr", "Amr-WB", "Telephone-Event", "clearmode", "ilbc", "ILBC",
                               "OPUS", "Opus/48000/2", "g7221"}) {
    EXPECT_EQ(codecOf("97", {"rtpmap:97 " + std::string(encoding), "fmtp:97 24000"}), 0) << encoding;
  }
  for (const char* encoding : {"CN/8000", "cn/8000", "Cn", "cN", "cng"}) {
    EXPECT_EQ(codecOfEncoding(encoding), 37) << encoding;
  }
}

TEST(DynamicAudioPayload, OtherEncodingsAreDeliberatelyNotRecognised) {
  for (const char* encoding : {"PCMA/8000", "PCMU/8000", "G722/8000", "G723/8000", "G728/8000", "G729/8000",
                               "G729A", "BV16/8000", "red/8000", "SILK/16000"}) {
    EXPECT_EQ(codecOfEncoding(encoding), 0) << encoding;
  }
}

TEST(DynamicAudioPayload, EveryDynamicNumberAndNoOther) {
  for (int number = 1; number <= 200; ++number) {
    const std::string text = std::to_string(number);
    const int codec = codecOf(text, {"rtpmap:" + text + " AMR/8000"});
    EXPECT_EQ(codec == 31, number >= 96 && number <= 127) << number;
    EXPECT_EQ(P::convertDynamicCodec(97, Attributes({"rtpmap:" + text + " AMR/8000"})),
              number == 97 ? 31 : 0);
  }
}

TEST(DynamicAudioPayload, TheWalkGoesOnBehindAnEncodingWithoutCodec) {
  EXPECT_EQ(codecOf("97", {"rtpmap:97 PCMA/8000", "rtpmap:97 AMR/8000"}), 31);
  EXPECT_EQ(codecOf("97", {"rtpmap:97 G7221/16000", "rtpmap:97 iLBC/8000"}), 26);
  EXPECT_EQ(codecOf("97", {"rtpmap:97 G7221/16000", "rtpmap:97 iLBC/8000", "fmtp:97 24000"}), 34);
  EXPECT_EQ(codecOf("97", {"rtpmap:97 iLBC/8000", "rtpmap:97 AMR/8000"}), 26);
  EXPECT_EQ(codecOf("97", {"rtpmap:98 AMR/8000", "rtpmap:97 iLBC/8000"}), 26);
}

TEST(DynamicAudioPayload, AttributeNamesAreComparedByTheirBeginning) {
  EXPECT_EQ(codecOf("97", {"rtpmapX:97 AMR/8000"}), 31);
  EXPECT_EQ(codecOf("97", {"rtpmap:97 G7221/16000", "fmtp-x:97 24000"}), 34);
  EXPECT_EQ(codecOf("97", {"Xrtpmap:97 AMR/8000"}), 0);
  EXPECT_EQ(codecOf("97", {"RTPMAP:97 AMR/8000"}), 0);
  EXPECT_EQ(codecOf("97", {"rtpma:97 AMR/8000"}), 0);
}

TEST(DynamicAudioPayload, ValuesAreReadAsNumberAndWord) {
  const struct {
    const char* value;
    int codec;
  } rows[] = {
      {"97 AMR", 31},
      {" 97   AMR/8000", 31},
      {"97\tAMR/8000 x", 31},
      {"97AMR/8000", 31},
      {"+97 AMR", 31},
      {"097 AMR", 31},
      {"97", 0},
      {"97 ", 0},
      {"97\t \t", 0},
      {"", 0},
      {" ", 0},
      {"AMR/8000", 0},
      {"AMR 97", 0},
      {"x97 AMR", 0},
      {"-97 AMR", 0},
      {"- 97 AMR", 0},
      {"970 AMR", 0},
      {"9 7 AMR", 0},
      {"4294967393 AMR", 0},
      {"97 /AMR", 0},
      {"97 x AMR", 0},
      {"-4294967199 AMR", 0},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(codecOf("97", {"rtpmap:" + std::string(row.value)}), row.codec) << row.value;
  }
}

TEST(DynamicAudioPayload, AttributesWithoutAValue) {
  EXPECT_EQ(codecOf("97", {"rtpmap", "fmtp"}), 0);
  EXPECT_EQ(codecOf("97", {"rtpmap:", "fmtp:", "rtpmap:97 AMR/8000"}), 31);
  EXPECT_EQ(codecOf("97", {"rtpmap:97 G7221/16000", "fmtp", "fmtp:", "fmtp:97"}), 0);
  EXPECT_EQ(P::convertCodec("97", nullptr), 0);
  EXPECT_EQ(P::convertDynamicCodec(97, nullptr), 0);
  EXPECT_EQ(codecOf("97"), 0);
}

TEST(DynamicAudioPayload, MalformedParameters) {
  for (const char* value : {"97 =", "97 ==", "97 ;", "97 bitrate=", "97 bitrate==;", "97 bitrate;",
                            "97 =;=", "=24000", "97= ;24000", "bitrate=24000", " ; 97 24000"}) {
    EXPECT_EQ(codecOf("97", {"rtpmap:97 G7221/16000", "fmtp:" + std::string(value)}), 0) << value;
  }
}

TEST(DynamicAudioPayload, ValuesThatFillTheirField) {
  const std::string longWord(SDP_ATTRIBUTE_VALUE_SIZE - 1 - 8, 'x');
  const std::string rtpmap = "rtpmap:97 G7221" + std::string(SDP_ATTRIBUTE_VALUE_SIZE, '1');
  EXPECT_EQ(codecOf("97", {rtpmap, "fmtp:97 " + longWord + "24000"}), 34);
  EXPECT_EQ(codecOf("97", {rtpmap, "fmtp:97 x" + longWord + "24000"}), 0);  // the last zero is cut
  EXPECT_EQ(codecOf("97", {"rtpmap:" + std::string(SDP_ATTRIBUTE_VALUE_SIZE, '9')}), 0);
  EXPECT_EQ(codecOf("97", {"rtpmap:" + std::string(SDP_ATTRIBUTE_VALUE_SIZE, ' ')}), 0);
}

TEST(DynamicAudioPayload, BlocksThatAreFullOrClaimToHoldMore) {
  std::vector<std::string> lines(SDP_ATTRIBUTE_CAPACITY, "crypto:1 AES_CM_128_HMAC_SHA1_80 inline:x");
  lines.back() = "rtpmap:97 AMR/8000";
  const Attributes full(lines);
  EXPECT_EQ(P::convertCodec("97", full), 31);
  full->count = 1000;
  EXPECT_EQ(P::convertCodec("97", full), 31);
  full->count = SDP_ATTRIBUTE_CAPACITY - 1;
  EXPECT_EQ(P::convertCodec("97", full), 0);
  full->count = -1;
  EXPECT_EQ(P::convertCodec("97", full), 0);
}

TEST(DynamicAudioPayload, BytesBeyondAsciiMatchNothing) {
  const std::string value = "97 AMR";
  for (int byte = 0x80; byte <= 0xFF; ++byte) {
    const std::string odd(1, static_cast<char>(byte));
    EXPECT_EQ(codecOf(odd), 0);
    EXPECT_EQ(codecOf(odd + "97", {"rtpmap:97 AMR"}), 0);
    EXPECT_EQ(codecOf("97", {odd + "rtpmap:97 AMR"}), 0);
    for (std::size_t at = 0; at < value.size(); ++at) {
      std::string changed = value;
      changed[at] = static_cast<char>(byte);
      EXPECT_EQ(codecOf("97", {"rtpmap:" + changed}), 0) << byte << " at " << at;
      changed = "97 24000";  // as far as the rate's third digit
      changed[at] = static_cast<char>(byte);
      // In place of the blank it belongs to the word, which holds the rate all the same.
      EXPECT_EQ(codecOf("97", {"rtpmap:97 G7221", "fmtp:" + changed}), at == 2 ? 34 : 0)
          << byte << " at " << at;
    }
  }
}

TEST(G729AnnexB, ReplacesG729AmongTheFormats) {
  sSdpParsedData data = emptySummary();
  const unsigned char codecs[] = {10, 3, 10, 11, 10};
  std::copy(std::begin(codecs), std::end(codecs), data.audioCodec);
  P::setG729AnnexB(data, 3, 15);
  EXPECT_EQ(std::vector<int>(data.audioCodec, data.audioCodec + 6), (std::vector<int>{15, 3, 15, 11, 10, 0}));
  P::setG729AnnexB(data, 5, 11);
  EXPECT_EQ(std::vector<int>(data.audioCodec, data.audioCodec + 6), (std::vector<int>{15, 3, 15, 11, 11, 0}));
}

TEST(G729AnnexB, NothingWithoutFormats) {
  for (const int count : {0, -1, INT_MIN}) {
    sSdpParsedData data = emptySummary();
    data.audioCodec[0] = 10;
    P::setG729AnnexB(data, count, 11);
    EXPECT_EQ(data.audioCodec[0], 10) << count;
  }
}

TEST(G729AnnexB, StaysInsideTheCodecList) {
  for (const int count : {20, 21, 64, INT_MAX}) {
    sSdpParsedData data = emptySummary();
    std::fill(std::begin(data.audioCodec), std::end(data.audioCodec), std::uint8_t{10});
    std::fill(std::begin(data.packetizationPeriod), std::end(data.packetizationPeriod), std::uint8_t{10});
    P::setG729AnnexB(data, count, 11);
    EXPECT_EQ(std::count(std::begin(data.audioCodec), std::end(data.audioCodec), 11), 20) << count;
    // 10 is a period as well, right behind the codecs.
    EXPECT_EQ(std::count(std::begin(data.packetizationPeriod), std::end(data.packetizationPeriod), 10), 20);
  }
}
