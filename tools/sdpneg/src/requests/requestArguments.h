#ifndef SDPNEG_REQUEST_ARGUMENTS_H
#define SDPNEG_REQUEST_ARGUMENTS_H

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

// What words can be arguments of requests, and what they mean.

namespace tool {

/// Where a word stands among some values, in any letter case; their number when it does not.
std::size_t indexOf(std::span<const std::string_view> values, std::string_view word);

/// The pieces of a text between separators; an empty text is one empty piece.
std::vector<std::string_view> splitAt(std::string_view text, char separator);

inline constexpr std::string_view kAddressFamilies[] = {"4", "6"};

bool isAddress(std::string_view word);
/// A word that may stand in a line as one of its fields.
bool isField(std::string_view word);

/// The value of an audio codec by its encoding name or its name in traces; 0 when there is none.
unsigned char audioCodecOf(std::string_view name);

/// The values of names between commas; nothing when one is unknown or there are more than 20.
std::optional<std::vector<unsigned char>> audioCodecsOf(std::string_view names);
std::optional<std::vector<unsigned char>> videoCodecsOf(std::string_view names);

/// All names of audio codecs, each codec's for rtpmap lines where it has one.
std::vector<std::string> audioCodecNames();
/// Those of rtpmap lines alone.
std::vector<std::string> audioEncodingNames();
std::vector<std::string> videoCodecNames();

bool isAudioCodec(std::string_view word);
bool areAudioCodecs(std::string_view word);
bool areVideoCodecs(std::string_view word);

}  // namespace tool

#endif
