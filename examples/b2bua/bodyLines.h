#ifndef B2BUA_BODY_LINES_H
#define B2BUA_BODY_LINES_H

#include <sdpDocumentViews.h>

#include <string>
#include <string_view>
#include <vector>

namespace b2bua {

/// An attribute as the most tolerant reader takes it, in lower case; the one that a capability offers (RFC 5939) counts
/// for itself.
struct Attribute {
  std::string name;   ///< what is in front of the first colon or blank; empty in lines that are none
  std::string value;  ///< without the blanks around it, control characters being such

  std::string_view word(std::size_t number) const { return sdp::Fields(value)[number]; }
};

/// @param line  without its end
Attribute attributeOf(std::string_view line);

std::string lowerCase(std::string_view text);

/// In lower case, and with blanks in the place of control characters.
std::string tolerantly(std::string_view line);

/// The lines of a text, without their ends.
std::vector<std::string_view> linesOf(std::string_view text);

/// @param edit  what becomes of a line, both without ends; nothing when it goes
template <typename Edit>
std::string withLines(std::string_view text, Edit edit) {
  std::string edited;
  for (const std::string_view line : linesOf(text)) {
    const std::string kept = edit(std::string(line));
    if (!kept.empty()) edited.append(kept).append("\r\n");
  }
  return edited;
}

}  // namespace b2bua

#endif
