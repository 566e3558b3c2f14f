#ifndef SDPNEG_NAMES_H
#define SDPNEG_NAMES_H

#include <cstdint>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

#include "cMsgIPAddress.h"
#include "sdpDataDefinitions.h"

// The words for the numbers of a summary.

namespace tool {

/// "sendrecv" and the others; an empty text where there is no direction.
std::string directionName(std::uint32_t mode);

/// The media kinds of a set of eMediaType bits, as m-lines name them.
std::vector<std::string> mediaKindNames(std::uint32_t kinds);

/// The encoding name of an audio codec, its text name where rtpmap lines have none for it, or its number.
std::string audioCodecName(std::uint8_t codec);
/// The name of an audio codec in traces.
std::string audioCodecTextName(std::uint8_t codec);
std::string videoCodecName(std::uint8_t codec);

/// The H.264 levels by their eH264_profile_id.
inline constexpr std::string_view kH264LevelNames[] = {"1", "1b",  "1.1", "1.2", "1.3", "2",   "2.1", "2.2",
                                                       "3", "3.1", "3.2", "4",   "4.1", "4.2", "5",   "5.1"};
static_assert(std::size(kH264LevelNames) == H264_LEVEL_5_1 + 1);

/// "3.1"; an empty text where there is no H.264 format.
std::string h264LevelName(std::int32_t level);

/// "on", "off" or an empty text.
std::string featureName(std::uint8_t state);

// Address versions. A host's own address class may name these otherwise; the values are fixed.
inline constexpr auto kIpVersion4 = static_cast<eIPAddressVersion>(2);
inline constexpr auto kIpVersion6 = static_cast<eIPAddressVersion>(10);

/// "4", "6" or an empty text.
std::string ipVersionName(eIPAddressVersion version);

/// The words with a separator between them.
std::string joined(const std::vector<std::string>& words, const char* separator);

}  // namespace tool

#endif
