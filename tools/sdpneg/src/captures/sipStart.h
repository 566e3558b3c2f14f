#ifndef SDPNEG_SIP_START_H
#define SDPNEG_SIP_START_H

#include <cstddef>
#include <cstdint>
#include <string_view>

// What SIP begins with (RFC 3261 7.1, 7.2). It is told from anything else that a capture holds by this line alone, so
// it is taken as the grammar has it.

namespace tool {

enum class StartLine : std::uint8_t { none, request, response };

/// The kind of a line, which is given without its end.
StartLine startLineOf(std::string_view line);

enum class Beginning : std::uint8_t {
  none,     ///< of something else
  partial,  ///< a start line whose end is not there yet
  whole,
};

/// What some bytes begin with.
Beginning beginningOf(std::string_view bytes);

/// Bytes that a start line may have.
inline constexpr std::size_t kMaxStartLine = 8192;

/// The first place at or behind `from` where a start line or a part of one stands and a line begins: at `from` itself,
/// or behind an LF.
/// @return the text's size when there is none
std::size_t findBeginning(std::string_view bytes, std::size_t from);

/// The same with whole start lines alone.
std::size_t findWholeBeginning(std::string_view bytes, std::size_t from);

/// Where the header that `bytes` begin with ends, its empty line included. Searching goes on at `from`.
/// @return npos when the empty line is not there
std::size_t findHeaderEnd(std::string_view bytes, std::size_t from);

}  // namespace tool

#endif
