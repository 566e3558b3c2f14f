#ifndef SDP_TEXT_PAIRS_H
#define SDP_TEXT_PAIRS_H

#ifdef __SSE2__
#include <emmintrin.h>
#endif

#include <algorithm>
#include <bit>
#include <cstddef>
#include <string_view>

#include "text/search.h"

// Searches for two characters in a row, sixteen places at a time where the machine can. They take as long for a text that
// nearly matches everywhere as for any other.

namespace sdpneg {

/// How many places are looked at in one step.
inline constexpr std::size_t kPairWidth = 16;

/// Two characters in a row.
struct Pair {
  char first;  ///< in lower case where letters count in either case
  char second;
  bool anyCase = false;  ///< of the first one, a letter

  bool standsAt(const char* at) const { return at[1] == second && (anyCase ? lower(at[0]) : at[0]) == first; }
};

#ifdef __SSE2__
/// Sixteen places of a text that are looked at together.
class PairPlaces {
 public:
  /// @param at all places, and one character more, can be read
  explicit PairPlaces(const char* at) : first_(read(at)), second_(read(at + 1)) {}

  /// Bytes of all ones where a pair stands.
  __m128i of(Pair pair) const {
    const __m128i first = pair.anyCase ? _mm_or_si128(first_, _mm_set1_epi8(' ')) : first_;
    return _mm_and_si128(_mm_cmpeq_epi8(first, _mm_set1_epi8(pair.first)),
                         _mm_cmpeq_epi8(second_, _mm_set1_epi8(pair.second)));
  }

  /// Bytes of all ones for the last places.
  static __m128i last(std::size_t count) {
    static constexpr signed char kBytes[2 * kPairWidth] = {0,  0,  0,  0,  0,  0,  0,  0,  0,  0,  0,
                                                           0,  0,  0,  0,  0,  -1, -1, -1, -1, -1, -1,
                                                           -1, -1, -1, -1, -1, -1, -1, -1, -1, -1};
    return _mm_loadu_si128(reinterpret_cast<const __m128i*>(kBytes + count));
  }

  /// The sum of what each byte has counted.
  static std::size_t sumOf(__m128i counts) {
    const __m128i halves = _mm_sad_epu8(counts, _mm_setzero_si128());
    return static_cast<std::size_t>(_mm_cvtsi128_si32(halves)) +
           static_cast<std::size_t>(_mm_cvtsi128_si32(_mm_srli_si128(halves, 8)));
  }

 private:
  static __m128i read(const char* at) { return _mm_loadu_si128(reinterpret_cast<const __m128i*>(at)); }

  __m128i first_;
  __m128i second_;
};
#endif

/// How often each of two pairs stands in a text.
struct PairCounts {
  std::size_t one = 0;
  std::size_t other = 0;
};

/// Counts two pairs in one pass.
inline PairCounts countPairs(std::string_view text, Pair one, Pair other) {
  PairCounts counts;
  const char* at = text.data();
  std::size_t left = text.empty() ? 0 : text.size() - 1;  // places with a character behind them
#ifdef __SSE2__
  constexpr std::size_t kMostSteps = 255;  // as many as a byte can count
  while (left >= kPairWidth) {
    __m128i ones = _mm_setzero_si128();
    __m128i others = _mm_setzero_si128();
    const char* const end = at + std::min(left / kPairWidth, kMostSteps) * kPairWidth;
    left -= static_cast<std::size_t>(end - at);
    for (; at != end; at += kPairWidth) {
      const PairPlaces places(at);
      ones = _mm_sub_epi8(ones, places.of(one));
      others = _mm_sub_epi8(others, places.of(other));
    }
    counts.one += PairPlaces::sumOf(ones);
    counts.other += PairPlaces::sumOf(others);
  }
  if (left != 0 && text.size() > kPairWidth) {
    // The last places, and some in front of them that have been counted.
    const PairPlaces places(at + left - kPairWidth);
    const __m128i uncounted = PairPlaces::last(left);
    const __m128i zero = _mm_setzero_si128();
    counts.one += PairPlaces::sumOf(_mm_sub_epi8(zero, _mm_and_si128(uncounted, places.of(one))));
    counts.other += PairPlaces::sumOf(_mm_sub_epi8(zero, _mm_and_si128(uncounted, places.of(other))));
    left = 0;
  }
#endif
  for (; left != 0; --left, ++at) {
    if (one.standsAt(at)) ++counts.one;
    if (other.standsAt(at)) ++counts.other;
  }
  return counts;
}

/// The first place of a pair at or behind `from`.
/// @return npos when there is none
inline std::size_t findPair(std::string_view text, Pair pair, std::size_t from = 0) {
  std::size_t at = from;
#ifdef __SSE2__
  for (; at + kPairWidth < text.size(); at += kPairWidth) {
    const auto places = static_cast<unsigned int>(_mm_movemask_epi8(PairPlaces(text.data() + at).of(pair)));
    if (places != 0) return at + static_cast<std::size_t>(std::countr_zero(places));
  }
#endif
  for (; at + 1 < text.size(); ++at) {
    if (pair.standsAt(text.data() + at)) return at;
  }
  return std::string_view::npos;
}

/// The first place of a piece at or behind `from`. Only places of two of its characters are looked at: those should
/// seldom stand together in the texts at hand.
/// @param pair where the first of the two stands in the piece
/// @return npos when there is none
inline std::size_t findByPair(std::string_view text, std::string_view piece, std::size_t pair,
                              std::size_t from = 0) {
  std::size_t at = from;
#ifdef __SSE2__
  // The places of a step whose whole piece, and all that the step reads, lies in the text.
  const std::size_t behind = kPairWidth + piece.size();
  for (; at + behind <= text.size(); at += kPairWidth) {
    const __m128i found = PairPlaces(text.data() + at + pair).of({piece[pair], piece[pair + 1]});
    auto places = static_cast<unsigned int>(_mm_movemask_epi8(found));
    for (; places != 0; places &= places - 1) {
      const std::size_t place = at + static_cast<std::size_t>(std::countr_zero(places));
      if (startsWith(text.substr(place), piece)) return place;
    }
  }
#endif
  return text.find(piece, at);
}

}  // namespace sdpneg

#endif
