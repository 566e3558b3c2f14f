#ifndef SDP_MODIFIERS_CONNECTION_MODE_H
#define SDP_MODIFIERS_CONNECTION_MODE_H

#include <optional>
#include <string_view>

#include "refusal.h"
#include "text/sdpText.h"

// The directions of a session and of its media sections.

namespace sdpneg {

/// `sdpModifications::sdpReplaceMode`.
Refusal replaceMode(SdpText& text, unsigned char mode, int mediaSelect);

/// What a current and a requested direction have in common, by their first eight characters; nothing when the
/// current one stays.
std::optional<std::string_view> commonMode(std::string_view current, std::string_view requested);

/// Applies a direction to each section of one medium, from the LF of a first m-line on.
void applyModeToMedia(SdpText& text, std::size_t from, std::string_view mediaName, std::string_view mode);

}  // namespace sdpneg

#endif
