#ifndef SDP_MEDIA_ADDRESS_H
#define SDP_MEDIA_ADDRESS_H

#include "sdpDataDefinitions.h"
#include "sessionDescription.h"

// Ports and addresses of chosen media.

namespace sdpneg {

/// Traces a port that a chosen m-line may not have: one other than 0 outside 1024 to 65535.
/// @param kind the media kind's name in the m-line
/// @return 0, or 1 for such a port
unsigned short checkPort(const char* kind, int port);

/// Takes the port and address of a video or image m-line, when it has a c-line of its own or inherited and
/// the body has no audio, which would keep both.
/// @return 0, or 1 for an invalid port or address
unsigned short addressWithoutAudio(sSdpParsedData& data, const sDescription& description,
                                   const mDescription& media, const char* kind);

}  // namespace sdpneg

#endif
