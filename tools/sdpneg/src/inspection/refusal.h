#ifndef SDPNEG_REFUSAL_H
#define SDPNEG_REFUSAL_H

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "inspection/bodyLines.h"
#include "inspection/traceLines.h"
#include "sessionDescription.h"

namespace tool {

/// Says in plain words why the analysis refuses a body that is SDP, and which line it is.
/// @param trace       the lines of the refused parse, the last error among which says why
/// @param description the decoded body
Problem explainRefusal(const std::vector<TraceLine>& trace, const sDescription& description,
                       const BodyLines& lines);

/// Says why the library refused a request.
/// @param trace  the lines of the request
/// @param status what it returned
std::string explainRefusedRequest(std::span<const TraceLine> trace, unsigned short status);

/// Says why the library refused a text that a request had made.
std::string explainRefusedText(std::span<const TraceLine> trace);

/// Whether a line of a trace is an error.
bool hasError(std::span<const TraceLine> trace);

/// The lines of a request up to where it parses the text that it made.
std::span<const TraceLine> beforeParse(std::span<const TraceLine> trace);

/// A trace line without the library's prefix.
std::string_view withoutPrefix(std::string_view line);

}  // namespace tool

#endif
