#ifndef B2BUA_WHOLE_NUMBER_H
#define B2BUA_WHOLE_NUMBER_H

#include <charconv>
#include <string_view>

namespace b2bua {

/// @return whether a text is a number and nothing else
template <typename Number>
bool readNumber(std::string_view text, Number& number) {
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  return error == std::errc() && end == text.data() + text.size();
}

}  // namespace b2bua

#endif
