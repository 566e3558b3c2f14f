#ifndef SDPNEG_ANONYMOUS_SDP_H
#define SDPNEG_ANONYMOUS_SDP_H

#include <string>
#include <string_view>

#include "calls/anonymousText.h"

namespace tool {

/// Writes an SDP body line by line, whichever way they end. It can be parsed as before.
void writeSdp(Replacements& replacements, std::string_view body, std::string& out);

}  // namespace tool

#endif
