#ifndef SDP_TEXT_WRITER_H
#define SDP_TEXT_WRITER_H

#include <bit>
#include <cstddef>
#include <string_view>

#include "fields.h"

// The text that an encoder writes.

namespace sdpcodec {

/// Where a line is being written. A value, so that it stays in a register while the line's characters are stored.
/// Writes only within what was reserved for the line, there also up to a piece behind its end, but exactly the line when
/// that is asked for.
class LineWriter {
 public:
  LineWriter(char* at, bool exactly) : at_(at), exactly_(exactly) {}

  LineWriter& put(char c) {
    *at_++ = c;
    return *this;
  }
  /// A field as far as its NUL, never further than the field.
  template <std::size_t N>
  LineWriter& put(const char (&field)[N]) {
    if constexpr (N < kPiece) {
      at_ = storeEach(at_, field, 0);
    } else if (exactly_ || !kPiecesGoBehindTexts) [[unlikely]] {
      at_ = storeExactly(at_, fieldText(field));
    } else {
      at_ = storePieces(at_, field);
    }
    return *this;
  }
  LineWriter& put(std::string_view text) {
    at_ = storeExactly(at_, text);
    return *this;
  }
  /// Ends the line.
  /// @return where the next one begins
  char* end() { return put('\r').put('\n').at_; }

 private:
  // Stores pieces as they are found; what stands behind the field's NUL is written over by what follows.
  template <std::size_t N>
  static char* storePieces(char* to, const char (&field)[N]) {
    std::size_t at = 0;
    for (; at + kPiece <= N; at += kPiece) {
      const blocks::Block piece = blocks::at(field + at);
      blocks::store(piece, to + at);
      const unsigned int ends =
          blocks::bitsOf(blocks::where(piece, '\0')) | (at + kPiece == N ? 1U << (kPiece - 1) : 0U);
      if (ends != 0) return to + at + firstOf(ends);
    }
    return storeEach(to, field, at);
  }

  static char* storeExactly(char* to, std::string_view text) {
    copyExactly(to, text.data(), text.size());
    return to + text.size();
  }

  // Stores one character after the other.
  template <std::size_t N>
  static char* storeEach(char* to, const char (&field)[N], std::size_t at) {
    for (; at < N - 1 && field[at] != '\0'; ++at) to[at] = field[at];
    return to + at;
  }

  char* at_;
  bool exactly_;
};

/// Appends to a text that grows with realloc. Each line first reserves the most that it can need; running out
/// of memory is remembered, and what is reserved then is refused.
class TextWriter {
 public:
  /// @param text null, or a text of `size` characters from an earlier encoding
  TextWriter(char*& text, int size);

  /// Makes room for `length` more characters.
  bool reserve(std::size_t length) {
    return !outOfMemory_ && (length <= static_cast<std::size_t>(limit_ - next_) || grow(length));
  }

  /// A line of the letter, within what was reserved.
  LineWriter line(char letter) const { return LineWriter(next_, exactly_).put(letter).put('='); }
  void endLine(LineWriter& line) { next_ = line.end(); }

  /// From here on nothing is written behind a line's end. To be called when at least a piece's characters are to follow:
  /// they take the place of what was written behind the lines so far.
  void writeExactly() { exactly_ = true; }

  /// Ends the text with NUL and gives its length and allocated size.
  /// @return false when memory ran out; the text, if there is one, is empty then
  bool finish(int& length, int& size);

 private:
  bool grow(std::size_t length);

  char*& text_;
  char* next_;
  char* limit_;
  bool outOfMemory_ = false;
  bool exactly_ = false;
};

}  // namespace sdpcodec

#endif
