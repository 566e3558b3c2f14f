#ifndef SDPNEG_ANONYMOUS_HEADER_H
#define SDPNEG_ANONYMOUS_HEADER_H

#include <string>
#include <string_view>

#include "calls/anonymousText.h"

namespace tool {

/// Writes the value of a SIP header field, which may be folded, as its name tells.
void writeHeaderValue(Replacements& replacements, std::string_view name, std::string_view value,
                      std::string& out);

}  // namespace tool

#endif
