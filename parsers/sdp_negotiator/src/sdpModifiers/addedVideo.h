#ifndef SDP_MODIFIERS_ADDED_VIDEO_H
#define SDP_MODIFIERS_ADDED_VIDEO_H

#include <string_view>

#include "refusal.h"
#include "text/sdpText.h"

// Video sections that are put into a text.

namespace sdpneg {

/// Puts sections in the place of the video section, or at the end of a text that does not name video. Only the result
/// has to fit: a section that is too long for the buffer may be replaced by the next one.
Refusal addVideo(SdpText& text, std::string_view sections);

}  // namespace sdpneg

#endif
