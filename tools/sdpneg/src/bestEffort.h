#ifndef SDPNEG_BEST_EFFORT_H
#define SDPNEG_BEST_EFFORT_H

#include <string>

#include "sdpNegotiator.h"

namespace tool {

/// The form in which a body offers secure media without insisting on them.
struct BestEffort {
  eSecurityType type;
  std::string reason;  ///< why no form could be established; empty for the other types
};

/// Asks the library, whose trace tells the reason. Must not be called while lines are traced (TraceLines).
BestEffort bestEffortOf(const cSdpNegotiator& object);

/// "two m-lines per medium", "no: plain RTP only", "unknown: odd number of m-lines".
std::string bestEffortText(const BestEffort& bestEffort);
/// The type in the JSON output.
const char* bestEffortName(eSecurityType type);

}  // namespace tool

#endif
