#ifndef SDP_VIDEO_CODEC_RULES_H
#define SDP_VIDEO_CODEC_RULES_H

#include <cstdint>
#include <string_view>

#include "sdpDataDefinitions.h"

// Which video codec an encoding name or a static payload type stands for, and which level an H.264 format
// has. Codecs are values of `videoCodecTable`.

namespace sdpneg {

/// What a rule compares with its text.
enum class VideoTest : std::uint8_t { namePrefix, namePrefixAnyCase, wholeName, wholeFormat };

struct VideoRule {
  std::string_view text;
  VideoTest test;
  std::uint8_t codec;
};

/// The first rule that matches counts: a format decides before the names below it.
inline constexpr VideoRule kVideoRules[] = {
    {"H263-1998", VideoTest::namePrefix, 10},
    {"H263-2000", VideoTest::namePrefix, 11},
    {"H263", VideoTest::namePrefix, 1},
    {"34", VideoTest::wholeFormat, 1},
    {"H264", VideoTest::namePrefix, 2},
    {"MPEG4", VideoTest::namePrefix, 3},
    {"Ce1B", VideoTest::namePrefix, 4},
    {"25", VideoTest::wholeFormat, 4},
    {"JPEG", VideoTest::namePrefix, 5},
    {"26", VideoTest::wholeFormat, 5},
    {"nv", VideoTest::namePrefix, 6},
    {"28", VideoTest::wholeFormat, 6},
    {"H261", VideoTest::namePrefix, 7},
    {"31", VideoTest::wholeFormat, 7},
    {"MPV", VideoTest::namePrefix, 8},
    {"32", VideoTest::wholeFormat, 8},
    {"MP2T", VideoTest::namePrefix, 9},
    // The name, not the format: of a static payload type the number itself is the name.
    {"33", VideoTest::wholeName, 9},
    {"MPEG2", VideoTest::namePrefix, 9},
    {"VP8", VideoTest::namePrefixAnyCase, 12},
    {"H224", VideoTest::namePrefix, 13},
};

/// Static payload types (RFC 3551 6) that need no rtpmap line.
inline constexpr std::string_view kStaticPayloads[] = {"0",  "4",  "8",  "9",  "15", "18", "25",
                                                       "26", "28", "31", "32", "33", "34"};

struct H264LevelRule {
  std::string_view levelByte;
  eH264_profile_id level;
};

/// The level byte of a profile-level-id (RFC 6184 8.1), in either case. "0b" is missing: it is level 1b or
/// 1.1, as the constraint byte says.
inline constexpr H264LevelRule kH264LevelRules[] = {
    {"0a", H264_LEVEL_1},   {"0c", H264_LEVEL_1_2}, {"0d", H264_LEVEL_1_3}, {"14", H264_LEVEL_2},
    {"15", H264_LEVEL_2_1}, {"16", H264_LEVEL_2_2}, {"1e", H264_LEVEL_3},   {"1f", H264_LEVEL_3_1},
    {"20", H264_LEVEL_3_2}, {"28", H264_LEVEL_4},   {"29", H264_LEVEL_4_1}, {"2a", H264_LEVEL_4_2},
    {"32", H264_LEVEL_5},   {"33", H264_LEVEL_5_1},
};

}  // namespace sdpneg

#endif
