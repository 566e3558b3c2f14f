#ifndef SDP_MODIFIERS_ORIGIN_LINE_COPY_H
#define SDP_MODIFIERS_ORIGIN_LINE_COPY_H

#include <string_view>

#include "refusal.h"
#include "text/sdpText.h"

// The o-line of another body in the place of one's own.

namespace sdpneg {

/// Puts another body's o-line with CR LF in the place of a text's own.
/// @param old  the own line with its end, as a summary has it: it may lie outside the text, which is refused
/// @param line without its end
Refusal replaceOriginLine(SdpText& text, Span old, std::string_view line);

}  // namespace sdpneg

#endif
