#ifndef SDP_FIELD_NUMBERS_H
#define SDP_FIELD_NUMBERS_H

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>

#include "readsBehindNul.h"
#include "text/search.h"

// Small numbers in the fields of a decoded description: payload types, periods, ports.

namespace sdpneg {

/// The digits that a field begins with, and what follows, as far as a word goes; the first one in its lowest byte.
inline std::uint64_t firstDigits(const char* field) {
  std::uint64_t word = 0;
  if constexpr (kReadsBehindNul) {
    std::memcpy(&word, field, sizeof word);
    if constexpr (std::endian::native == std::endian::big) word = __builtin_bswap64(word);
  } else {
    for (std::size_t at = 0; at < sizeof word && isDigit(field[at]); ++at) {
      word |= std::uint64_t{static_cast<unsigned char>(field[at])} << 8 * at;
    }
  }
  return word;
}

/// The number of at most `Most` digits that a field begins with. Its digits are told apart from what follows, and put
/// together, all at once: how many there are could not be foreseen.
/// @return a length of 0 when it begins with anything else
template <std::size_t Most, std::size_t Size>
Leading<int> shortNumberOf(const char (&field)[Size]) {
  constexpr std::uint64_t zeros = 0x3030303030303030U;
  constexpr std::uint64_t beyondNine = 0x7676767676767676U;  // what takes 10 to the highest bit of its byte
  constexpr std::uint64_t highest = 0x8080808080808080U;
  constexpr std::size_t bits = 8;
  static_assert(Most + 1 < sizeof zeros && sizeof zeros <= Size &&
                Most <= std::numeric_limits<int>::digits10);
  const std::uint64_t values = firstDigits(field) ^ zeros;
  // Wrong only behind the first character that is no digit.
  const std::uint64_t others = ((values + beyondNine) | values) & highest;
  const std::size_t length =
      static_cast<std::size_t>(std::countr_zero(others | std::uint64_t{1} << 63U)) / bits;
  if (length - 1 >= Most) return {0, 0};
  // The last digit goes into the highest byte, with zeros in front of the first.
  const std::uint64_t aligned = values << (sizeof values - length) * bits;
  const auto digit = [aligned](std::size_t fromEnd) {
    return static_cast<unsigned int>(aligned >> (sizeof aligned - 1 - fromEnd) * bits) & 0xFFU;
  };
  unsigned int value = 0;
  for (std::size_t fromEnd = Most; fromEnd > 0; --fromEnd) value = value * 10 + digit(fromEnd - 1);
  return {static_cast<int>(value), length};
}

/// As many digits as payload types and periods have.
inline constexpr std::size_t kPayloadDigits = 3;
inline constexpr std::size_t kPortDigits = 5;

}  // namespace sdpneg

#endif
