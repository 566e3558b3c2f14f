#ifndef SDPNEG_ANONYMOUS_MESSAGE_H
#define SDPNEG_ANONYMOUS_MESSAGE_H

#include <string>
#include <string_view>

#include "calls/anonymousText.h"

namespace tool {

/// Writes a SIP message: start line, header, and the body by its type. What is no SDP of a body, and what nobody can look
/// into, becomes x. A Content-Length is right or wrong by as much as before.
void writeMessage(Replacements& replacements, std::string_view message, std::string& out);

}  // namespace tool

#endif
