#ifndef SDP_MODIFIERS_VIDEO_DISABLING_H
#define SDP_MODIFIERS_VIDEO_DISABLING_H

#include "text/sdpText.h"

// Video sections that stay with port 0.

namespace sdpneg {

/// `sdpModifications::sdpRemoveVideoMedia`. Tells what it refuses itself.
/// @param allMedia also removes the other lines of the sections
void disableVideo(SdpText& text, bool allMedia);

}  // namespace sdpneg

#endif
