#ifndef SDP_PIECES_H
#define SDP_PIECES_H

#ifdef __SSE2__
#include <emmintrin.h>
#endif

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

// Searching and copying sixteen characters at a time. Texts of lines are short: a call of the C library for each of
// them, or a copy whose length the processor has to look at, takes longer than a piece of a fixed length does.

namespace sdpcodec {

inline constexpr std::size_t kPiece = 16;

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

/// Sixteen characters as two words, wherever there is C++.
class WordPiece {
 public:
  explicit WordPiece(const char* from) { std::memcpy(words_.data(), from, kPiece); }

  void store(char* to) const { std::memcpy(to, words_.data(), kPiece); }

  /// Where a character stands: bit i for the i-th.
  unsigned where(char c) const {
    const std::uint64_t wanted = kEach * static_cast<unsigned char>(c);
    return bitsOf([wanted](std::uint64_t word) { return upTo(word ^ wanted, 0); });
  }
  /// Where one of two characters stands.
  unsigned where(char one, char other) const { return where(one) | where(other); }
  /// Where a character stands that is not above `most`, which is below 128.
  unsigned whereUpTo(char most) const {
    const auto limit = static_cast<unsigned char>(most);
    return bitsOf([limit](std::uint64_t word) { return upTo(word, limit); });
  }

 private:
  static constexpr std::uint64_t kEach = 0x0101010101010101U;

  // The highest bit of each character that is not above a limit. No sum carries into the next character.
  static std::uint64_t upTo(std::uint64_t word, unsigned char limit) {
    const std::uint64_t above = (word & (kEach * 0x7F)) + kEach * (0x7FU - limit);
    return ~(above | word) & (kEach * 0x80);
  }

  // Gathers those bits, of the character at the lowest address the lowest.
  template <typename Bits>
  unsigned bitsOf(Bits bits) const {
    const auto gathered = [&bits](std::uint64_t word) {
      if constexpr (std::endian::native == std::endian::big) word = __builtin_bswap64(word);
      return static_cast<unsigned>(((bits(word) >> 7) * 0x0102040810204080U) >> 56);
    };
    return gathered(words_[0]) | gathered(words_[1]) << 8;
  }

  std::array<std::uint64_t, 2> words_;
};

#ifdef __SSE2__
/// The same in one register.
class RegisterPiece {
 public:
  explicit RegisterPiece(const char* from)
      : characters_(_mm_loadu_si128(reinterpret_cast<const __m128i*>(from))) {}

  void store(char* to) const { _mm_storeu_si128(reinterpret_cast<__m128i*>(to), characters_); }

  unsigned where(char c) const { return bitsOf(_mm_cmpeq_epi8(characters_, _mm_set1_epi8(c))); }
  unsigned where(char one, char other) const {
    return bitsOf(_mm_or_si128(_mm_cmpeq_epi8(characters_, _mm_set1_epi8(one)),
                               _mm_cmpeq_epi8(characters_, _mm_set1_epi8(other))));
  }
  unsigned whereUpTo(char most) const {
    return bitsOf(_mm_cmpeq_epi8(_mm_min_epu8(characters_, _mm_set1_epi8(most)), characters_));
  }

 private:
  static unsigned bitsOf(__m128i found) { return static_cast<unsigned>(_mm_movemask_epi8(found)); }

  __m128i characters_;
};
using Piece = RegisterPiece;
#else
using Piece = WordPiece;
#endif

/// The first of the places that a piece tells, which are not none.
inline std::size_t firstOf(unsigned places) { return static_cast<std::size_t>(std::countr_zero(places)); }

/// Copies exactly what there is, for texts whose pieces would go too far.
void copyExactly(char* to, const char* from, std::size_t length);
/// Copies any bytes.
void copyBytes(void* to, const void* from, std::size_t size);

/// How many characters a window is, whose places are bits of one word.
inline constexpr std::size_t kWindow = 4 * kPiece;

/// The places in a window, all of which may be read: bit i for the i-th character.
/// @param where the places in a piece
template <typename Where>
std::uint64_t wholeWindow(const char* window, Where where) {
  const auto at = [&](std::size_t offset) { return std::uint64_t{where(Piece(window + offset))} << offset; };
  return at(0) | at(kPiece) | at(2 * kPiece) | at(3 * kPiece);
}

/// The places in a window of which only `length` characters may be read.
template <typename Where>
std::uint64_t windowOf(const char* window, std::size_t length, Where where) {
  if (length >= kWindow) return wholeWindow(window, where);
  char filled[kWindow];
  std::memset(filled, 'x', kWindow);
  copyExactly(filled, window, length);
  return wholeWindow(filled, where);
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
    Piece(from + at).store(to + at);
    at += kPiece;
  } while (at < length);
}

/// Where a character stands first in a text; its length when it does not.
/// @param readable the end of what may be read, at or behind the text's end
inline std::size_t positionOf(char c, std::string_view text, const char* readable) {
  std::size_t searched = 0;
  if (kPiece <= static_cast<std::size_t>(readable - text.data())) {
    const unsigned found = Piece(text.data()).where(c);
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
