#ifndef SDP_TEXT_SHOWN_H
#define SDP_TEXT_SHOWN_H

#include <cstddef>
#include <string_view>

// Which characters of a text may go to a terminal or a log as they are.

namespace sdpneg {

/// A character of a text in UTF-8.
struct Character {
  char32_t value;
  std::size_t length;  ///< 0 when the text does not begin with one
};

/// The first character of a text that is not empty.
inline Character firstCharacter(std::string_view text) {
  const auto byteAt = [text](std::size_t at) {
    return at < text.size() ? static_cast<unsigned char>(text[at]) : 0U;
  };
  const unsigned int lead = byteAt(0);
  if (lead < 0x80) return {lead, 1};
  const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
  if (lead < 0xC2 || lead > 0xF4) return {0, 0};
  char32_t value = lead & (0x7FU >> length);
  for (std::size_t i = 1; i < length; ++i) {
    const unsigned int next = byteAt(i);
    if ((next & 0xC0U) != 0x80U) return {0, 0};
    value = (value << 6U) | (next & 0x3FU);
  }
  constexpr char32_t kLeast[] = {0, 0, 0x80, 0x800, 0x10000};
  const bool isSurrogate = value >= 0xD800 && value <= 0xDFFF;
  return value < kLeast[length] || value > 0x10FFFF || isSurrogate ? Character{0, 0}
                                                                   : Character{value, length};
}

/// Whether a character breaks lines or changes the direction of writing.
inline bool changesDirection(char32_t c) {
  return c == 0x061C || c == 0x200E || c == 0x200F || (c >= 0x2028 && c <= 0x202E) ||
         (c >= 0x2066 && c <= 0x2069);
}

/// Whether it may be shown as it is: no control character, of ASCII or of the 8-bit set, and none of the above.
inline bool isShown(Character c) {
  if (c.length == 0 || c.value < 0x20) return false;
  return !(c.value >= 0x7F && c.value < 0xA0) && !changesDirection(c.value);
}

}  // namespace sdpneg

#endif
