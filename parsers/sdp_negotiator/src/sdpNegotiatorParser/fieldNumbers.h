#ifndef SDP_FIELD_NUMBERS_H
#define SDP_FIELD_NUMBERS_H

#include <cstddef>

#include "text/search.h"

// Small numbers in the fields of a decoded description: payload types, periods.

namespace sdpneg {

/// The number of one to three digits that a field begins with. Its digits are told apart from what follows without jumps,
/// which could not be foreseen.
/// @return a length of 0 when it begins with anything else
template <std::size_t Size>
Leading<int> shortNumberOf(const char (&field)[Size]) {
  constexpr std::size_t most = 3;
  static_assert(Size > most);
  const auto digitAt = [&field](std::size_t at) {
    return static_cast<unsigned int>(static_cast<unsigned char>(field[at])) - '0';
  };
  constexpr unsigned int nine = 9;
  const unsigned int first = digitAt(0);
  if (first > nine) return {0, 0};
  const unsigned int second = digitAt(1);
  const unsigned int third = digitAt(2);
  const unsigned int hasTwo = second <= nine ? 1 : 0;
  // What stands behind a NUL does not count.
  const unsigned int hasThree = hasTwo & (third <= nine ? 1U : 0U);
  unsigned int value = hasTwo != 0 ? first * 10 + second : first;
  value = hasThree != 0 ? value * 10 + third : value;
  const std::size_t length = 1 + hasTwo + hasThree;
  if (length == most && isDigit(field[most])) return {0, 0};
  return {static_cast<int>(value), length};
}

}  // namespace sdpneg

#endif
