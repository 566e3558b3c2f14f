#ifndef SDP_MODIFIERS_ANAT_H
#define SDP_MODIFIERS_ANAT_H

#include "cMsgIPAddress.h"
#include "text/sdpText.h"

// Alternative network address types (ANAT, RFC 4091): a group of media sections that offer one medium over either IP
// version. Each tells what it refuses itself, but nothing of a null buffer.

namespace sdpneg {

/// `sdpModifications::sdpApplyAnatAttributes`.
void applyAnat(SdpText& text);
/// `sdpModifications::sdpRemoveAnat`.
void removeAnat(SdpText& text, eIPAddressVersion ipVersion, char* removed, unsigned short& oLineEnd,
                bool modifyOLine);
/// `sdpModifications::sdpReInsertAnat`.
void reinsertAnat(SdpText& text, const char* removed, unsigned short& oLineEnd, bool modifyOLine);

}  // namespace sdpneg

#endif
