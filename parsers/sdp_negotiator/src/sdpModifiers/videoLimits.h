#ifndef SDP_MODIFIERS_VIDEO_LIMITS_H
#define SDP_MODIFIERS_VIDEO_LIMITS_H

#include "refusal.h"
#include "sdpDataDefinitions.h"
#include "text/sdpText.h"

// Levels and bandwidths of video sections.

namespace sdpneg {

/// `sdpModifications::sdpModifyProfileId`.
Refusal lowerH264Levels(SdpText& text, eH264_profile_id id);
/// `sdpModifications::sdpApplyBLine`. Tells what it refuses itself.
void lowerBandwidths(SdpText& text, unsigned int maxBandwidth);

}  // namespace sdpneg

#endif
