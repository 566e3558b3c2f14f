#include "output/lineDiff.h"

#include <algorithm>
#include <optional>
#include <utility>
#include <vector>

#include "output/lineChanges.h"
#include "output/printable.h"

namespace tool {
namespace {

constexpr std::size_t kContextLines = 3;
/// Two bodies of the largest size.
constexpr std::size_t kMostPairs = std::size_t{64} * 1024 * 1024;

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
  void hunk(const LineChange* begin, const LineChange* end) {
    const std::size_t head = std::min(kContextLines, begin->oldBegin);
    const std::size_t tail = std::min(kContextLines, before_.size() - (end - 1)->oldEnd);
    const LineChange whole{begin->oldBegin - head, (end - 1)->oldEnd + tail, begin->newBegin - head,
                           (end - 1)->newEnd + tail};
    out_ += palette_.paint(Style::label, "@@ -" + extent(whole.oldBegin, whole.oldEnd) + " +" +
                                             extent(whole.newBegin, whole.newEnd) + " @@") +
            "\n";
    std::size_t at = whole.oldBegin;
    for (const LineChange* change = begin; change != end; ++change) {
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
  const std::vector<LineChange> changes = lineChanges(oldLines, newLines, kMostPairs);
  if (changes.empty()) return {};
  Writer writer(oldLines, newLines, palette);
  writer.heading("--- ", before.name);
  writer.heading("+++ ", after.name);
  const LineChange* const end = changes.data() + changes.size();
  for (const LineChange* begin = changes.data(); begin != end;) {
    const LineChange* next = begin + 1;
    while (next != end && next->oldBegin - (next - 1)->oldEnd <= 2 * kContextLines) ++next;
    writer.hunk(begin, next);
    begin = next;
  }
  return writer.take();
}

}  // namespace tool
