#include "sdpModifiers.h"
#include "sdpNegotiator.h"
#include "sdpNegotiator/request.h"
#include "sdpNegotiatorTrace.h"

// Requests that add or remove attribute lines of which the summary says little: the text is stored and not parsed
// again.

using sdpneg::editAndStoreOrStay;

unsigned short cSdpNegotiator::sdpRemoveIce() {
  constexpr unsigned int kIce = SDP_ATTR_ICE_LITE | SDP_ATTR_FULL_ICE;
  cNegotTraceManager::writeTraceMsg(8, 4, "Request to remove the FICE attributes.");
  if ((parsedData.sdpAttributes & kIce) == 0) return 1;
  if (editAndStoreOrStay(*this, sdpModifications::sdpRemoveICE) == 0) parsedData.sdpAttributes &= ~kIce;
  return 0;
}

unsigned short cSdpNegotiator::sdpDelPrecondions() {
  cNegotTraceManager::writeTraceMsg(8, 4, "Request to delete preconditions attributes.");
  return editAndStoreOrStay(*this, sdpModifications::sdpDelPreconditions);
}

unsigned short cSdpNegotiator::sdpInsertPrecondions(int a, int b, const sSdpPrecondions* preconditions) {
  cNegotTraceManager::writeTraceMsg(1, 1, "Request to insert  precondition attributes.");
  if (preconditions == nullptr) {
    cNegotTraceManager::writeTraceMsg(4, 3, "The preconditions buffer is empty.");
    return 1;
  }
  // An empty object has an empty text here.
  char text[MAX_SDP_PROTOCOL_DATA_SIZE];
  const unsigned short expanded = getRawSDP(text, sizeof text);
  if (expanded != 0) return expanded;
  if (sdpModifications::sdpInsertPrecondions(text, sizeof text, a, b, preconditions) != 0) {
    cNegotTraceManager::writeTraceMsg(
        4, 3,
        "Preconditions attributes cannot add to the buffer,since it exceeds the MAX_SDP_PROTOCOL_DATA_SIZE");
    return 1;
  }
  cNegotTraceManager::writeTraceMsg(2, 2, "Preconditions attributes have added to the SDP.");
  return sdpneg::storeOrStay(*this, text);
}
