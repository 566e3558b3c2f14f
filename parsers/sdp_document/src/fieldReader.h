#ifndef SDP_DOCUMENT_FIELD_READER_H
#define SDP_DOCUMENT_FIELD_READER_H

// Fields of a value, which runs of blanks and tabs separate, and the numbers in them.

#include <cstdint>
#include <limits>
#include <optional>
#include <string_view>

#include "sdpDocumentFields.h"
#include "text/search.h"

namespace sdp::core {

inline std::string_view withoutBlanksBehind(std::string_view text) {
  while (!text.empty() && Fields::isBlank(text.back())) text.remove_suffix(1);
  return text;
}

inline std::string_view withoutBlanksAround(std::string_view text) {
  while (!text.empty() && Fields::isBlank(text.front())) text.remove_prefix(1);
  return withoutBlanksBehind(text);
}

/// Takes a text apart field by field.
class FieldReader {
 public:
  explicit FieldReader(std::string_view text) : rest_(text) {}

  /// The next field; empty when there is none left.
  std::string_view next() { return Fields::takeField(rest_); }
  /// What stands behind the field that was taken last.
  std::string_view behind() const { return rest_; }
  /// What stands behind the field that was taken last, without the blanks around it.
  std::string_view rest() const { return withoutBlanksAround(rest_); }
  /// The text from a field on that was taken, to its end.
  std::string_view from(std::string_view field) const {
    return {field.data(), static_cast<std::size_t>(rest_.data() + rest_.size() - field.data())};
  }

 private:
  std::string_view rest_;
};

inline std::string_view firstField(std::string_view value) { return Fields::takeField(value); }
/// A number of digits alone; one beyond the type is told as its largest.
template <typename Number = std::uint64_t>
std::optional<Number> numberOf(std::string_view text) {
  constexpr Number kMost = std::numeric_limits<Number>::max();
  if (text.empty()) return std::nullopt;
  Number number = 0;
  for (const char c : text) {
    if (!sdpneg::isDigit(c)) return std::nullopt;
    const auto digit = static_cast<Number>(c - '0');
    number = number > (kMost - digit) / 10 ? kMost : static_cast<Number>(number * 10 + digit);
  }
  return number;
}
inline bool isDigits(std::string_view text) { return numberOf(text).has_value(); }

}  // namespace sdp::core

#endif
