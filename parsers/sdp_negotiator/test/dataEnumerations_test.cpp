#include <gtest/gtest.h>

#include <cstddef>
#include <type_traits>

#include "sdpDataDefinitions.h"

// Enumeration values and limits are compiled into callers and travel inside records.

template <class Enum>
constexpr bool isBasedOnInt = std::is_same_v<std::underlying_type_t<Enum>, int>;

static_assert(isBasedOnInt<eConnectionMode> && isBasedOnInt<eFeatureState> && isBasedOnInt<eSdpAttribute>);
static_assert(isBasedOnInt<eH264_profile_id> && isBasedOnInt<eSecurityType>);
static_assert(isBasedOnInt<eNonSupportedSecurity> && isBasedOnInt<eMediaFlag>);

namespace {

TEST(Limits, HaveTheirValues) {
  EXPECT_EQ(MAX_SDP_PROTOCOL_DATA_SIZE, 20480);
  EXPECT_EQ(MAX_SDP_NEGOTIATOR_AUDIO_CODECS, 20);
  EXPECT_EQ(MAX_SDP_NEGOTIATOR_MEDIA_DESCRIPTIONS, 25);
  EXPECT_GE(MAX_SDP_NEGOTIATOR_ATTRIBUTE_LINES, 40);  // a build may hold more
  EXPECT_EQ(SDP_ENCODING_NAME_SIZE, 33);
  EXPECT_EQ(SDP_PORT_NOT_SET, 0xFFFFFFFFU);
  EXPECT_EQ(SDP_T38_MAX_BIT_RATE_NOT_SET, 0xFFFFFFFFU);
  EXPECT_EQ(SDP_PACKETIZATION_NOT_SET, 255);
  EXPECT_EQ(SDP_NO_CODEC, 0);
}

struct Case {
  int actual;
  int expected;
};

template <std::size_t count>
void expectValues(const Case (&cases)[count]) {
  for (const Case& each : cases) EXPECT_EQ(each.actual, each.expected);
}

TEST(Enumerations, MediaTypesAreBits) {
  EXPECT_EQ(MEDIA_AUDIO, 1U);
  EXPECT_EQ(MEDIA_VIDEO, 2U);
  EXPECT_EQ(MEDIA_MESSAGE, 4U);
  EXPECT_EQ(MEDIA_IMAGE, 8U);
  EXPECT_EQ(MEDIA_APPLICATION, 16U);
  EXPECT_EQ(MEDIA_TEXT, 32U);
}

TEST(Enumerations, ConnectionModes) {
  expectValues({{CONNECTION_MODE_NONE, 0},
                {CONNECTION_MODE_SENDONLY, 1},
                {CONNECTION_MODE_RECVONLY, 2},
                {CONNECTION_MODE_SENDRECV, 3},
                {CONNECTION_MODE_INACTIVE, 4},
                {CONNECTION_MODE_CONFRNCE, 5}});
}

TEST(Enumerations, FeatureStates) {
  expectValues({{FEATURE_STATE_NOT_SPECIFIED, 0}, {FEATURE_STATE_ON, 1}, {FEATURE_STATE_OFF, 2}});
}

TEST(Enumerations, SdpAttributesAreBits) {
  expectValues({{SDP_ATTR_SECURE_RTP, 0x1},
                {SDP_ATTR_SECURE_VIDEO, 0x2},
                {SDP_ATTR_RECVONLY_VIDEO, 0x4},
                {SDP_ATTR_ICE_LITE, 0x8},
                {SDP_ATTR_FULL_ICE, 0x10},
                {SDP_ATTR_IPV6, 0x20},
                {SDP_ATTR_MIKEY, 0x40},
                {SDP_ATTR_ICE_CANDIDATES_MATCH, 0x800}});
}

TEST(Enumerations, H264LevelsRise) {
  expectValues({{H264_PROFILE_NOT_PRESENT, -2},
                {H264_LEVEL_1, 0},
                {H264_LEVEL_1B, 1},
                {H264_LEVEL_1_1, 2},
                {H264_LEVEL_1_2, 3},
                {H264_LEVEL_1_3, 4},
                {H264_LEVEL_2, 5},
                {H264_LEVEL_2_1, 6},
                {H264_LEVEL_2_2, 7},
                {H264_LEVEL_3, 8},
                {H264_LEVEL_3_1, 9},
                {H264_LEVEL_3_2, 10},
                {H264_LEVEL_4, 11},
                {H264_LEVEL_4_1, 12},
                {H264_LEVEL_4_2, 13},
                {H264_LEVEL_5, 14},
                {H264_LEVEL_5_1, 15}});
}

TEST(Enumerations, SecurityTypes) {
  expectValues({{SECURITY_NONE, 0},
                {SECURITY_RTP_ONLY, 1},
                {SECURITY_SRTP_ONLY, 2},
                {SECURITY_BOTH, 3},
                {BE_SRTP_1m_LINE, 4},
                {BE_SRTP_2m_LINE, 5},
                {SRTP_UKNOWN, 6}});
}

TEST(Enumerations, NonSupportedSecurities) {
  expectValues({{NON_SUPPORTED_ALL_SECURE, 0},
                {NON_SUPPORTED_MIKEY, 1},
                {NON_SUPPORTED_SDES, 2},
                {NON_SUPPORTED_RTP, 3}});
}

TEST(Enumerations, MediaFlagsAreBits) {
  expectValues({{MEDIA_FLAG_SECURE, 0x200},
                {MEDIA_FLAG_PLAIN, 0x100},
                {MEDIA_FLAG_ADDRESS_IP4, 0x80},
                {MEDIA_FLAG_ADDRESS_OTHER, 0x20}});
}

TEST(Enumerations, KindsOfCodecs) {
  EXPECT_EQ(CODEC_DETAIL_VIDEO, 2U);
  EXPECT_EQ(CODEC_DETAIL_APPLICATION, 4U);
  EXPECT_EQ(AUDIO_CODEC_KIND_OTHER, 0);
  EXPECT_EQ(AUDIO_CODEC_KIND_AUDIO, 1);
  EXPECT_EQ(AUDIO_CODEC_KIND_FAX, 3);
}

}  // namespace
