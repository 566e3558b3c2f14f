#ifndef B2BUA_ANSWER_CHECK_H
#define B2BUA_ANSWER_CHECK_H

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace b2bua {

constexpr std::size_t kMostFindings = 10;  ///< told of one answer

/// Judges what a party answered by the offer that it was sent.
/// @return what is wrong, a line each, and how much more there is than kMostFindings; without keys. Empty when nothing
/// is
std::vector<std::string> whatIsWrong(std::string_view offer, std::string_view answer);

}  // namespace b2bua

#endif
