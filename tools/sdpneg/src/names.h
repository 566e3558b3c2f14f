#ifndef SDPNEG_NAMES_H
#define SDPNEG_NAMES_H

#include <cstdint>
#include <string>
#include <vector>

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

/// "3.1"; an empty text where there is no H.264 format.
std::string h264LevelName(std::int32_t level);

/// "on", "off" or an empty text.
std::string featureName(std::uint8_t state);

/// "4", "6" or an empty text.
std::string ipVersionName(eIPAddressVersion version);

/// The words with a separator between them.
std::string joined(const std::vector<std::string>& words, const char* separator);

}  // namespace tool

#endif
