#ifndef SDP_PIECES_H
#define SDP_PIECES_H

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "text/blocks.h"

// Searching and copying sixteen characters at a time. Texts of lines are short: a call of the C library for each of
// them, or a copy whose length the processor has to look at, takes longer than a piece of a fixed length does.

namespace sdpcodec {

namespace blocks = sdpneg::blocks;
using blocks::firstOf;

/// How many characters are searched and copied together, and how many a window has, whose places are bits of one word.
inline constexpr std::size_t kPiece = blocks::kSize;
inline constexpr std::size_t kWindow = blocks::kWindow;

// The memory sanitizer is to see who reads what stands behind a field's NUL: with it nothing is copied that does not
// belong to the text, and nothing searched.
#if defined(__has_feature)
#if __has_feature(memory_sanitizer)
#define SDP_CODEC_EXACT_COPIES 1
#endif
#endif
#ifdef SDP_CODEC_EXACT_COPIES
inline constexpr bool kPiecesGoBehindTexts = false;
#else
inline constexpr bool kPiecesGoBehindTexts = true;
#endif

/// Copies exactly what there is, for texts whose pieces would go too far.
void copyExactly(char* to, const char* from, std::size_t length);
/// Copies any bytes.
void copyBytes(void* to, const void* from, std::size_t size);

/// The places in a window of which only `length` characters may be read.
/// @param places gives the places in a block
template <typename Places>
std::uint64_t windowOf(const char* window, std::size_t length, Places places) {
  if (length >= kWindow) return blocks::bitsOfWindow(window, places);
  char filled[kWindow];
  std::memset(filled, 'x', kWindow);
  copyExactly(filled, window, length);
  return blocks::bitsOfWindow(filled, places);
}

/// Copies a text of `length` characters in pieces.
/// @param toRoom   how much may be written from `to` on, at least `length`
/// @param fromRoom how much may be read from `from` on, at least `length`
inline void copyInPieces(char* to, std::size_t toRoom, const char* from, std::size_t fromRoom,
                         std::size_t length) {
  const std::size_t room = toRoom < fromRoom ? toRoom : fromRoom;
  const std::size_t whole = (length + kPiece - 1) / kPiece * kPiece;
  if (!kPiecesGoBehindTexts || whole > room || room < kPiece) return copyExactly(to, from, length);
  std::size_t at = 0;
  do {
    blocks::store(blocks::at(from + at), to + at);
    at += kPiece;
  } while (at < length);
}

/// Where a character stands first in a text; its length when it does not.
/// @param readable the end of what may be read, at or behind the text's end
inline std::size_t positionOf(char c, std::string_view text, const char* readable) {
  std::size_t searched = 0;
  if (kPiece <= static_cast<std::size_t>(readable - text.data())) {
    const unsigned int found = blocks::bitsOf(blocks::where(blocks::at(text.data()), c));
    if (found != 0) {
      return std::min(firstOf(found), text.size());
    }
    if (text.size() <= kPiece) return text.size();
    searched = kPiece;
  }
  const std::size_t first = text.find(c, searched);
  return first == std::string_view::npos ? text.size() : first;
}

}  // namespace sdpcodec

#endif
