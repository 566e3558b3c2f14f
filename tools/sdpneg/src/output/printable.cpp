#include "output/printable.h"

#include <algorithm>

#include "text/anyLines.h"
#include "text/shown.h"

namespace tool {
namespace {

using sdpneg::Character;

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

/// Most characters are these, and shown.
bool isPlain(char c) { return c >= ' ' && c <= '~'; }

/// Goes through a text and adds what is shown as it is.
/// @param hide adds a character that is not, of which it gets the bytes too
template <typename Hide>
std::string shownText(std::string_view text, Hide hide) {
  std::string out;
  out.reserve(text.size());
  while (!text.empty()) {
    const auto plain = static_cast<std::size_t>(std::ranges::find_if_not(text, isPlain) - text.begin());
    out += text.substr(0, plain);
    text.remove_prefix(plain);
    if (text.empty()) break;
    const Character first = sdpneg::firstCharacter(text);
    const std::string_view bytes = text.substr(0, first.length == 0 ? 1 : first.length);
    if (sdpneg::isShown(first)) {
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
