#include "calls/anonymousNumbers.h"

namespace tool {
namespace {

/// A number's zeros in front, which are a prefix of dialling: two at most.
std::size_t zerosOf(std::string_view digits) {
  std::size_t zeros = 0;
  while (zeros < 2 && zeros < digits.size() && digits[zeros] == '0') ++zeros;
  return zeros;
}

/// How far a digit is moved: by neither 0 nor 5, so that none comes out as it went in.
unsigned int shiftOf(std::uint64_t hash) {
  constexpr unsigned int kShifts[] = {1, 2, 3, 4, 6, 7, 8, 9};
  return kShifts[hash % std::size(kShifts)];
}

}  // namespace

std::string AnonymousNumbers::of(std::string_view digits) const {
  std::string given(digits);
  const std::size_t zeros = zerosOf(digits);
  // Each digit is moved by what stands behind it.
  std::uint64_t behind = 0;
  for (std::size_t at = digits.size(); at-- > zeros;) {
    char state[sizeof behind];
    for (std::size_t i = 0; i < sizeof behind; ++i) state[i] = static_cast<char>(behind >> (8 * i) & 0xFFU);
    const std::uint64_t hash = keyedHash(key_, {state, sizeof state});
    const auto digit = static_cast<unsigned int>(digits[at] - '0');
    const unsigned int shift = shiftOf(hash);
    unsigned int moved = (digit + shift) % 10;
    // The first digit behind the zeros is none itself, and does not become one.
    if (at == zeros && digit != 0 && moved == 0) moved = shift;
    if (at == zeros && digit == 0) moved = 0;
    given[at] = static_cast<char>('0' + moved);
    behind = hash + digit + 1;
  }
  return given;
}

void AnonymousNumbers::learn(std::string_view digits) {
  digits.remove_prefix(zerosOf(digits));
  if (!digits.empty()) known_.insert(keyedHash(key_, digits));
}

bool AnonymousNumbers::isKnown(std::string_view digits) const {
  digits.remove_prefix(zerosOf(digits));
  return known_.contains(keyedHash(key_, digits));
}

}  // namespace tool
