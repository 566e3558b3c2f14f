#ifndef SDP_TEXT_FIND_H
#define SDP_TEXT_FIND_H

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

// Finding a piece in a text by blocks: at most a comparison of sixteen characters for each character of the piece,
// whatever the text. A search that looks at the places of the piece's first character one by one takes ten times as long
// where that character stands everywhere, and texts come from anybody.

namespace sdpneg {

namespace blocks {

inline constexpr std::size_t kSize = 16;

/// Sixteen characters, or what a comparison of them gave: all bits of each place where they are equal.
using Block = unsigned char __attribute__((vector_size(kSize)));

inline Block at(const char* text) {
  Block block;
  std::memcpy(&block, text, sizeof block);
  return block;
}

inline Block of(char c) { return Block{} + static_cast<unsigned char>(c); }

inline Block whereEqual(Block a, Block b) { return reinterpret_cast<Block>(a == b); }

/// The first place that is set; `kSize` without one.
inline std::size_t firstOf(Block places) {
  std::uint64_t halves[2];
  std::memcpy(halves, &places, sizeof halves);
  if ((halves[0] | halves[1]) == 0) return kSize;
  const std::uint64_t half = halves[0] != 0 ? halves[0] : halves[1];
  const int bit = std::endian::native == std::endian::little ? std::countr_zero(half) : std::countl_zero(half);
  return (halves[0] != 0 ? 0 : kSize / 2) + static_cast<std::size_t>(bit) / 8;
}

}  // namespace blocks

/// What is looked for: two texts, one behind the other. The first is not empty.
struct Sought {
  std::string_view first;
  std::string_view second = {};

  std::size_t size() const { return first.size() + second.size(); }
  char operator[](std::size_t i) const { return i < first.size() ? first[i] : second[i - first.size()]; }
};

/// The first place of what is sought at or behind `from`, as `std::string_view::find` has it.
inline std::size_t findSought(std::string_view text, const Sought& sought, std::size_t from) {
  using namespace blocks;
  constexpr auto kNone = std::string_view::npos;
  const std::size_t last = sought.size() - 1;
  if (text.size() <= last || from >= text.size() - last) return kNone;
  const std::size_t places = text.size() - last;  // where it may begin
  const char* const data = text.data();
  std::size_t place = from;
  if (places - from >= kSize) {
    const Block begins = of(sought[0]);
    const Block ends = of(sought[last]);
    for (; place + kSize <= places; place += kSize) {
      const char* const block = data + place;
      Block found = whereEqual(at(block), begins) & whereEqual(at(block + last), ends);
      if (firstOf(found) == kSize) continue;
      for (std::size_t i = 1; i < last; ++i) found &= whereEqual(at(block + i), of(sought[i]));
      const std::size_t first = firstOf(found);
      if (first != kSize) return place + first;
    }
  }
  for (; place < places; ++place) {
    std::size_t i = 0;
    while (i <= last && data[place + i] == sought[i]) ++i;
    if (i > last) return place;
  }
  return kNone;
}

/// The first place of a piece at or behind `from`, as `std::string_view::find` has it.
inline std::size_t findPiece(std::string_view text, std::string_view piece, std::size_t from = 0) {
  return piece.empty() ? text.find(piece, from) : findSought(text, {piece}, from);
}

}  // namespace sdpneg

#endif
