#ifndef SDP_MODIFIERS_CONNECTION_H
#define SDP_MODIFIERS_CONNECTION_H

#include <cstddef>
#include <string_view>

#include "refusal.h"
#include "text/sdpText.h"

// The address of one connection line.

namespace sdpneg {

/// What a c-line begins with.
inline constexpr std::string_view kCLine = "c=";

/// Replaces the first c-line at or behind an offset, see `sdpModifications::sdpReplaceCxIP`.
Refusal replaceConnection(SdpText& text, std::size_t from, const char* ip);

}  // namespace sdpneg

#endif
