#include "codecTestSupport.h"
#include "testFiles.h"

// Getters on records that hold nothing or claim too much, copies, and the growing text.

namespace {

TEST(Getters, TolerateNullRecords) {
  EXPECT_EQ(sdp_getNoOfMDs(nullptr), 0);
  EXPECT_FALSE(sdp_isComplete(nullptr));
  EXPECT_EQ(sdp_MgetPort(nullptr), nullptr);
  EXPECT_EQ(sdp_MgetTransport(nullptr), nullptr);
  EXPECT_EQ(sdp_MgetNoOfFormats(nullptr), 0);
  EXPECT_EQ(sdp_MgetFormat(nullptr, 0), nullptr);
  EXPECT_EQ(sdp_AgetNoOfAs(nullptr), 0);
  EXPECT_EQ(sdp_AgetAttributeField(nullptr, 0), nullptr);
  EXPECT_EQ(sdp_AgetAttributeValue(nullptr, 0), nullptr);
  EXPECT_EQ(sdp_AfindAttribute(nullptr, "x"), nullptr);
  EXPECT_EQ(sdp_CgetNoOfCs(nullptr), 0);
  EXPECT_EQ(sdp_CgetAddress(nullptr, 0), nullptr);
  EXPECT_EQ(sdp_CgetAddressType(nullptr, 0), nullptr);
  EXPECT_EQ(sdp_BgetBandwidthValue(nullptr), 0U);
}

TEST(Getters, CountsThatACallerSetTooLargeOrNegativeAreNotBelieved) {
  const auto m = std::make_unique<mDescription>();
  m->aLine.count = SDP_ATTRIBUTE_CAPACITY + 1;
  m->cLine.count = SDP_CONNECTION_CAPACITY + 100;
  m->mLine.formatCount = 1000000;
  EXPECT_EQ(sdp_AgetNoOfAs(&m->aLine), SDP_ATTRIBUTE_CAPACITY);
  EXPECT_EQ(sdp_AgetAttributeField(&m->aLine, SDP_ATTRIBUTE_CAPACITY), nullptr);
  EXPECT_EQ(sdp_CgetNoOfCs(&m->cLine), SDP_CONNECTION_CAPACITY);
  EXPECT_EQ(sdp_CgetAddress(&m->cLine, SDP_CONNECTION_CAPACITY), nullptr);
  EXPECT_EQ(sdp_MgetNoOfFormats(&m->mLine), SDP_FORMAT_CAPACITY);
  EXPECT_EQ(sdp_MgetFormat(&m->mLine, SDP_FORMAT_CAPACITY), nullptr);
  m->aLine.count = -1;
  m->cLine.count = -1;
  m->mLine.formatCount = -1;
  m->bLine.count = -1;
  EXPECT_EQ(sdp_AgetNoOfAs(&m->aLine), 0);
  EXPECT_EQ(sdp_CgetNoOfCs(&m->cLine), 0);
  EXPECT_EQ(sdp_MgetNoOfFormats(&m->mLine), 0);
  EXPECT_EQ(sdp_BgetBandwidthValue(&m->bLine), 0U);
}

TEST(Encoding, GoesNoFurtherThanTheMediaHeld) {
  Decoded d(kHead + "m=audio 1 RTP/AVP 0\r\n");
  d.get()->noOfMDs = -3;
  EXPECT_EQ(encoded(*d), kHead);
  std::string full = kHead;
  for (int i = 0; i < 25; ++i) full += "m=audio 1 RTP/AVP 0\r\n";
  Decoded all(full);
  for (const int claimed : {26, 2147483647}) {
    all.get()->noOfMDs = claimed;
    EXPECT_EQ(encoded(*all), full);
    const auto copy = std::make_unique<sDescription>();
    sdp_copyDescription(copy.get(), all.get());
    EXPECT_EQ(encoded(*copy), full);
  }
}

TEST(Encoding, NullDescriptionIsRefused) {
  char* text = nullptr;
  int length = 5;
  int size = 0;
  EXPECT_EQ(sdp_encode_r(nullptr, SDP_TYPE_UNKNOWN, text, length, size), 1);
  EXPECT_EQ(text, nullptr);
  EXPECT_EQ(length, 0);
}

TEST(Encoding, GrowsTheTextOfAnEarlierCall) {
  std::string body = kHead;
  for (int i = 0; i < 40; ++i) body += "a=x:" + std::string(349, 'v') + "\r\n";
  const Decoded large(body);
  ASSERT_TRUE(large.complete());
  char* text = nullptr;
  int length = 0;
  int size = 0;
  ASSERT_EQ(sdp_encode_r(Decoded(kHead).get(), SDP_TYPE_UNKNOWN, text, length, size), 0);
  EXPECT_EQ(std::string(text), kHead);
  ASSERT_EQ(sdp_encode_r(large.get(), SDP_TYPE_UNKNOWN, text, length, size), 0);
  EXPECT_EQ(std::string(text), body);
  EXPECT_EQ(length, static_cast<int>(body.size()));
  EXPECT_GT(size, length);
  ASSERT_EQ(sdp_encode_r(Decoded(kHead).get(), SDP_TYPE_UNKNOWN, text, length, size), 0);
  EXPECT_EQ(std::string(text), kHead);
  std::free(text);
}

TEST(Encoding, ATextOfTheCallersOwnSizeIsGrown) {
  char* text = static_cast<char*>(std::malloc(1));
  int length = 0;
  int size = 1;
  ASSERT_EQ(sdp_encode_r(Decoded(kHead).get(), SDP_TYPE_UNKNOWN, text, length, size), 0);
  EXPECT_EQ(std::string(text), kHead);
  std::free(text);
}

// What stands behind a name's NUL in the record is not written, not even behind the text.
TEST(Encoding, WritesNamesOfEveryLengthAndNothingBehindTheText) {
  for (std::size_t length = 0; length < SDP_ATTRIBUTE_NAME_SIZE; ++length) {
    const std::string name = std::string("abcdefghijklmnopqrstuvwxyz").append(64, 'n').substr(0, length);
    const Decoded d(kHead + "a=" + name + "\r\n");
    ASSERT_EQ(d->aLine.count, 1);
    constexpr std::size_t kSize = 4096;
    char* text = static_cast<char*>(std::malloc(kSize));
    std::memset(text, '#', kSize);
    int written = 0;
    int size = static_cast<int>(kSize);
    ASSERT_EQ(sdp_encode_r(d.get(), SDP_TYPE_UNKNOWN, text, written, size), 0);
    ASSERT_EQ(size, static_cast<int>(kSize));
    EXPECT_EQ(std::string(text), kHead + "a=" + name + "\r\n");
    const auto behind = static_cast<std::size_t>(written) + 1;
    EXPECT_EQ(std::string(text + behind, kSize - behind), std::string(kSize - behind, '#')) << length;
    std::free(text);
  }
}

TEST(Copies, HoldTheSameDescription) {
  const auto files = sdpFilesBelow(SDP_TEST_SOURCE_DIR "/parsers/sdp/test/bodies");
  ASSERT_GE(files.size(), 4U);
  for (const auto& path : files) {
    Decoded d(readBytes(path));
    ASSERT_EQ(d.status, 0) << path << d.error;
    d.get()->mediaKinds = 37;
    const auto copy = std::make_unique_for_overwrite<sDescription>();
    std::memset(static_cast<void*>(copy.get()), 0xA5, sizeof(sDescription));
    sdp_copyDescription(copy.get(), d.get());
    EXPECT_EQ(encoded(*copy), encoded(*d)) << path;
    EXPECT_EQ(sdp_isComplete(copy.get()), d.complete());
    EXPECT_EQ(copy->noOfMDs, d->noOfMDs);
    EXPECT_EQ(copy->mediaKinds, 37U);
    for (int i = 0; i < d->noOfMDs; ++i)
      EXPECT_EQ(copy->media[i].mLine.mediaType, d->media[i].mLine.mediaType);
  }
}

TEST(Copies, TouchOnlyWhatIsInUse) {
  Decoded d(kHead + "m=audio 1 RTP/AVP 0\r\na=one:1\r\n");
  const auto media = std::make_unique_for_overwrite<mDescription>();
  std::memset(static_cast<void*>(media.get()), 0xA5, sizeof(mDescription));
  sdp_copyMedia(media.get(), &d->media[0]);
  EXPECT_EQ(media->aLine.count, 1);
  EXPECT_STREQ(media->aLine.entries[0].value, "1");
  EXPECT_EQ(static_cast<unsigned char>(media->aLine.entries[1].name[0]), 0xA5U);
  EXPECT_EQ(static_cast<unsigned char>(media->mLine.formats[1][0]), 0xA5U);
  sdp_copyMedia(nullptr, media.get());
  sdp_copyMedia(media.get(), nullptr);
  sdp_copyDescription(nullptr, d.get());
  sdp_copyDescription(d.get(), nullptr);
  sdp_Acopy(nullptr, &media->aLine);
  sdp_Acopy(&media->aLine, &media->aLine);
  EXPECT_EQ(media->aLine.count, 1);
}

TEST(Copies, OntoThemselvesChangeNothing) {
  Decoded d(kHead + "a=one:1\r\nm=audio 1 RTP/AVP 0\r\na=two:2\r\n");
  const std::string before = encoded(*d);
  sdp_copyDescription(d.get(), d.get());
  sdp_copyMedia(&d.get()->media[0], &d.get()->media[0]);
  EXPECT_EQ(encoded(*d), before);
}

TEST(Entries, FilledByHandInARecordThatHeldAnythingAreWrittenAsSet) {
  Decoded d(kHead + "m=audio 1 RTP/AVP 0\r\n");  // its other entries hold 0xA5
  c_line& c = d.get()->media[0].cLine;
  c.entries[0] = {"IN", "IP4", "192.0.2.7", ""};
  c.count = 1;
  a_line& a = d.get()->media[0].aLine;
  a.entries[0] = {"sendrecv", "", 0};
  a.count = 1;
  EXPECT_EQ(encoded(*d), kHead + "m=audio 1 RTP/AVP 0\r\nc=IN IP4 192.0.2.7\r\na=sendrecv\r\n");
  EXPECT_EQ(sdp_AgetAttributeValue(&a, 0), nullptr);
}

TEST(Decoding, TouchesOnlyWhatTheBodyFills) {
  const Decoded d(kHead + "a=x\r\nm=audio 1 RTP/AVP 0\r\n");
  const auto untouched = [](const auto& member) {
    return *reinterpret_cast<const unsigned char*>(&member) == 0xA5;
  };
  EXPECT_TRUE(untouched(d->aLine.entries[1]));
  EXPECT_TRUE(untouched(d->media[0].aLine.entries[0]));
  EXPECT_TRUE(untouched(d->media[1]));
}

}  // namespace
