#ifndef SDPNEG_LINE_CHANGES_H
#define SDPNEG_LINE_CHANGES_H

#include <cstddef>
#include <string_view>
#include <vector>

// Which lines differ between two texts: what all that shows differences stands on.

namespace tool {

/// The lines of a text with their ends.
std::vector<std::string_view> linesOf(std::string_view text);

/// Lines of the one text that stand in the place of lines of the other.
struct LineChange {
  std::size_t oldBegin, oldEnd;
  std::size_t newBegin, newEnd;
};

/// What differs between two texts, given by their lines, in their order.
/// @param mostPairs of lines that are compared, at a bit of memory each; texts with more are told apart as a whole
std::vector<LineChange> lineChanges(const std::vector<std::string_view>& before,
                                    const std::vector<std::string_view>& after, std::size_t mostPairs);

/// Whether some lines end in CR LF and others in LF.
bool haveMixedEnds(const std::vector<std::string_view>& before, const std::vector<std::string_view>& after);

}  // namespace tool

#endif
