#include "output/lineChanges.h"

#include <algorithm>
#include <cstdint>
#include <map>
#include <utility>

#include "text/anyLines.h"

namespace tool {
namespace {

using Numbers = std::vector<std::uint32_t>;

/// Two texts whose equal lines have equal numbers.
struct NumberedLines {
  Numbers before;
  Numbers after;
};

NumberedLines number(const std::vector<std::string_view>& before,
                     const std::vector<std::string_view>& after) {
  std::map<std::string_view, std::uint32_t> known;  // who writes the lines may choose those of one hash
  const auto numbersOf = [&known](const std::vector<std::string_view>& lines) {
    Numbers numbers;
    for (const std::string_view line : lines) {
      numbers.push_back(known.try_emplace(line, static_cast<std::uint32_t>(known.size())).first->second);
    }
    return numbers;
  };
  NumberedLines numbered;
  numbered.before = numbersOf(before);
  numbered.after = numbersOf(after);
  return numbered;
}

/// The change that is left between what two texts begin with and what they end with in common.
LineChange middleOf(const Numbers& before, const Numbers& after) {
  const std::size_t shorter = std::min(before.size(), after.size());
  std::size_t head = 0;
  while (head < shorter && before[head] == after[head]) ++head;
  std::size_t tail = 0;
  while (tail < shorter - head && before[before.size() - 1 - tail] == after[after.size() - 1 - tail]) ++tail;
  return {head, before.size() - tail, head, after.size() - tail};
}

/// For each pair of lines whether the lines from there on have more in common without the old line than without
/// the new one. A row of the lengths of what they have in common is enough to tell.
std::vector<bool> preferences(const Numbers& before, const Numbers& after, const LineChange& middle) {
  const std::size_t rows = middle.oldEnd - middle.oldBegin;
  const std::size_t columns = middle.newEnd - middle.newBegin;
  std::vector<bool> dropOld(rows * columns);
  std::vector<std::uint32_t> below(columns + 1);
  std::vector<std::uint32_t> row(columns + 1);
  for (std::size_t i = rows; i-- > 0;) {
    for (std::size_t j = columns; j-- > 0;) {
      dropOld[i * columns + j] = below[j] >= row[j + 1];
      const bool same = before[middle.oldBegin + i] == after[middle.newBegin + j];
      row[j] = same ? below[j + 1] + 1 : std::max(below[j], row[j + 1]);
    }
    std::swap(row, below);
  }
  return dropOld;
}

/// Takes the middle apart where lines of it are the same.
std::vector<LineChange> changesOf(const Numbers& before, const Numbers& after, std::size_t mostPairs) {
  const LineChange middle = middleOf(before, after);
  const std::size_t rows = middle.oldEnd - middle.oldBegin;
  const std::size_t columns = middle.newEnd - middle.newBegin;
  if (rows == 0 && columns == 0) return {};
  if (columns != 0 && rows > mostPairs / columns) return {middle};
  const std::vector<bool> dropOld = preferences(before, after, middle);
  std::vector<LineChange> changes;
  bool open = false;
  for (std::size_t i = 0, j = 0; i < rows || j < columns;) {
    if (i < rows && j < columns && before[middle.oldBegin + i] == after[middle.newBegin + j]) {
      open = false;
      ++i;
      ++j;
      continue;
    }
    if (!open) {
      changes.push_back({middle.oldBegin + i, middle.oldBegin + i, middle.newBegin + j, middle.newBegin + j});
    }
    open = true;
    if (j == columns || (i < rows && dropOld[i * columns + j])) {
      changes.back().oldEnd = middle.oldBegin + ++i;
    } else {
      changes.back().newEnd = middle.newBegin + ++j;
    }
  }
  return changes;
}

}  // namespace

std::vector<std::string_view> linesOf(std::string_view text) {
  std::vector<std::string_view> lines;
  sdpneg::AnyLines rest(text);
  while (!rest.atEnd()) lines.push_back(rest.next().whole);
  return lines;
}

std::vector<LineChange> lineChanges(const std::vector<std::string_view>& before,
                                    const std::vector<std::string_view>& after, std::size_t mostPairs) {
  const NumberedLines numbered = number(before, after);
  return changesOf(numbered.before, numbered.after, mostPairs);
}

bool haveMixedEnds(const std::vector<std::string_view>& before, const std::vector<std::string_view>& after) {
  bool crLf = false;
  bool lf = false;
  for (const auto* lines : {&before, &after}) {
    for (const std::string_view line : *lines) {
      if (line.ends_with("\r\n")) {
        crLf = true;
      } else if (line.ends_with('\n')) {
        lf = true;
      }
    }
  }
  return crLf && lf;
}

}  // namespace tool
