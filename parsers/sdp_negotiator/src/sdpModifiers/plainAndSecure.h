#ifndef SDP_MODIFIERS_PLAIN_AND_SECURE_H
#define SDP_MODIFIERS_PLAIN_AND_SECURE_H

#include "text/sdpText.h"

// From one m-line per medium to two, a plain and a secure one.

namespace sdpneg {

/// `sdpModifications::sdpBuild2mLineSDP`. Tells what it refuses itself.
void buildPlainAndSecure(SdpText& text);

}  // namespace sdpneg

#endif
