#ifndef SDP_MEDIA_ADDRESS_H
#define SDP_MEDIA_ADDRESS_H

#include "body.h"
#include "refusal.h"
#include "sdpDataDefinitions.h"

// Ports and addresses of chosen media.

namespace sdpneg {

/// Refuses a port that a chosen m-line may not have: one other than 0 outside 1024 to 65535.
/// @param kind the media kind's name in the m-line
Refusal checkPort(const char* kind, const Body& body, Section& section);

/// Takes the first address of a c-line into a summary.
/// @param section that the line stands in, 0 for the session
/// @return a refusal when it is no valid address
Refusal takeAddress(sSdpParsedData& data, ReadAddress& addresses, const c_line& line, int section);

/// Takes the address of a chosen m-line into a summary. Its c-line may have been inherited; the refusal names the
/// m-line.
Refusal takeAddressOf(sSdpParsedData& data, Body& body, const Section& section);

/// Takes the port and address of a video or image m-line, when it has a c-line of its own or inherited and
/// the body has no audio, which would keep both.
/// @return a refusal of the port or address
Refusal addressWithoutAudio(sSdpParsedData& data, Body& body, Section& section, const char* kind);

}  // namespace sdpneg

#endif
