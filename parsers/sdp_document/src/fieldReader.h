#ifndef SDP_DOCUMENT_FIELD_READER_H
#define SDP_DOCUMENT_FIELD_READER_H

// Fields of a value, which runs of blanks and tabs separate, and the numbers in them.

#include <algorithm>
#include <cstdint>
#include <limits>
#include <optional>
#include <string_view>

#include "sdpDocumentFields.h"
#include "text/search.h"

namespace sdp::core {

inline std::string_view withoutBlanksBehind(std::string_view text) {
  while (!text.empty() && (text.back() == ' ' || text.back() == '\t')) text.remove_suffix(1);
  return text;
}

/// Takes a text apart field by field.
class FieldReader {
 public:
  explicit FieldReader(std::string_view text) : field_(text) {}

  /// The next field; empty when there is none left.
  std::string_view next() {
    rest_ = field_.rest();
    const std::string_view field = *field_;
    ++field_;
    return field;
  }
  /// What stands behind the field that was taken last.
  std::string_view behind() const { return rest_; }
  /// What stands behind the field that was taken last, without the blanks around it.
  std::string_view rest() const {
    const std::string_view next = *field_;
    if (next.empty()) return {};
    return withoutBlanksBehind(from(next));
  }
  /// The text from a field on that was taken, to its end.
  std::string_view from(std::string_view field) const {
    return {field.data(), static_cast<std::size_t>(rest_.data() + rest_.size() - field.data())};
  }

 private:
  Fields::Iterator field_;
  std::string_view rest_;
};

inline std::string_view firstField(std::string_view value) { return *Fields(value).begin(); }
inline bool isDigits(std::string_view text) {
  return !text.empty() && std::all_of(text.begin(), text.end(), sdpneg::isDigit);
}

/// A number of digits alone; one beyond the type is told as its largest.
inline std::optional<std::uint64_t> numberOf(std::string_view text) {
  if (!isDigits(text)) return std::nullopt;
  return sdpneg::numberOrZero<std::uint64_t>(text);
}

}  // namespace sdp::core

#endif
