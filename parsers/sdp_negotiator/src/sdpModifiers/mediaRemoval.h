#ifndef SDP_MODIFIERS_MEDIA_REMOVAL_H
#define SDP_MODIFIERS_MEDIA_REMOVAL_H

#include "text/sdpText.h"

// Removal of the media sections of a transport. Which ones went is recorded. Each tells what it refuses itself, but
// nothing of a null buffer.

namespace sdpneg {

/// `sdpModifications::sdpRemoveMline`.
void removeMLines(SdpText& text, char* removed, unsigned short& oLineEnd, const char* transport,
                  bool modifyOLine);
/// `sdpModifications::sdpRemoveSecurity`.
void removeSecureMLines(SdpText& text, char* removed, unsigned short& oLineEnd, bool modifyOLine);
/// `sdpModifications::sdpDisableSRTPMediaStreams`.
void removeSecureMedia(SdpText& text, char* removed, unsigned short& oLineEnd);

}  // namespace sdpneg

#endif
