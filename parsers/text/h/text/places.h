#ifndef SDP_TEXT_PLACES_H
#define SDP_TEXT_PLACES_H

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

// All places of a character in a text.

namespace sdpneg {

/// How many characters are looked at together.
inline constexpr std::size_t kPlacesBlock = 64;

/// Where a character stands among as many as a block has: a bit for each, the lowest one for the first.
inline std::uint64_t placesInBlock(const char* block, char c) {
  std::uint64_t places = 0;
#ifdef __SSE2__
  const __m128i wanted = _mm_set1_epi8(c);
  for (unsigned int i = 0; i < kPlacesBlock; i += sizeof wanted) {
    __m128i characters;
    std::memcpy(&characters, block + i, sizeof characters);
    const int equal = _mm_movemask_epi8(_mm_cmpeq_epi8(characters, wanted));
    places |= static_cast<std::uint64_t>(static_cast<unsigned int>(equal)) << i;
  }
#else
  for (unsigned int i = 0; i < kPlacesBlock; ++i) {
    places |= static_cast<std::uint64_t>(block[i] == c ? 1U : 0U) << i;
  }
#endif
  return places;
}

/// Visits every place of a character, the first one first. A text where it is rare costs little, and one where it is
/// frequent not much more.
template <typename Visit>
void forEachPlace(std::string_view text, char c, Visit visit) {
  const auto visitBlock = [&](const char* block, std::size_t at) {
    for (std::uint64_t places = placesInBlock(block, c); places != 0; places &= places - 1) {
      visit(at + static_cast<std::size_t>(std::countr_zero(places)));
    }
  };
  std::size_t at = 0;
  for (; at + kPlacesBlock <= text.size(); at += kPlacesBlock) visitBlock(text.data() + at, at);
  if (at == text.size()) return;
  // What is left of the text is followed by another character.
  char last[kPlacesBlock];
  std::memset(last, c == '\0' ? 1 : 0, sizeof last);
  std::memcpy(last, text.data() + at, text.size() - at);
  visitBlock(last, at);
}

}  // namespace sdpneg

#endif
