#include "bodyDiff.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <sstream>
#include <vector>

#include "log.h"

namespace b2bua {

namespace {

using Lines = std::vector<std::string>;

constexpr std::size_t kMostCompared = 1000;  ///< lines; the table of a longer body would be large

Lines linesOf(const std::string& body) {
  Lines lines;
  std::istringstream input(body);
  for (std::string line; std::getline(input, line);) {
    if (line.ends_with('\r')) line.pop_back();
    lines.push_back(line);
  }
  return lines;
}

void show(char mark, const std::string& line) {
  static const bool coloured = isatty(STDOUT_FILENO) == 1;
  const char* const colour = !coloured ? "" : mark == '-' ? "\033[31m" : mark == '+' ? "\033[32m" : "";
  std::printf("%s%c %s%s\n", colour, mark, printable(line).c_str(), *colour != '\0' ? "\033[0m" : "");
}

void showDifference(const Lines& before, const Lines& after) {
  // common[i][j]: lines of the longest common subsequence from before[i] and after[j] on
  std::vector<std::vector<std::size_t>> common(before.size() + 1, std::vector<std::size_t>(after.size() + 1));
  for (std::size_t i = before.size(); i-- > 0;) {
    for (std::size_t j = after.size(); j-- > 0;) {
      common[i][j] =
          before[i] == after[j] ? common[i + 1][j + 1] + 1 : std::max(common[i + 1][j], common[i][j + 1]);
    }
  }
  std::size_t i = 0;
  std::size_t j = 0;
  while (i < before.size() || j < after.size()) {
    const bool inBoth = i < before.size() && j < after.size() && before[i] == after[j];
    if (inBoth) ++j;
    if (inBoth || j == after.size() || (i < before.size() && common[i + 1][j] >= common[i][j + 1])) {
      show(inBoth ? ' ' : '-', before[i++]);
    } else {
      show('+', after[j++]);
    }
  }
}

}  // namespace

void showBodies(const std::string& title, const std::string& before, const std::string& after) {
  std::printf("-- %s\n", printable(title).c_str());
  const Lines old = linesOf(before);
  const Lines now = linesOf(after);
  if (old.size() <= kMostCompared && now.size() <= kMostCompared) {
    showDifference(old, now);
  } else {
    std::printf("  (%zu lines before, %zu after)\n", old.size(), now.size());
  }
  std::fflush(stdout);
}

}  // namespace b2bua
