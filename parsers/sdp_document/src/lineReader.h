#ifndef SDP_DOCUMENT_LINE_READER_H
#define SDP_DOCUMENT_LINE_READER_H

// Reading what a line is about: its type, and of an attribute the name.

#ifdef __SSE2__
#include <emmintrin.h>
#endif

#include <algorithm>
#include <array>
#include <bit>

#include "attributeNames.h"

namespace sdp::core {

/// How many characters in front of the first colon there are, of at most kNameRoom; more when there is none.
inline std::size_t beforeColon(const char* text) {
#ifdef __SSE2__
  const __m128i characters = _mm_loadu_si128(reinterpret_cast<const __m128i*>(text));
  const int colons = _mm_movemask_epi8(_mm_cmpeq_epi8(characters, _mm_set1_epi8(':')));
  return static_cast<std::size_t>(std::countr_zero(static_cast<unsigned>(colons) | (2U << kNameRoom)));
#else
  return static_cast<std::size_t>(std::find(text, text + kNameRoom, ':') - text);
#endif
}

/// Reads the name of an attribute, in front of which stands "a=".
inline void readName(Line& line) {
  const char* const name = line.begin + 2;
  const std::size_t behind = line.length - 2;
  std::size_t length = beforeColon(name);
  if (length >= kNameRoom && behind > kNameRoom) {
    const std::size_t more = line.content().find(':', 2 + kNameRoom);
    length = (more == std::string_view::npos ? line.length : more) - 2;
  }
  length = std::min(length, behind);
  line.detail = static_cast<std::uint16_t>(std::min<std::size_t>(length, kLongName));
  line.kind = knownAttribute(name, length);
}

constexpr std::array<Kind, 256> makeTypes() {
  std::array<Kind, 256> types{};
  for (std::size_t type = 0; type < types.size(); ++type) types[type] = kindOfType(static_cast<char>(type));
  return types;
}
inline constexpr std::array<Kind, 256> kTypes = makeTypes();

/// Reads what a content is about into a line, whose place and length are known already.
/// @param line kNameRoom characters behind its content are readable
inline void readKind(Line& line) {
  line.detail = 0;
  line.kind = line.length == 0 ? Kind::empty : Kind::other;
  if (line.length >= 2 && line.begin[1] == '=') {
    line.kind = kTypes[static_cast<unsigned char>(*line.begin)];
    if (line.kind == Kind::attribute) readName(line);
  }
}

}  // namespace sdp::core

#endif
