#ifndef SDPNEG_CALL_JSON_H
#define SDPNEG_CALL_JSON_H

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "calls/call.h"
#include "output/bufferedOutput.h"
#include "output/json.h"
#include "report/names.h"

// Calls as JSON. Its schema is data/calls.schema.json.

namespace tool {

struct CallJsonOptions {
  bool withTexts = false;  ///< of the messages
  Names names;
};

/// What is known of all calls at their end.
struct CallTotals {
  std::size_t messages = 0;
  std::size_t retransmissions = 0;
  std::size_t otherMessages = 0;  ///< that belong to no call
};
Json totalsJson(const CallTotals& totals);

/// "2026-01-31T23:59:59.000001Z"; nothing for a time that is not known or not within the years 0 to 9999.
std::optional<std::string> isoTime(CaptureTime time);

/// A call, with the diff of each hop that had a body.
Json callJson(const Call& call, const CallJsonOptions& options);

/// Writes the document of all calls, each call when it is given.
class CallsJson {
 public:
  CallsJson(BufferedOutput& out, CallJsonOptions options);
  void add(const Call& call);
  void end(const CallTotals& totals);

 private:
  BufferedOutput& out_;
  CallJsonOptions options_;
  JsonList list_;
};

}  // namespace tool

#endif
