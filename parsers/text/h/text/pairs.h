#ifndef SDP_TEXT_PAIRS_H
#define SDP_TEXT_PAIRS_H

#include <algorithm>
#include <cstddef>
#include <string_view>

#include "text/blocks.h"
#include "text/search.h"

// Counting characters that stand in a row.

namespace sdpneg {

/// Two characters in a row.
struct Pair {
  char first;  ///< in lower case where letters count in either case
  char second;
  bool anyCase = false;  ///< of the first one, a letter

  bool standsAt(const char* at) const { return at[1] == second && (anyCase ? lower(at[0]) : at[0]) == first; }

  /// Where it stands among sixteen places.
  /// @param behind the characters behind those at each place
  blocks::Block placesIn(blocks::Block here, blocks::Block behind) const {
    using namespace blocks;
    return where(anyCase ? here | of(' ') : here, first) & where(behind, second);
  }

  /// The same of places that can be read with one character more.
  blocks::Block placesAt(const char* at) const { return placesIn(blocks::at(at), blocks::at(at + 1)); }
};

/// How often each of two pairs stands in a text.
struct PairCounts {
  std::size_t one = 0;
  std::size_t other = 0;
};

/// Counts two pairs in one pass, in the same time for any text.
inline PairCounts countPairs(std::string_view text, Pair one, Pair other) {
  using namespace blocks;
  constexpr std::size_t kMostSteps = 254;  // one less than a byte can count
  PairCounts counts;
  const char* at = text.data();
  std::size_t left = text.empty() ? 0 : text.size() - 1;  // places with a character behind them
  if (left < kSize) {
    for (; left != 0; --left, ++at) {
      if (one.standsAt(at)) ++counts.one;
      if (other.standsAt(at)) ++counts.other;
    }
    return counts;
  }
  do {
    Block ones{};
    Block others{};
    const char* const end = at + std::min(left / kSize, kMostSteps) * kSize;
    left -= static_cast<std::size_t>(end - at);
    for (; at != end; at += kSize) {
      const Block here = blocks::at(at);
      const Block behind = blocks::at(at + 1);
      ones -= one.placesIn(here, behind);
      others -= other.placesIn(here, behind);
    }
    if (left < kSize) {
      // The last places, and some in front of them that have been counted.
      const char* const last = at + left - kSize;
      const Block uncounted = lastPlaces(left);
      ones -= uncounted & one.placesAt(last);
      others -= uncounted & other.placesAt(last);
      left = 0;
    }
    counts.one += sumOf(ones);
    counts.other += sumOf(others);
  } while (left != 0);
  return counts;
}

/// The first place of a pair at or behind `from`.
/// @return npos when there is none
inline std::size_t findPair(std::string_view text, Pair pair, std::size_t from = 0) {
  using namespace blocks;
  std::size_t at = from;
  for (; at + kSize < text.size(); at += kSize) {
    const unsigned int places = bitsOf(pair.placesAt(text.data() + at));
    if (places != 0) return at + firstOf(places);
  }
  for (; at + 1 < text.size(); ++at) {
    if (pair.standsAt(text.data() + at)) return at;
  }
  return npos;
}

}  // namespace sdpneg

#endif
