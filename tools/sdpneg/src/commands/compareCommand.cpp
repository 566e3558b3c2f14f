#include "commands/compareCommand.h"

#include "commands/exitStatus.h"
#include "inspection/bodyInput.h"
#include "output/labelledRows.h"
#include "output/lineDiff.h"

namespace tool {
namespace {

std::string comparisonRows(const cSdpNegotiator& a, const cSdpNegotiator& b, bool sameBodies,
                           const Palette& palette) {
  const auto row = [](LabelledRows& rows, const char* label, bool good, const char* yes, const char* no) {
    rows.add(label, good ? yes : no, good ? Style::good : Style::warning);
  };
  LabelledRows rows(palette);
  row(rows, "bodies", sameBodies, "the same (o-lines aside)", "different (o-lines aside)");
  row(rows, "origin lines", a.compareSdpOLine(&b) == 0, "equal", "different");
  // The library asks whether a line is that of the same session with a version that is not greater. Seen from the
  // later body, that is what makes it an update of the earlier one.
  row(rows, "B updates A", b.compareSdpOLineUpdate(&a), "yes", "no");
  return rows.text();
}

int compare(const BodyInput& a, const BodyInput& b, const Palette& palette, Streams streams) {
  const cSdpNegotiator& first = *a.inspection.object;
  const cSdpNegotiator& second = *b.inspection.object;
  const bool same = first.compareSdpByBody(&second) == 0;
  streams.out.write(comparisonRows(first, second, same, palette));
  const std::string difference = unifiedDiff({a.name, bodyText(first)}, {b.name, bodyText(second)}, palette);
  if (!difference.empty()) streams.out.write("\n" + difference);
  return same ? exitSuccess : exitDifferent;
}

}  // namespace

int runCompare(const Arguments& arguments, Streams streams) {
  const std::vector<std::string>& operands = arguments.operands();
  if (operands.size() != 2) throw UsageError{"two bodies are wanted: A and B"};
  if (operands[0] == "-" && operands[1] == "-") throw UsageError{"standard input can be read only once"};
  const BodyInput a = readBodyFor(operands[0], streams);
  const BodyInput b = readBodyFor(operands[1], streams);
  if (!a.usable() || !b.usable()) return exitBadInput;
  return compare(a, b, paletteFor(arguments.value("--color"), streams.out), streams);
}

}  // namespace tool
