#ifndef SDP_PORT_FIELD_H
#define SDP_PORT_FIELD_H

#include <optional>
#include <string_view>

#include "text/lines.h"
#include "text/sdpText.h"

namespace sdpneg {

/// Digits that a port is written with at most.
inline constexpr std::size_t longestPort = 7;

/// What stands behind the first word of a line and the white space that follows it.
std::string_view behindFirstWord(std::string_view line);

/// The port of an m-line, 0 to 65535 with white space behind it.
/// @param line through its LF; its first character is skipped, so that it may be the LF in front of the m-line
std::optional<unsigned short> portOf(std::string_view line);

/// Whether a port is one of 1 to 1023, which no m-line is given; traces that it is.
bool refusesPort(unsigned int port);

/// Rewrites the port of the m-line at `line`, at most seven digits of it. A line without port field, or with one
/// that begins with the new digits, stays as it is.
Edit replacePort(SdpText& text, const Line& line, unsigned int port);

}  // namespace sdpneg

#endif
