#ifndef SDPNEG_TRACE_LINES_H
#define SDPNEG_TRACE_LINES_H

#include <string>
#include <vector>

#include "output/streams.h"

struct KvRttLine;

namespace tool {

/// A line that the library traced.
struct TraceLine {
  int flag;
  std::string text;  ///< with the library's prefix
};

/// Switches the library's tracing on and collects its lines, for as long as it lives; one at a time.
class TraceLines {
 public:
  TraceLines();
  ~TraceLines();
  TraceLines(const TraceLines&) = delete;
  TraceLines& operator=(const TraceLines&) = delete;

  const std::vector<TraceLine>& lines() const { return lines_; }

 private:
  static void take(void* context, const KvRttLine* line);

  std::vector<TraceLine> lines_;
};

/// Writes lines of the library, one a line.
void writeTraceLines(Output& err, const std::vector<TraceLine>& lines);

}  // namespace tool

#endif
