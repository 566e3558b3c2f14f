#ifndef SDPNEG_CALL_FILTER_H
#define SDPNEG_CALL_FILTER_H

#include <string>
#include <string_view>
#include <vector>

#include "calls/call.h"
#include "captures/logContext.h"

// Which calls are asked for.

namespace tool {

/// What is empty asks for nothing. A call must match each kind that asks, by one of its values.
struct CallFilter {
  std::vector<std::string> callIds = {};  ///< of any leg, in which '*' stands for any characters
  std::string from = {};                  ///< a part of the caller's URI, in whichever case
  std::string to = {};
  std::vector<Endpoint> addresses = {};  ///< that take part; without a port (0) with any one
  CaptureTime since = {};  ///< a call matches when a part of it is in this window; see parseTime()
  CaptureTime until = {};

  bool matches(const Call& call) const;
};

/// Whether a text is what a pattern says, in which '*' stands for any characters.
bool matchesPattern(std::string_view text, std::string_view pattern);

}  // namespace tool

#endif
