#ifndef SDPNEG_REFUSAL_H
#define SDPNEG_REFUSAL_H

#include <vector>

#include "bodyLines.h"
#include "sessionDescription.h"
#include "traceLines.h"

namespace tool {

/// Says in plain words why the analysis refuses a body that is SDP, and which line it is.
/// @param trace       the lines of the refused parse, the last error among which says why
/// @param description the decoded body
Problem explainRefusal(const std::vector<TraceLine>& trace, const sDescription& description,
                       const BodyLines& lines);

}  // namespace tool

#endif
