#ifndef SDP_FIELD_NUMBERS_H
#define SDP_FIELD_NUMBERS_H

#include <cstddef>
#include <limits>

#include "text/search.h"

// Small numbers in the fields of a decoded description: payload types, periods, ports.

namespace sdpneg {

/// The number of at most `Most` digits that a field begins with. Its digits are told apart from what follows by masks:
/// jumps could not be foreseen.
/// @return a length of 0 when it begins with anything else
template <std::size_t Most, std::size_t Size>
Leading<int> shortNumberOf(const char (&field)[Size]) {
  static_assert(Most < Size && Most <= std::numeric_limits<int>::digits10);
  constexpr unsigned int nine = 9;
  const auto digitAt = [&field](std::size_t at) {
    return static_cast<unsigned int>(static_cast<unsigned char>(field[at])) - '0';
  };
  unsigned int value = digitAt(0);
  if (value > nine) return {0, 0};
  std::size_t length = 1;
  unsigned int goesOn = 1;  // not behind a NUL, whatever stands there
  for (std::size_t at = 1; at < Most; ++at) {
    const unsigned int digit = digitAt(at);
    goesOn &= static_cast<unsigned int>(digit <= nine);
    value += (value * nine + digit) & (0U - goesOn);
    length += goesOn;
  }
  goesOn &= static_cast<unsigned int>(digitAt(Most) <= nine);
  if (goesOn != 0) return {0, 0};
  return {static_cast<int>(value), length};
}

/// As many digits as payload types and periods have.
inline constexpr std::size_t kPayloadDigits = 3;
inline constexpr std::size_t kPortDigits = 5;

}  // namespace sdpneg

#endif
