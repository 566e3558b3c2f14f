#ifndef SDP_MEDIA_ADDRESS_H
#define SDP_MEDIA_ADDRESS_H

#include "body.h"
#include "refusal.h"
#include "sdpDataDefinitions.h"
#include "vocabulary.h"

// Ports and addresses of chosen media.

namespace sdpneg {

/// Tells the refusal of a chosen m-line's port.
/// @return 1
unsigned short refusePort(const char* kind, const Body& body, Section& section);

/// Refuses a port that a chosen m-line may not have: one other than 0 outside 1024 to 65535.
/// @param kind the media kind's name in the m-line
/// @return 0, or 1 for a refusal, which is told, like all of these
inline unsigned short checkPort(const char* kind, const Body& body, Section& section) {
  return isMediaPort(section.port()) ? 0 : refusePort(kind, body, section);
}

/// Takes the first address of a c-line into a summary.
/// @return whether it is a valid address
bool takeAddress(sSdpParsedData& data, ReadAddress& addresses, const c_line& line);

/// The refusal of a c-line's first address.
/// @param section that the line stands in, 0 for the session
Refusal refusalOfAddress(const c_line& line, int section);

/// Takes the address of a chosen m-line into a summary. Its c-line may have been inherited; the refusal names the
/// m-line.
unsigned short takeAddressOf(sSdpParsedData& data, Body& body, const Section& section);

/// Takes the port and address of a video or image m-line, when it has a c-line of its own or inherited and
/// the body has no audio, which would keep both.
unsigned short addressWithoutAudio(sSdpParsedData& data, Body& body, Section& section, const char* kind);

}  // namespace sdpneg

#endif
