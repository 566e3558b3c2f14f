#ifndef SDP_MODIFIERS_VIDEO_CODECS_H
#define SDP_MODIFIERS_VIDEO_CODECS_H

#include <span>

#include "refusal.h"
#include "text/sdpText.h"

// The formats of video sections: those of allowed codecs stay.

namespace sdpneg {

/// Removes from every video section the formats of known codecs that are not allowed, with their rtpmap and fmtp lines.
/// @param allowed values of `videoCodecTable`
/// @param changed receives whether there were any
/// @return a refusal when no video section can be decoded or one has no allowed codec; what was done to those in front
///         of it then is to be discarded
Refusal restrictVideo(SdpText& text, std::span<const unsigned char> allowed, bool& changed);

}  // namespace sdpneg

#endif
