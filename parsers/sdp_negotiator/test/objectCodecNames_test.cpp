#include "objectTestSupport.h"

// Between codec names and values. That every row of the tables is found by its names is the tables' own test.

namespace {

struct NameCase {
  const char* name;
  int codecText;     ///< the value by the text name
  int encodingName;  ///< by the name of an rtpmap line
  int videoName;
};

TEST(CodecNames, HaveTheirValueInAnyLetterCase) {
  const NameCase cases[] = {{"G711ALAW64K", 1, 0, 0},
                            {"g711alaw64k", 1, 0, 0},
                            {"g729", 10, 10, 0},
                            {"PCMU", 0, 3, 0},
                            {"pcmu", 0, 3, 0},
                            {"PcMa@56", 0, 2, 0},
                            {"G7231", 8, 0, 0},
                            {"G723", 0, 8, 0},
                            {"T38_LOOSE", 25, 0, 0},
                            {"T_38_FAX", 25, 0, 0},
                            {"Telephone-Event", 0, 29, 0},
                            {"TELEPHONE_EVENT", 29, 0, 0},
                            {"NOT_SPECIFIED", 0, 12, 0},  // several rows have it; the first counts
                            {"opus", 38, 38, 0},
                            {"h264", 0, 0, 2},
                            {"NV", 0, 0, 6},
                            {"h263-1998", 0, 0, 10},
                            {"H224", 0, 0, 13},
                            {"", 0, 0, 0},
                            {" PCMU", 0, 0, 0},
                            {"PCMU/8000", 0, 0, 0},
                            {"PCM", 0, 0, 0},
                            {"PCMU\x80", 0, 0, 0},
                            {nullptr, 0, 0, 0}};
  for (const NameCase& each : cases) {
    SCOPED_TRACE(each.name != nullptr ? each.name : "null");
    EXPECT_EQ(cSdpNegotiator::getAudioCodecValue(each.name), each.codecText);
    EXPECT_EQ(cSdpNegotiator::getRtpMapAudioCodecValue(each.name), each.encodingName);
    EXPECT_EQ(cSdpNegotiator::getVideoCodecValue(each.name), each.videoName);
  }
}

TEST(CodecNames, OfValuesAreTheTablesOwnTexts) {
  EXPECT_STREQ(cSdpNegotiator::getAudioCodecText(1), "G711ALAW64K");
  EXPECT_STREQ(cSdpNegotiator::getAudioCodecText(25), "T38_LOOSE");
  EXPECT_STREQ(cSdpNegotiator::getAudioCodecText(38), "OPUS");
  EXPECT_EQ(cSdpNegotiator::getAudioCodecText(3), audioCodecTable[2].textName);
  EXPECT_STREQ(cSdpNegotiator::getVideoCodecText(1), "H263");
  EXPECT_STREQ(cSdpNegotiator::getVideoCodecText(13), "H224");
  EXPECT_EQ(cSdpNegotiator::getVideoCodecText(2), videoCodecTable[1].encodingName);
}

TEST(CodecNames, OfValuesWithoutARowAreEmpty) {
  for (const int value : {0, 39, 40, 128, 200, 255}) {
    EXPECT_STREQ(cSdpNegotiator::getAudioCodecText(static_cast<unsigned char>(value)), "") << value;
  }
  for (const int value : {0, 14, 128, 200, 255}) {
    EXPECT_STREQ(cSdpNegotiator::getVideoCodecText(static_cast<unsigned char>(value)), "") << value;
  }
}

}  // namespace
