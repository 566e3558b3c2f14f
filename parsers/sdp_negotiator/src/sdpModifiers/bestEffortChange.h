#ifndef SDP_MODIFIERS_BEST_EFFORT_CHANGE_H
#define SDP_MODIFIERS_BEST_EFFORT_CHANGE_H

#include "refusal.h"
#include "sdpDataDefinitions.h"
#include "text/sdpText.h"

// From a best-effort offer with two m-lines per medium to one with one m-line, or to a secure-only one.

namespace sdpneg {

/// `sdpModifications::sdpChangeSdpType`. Its steps tell what they refuse themselves.
/// @return the refusal of the whole text; a text that the codec refuses is changed all the same
Refusal changeSrtpType(SdpText& text, eSecurityType oldType, eSecurityType newType, char* removed,
                       unsigned short oLineEnd);

}  // namespace sdpneg

#endif
