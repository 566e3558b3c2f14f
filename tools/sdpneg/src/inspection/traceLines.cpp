#include "inspection/traceLines.h"

#include <string_view>

#include "kvRttLocal.h"
#include "output/printable.h"

namespace tool {
namespace {

constexpr const char* kComponent = "SDP_NEGOTIATOR";

}  // namespace

TraceLines::TraceLines() {
  KvRttSetSink(&TraceLines::take, this);
  KvRttSwitchFlag(kComponent, "INFO", true);
}

TraceLines::~TraceLines() {
  KvRttSwitchFlag(kComponent, "INFO", false);
  KvRttSetSink(nullptr, nullptr);
}

void TraceLines::take(void* context, const KvRttLine* line) {
  if (std::string_view(line->component) != kComponent) return;
  static_cast<TraceLines*>(context)->lines_.push_back({line->flag, std::string(line->text, line->length)});
}

void writeTraceLines(Output& err, const std::vector<TraceLine>& lines) {
  for (const TraceLine& line : lines) err.write(printable(line.text) + "\n");
}

}  // namespace tool
