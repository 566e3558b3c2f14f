#ifndef SDP_FIELDS_H
#define SDP_FIELDS_H

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <string_view>

#include "pieces.h"

// The parts of a line's value: fields between blanks, suffixes, numbers.

namespace sdpcodec {

/// Why a text is no SDP: what was expected at a place of the text. No place means no problem.
struct Problem {
  const char* expected = nullptr;
  const char* at = nullptr;
  explicit operator bool() const { return at != nullptr; }
};

inline Problem expected(const char* what, const char* at) { return {what, at}; }

inline bool isBlank(char c) { return c == ' ' || c == '\t'; }
inline bool isDigit(char c) { return c >= '0' && c <= '9'; }
inline bool isLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

/// Copies a text into a field and ends it with NUL; what stands behind the NUL means nothing.
/// @param readable the end of what may be read, at or behind the text's end
/// @return whether it fitted; otherwise it was cut
template <std::size_t N>
bool copyField(char (&field)[N], std::string_view text, const char* readable) {
  const bool fits = text.size() < N;
  const std::size_t length = fits ? text.size() : N - 1;
  copyInPieces(field, N, text.data(), static_cast<std::size_t>(readable - text.data()), length);
  field[length] = '\0';
  return fits;
}

/// Copies a text behind which nothing may be read.
template <std::size_t N>
bool copyField(char (&field)[N], std::string_view text) {
  return copyField(field, text, text.data() + text.size());
}

/// The text of a field, never further than the field.
template <std::size_t N>
std::string_view fieldText(const char (&field)[N]) {
  if constexpr (kPiecesGoBehindTexts && N >= kPiece) {
    const unsigned int ends = blocks::bitsOf(blocks::where(blocks::at(field), '\0'));
    if (ends != 0) return {field, firstOf(ends)};
  }
  return {field, strnlen(field, N - 1)};
}

/// Copies a field into one of its size.
template <std::size_t N>
void copyField(char (&to)[N], const char (&from)[N]) {
  copyField(to, fieldText(from), from + N);
}

inline std::string_view trimEnd(std::string_view text) {
  while (!text.empty() && isBlank(text.back())) text.remove_suffix(1);
  return text;
}

/// The fields of a line's value, separated by blanks and tabs.
class LineFields {
 public:
  /// @param readable the end of what may be read, at or behind the value's end
  LineFields(std::string_view value, const char* readable)
      : next_(value.data()), end_(value.data() + value.size()), readable_(readable), window_(next_) {
    if (next_ != end_) look();
    skipBlanks();
  }

  /// The next field; empty when there is none left.
  std::string_view take() {
    const char* begin = next_;
    while (blanks_ == 0 && nextWindow()) {
    }
    next_ = blanks_ != 0 ? std::min(window_ + std::countr_zero(blanks_), end_) : end_;
    const std::string_view field(begin, static_cast<std::size_t>(next_ - begin));
    skipBlanks();
    return field;
  }

  /// All that is left, without blanks at its end.
  std::string_view rest() const { return trimEnd({next_, static_cast<std::size_t>(end_ - next_)}); }

  bool atEnd() const { return next_ == end_; }
  const char* position() const { return next_; }

 private:
  // Goes on to the window behind what was looked at and skipped.
  bool nextWindow() {
    const std::ptrdiff_t passed = std::max(next_ - window_, static_cast<std::ptrdiff_t>(kWindow));
    if (passed >= end_ - window_) return false;
    window_ += passed;
    look();
    return true;
  }

  void look() {
    blanks_ = windowOf(window_, static_cast<std::size_t>(readable_ - window_), [](blocks::Block block) {
      return blocks::where(block, ' ') | blocks::where(block, '\t');
    });
  }

  // Each blank that is skipped is the first one of the window, as long as it is in there.
  void skipBlanks() {
    for (; next_ != end_ && isBlank(*next_); ++next_) blanks_ &= blanks_ - 1;
  }

  const char* next_;
  const char* end_;
  const char* readable_;
  const char* window_;        // what was looked at last
  std::uint64_t blanks_ = 0;  // the blanks in there that were not passed
};

/// A number of digits only, the largest value when it is larger.
inline std::uint32_t saturatingNumber(std::string_view digits) {
  std::uint64_t value = 0;
  for (const char digit : digits) {
    value = value * 10 + static_cast<std::uint64_t>(digit - '0');
    if (value > UINT32_MAX) return UINT32_MAX;
  }
  return static_cast<std::uint32_t>(value);
}

/// Reading index `index` of a list that claims `count` entries of `capacity`.
inline bool inList(int index, int count, int capacity) {
  return index >= 0 && index < count && index < capacity;
}

/// The entries of a list that may be read, whatever its count claims.
inline int usable(int count, int capacity) { return count < 0 ? 0 : (count < capacity ? count : capacity); }

/// An entry of a line's list; null when the line is null or has none there.
template <typename Line>
auto entryAt(const Line* line, int index) -> decltype(&line->entries[0]) {
  if (line == nullptr || !inList(index, line->count, static_cast<int>(std::size(line->entries))))
    return nullptr;
  return &line->entries[index];
}

}  // namespace sdpcodec

#endif
