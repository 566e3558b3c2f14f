#ifndef SDP_MODIFIERS_CONNECTION_MODE_H
#define SDP_MODIFIERS_CONNECTION_MODE_H

#include <optional>
#include <string_view>

#include "text/sdpText.h"

namespace sdpneg {

/// Direction words all have eight characters, so that one is changed for another in place.
inline constexpr std::size_t kModeLength = 8;

/// Whether a text begins with a direction word.
bool startsWithMode(std::string_view text);

/// What a current and a requested direction have in common, by their first eight characters; nothing when the
/// current one stays.
std::optional<std::string_view> commonMode(std::string_view current, std::string_view requested);

/// Applies a direction to each section of one medium, from the LF of a first m-line on.
void applyModeToMedia(SdpText& text, std::size_t from, std::string_view mediaName, std::string_view mode);

}  // namespace sdpneg

#endif
