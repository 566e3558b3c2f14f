#ifndef SDPNEG_CALL_LINES_H
#define SDPNEG_CALL_LINES_H

#include <string>

#include "calls/call.h"
#include "output/colour.h"

// Calls in a line each.

namespace tool {

/// What stands above the lines.
std::string callLineHeading(const Palette& palette);

/// Number, start, from, to, state and result, codecs, security, and what is odd; ends with LF.
std::string callLine(const Call& call, const Palette& palette);

/// State and result: "ended 200", "ringing".
std::string stateText(const Call& call);

/// What is wrong in a call, a line each: "call 1, message 4, line 12, section 1: one-way: ...".
std::string troubleLines(const Call& call, const Palette& palette);

/// How bad a trouble is, as a colour.
Style styleOf(const Trouble& trouble);

}  // namespace tool

#endif
