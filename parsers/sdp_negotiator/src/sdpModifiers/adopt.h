#ifndef SDP_MODIFIERS_ADOPT_H
#define SDP_MODIFIERS_ADOPT_H

#include "sdpNegotiatorTrace.h"
#include "text/sdpText.h"

namespace sdpneg {

/// Whether a caller's buffer holds a text that can be edited; traces when it does not.
inline bool adopted(const SdpText& text, const char* operation) {
  if (!text.usable()) {
    cNegotTraceManager::writeTraceMsg(4, 3, "%s(): The SDP buffer is null or holds no end of text. Exiting.",
                                      operation);
  }
  return text.usable();
}

}  // namespace sdpneg

#endif
