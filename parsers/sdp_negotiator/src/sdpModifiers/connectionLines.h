#ifndef SDP_MODIFIERS_CONNECTION_LINES_H
#define SDP_MODIFIERS_CONNECTION_LINES_H

#include "refusal.h"
#include "text/sdpText.h"

// The address in the connection lines of a session and of its media sections.

namespace sdpneg {

/// `sdpModifications::sdpModifyCLines`.
Refusal replaceSessionAndAudioConnections(SdpText& text, const char* ip);

/// `sdpModifications::sdpModifyCLinesAllLines`.
Refusal replaceSessionOrFirstConnection(SdpText& text, const char* ip);

}  // namespace sdpneg

#endif
