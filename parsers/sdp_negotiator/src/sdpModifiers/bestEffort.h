#ifndef SDP_MODIFIERS_BEST_EFFORT_H
#define SDP_MODIFIERS_BEST_EFFORT_H

#include <vector>

#include "sessionDescription.h"
#include "text/sdpText.h"

// What best-effort SRTP is told by.

namespace sdpneg {

/// `sdpModifications::getMLines`, of a text that was adopted. Tells what it refuses itself.
unsigned short readMLines(const SdpText& text, std::vector<mDescription>& mLines);

}  // namespace sdpneg

#endif
