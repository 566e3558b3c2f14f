#ifndef SDP_TEXT_WRITER_H
#define SDP_TEXT_WRITER_H

#include <cstddef>
#include <cstring>

#include "fields.h"

// The text that an encoder writes.

namespace sdpcodec {

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
  /// Puts a text that mostly has 4 to 16 characters: two pieces of a known size, which may overlap. What stands
  /// behind the field's NUL is not read.
  template <std::size_t N>
  TextWriter& putShort(const char (&field)[N]) {
    const std::string_view text = fieldText(field);
    if (text.size() >= 4 && text.size() <= 8) return putPieces<4>(text);
    if (text.size() > 8 && text.size() <= 16) return putPieces<8>(text);
    return put(text);
  }
  TextWriter& endLine() { return put('\r').put('\n'); }

  /// Ends the text with NUL and gives its length and allocated size.
  /// @return false when memory ran out; the text, if there is one, is empty then
  bool finish(int& length, int& size);

 private:
  template <std::size_t Size>
  TextWriter& putPieces(std::string_view text) {
    std::memcpy(next_, text.data(), Size);
    next_ += text.size();
    std::memcpy(next_ - Size, text.data() + text.size() - Size, Size);
    return *this;
  }

  bool grow(std::size_t length);

  char*& text_;
  char* next_;
  char* limit_;
  bool outOfMemory_ = false;
};

}  // namespace sdpcodec

#endif
