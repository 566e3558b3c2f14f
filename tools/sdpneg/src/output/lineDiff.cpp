#include "output/lineDiff.h"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <unordered_map>
#include <utility>
#include <vector>

#include "output/printable.h"
#include "text/anyLines.h"

namespace tool {
namespace {

constexpr std::size_t kContextLines = 3;
/// Pairs of lines that are compared: two bodies of the largest size and 8 MB of memory, a bit for each pair.
constexpr std::size_t kMostPairs = std::size_t{64} * 1024 * 1024;

/// The lines of a text with their ends.
std::vector<std::string_view> linesOf(std::string_view text) {
  std::vector<std::string_view> lines;
  sdpneg::AnyLines rest(text);
  while (!rest.atEnd()) lines.push_back(rest.next().whole);
  return lines;
}

/// Lines of the one text that stand in the place of lines of the other.
struct Change {
  std::size_t oldBegin, oldEnd;
  std::size_t newBegin, newEnd;
};

using Numbers = std::vector<std::uint32_t>;

/// Two texts whose equal lines have equal numbers.
struct NumberedLines {
  Numbers before;
  Numbers after;
};

NumberedLines number(const std::vector<std::string_view>& before,
                     const std::vector<std::string_view>& after) {
  std::unordered_map<std::string_view, std::uint32_t> known;
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
Change middleOf(const Numbers& before, const Numbers& after) {
  const std::size_t shorter = std::min(before.size(), after.size());
  std::size_t head = 0;
  while (head < shorter && before[head] == after[head]) ++head;
  std::size_t tail = 0;
  while (tail < shorter - head && before[before.size() - 1 - tail] == after[after.size() - 1 - tail]) ++tail;
  return {head, before.size() - tail, head, after.size() - tail};
}

/// For each pair of lines whether the lines from there on have more in common without the old line than without
/// the new one. A row of the lengths of what they have in common is enough to tell.
std::vector<bool> preferences(const Numbers& before, const Numbers& after, const Change& middle) {
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
std::vector<Change> changesOf(const Numbers& before, const Numbers& after) {
  const Change middle = middleOf(before, after);
  const std::size_t rows = middle.oldEnd - middle.oldBegin;
  const std::size_t columns = middle.newEnd - middle.newBegin;
  if (rows == 0 && columns == 0) return {};
  if (columns != 0 && rows > kMostPairs / columns) return {middle};
  const std::vector<bool> dropOld = preferences(before, after, middle);
  std::vector<Change> changes;
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

/// Whether some lines end in CR LF and others in LF.
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

/// Writes hunks.
class Writer {
 public:
  Writer(const std::vector<std::string_view>& before, const std::vector<std::string_view>& after,
         const Palette& palette)
      : before_(before), after_(after), palette_(palette), mixedEnds_(haveMixedEnds(before, after)) {}

  void heading(std::string_view mark, std::string_view name) {
    out_ += palette_.paint(Style::heading, std::string(mark) + printable(name)) + "\n";
  }

  /// Changes that are near each other, with the lines around them.
  void hunk(const Change* begin, const Change* end) {
    const std::size_t head = std::min(kContextLines, begin->oldBegin);
    const std::size_t tail = std::min(kContextLines, before_.size() - (end - 1)->oldEnd);
    const Change whole{begin->oldBegin - head, (end - 1)->oldEnd + tail, begin->newBegin - head,
                       (end - 1)->newEnd + tail};
    out_ += palette_.paint(Style::label, "@@ -" + extent(whole.oldBegin, whole.oldEnd) + " +" +
                                             extent(whole.newBegin, whole.newEnd) + " @@") +
            "\n";
    std::size_t at = whole.oldBegin;
    for (const Change* change = begin; change != end; ++change) {
      lines(before_, at, change->oldBegin, ' ', std::nullopt);
      lines(before_, change->oldBegin, change->oldEnd, '-', Style::bad);
      lines(after_, change->newBegin, change->newEnd, '+', Style::good);
      at = change->oldEnd;
    }
    lines(before_, at, whole.oldEnd, ' ', std::nullopt);
  }

  std::string take() { return std::move(out_); }

 private:
  static std::string extent(std::size_t begin, std::size_t end) {
    const std::size_t count = end - begin;
    const std::string first = std::to_string(count == 0 ? begin : begin + 1);
    return count == 1 ? first : first + "," + std::to_string(count);
  }

  void lines(const std::vector<std::string_view>& text, std::size_t begin, std::size_t end, char mark,
             std::optional<Style> style) {
    for (std::size_t i = begin; i < end; ++i) {
      std::string_view line = text[i];
      const bool ended = line.ends_with('\n');
      if (ended) line.remove_suffix(1);
      if (ended && !mixedEnds_ && line.ends_with('\r')) line.remove_suffix(1);
      const std::string shown = mark + printable(line);
      out_ += (style ? palette_.paint(*style, shown) : shown) + "\n";
      if (!ended) out_ += "\\ No newline at end of file\n";
    }
  }

  const std::vector<std::string_view>& before_;
  const std::vector<std::string_view>& after_;
  const Palette& palette_;
  bool mixedEnds_;
  std::string out_;
};

}  // namespace

std::string unifiedDiff(NamedText before, NamedText after, const Palette& palette) {
  const std::vector<std::string_view> oldLines = linesOf(before.text);
  const std::vector<std::string_view> newLines = linesOf(after.text);
  const NumberedLines numbered = number(oldLines, newLines);
  const std::vector<Change> changes = changesOf(numbered.before, numbered.after);
  if (changes.empty()) return {};
  Writer writer(oldLines, newLines, palette);
  writer.heading("--- ", before.name);
  writer.heading("+++ ", after.name);
  const Change* const end = changes.data() + changes.size();
  for (const Change* begin = changes.data(); begin != end;) {
    const Change* next = begin + 1;
    while (next != end && next->oldBegin - (next - 1)->oldEnd <= 2 * kContextLines) ++next;
    writer.hunk(begin, next);
    begin = next;
  }
  return writer.take();
}

}  // namespace tool
