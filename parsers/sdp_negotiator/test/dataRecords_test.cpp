#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <functional>
#include <iterator>
#include <type_traits>

#include "sdpDataDefinitions.h"

// The records: their layout, their initial state and what counts as initial.

#define EXPECT_LAYOUT(field, offset, size) \
  static_assert(offsetof(sSdpParsedData, field) == (offset) && sizeof(sSdpParsedData::field) == (size))

EXPECT_LAYOUT(storedSdpLength, 0, 2);
EXPECT_LAYOUT(address, 4, 20);
EXPECT_LAYOUT(port, 24, 4);
EXPECT_LAYOUT(audioCodec, 28, 20);
EXPECT_LAYOUT(packetizationPeriod, 48, 20);
EXPECT_LAYOUT(T38MaxBitRate, 68, 4);
EXPECT_LAYOUT(h264Profile, 72, 4);
EXPECT_LAYOUT(mediaType, 76, 4);
EXPECT_LAYOUT(bandwidth, 80, 4);
EXPECT_LAYOUT(sdpAttributes, 84, 4);
EXPECT_LAYOUT(oLineStart, 88, 2);
EXPECT_LAYOUT(oLineEnd, 90, 2);
EXPECT_LAYOUT(gainControl, 92, 2);
EXPECT_LAYOUT(state, 96, 4);
EXPECT_LAYOUT(echoCancellation, 100, 1);
EXPECT_LAYOUT(echoCancelDirection, 101, 1);
EXPECT_LAYOUT(silenceSuppression, 102, 1);
EXPECT_LAYOUT(resourceReserve, 103, 1);
EXPECT_LAYOUT(sessionMode, 104, 1);
EXPECT_LAYOUT(videoBandwidth, 108, 4);
EXPECT_LAYOUT(videoMode, 112, 1);
EXPECT_LAYOUT(reserved, 113, 19);
static_assert(sizeof(sSdpParsedData) == 132 && alignof(sSdpParsedData) == 4);

static_assert(offsetof(sSDPDescriptor, address) == 0 && offsetof(sSDPDescriptor, port) == 20);
static_assert(sizeof(sSDPDescriptor) == 24);
static_assert(offsetof(sSdpParsedData, port) - offsetof(sSdpParsedData, address) ==
              offsetof(sSDPDescriptor, port));

static_assert(std::is_trivially_copyable_v<sSdpParsedData> && std::is_standard_layout_v<sSdpParsedData>);
static_assert(std::is_trivially_default_constructible_v<sSdpParsedData>);
static_assert(std::is_trivially_copyable_v<sSDPDescriptor> && std::is_standard_layout_v<sSDPDescriptor>);

namespace {

using Bytes = std::array<unsigned char, sizeof(sSdpParsedData)>;

Bytes bytesOf(const sSdpParsedData& data) {
  Bytes bytes;
  std::memcpy(bytes.data(), &data, bytes.size());
  return bytes;
}

sSdpParsedData recordFullOf(int byte) {
  sSdpParsedData data;
  std::memset(&data, byte, sizeof data);
  return data;
}

sSdpParsedData initialized() {
  sSdpParsedData data = recordFullOf(0xAA);
  data.init();
  return data;
}

template <std::size_t count>
bool allAre(const std::uint8_t (&entries)[count], int value) {
  return std::all_of(std::begin(entries), std::end(entries), [value](int entry) { return entry == value; });
}

TEST(ParsedData, InitGivesEveryMemberItsInitialValue) {
  const sSdpParsedData data = initialized();
  EXPECT_EQ(data.storedSdpLength, 0);
  EXPECT_TRUE(data.address.isZero());
  EXPECT_EQ(data.address.getIPAddressVersion(), static_cast<eIPAddressVersion>(0));
  EXPECT_EQ(data.port, 0xFFFFFFFFU);
  EXPECT_TRUE(allAre(data.audioCodec, 0));
  EXPECT_TRUE(allAre(data.packetizationPeriod, 255));
  EXPECT_EQ(data.T38MaxBitRate, 0xFFFFFFFFU);
  EXPECT_EQ(data.h264Profile, -2);
  EXPECT_EQ(data.mediaType, 0U);
  EXPECT_EQ(data.bandwidth, 0U);
  EXPECT_EQ(data.sdpAttributes, 0U);
  EXPECT_EQ(data.oLineStart, 0);
  EXPECT_EQ(data.oLineEnd, 0);
  EXPECT_EQ(data.gainControl, 0);
  EXPECT_EQ(data.state, 1U);
  EXPECT_EQ(data.echoCancellation, 0);
  EXPECT_EQ(data.echoCancelDirection, 0);
  EXPECT_EQ(data.silenceSuppression, 0);
  EXPECT_EQ(data.resourceReserve, 0);
  EXPECT_EQ(data.sessionMode, 3);
  EXPECT_EQ(data.videoBandwidth, 0U);
  EXPECT_EQ(data.videoMode, 0);
  EXPECT_TRUE(allAre(data.reserved, 0));
}

// Records are handed on as bytes: nothing of the memory they were made in may travel with them.
TEST(ParsedData, InitLeavesNoByteOfWhatWasThere) {
  sSdpParsedData one = recordFullOf(0x55);
  sSdpParsedData other = recordFullOf(0xFF);
  one.init();
  other.init();
  const Bytes bytes = bytesOf(one);
  EXPECT_EQ(bytes, bytesOf(other));
  for (const std::size_t unused : {2U, 3U, 94U, 95U, 105U, 106U, 107U}) EXPECT_EQ(bytes[unused], 0) << unused;
  for (std::size_t unused = 113; unused < 132; ++unused) EXPECT_EQ(bytes[unused], 0) << unused;
}

TEST(ParsedData, IsInitializedAfterInit) { EXPECT_TRUE(initialized().isInitialized()); }

struct Change {
  const char* name;
  std::function<void(sSdpParsedData&)> make;
};

const Change countingChanges[] = {
    {"first audioCodec", [](sSdpParsedData& data) { data.audioCodec[0] = 1; }},
    {"first packetizationPeriod", [](sSdpParsedData& data) { data.packetizationPeriod[0] = 20; }},
    {"first packetizationPeriod 0", [](sSdpParsedData& data) { data.packetizationPeriod[0] = 0; }},
    {"address", [](sSdpParsedData& data) { data.address.setIPAddress("192.0.2.1"); }},
    {"IPv6 address", [](sSdpParsedData& data) { data.address.setIPAddress("2001:db8::1"); }},
    {"h264Profile", [](sSdpParsedData& data) { data.h264Profile = H264_LEVEL_1; }},
    {"h264Profile -1", [](sSdpParsedData& data) { data.h264Profile = -1; }},
    {"port", [](sSdpParsedData& data) { data.port = 5004; }},
    {"port 0", [](sSdpParsedData& data) { data.port = 0; }},
    {"port 65535", [](sSdpParsedData& data) { data.port = 0xFFFF; }},
    {"mediaType", [](sSdpParsedData& data) { data.mediaType = MEDIA_AUDIO; }},
    {"highest mediaType", [](sSdpParsedData& data) { data.mediaType = MEDIA_TEXT; }},
    {"T38MaxBitRate", [](sSdpParsedData& data) { data.T38MaxBitRate = 14400; }},
    {"T38MaxBitRate 0", [](sSdpParsedData& data) { data.T38MaxBitRate = 0; }},
    {"bandwidth", [](sSdpParsedData& data) { data.bandwidth = 0x80000000; }},
    {"sdpAttributes", [](sSdpParsedData& data) { data.sdpAttributes = SDP_ATTR_ICE_CANDIDATES_MATCH; }},
    {"oLineStart", [](sSdpParsedData& data) { data.oLineStart = 5; }},
    {"oLineEnd", [](sSdpParsedData& data) { data.oLineEnd = 0x100; }},
    {"gainControl", [](sSdpParsedData& data) { data.gainControl = 44; }},
    {"gainControl -1", [](sSdpParsedData& data) { data.gainControl = -1; }},
    {"echoCancellation", [](sSdpParsedData& data) { data.echoCancellation = 1; }},
    {"echoCancelDirection", [](sSdpParsedData& data) { data.echoCancelDirection = 1; }},
    {"silenceSuppression", [](sSdpParsedData& data) { data.silenceSuppression = 2; }},
    {"resourceReserve", [](sSdpParsedData& data) { data.resourceReserve = 3; }},
    {"sessionMode", [](sSdpParsedData& data) { data.sessionMode = 4; }},
    {"sessionMode 0", [](sSdpParsedData& data) { data.sessionMode = 0; }},
    {"videoBandwidth", [](sSdpParsedData& data) { data.videoBandwidth = 384; }},
    {"videoMode", [](sSdpParsedData& data) { data.videoMode = 3; }},
};

TEST(ParsedData, IsNotInitializedWithAnyMemberChanged) {
  for (const Change& change : countingChanges) {
    SCOPED_TRACE(change.name);
    sSdpParsedData data = initialized();
    change.make(data);
    EXPECT_FALSE(data.isInitialized());
    data.init();
    EXPECT_TRUE(data.isInitialized());
  }
}

const Change changesThatDoNotCount[] = {
    {"storedSdpLength", [](sSdpParsedData& data) { data.storedSdpLength = 300; }},
    {"second audioCodec", [](sSdpParsedData& data) { data.audioCodec[1] = 1; }},
    {"last audioCodec", [](sSdpParsedData& data) { data.audioCodec[19] = 1; }},
    {"second packetizationPeriod", [](sSdpParsedData& data) { data.packetizationPeriod[1] = 20; }},
    {"last packetizationPeriod", [](sSdpParsedData& data) { data.packetizationPeriod[19] = 20; }},
    {"state", [](sSdpParsedData& data) { data.state = 0; }},
    {"reserved", [](sSdpParsedData& data) { data.reserved[18] = 1; }},
};

// Deliberate: the test looks at the first entries of the lists only.
TEST(ParsedData, IsInitializedWhateverTheOtherBytesHold) {
  for (const Change& change : changesThatDoNotCount) {
    SCOPED_TRACE(change.name);
    sSdpParsedData data = initialized();
    change.make(data);
    EXPECT_TRUE(data.isInitialized());
  }
}

TEST(Descriptor, InitGivesTheZeroAddressAndNoPort) {
  sSDPDescriptor descriptor;
  std::memset(&descriptor, 0xAA, sizeof descriptor);
  descriptor.init();
  EXPECT_TRUE(descriptor.address.isZero());
  EXPECT_EQ(descriptor.port, 0xFFFFFFFFU);
}

TEST(Descriptor, OverlaysAddressAndPortOfTheParsedData) {
  sSDPDescriptor descriptor;
  descriptor.init();
  descriptor.address.setIPAddress("2001:db8::7");
  descriptor.port = 49170;
  sSdpParsedData data = initialized();
  Bytes bytes = bytesOf(data);
  std::memcpy(bytes.data() + 4, &descriptor, sizeof descriptor);
  std::memcpy(&data, bytes.data(), sizeof data);

  EXPECT_TRUE(data.address == descriptor.address);
  EXPECT_EQ(data.port, 49170U);
  data.address.init();
  data.port = 0xFFFFFFFF;
  EXPECT_EQ(bytesOf(data), bytesOf(initialized()));
}

TEST(MediaStruct, StartsWithoutMediaAndSendsAndReceives) {
  const mediaStruct media;
  EXPECT_EQ(media.mediaType, 0U);
  EXPECT_EQ(media.spare, 0U);
  EXPECT_EQ(media.label, "");
  EXPECT_EQ(media.flags, 0U);
  EXPECT_EQ(media.mode, 3U);
  EXPECT_EQ(media.bandwidth, 0U);
  EXPECT_TRUE(media.codecs.empty());
}

TEST(CodecDetail, StartsWithoutCodecAndProfile) {
  const codecDetailStruct codec;
  EXPECT_EQ(codec.kind, 0U);
  EXPECT_EQ(codec.codec, 0);
  EXPECT_EQ(codec.profile, -2);
}

TEST(MediaStruct, CopiesOwnTheirLabelAndCodecs) {
  mediaStruct original;
  original.label = "a label long enough to stand outside of the record";
  original.codecs.push_back({2, 2, H264_LEVEL_3_1});
  mediaStruct copy = original;
  copy.label[0] = 'b';
  copy.codecs[0].codec = 7;
  copy.codecs.push_back({});
  EXPECT_EQ(original.label, "a label long enough to stand outside of the record");
  ASSERT_EQ(original.codecs.size(), 1U);
  EXPECT_EQ(original.codecs[0].codec, 2);
  EXPECT_EQ(original.codecs[0].profile, 9);
}

}  // namespace
