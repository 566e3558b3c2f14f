#ifndef SDP_TEXT_SEARCH_H
#define SDP_TEXT_SEARCH_H

#include <cstring>
#include <limits>
#include <optional>
#include <string_view>

#include "text/find.h"

// Reading text: comparisons, words and numbers. Nothing here writes, allocates or goes beyond its view.

namespace sdpneg {

inline constexpr auto npos = std::string_view::npos;

/// A text that may be null.
inline std::string_view viewOf(const char* text) {
  return text != nullptr ? std::string_view(text) : std::string_view();
}

constexpr char lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }
inline bool isDigit(char c) { return c >= '0' && c <= '9'; }
/// The control characters of ASCII, among them those that end lines.
inline bool isControl(char c) { return static_cast<unsigned char>(c) < ' ' || c == '\x7F'; }
/// The white space of the C locale.
inline bool isSpace(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

inline bool contains(std::string_view text, std::string_view piece) { return findPiece(text, piece) != npos; }
inline bool startsWith(std::string_view text, std::string_view prefix) {
  if (prefix.size() > text.size()) return false;
  for (std::size_t i = 0; i < prefix.size(); ++i) {
    if (text[i] != prefix[i]) return false;
  }
  return true;
}

/// Whether a text begins with a prefix, for a text ended by NUL whose length is not known; reads no further than the first difference.
inline bool textStartsWith(const char* text, std::string_view prefix) {
  for (const char c : prefix) {
    if (c == '\0' || *text++ != c) return false;
  }
  return true;
}

/// ASCII letters compared without regard to case.
inline bool equalNoCase(std::string_view a, std::string_view b) {
  if (a.size() != b.size()) return false;
  for (std::size_t i = 0; i < a.size(); ++i) {
    if (lower(a[i]) != lower(b[i])) return false;
  }
  return true;
}

inline bool startsWithNoCase(std::string_view text, std::string_view prefix) {
  return equalNoCase(text.substr(0, prefix.size()), prefix);
}

/// The first place of a piece at or behind `from`, letters compared without regard to case.
inline std::size_t findNoCase(std::string_view text, std::string_view piece, std::size_t from = 0) {
  if (piece.empty()) return text.find(piece, from);
  if (piece.size() > text.size()) return npos;
  for (std::size_t at = from; at <= text.size() - piece.size(); ++at) {
    if (lower(text[at]) == lower(piece[0]) && equalNoCase(text.substr(at, piece.size()), piece)) return at;
  }
  return npos;
}

/// The words of a text, separated by any of the given characters.
class Words {
 public:
  explicit Words(std::string_view text, std::string_view separators = " \t\r\n\v\f")
      : rest_(text), separators_(separators) {}

  /// The next word; empty when there is none left.
  std::string_view next() {
    std::size_t begin = 0;
    while (begin < rest_.size() && separates(rest_[begin])) ++begin;
    if (begin == rest_.size()) return rest_ = {};
    std::size_t end = begin;
    while (end < rest_.size() && !separates(rest_[end])) ++end;
    const std::string_view word = rest_.substr(begin, end - begin);
    rest_ = end == rest_.size() ? std::string_view() : rest_.substr(end);
    return word;
  }

  /// What stands behind the last word, its separator included.
  std::string_view rest() const { return rest_; }

 private:
  bool separates(char c) const {
    for (const char separator : separators_) {
      if (c == separator) return true;
    }
    return false;
  }

  std::string_view rest_;
  std::string_view separators_;
};

/// A decimal number that a text begins with, and how many characters it takes.
template <typename Number>
struct Leading {
  Number value;
  std::size_t length;
};

/// Reads the decimal number that a text begins with, behind white space and a sign as the C library's
/// conversions take them. A number beyond the type's range reads as its nearest end.
/// @return nothing when there is no digit
template <typename Number>
std::optional<Leading<Number>> leadingNumber(std::string_view text) {
  using Limits = std::numeric_limits<Number>;
  std::size_t at = 0;
  while (at < text.size() && isSpace(text[at])) ++at;
  const bool negative = at < text.size() && text[at] == '-';
  if (at < text.size() && (text[at] == '-' || text[at] == '+')) ++at;
  if (at == text.size() || !isDigit(text[at])) return std::nullopt;
  Number value = 0;
  for (; at < text.size() && isDigit(text[at]); ++at) {
    const auto digit = static_cast<Number>(text[at] - '0');
    if (negative) {
      constexpr Number least = Limits::min() / 10;
      const bool fits =
          Limits::is_signed && (value > least || (value == least && digit <= least * 10 - Limits::min()));
      value = fits ? static_cast<Number>(value * 10 - digit) : Limits::min();
    } else {
      constexpr Number most = Limits::max() / 10;
      const bool fits = value < most || (value == most && digit <= Limits::max() - most * 10);
      value = fits ? static_cast<Number>(value * 10 + digit) : Limits::max();
    }
  }
  return Leading<Number>{value, at};
}

/// The same for a text ended by NUL whose length is not known.
template <typename Number>
std::optional<Leading<Number>> leadingNumberOf(const char* text) {
  // Most numbers have no sign, and so few digits that they fit whatever the digits are.
  constexpr std::size_t few = std::numeric_limits<Number>::digits10;
  Number value = 0;
  std::size_t at = 0;
  for (; at < few && isDigit(text[at]); ++at) {
    value = static_cast<Number>(value * 10 + static_cast<Number>(text[at] - '0'));
  }
  if (at != 0 && !isDigit(text[at])) return Leading<Number>{value, at};
  return leadingNumber<Number>(text);
}

/// The number that a text begins with, 0 when there is none, as `atoi` reads but within its type.
template <typename Number>
Number numberOrZero(std::string_view text) {
  const std::optional<Leading<Number>> number = leadingNumber<Number>(text);
  return number ? number->value : Number{0};
}

/// The same for a text ended by NUL whose length is not known; 0 for null.
template <typename Number>
Number numberOrZeroOf(const char* text) {
  const std::optional<Leading<Number>> number = leadingNumberOf<Number>(text != nullptr ? text : "");
  return number ? number->value : Number{0};
}

}  // namespace sdpneg

#endif
