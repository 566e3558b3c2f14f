#ifndef SDP_MODIFIERS_MEDIA_RETURN_H
#define SDP_MODIFIERS_MEDIA_RETURN_H

#include "text/sdpText.h"

// The return of removed m-lines as secure dummy m-lines.

namespace sdpneg {

/// `sdpModifications::sdpReplaceTransProtocol`. Tells what it refuses itself.
void returnMLines(SdpText& text, const char* removed, unsigned short& oLineEnd, bool modifyOLine);

}  // namespace sdpneg

#endif
