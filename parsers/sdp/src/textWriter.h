#ifndef SDP_TEXT_WRITER_H
#define SDP_TEXT_WRITER_H

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "fields.h"

namespace sdp {

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

  // Only within what was reserved.
  TextWriter& put(char c) {
    *next_++ = c;
    return *this;
  }
  TextWriter& put(std::string_view text) {
    std::memcpy(next_, text.data(), text.size());
    next_ += text.size();
    return *this;
  }
  template <std::size_t N>
  TextWriter& put(const char (&field)[N]) {
    return put(fieldText(field));
  }
  /// The same for a short text, eight characters at a time; up to seven behind it are written too, and what
  /// is written next covers them.
  template <std::size_t N>
  TextWriter& putShort(const char (&field)[N]) {
    static_assert(N % sizeof(std::uint64_t) == 0);
    if constexpr (std::endian::native != std::endian::little) return put(field);
    for (std::size_t at = 0; at < N; at += sizeof(std::uint64_t)) {
      std::uint64_t piece = 0;
      std::memcpy(&piece, field + at, sizeof piece);
      std::memcpy(next_, &piece, sizeof piece);
      // The lowest bit that is set stands in the first zero byte.
      const std::uint64_t zeros = (piece - 0x0101010101010101U) & ~piece & 0x8080808080808080U;
      if (zeros != 0) {
        next_ += std::countr_zero(zeros) / 8;
        return *this;
      }
      next_ += sizeof piece;
    }
    --next_;  // a field without NUL is cut by its last character
    return *this;
  }
  TextWriter& endLine() { return put('\r').put('\n'); }

  /// Ends the text with NUL and gives its length and allocated size.
  /// @return false when memory ran out; the text, if there is one, is empty then
  bool finish(int& length, int& size);

 private:
  bool grow(std::size_t length);

  char*& text_;
  char* next_;
  char* limit_;
  bool outOfMemory_ = false;
};

}  // namespace sdp

#endif
