#include "commands/nearestName.h"

#include <algorithm>
#include <array>
#include <numeric>

#include "text/search.h"

namespace tool {
namespace {

constexpr std::size_t kLongestName = 40;
constexpr std::size_t kShortestBeginning = 3;

/// How many letters must be added, dropped, changed or swapped with their neighbour to make one word of the other.
/// Both have at most `kLongestName` letters.
std::size_t distance(std::string_view a, std::string_view b) {
  using Row = std::array<std::size_t, kLongestName + 1>;
  Row twoAbove{};
  Row above{};
  std::iota(above.begin(), above.end(), std::size_t{0});
  for (std::size_t i = 0; i < a.size(); ++i) {
    Row row{};
    row[0] = i + 1;
    for (std::size_t j = 0; j < b.size(); ++j) {
      const std::size_t changed = above[j] + (a[i] == b[j] ? 0 : 1);
      row[j + 1] = std::min({above[j + 1] + 1, row[j] + 1, changed});
      const bool swapped = i > 0 && j > 0 && a[i] == b[j - 1] && a[i - 1] == b[j];
      if (swapped) row[j + 1] = std::min(row[j + 1], twoAbove[j - 1] + 1);
    }
    twoAbove = above;
    above = row;
  }
  return above[b.size()];
}

/// The only name that begins with a word.
std::string_view completed(std::string_view word, std::span<const std::string_view> names) {
  if (word.size() < kShortestBeginning) return {};
  const auto begins = [word](std::string_view name) { return sdpneg::startsWith(name, word); };
  const auto found = std::find_if(names.begin(), names.end(), begins);
  return std::count_if(names.begin(), names.end(), begins) == 1 ? *found : std::string_view();
}

}  // namespace

std::string_view nearestName(std::string_view word, std::span<const std::string_view> names) {
  std::string_view nearest;
  std::size_t least = kLongestName;
  for (const std::string_view name : names) {
    if (word.size() > kLongestName || name.size() > kLongestName) continue;
    const std::size_t changes = distance(word, name);
    // A third of the letters at most: "mod" is near "mode", and no word near every short name.
    if (changes >= least || changes * 3 > name.size()) continue;
    nearest = name;
    least = changes;
  }
  return nearest.empty() ? completed(word, names) : nearest;
}

}  // namespace tool
