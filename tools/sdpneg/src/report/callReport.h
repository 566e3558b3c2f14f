#ifndef SDPNEG_CALL_REPORT_H
#define SDPNEG_CALL_REPORT_H

#include <memory>

#include "calls/call.h"
#include "output/colour.h"
#include "report/callJson.h"
#include "report/ladder.h"

// What `calls` writes to standard output.

namespace tool {

class CallReport {
 public:
  virtual ~CallReport() = default;

  /// Takes a call that is over.
  virtual void add(const Call& call) = 0;
  /// Whether there is nothing more to be told.
  virtual bool isDone() const { return false; }
  /// Writes what is left.
  virtual void end(const CallTotals& totals) = 0;
};

/// A line a call.
std::unique_ptr<CallReport> callLineReport(Output& out, const Palette& palette);
/// The ladder of one call.
std::unique_ptr<CallReport> ladderReport(Output& out, const Palette& palette, std::size_t call,
                                         const LadderOptions& options);
/// What is wrong, a line each.
std::unique_ptr<CallReport> troubleReport(Output& out, const Palette& palette);
/// A JSON document.
std::unique_ptr<CallReport> jsonReport(Output& out, const CallJsonOptions& options);

}  // namespace tool

#endif
