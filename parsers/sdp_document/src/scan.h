#ifndef SDP_DOCUMENT_SCAN_H
#define SDP_DOCUMENT_SCAN_H

// Finding where a field or a name ends, sixteen characters at a time where the machine can.

#ifdef __SSE2__
#include <emmintrin.h>
#endif

#include <algorithm>
#include <bit>
#include <cstddef>

#include "sdpDocumentFields.h"

namespace sdp::core {

/// How many characters a search looks at in one step.
inline constexpr std::size_t kScanWidth = 16;

/// The first of the characters that is a blank, a tab or `other`; `end` where there is none.
/// @param end behind it kScanWidth characters are readable
inline const char* findBlankOr(char other, const char* at, const char* end) {
#ifdef __SSE2__
  const __m128i characters = _mm_loadu_si128(reinterpret_cast<const __m128i*>(at));
  const __m128i blanks = _mm_or_si128(_mm_cmpeq_epi8(characters, _mm_set1_epi8(' ')),
                                      _mm_cmpeq_epi8(characters, _mm_set1_epi8('\t')));
  const __m128i others = _mm_cmpeq_epi8(characters, _mm_set1_epi8(other));
  const int found = _mm_movemask_epi8(_mm_or_si128(blanks, others));
  if (found != 0) return std::min(at + std::countr_zero(static_cast<unsigned>(found)), end);
#endif
  return std::find_if(at, end, [other](char c) { return c == other || Fields::isBlank(c); });
}
inline const char* findBlank(const char* at, const char* end) { return findBlankOr(' ', at, end); }

inline const char* skipBlanks(const char* at, const char* end) {
  while (at != end && Fields::isBlank(*at)) ++at;
  return at;
}

}  // namespace sdp::core

#endif
