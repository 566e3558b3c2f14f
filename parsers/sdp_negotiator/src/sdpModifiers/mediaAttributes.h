#ifndef SDP_MODIFIERS_MEDIA_ATTRIBUTES_H
#define SDP_MODIFIERS_MEDIA_ATTRIBUTES_H

#include "refusal.h"
#include "sdpDataDefinitions.h"
#include "text/sdpText.h"

// Silence suppression and echo cancellation (RFC 3108) of audio.

namespace sdpneg {

/// `sdpModifications::sdpInsertSilenceSuppression`.
Refusal insertSilenceSuppression(SdpText& text, unsigned char mode, const sSdpParsedData& data);
/// `sdpModifications::sdpInsertEchoCancellation`.
Refusal insertEchoCancellation(SdpText& text, unsigned char state, unsigned char side);

}  // namespace sdpneg

#endif
