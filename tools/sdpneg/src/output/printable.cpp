#include "output/printable.h"

#include "text/anyLines.h"

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

constexpr char kHexDigits[] = "0123456789ABCDEF";

void addEscaped(std::string& out, unsigned char byte) {
  out += "\\x";
  out += kHexDigits[byte >> 4U];
  out += kHexDigits[byte & 0xFU];
}

/// Adds "\uHHHH". All that is not shown has at most 16 bits.
void addJsonEscape(std::string& out, char32_t value) {
  out += "\\u";
  for (int shift = 12; shift >= 0; shift -= 4)
    out += kHexDigits[(value >> static_cast<unsigned int>(shift)) & 0xFU];
}

/// Goes through a text and adds what is shown as it is.
/// @param hide adds a character that is not, of which it gets the bytes too
template <typename Hide>
std::string shownText(std::string_view text, Hide hide) {
  std::string out;
  out.reserve(text.size());
  while (!text.empty()) {
    const Character first = firstCharacter(text);
    const std::string_view bytes = text.substr(0, first.length == 0 ? 1 : first.length);
    if (isShown(first)) {
      out += bytes;
    } else {
      hide(out, first, bytes);
    }
    text.remove_prefix(bytes.size());
  }
  return out;
}

}  // namespace

std::string printable(std::string_view text) {
  return shownText(text, [](std::string& out, Character /*character*/, std::string_view bytes) {
    for (const char c : bytes) addEscaped(out, static_cast<unsigned char>(c));
  });
}

std::string printableLines(std::string_view text) {
  std::string out;
  out.reserve(text.size());
  sdpneg::AnyLines rest(text);
  while (!rest.atEnd()) {
    const sdpneg::AnyLine line = rest.next();
    if (!line.whole.ends_with('\n')) return out += printable(line.whole);
    out.append(printable(line.content)).append("\n");
  }
  return out;
}

std::string printableJson(std::string_view document) {
  return shownText(document, [](std::string& out, Character character, std::string_view bytes) {
    if (character.length == 0 || character.value < 0x20) {
      out += bytes;  // the document's own line ends
    } else {
      addJsonEscape(out, character.value);
    }
  });
}

}  // namespace tool
