#ifndef SDP_MODIFIERS_ZERO_PORTS_H
#define SDP_MODIFIERS_ZERO_PORTS_H

#include "refusal.h"
#include "text/sdpText.h"

// Removal of m-lines of port 0.

namespace sdpneg {

/// `sdpModifications::sdpRemoveMlinesZeroPort`.
/// @return the refusal of a text without m-line, or whose last m-line has no port that can be read; what was removed
///         before stays so
Refusal removeZeroPorts(SdpText& text);

}  // namespace sdpneg

#endif
