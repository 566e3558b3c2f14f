#ifndef SDPNEG_PLACE_H
#define SDPNEG_PLACE_H

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>

namespace tool {

/// Where in an input something stands, counted from 1; a line of 0 is no place, a column of 0 the whole line.
struct Place {
  std::size_t line = 0;
  std::size_t column = 0;
};

/// What is wrong with an input, in words for its reader.
struct Problem {
  Place place;
  std::string reason;
};

/// The place of an offset in a text whose lines end in LF.
inline Place placeOf(std::string_view text, std::size_t offset) {
  const std::string_view before = text.substr(0, offset);
  const std::size_t lf = before.rfind('\n');
  const auto lines = static_cast<std::size_t>(std::count(before.begin(), before.end(), '\n'));
  return {lines + 1, lf == std::string_view::npos ? offset + 1 : offset - lf};
}

}  // namespace tool

#endif
