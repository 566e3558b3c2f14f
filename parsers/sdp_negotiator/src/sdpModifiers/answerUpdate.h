#ifndef SDP_MODIFIERS_ANSWER_UPDATE_H
#define SDP_MODIFIERS_ANSWER_UPDATE_H

#include "refusal.h"
#include "text/sdpText.h"

// An answer follows a new offer that differs from the old one in its codecs only (RFC 3264 8).

namespace sdpneg {

/// `sdpModifications::sdpUpdateSdp`. Tells what its refusal owes to another one itself.
Refusal updateAnswer(SdpText& answer, const SdpText& oldOffer, const SdpText& newOffer,
                     unsigned short& oLineEnd, bool modifyOLine);

}  // namespace sdpneg

#endif
