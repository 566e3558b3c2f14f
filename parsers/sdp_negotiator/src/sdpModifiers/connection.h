#ifndef SDP_MODIFIERS_CONNECTION_H
#define SDP_MODIFIERS_CONNECTION_H

#include <cstddef>

#include "text/sdpText.h"

namespace sdpneg {

/// Replaces the first c-line at or behind an offset, see `sdpModifications::sdpReplaceCxIP`.
/// @return 0, or 1 with a trace
unsigned short replaceConnection(SdpText& text, std::size_t from, const char* ip);

}  // namespace sdpneg

#endif
