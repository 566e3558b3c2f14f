#ifndef SDPNEG_WHOLE_NUMBER_H
#define SDPNEG_WHOLE_NUMBER_H

#include <charconv>
#include <optional>
#include <string_view>

namespace tool {

/// The number that a text is, from its first character to its last; nothing when it is none or does not fit.
template <typename Number>
std::optional<Number> wholeNumber(std::string_view text) {
  Number number{};
  const char* end = text.data() + text.size();
  const auto [behind, error] = std::from_chars(text.data(), end, number);
  if (error != std::errc() || behind != end) return std::nullopt;
  return number;
}

}  // namespace tool

#endif
