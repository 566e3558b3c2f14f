#ifndef SDP_MODIFIERS_CODEC_RECORDS_H
#define SDP_MODIFIERS_CODEC_RECORDS_H

#include <span>

#include "sessionDescription.h"

// Codec lists of the audio sections of a description that holds its text whole.

namespace sdpneg {

/// Leaves formats, rtpmap and fmtp lines out whose codec is not in the list; telephone events and comfort noise stay,
/// unknown codecs do not.
void keepCodecs(sDescription& description, std::span<const unsigned char> keep);

/// Puts the formats of a list's codecs in its order, the first of each, and their rtpmap and fmtp lines in front of the
/// other attributes; all other formats go.
/// @param order no codec twice
void orderCodecs(sDescription& description, std::span<const unsigned char> order);

}  // namespace sdpneg

#endif
