#ifndef SDP_MODIFIERS_CONNECTION_H
#define SDP_MODIFIERS_CONNECTION_H

#include <cstddef>
#include <string_view>

#include "refusal.h"
#include "text/sdpText.h"

// The address of one connection line.

namespace sdpneg {

/// Replaces the first c-line at or behind an offset, see `sdpModifications::sdpReplaceCxIP`.
Refusal replaceConnection(SdpText& text, std::size_t from, const char* ip);

}  // namespace sdpneg

#endif
