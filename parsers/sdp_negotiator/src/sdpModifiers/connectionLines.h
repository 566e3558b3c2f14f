#ifndef SDP_MODIFIERS_CONNECTION_LINES_H
#define SDP_MODIFIERS_CONNECTION_LINES_H

#include "refusal.h"
#include "sdpModifiers/givenAddress.h"
#include "sdpModifiers/notes.h"

// The address in the connection lines of a session and of its media sections.

namespace sdpneg {

/// `sdpModifications::sdpModifyCLines`.
Refusal replaceSessionAndAudioConnections(NotedText& text, const GivenAddress& address);

/// `sdpModifications::sdpModifyCLinesAllLines`.
Refusal replaceSessionOrFirstConnection(NotedText& text, const GivenAddress& address);

}  // namespace sdpneg

#endif
