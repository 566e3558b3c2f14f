#ifndef SDP_MODIFIERS_DUAL_STACK_ICE_H
#define SDP_MODIFIERS_DUAL_STACK_ICE_H

#include "refusal.h"
#include "text/sdpText.h"

// ICE candidates (RFC 8839) of the address version that a media section does not use.

namespace sdpneg {

/// `sdpModifications::sdpRemoveDualStackIce`. The text is in the codec's form also when there was nothing to remove,
/// which is refused.
Refusal removeDualStackIce(SdpText& text);

}  // namespace sdpneg

#endif
