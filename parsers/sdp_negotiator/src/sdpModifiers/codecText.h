#ifndef SDP_MODIFIERS_CODEC_TEXT_H
#define SDP_MODIFIERS_CODEC_TEXT_H

#include <string_view>

#include "refusal.h"
#include "sdpDataDefinitions.h"
#include "sessionDescription.h"
#include "text/sdpText.h"

// Between a text and its description.

namespace sdpneg {

/// @return the codec's status
unsigned short decodeText(sDescription& description, const char* text);

/// Decodes a text that was adopted, which ends in NUL. A refusal has the codec's words, and the line and column that
/// they name.
Refusal decode(sDescription& description, std::string_view text);

/// The refusal of a text that does not fit.
/// @param operation,what named in the trace, `what` as the new text
inline Refusal refusalOfRoom(const char* operation, std::string_view what) {
  return {.reason = SDP_REFUSED_NO_ROOM, .operation = operation, .what = what};
}

/// Puts a description, as the codec writes it, in the place of a whole text. The text stays without room, and when the
/// codec fails, as ours does without memory.
/// @param operation,what see `refusalOfRoom`
Refusal replaceByEncoded(SdpText& text, const sDescription& description, const char* operation,
                         const char* what);

}  // namespace sdpneg

#endif
