#ifndef SDP_MODIFIERS_MEDIA_SET_H
#define SDP_MODIFIERS_MEDIA_SET_H

#include "refusal.h"
#include "text/sdpText.h"

// The m-lines of a text as a set, compared with those of another.

namespace sdpneg {

/// `sdpModifications::isSingleMLineSdp`, of a text that was adopted. Tells what it refuses itself.
bool hasSingleMLine(const SdpText& text);

/// `sdpModifications::correctMLines`.
Refusal correctMLines(const SdpText& oldText, SdpText& newText, bool keepOnly, bool matchTransport);

}  // namespace sdpneg

#endif
