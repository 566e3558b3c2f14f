#ifndef SDP_MEDIA_LIST_H
#define SDP_MEDIA_LIST_H

#include "sdpDataDefinitions.h"
#include "sessionDescription.h"

// What of a list of media goes into a summary.

namespace sdpneg {

/// Condenses the video of a body's list of media, as `sdpParserMessage::getMedia` gives it, into a summary: whether
/// some is received only, the largest bandwidth, the highest H.264 level.
void takeVideoList(sSdpParsedData& data, const sDescription& description);

}  // namespace sdpneg

#endif
