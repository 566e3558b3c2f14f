#include "printable.h"

namespace tool {
namespace {

struct Character {
  char32_t value;
  std::size_t length;  // 0 when the text does not begin with a UTF-8 character
};

unsigned int byteAt(std::string_view text, std::size_t at) {
  return at < text.size() ? static_cast<unsigned char>(text[at]) : 0U;
}

Character firstCharacter(std::string_view text) {
  const unsigned int lead = byteAt(text, 0);
  if (lead < 0x80) return {lead, 1};
  const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
  if (lead < 0xC2 || lead > 0xF4) return {0, 0};
  char32_t value = lead & (0x7FU >> length);
  for (std::size_t i = 1; i < length; ++i) {
    const unsigned int next = byteAt(text, i);
    if ((next & 0xC0U) != 0x80U) return {0, 0};
    value = (value << 6U) | (next & 0x3FU);
  }
  constexpr char32_t kLeast[] = {0, 0, 0x80, 0x800, 0x10000};
  const bool isSurrogate = value >= 0xD800 && value <= 0xDFFF;
  return value < kLeast[length] || value > 0x10FFFF || isSurrogate ? Character{0, 0}
                                                                   : Character{value, length};
}

bool changesDirection(char32_t c) {
  return c == 0x061C || c == 0x200E || c == 0x200F || (c >= 0x2028 && c <= 0x202E) ||
         (c >= 0x2066 && c <= 0x2069);
}

bool isShown(Character c) {
  if (c.length == 0 || c.value < 0x20) return false;
  return !(c.value >= 0x7F && c.value < 0xA0) && !changesDirection(c.value);
}

void addEscaped(std::string& out, unsigned char byte) {
  constexpr char kDigits[] = "0123456789ABCDEF";
  out += "\\x";
  out += kDigits[byte >> 4U];
  out += kDigits[byte & 0xFU];
}

}  // namespace

std::string printable(std::string_view text) {
  std::string out;
  out.reserve(text.size());
  while (!text.empty()) {
    const Character first = firstCharacter(text);
    const std::size_t length = first.length == 0 ? 1 : first.length;
    if (isShown(first)) {
      out += text.substr(0, length);
    } else {
      for (const char c : text.substr(0, length)) addEscaped(out, static_cast<unsigned char>(c));
    }
    text.remove_prefix(length);
  }
  return out;
}

}  // namespace tool
