#ifndef SDP_MODIFIERS_VIDEO_SECTIONS_H
#define SDP_MODIFIERS_VIDEO_SECTIONS_H

#include "refusal.h"
#include "text/sdpText.h"

// The video sections of a text as a text of their own.

namespace sdpneg {

/// `sdpModifications::getVideoDescriptions`.
Refusal takeVideoSections(SdpText& text, char* out, unsigned int outSize, bool remove);

}  // namespace sdpneg

#endif
