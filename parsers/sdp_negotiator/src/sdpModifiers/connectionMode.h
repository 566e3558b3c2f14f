#ifndef SDP_MODIFIERS_CONNECTION_MODE_H
#define SDP_MODIFIERS_CONNECTION_MODE_H

#include <optional>
#include <string_view>

#include "refusal.h"
#include "sdpModifiers/notes.h"

// The directions of a session and of its media sections.

namespace sdpneg {

/// `sdpModifications::sdpReplaceMode`.
Refusal replaceMode(NotedText& text, unsigned char mode, int mediaSelect);
Refusal replaceMode(SdpText& text, unsigned char mode, int mediaSelect);

/// What a current and a requested direction have in common, by their first eight characters; nothing when the
/// current one stays.
/// @param tracing whether trace lines are written
std::optional<std::string_view> commonMode(std::string_view current, std::string_view requested,
                                           bool tracing);

}  // namespace sdpneg

#endif
