#ifndef SDPNEG_BEST_EFFORT_H
#define SDPNEG_BEST_EFFORT_H

#include <string>

#include "sdpNegotiator.h"
#include "sessionDescription.h"

namespace tool {

/// The form in which a body offers secure media without insisting on them.
struct BestEffort {
  eSecurityType type;    ///< the library's answer
  std::string reason;    ///< why it established no form; empty for the other types
  bool isOpportunistic;  ///< RTP/AVP with keys (RFC 8643), where the library established no form
};

/// Asks the library about a parsed body.
/// @param description its own, as it was decoded
BestEffort bestEffortOf(const cSdpNegotiator& object, const sDescription& description);

/// Whether media are offered with keys on RTP/AVP and none on RTP/SAVP.
bool hasKeysOnPlainMedia(const sDescription& description);

/// "two m-lines per medium", "no: plain RTP only", "unknown: odd number of m-lines".
std::string bestEffortText(const BestEffort& bestEffort);
/// The type in the JSON output.
const char* bestEffortName(const BestEffort& bestEffort);

}  // namespace tool

#endif
