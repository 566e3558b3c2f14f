#ifndef SDP_TEXT_FIND_H
#define SDP_TEXT_FIND_H

#include <cstddef>
#include <cstring>
#include <string_view>

#include "text/blocks.h"

// Finding pieces and characters in a text by blocks: at most a comparison of sixteen characters for each character of the
// piece, whatever the text. A search that looks at the places of the piece's first character one by one takes ten times as
// long where that character stands everywhere, and texts come from anybody.

namespace sdpneg {

/// What is looked for: two texts, one behind the other. The first is not empty.
struct Sought {
  std::string_view first;
  std::string_view second = {};

  std::size_t size() const { return first.size() + second.size(); }
  char operator[](std::size_t i) const { return i < first.size() ? first[i] : second[i - first.size()]; }
};

/// Two characters of what is sought, by their places in it. The others are compared only where these two stand.
struct Anchors {
  std::size_t one;
  std::size_t other;
};

/// The first place of what is sought at or behind `from`, as `std::string_view::find` has it.
inline std::size_t findSought(std::string_view text, const Sought& sought, std::size_t from,
                              Anchors anchors) {
  using namespace blocks;
  constexpr auto kNone = std::string_view::npos;
  const std::size_t last = sought.size() - 1;
  if (text.size() <= last || from >= text.size() - last) return kNone;
  const std::size_t places = text.size() - last;  // where it may begin
  const char* const data = text.data();
  std::size_t place = from;
  if (places - from >= kSize) {
    const Block one = of(sought[anchors.one]);
    const Block other = of(sought[anchors.other]);
    for (; place + kSize <= places; place += kSize) {
      const char* const block = data + place;
      Block found = whereEqual(at(block + anchors.one), one) & whereEqual(at(block + anchors.other), other);
      if (bitsOf(found) == 0) continue;
      for (std::size_t i = 0; i <= last; ++i) found &= where(at(block + i), sought[i]);
      const unsigned int bits = bitsOf(found);
      if (bits != 0) return place + firstOf(bits);
    }
  }
  for (; place < places; ++place) {
    std::size_t i = 0;
    while (i <= last && data[place + i] == sought[i]) ++i;
    if (i > last) return place;
  }
  return kNone;
}

/// The same by its first and its last character.
inline std::size_t findSought(std::string_view text, const Sought& sought, std::size_t from) {
  return findSought(text, sought, from, {0, sought.size() - 1});
}

/// The first place of a piece at or behind `from`, as `std::string_view::find` has it.
inline std::size_t findPiece(std::string_view text, std::string_view piece, std::size_t from = 0) {
  return piece.empty() ? text.find(piece, from) : findSought(text, {piece}, from);
}

/// The same by two characters in a row that seldom stand together in the texts at hand.
/// @param pair where the first of the two stands in the piece
inline std::size_t findByPair(std::string_view text, std::string_view piece, std::size_t pair,
                              std::size_t from = 0) {
  return findSought(text, {piece}, from, {pair, pair + 1});
}

/// Visits every place of a character, the first one first. A text where it is rare costs little, and one where it is
/// frequent not much more.
template <typename Visit>
void forEachPlace(std::string_view text, char c, Visit visit) {
  using namespace blocks;
  const auto visitWindow = [&](const char* window, std::size_t offset) {
    std::uint64_t bits = bitsOfWindow(window, [c](Block block) { return where(block, c); });
    for (; bits != 0; bits &= bits - 1) visit(offset + firstOf(bits));
  };
  std::size_t offset = 0;
  for (; offset + kWindow <= text.size(); offset += kWindow) visitWindow(text.data() + offset, offset);
  if (offset == text.size()) return;
  // What is left of the text is followed by another character.
  char last[kWindow];
  std::memset(last, c == '\0' ? 1 : 0, sizeof last);
  std::memcpy(last, text.data() + offset, text.size() - offset);
  visitWindow(last, offset);
}

}  // namespace sdpneg

#endif
