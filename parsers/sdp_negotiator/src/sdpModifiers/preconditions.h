#ifndef SDP_MODIFIERS_PRECONDITIONS_H
#define SDP_MODIFIERS_PRECONDITIONS_H

#include "refusal.h"
#include "sdpDataDefinitions.h"
#include "text/sdpText.h"

// Quality-of-service preconditions (RFC 3312).

namespace sdpneg {

/// `sdpModifications::sdpInsertPrecondions`.
/// @param list `count` records
Refusal insertPreconditions(SdpText& text, unsigned int allowedSize, int enable, int count,
                            const sSdpPrecondions* list);
/// `sdpModifications::sdpDelPreconditions`. Tells what it refuses itself.
void removePreconditions(SdpText& text);

}  // namespace sdpneg

#endif
