#ifndef SDPNEG_LINE_PREFIX_H
#define SDPNEG_LINE_PREFIX_H

#include <cstddef>
#include <optional>
#include <string_view>

// What logs put in front of the lines of messages.

namespace tool {

/// Finds a start line of SIP in a line, which may have something in front of it.
/// @param line without its end
/// @return the length of what is in front; nothing where there is no start line
std::optional<std::size_t> findStartLine(std::string_view line);

/// How much of a line is a prefix of the same shape as another: the same but for its numbers. Blanks at its end may be
/// missing where nothing follows.
/// @return nothing where the line begins otherwise
std::optional<std::size_t> samePrefix(std::string_view prefix, std::string_view line);

}  // namespace tool

#endif
