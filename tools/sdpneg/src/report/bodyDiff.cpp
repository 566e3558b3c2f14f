#include "report/bodyDiff.h"

#include <algorithm>
#include <cstddef>
#include <utility>

#include "calls/bodyParts.h"
#include "output/lineChanges.h"

namespace tool {
namespace {

/// Sections of a thousand lines each; a capture has as many hops as it likes.
constexpr std::size_t kMostPairs = std::size_t{1024} * 1024;

using Lines = std::vector<std::string_view>;

/// Writes lines as a diff has them.
class Writer {
 public:
  explicit Writer(bool keepsEnds) : keepsEnds_(keepsEnds) {}

  void add(const Lines& lines, std::size_t begin, std::size_t end, char mark) {
    for (std::size_t i = begin; i < end; ++i) {
      std::string_view line = lines[i];
      if (line.ends_with('\n')) line.remove_suffix(1);
      if (!keepsEnds_ && line.ends_with('\r')) line.remove_suffix(1);
      out_.append(1, mark).append(line).append("\n");
    }
  }

  std::string take() { return std::move(out_); }

 private:
  bool keepsEnds_;
  std::string out_;
};

std::string diffOf(std::string_view before, std::string_view after) {
  const Lines oldLines = linesOf(before);
  const Lines newLines = linesOf(after);
  Writer writer(haveMixedEnds(oldLines, newLines));
  std::size_t at = 0;
  for (const LineChange& change : lineChanges(oldLines, newLines, kMostPairs)) {
    writer.add(oldLines, at, change.oldBegin, ' ');
    writer.add(oldLines, change.oldBegin, change.oldEnd, '-');
    writer.add(newLines, change.newBegin, change.newEnd, '+');
    at = change.oldEnd;
  }
  writer.add(oldLines, at, oldLines.size(), ' ');
  return writer.take();
}

/// The name of a section by both of its names, of which one may be missing: they have the same number.
std::string nameOf(const std::string& before, const std::string& after) {
  if (before.empty() || before == after) return after;
  if (after.empty()) return before;
  const std::size_t blank = after.find(' ');
  return before + " -> " + (blank == std::string::npos ? "unreadable" : after.substr(blank + 1));
}

}  // namespace

std::vector<SectionDiff> bodyDiff(std::string_view before, std::string_view after) {
  std::vector<SectionDiff> diffs;
  const std::vector<BodyPart> oldParts = bodyParts(before);
  const std::vector<BodyPart> newParts = bodyParts(after);
  for (std::size_t i = 0; i < std::max(oldParts.size(), newParts.size()); ++i) {
    const BodyPart oldPart = i < oldParts.size() ? oldParts[i] : BodyPart();
    const BodyPart newPart = i < newParts.size() ? newParts[i] : BodyPart();
    if (oldPart.text == newPart.text) continue;
    diffs.push_back({nameOf(oldPart.name, newPart.name), diffOf(oldPart.text, newPart.text)});
  }
  return diffs;
}

}  // namespace tool
