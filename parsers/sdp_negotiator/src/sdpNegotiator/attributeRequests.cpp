#include "sdpModifiers.h"
#include "sdpNegotiator.h"
#include "sdpNegotiator/request.h"
#include "trace.h"

// Requests that add or remove attribute lines of which the summary says little: the text is stored and not parsed
// again.

using namespace sdpneg;

using sdpneg::editAndStoreOrStay;

unsigned short cSdpNegotiator::sdpRemoveIce() {
  constexpr unsigned int kIce = SDP_ATTR_ICE_LITE | SDP_ATTR_FULL_ICE;
  trace::progress("Request to remove the FICE attributes.");
  if ((parsedData.sdpAttributes & kIce) == 0) return 1;
  if (editAndStoreOrStay(*this, sdpModifications::sdpRemoveICE) == 0) parsedData.sdpAttributes &= ~kIce;
  return 0;
}

unsigned short cSdpNegotiator::sdpDelPrecondions() {
  trace::progress("Request to delete preconditions attributes.");
  return editAndStoreOrStay(*this, sdpModifications::sdpDelPreconditions);
}

unsigned short cSdpNegotiator::sdpInsertPrecondions(int a, int b, const sSdpPrecondions* preconditions) {
  trace::debug("Request to insert  precondition attributes.");
  if (preconditions == nullptr) {
    trace::error("The preconditions buffer is empty.");
    return 1;
  }
  // An empty object has an empty text here.
  char text[MAX_SDP_PROTOCOL_DATA_SIZE];
  const unsigned short expanded = getRawSDP(text, sizeof text);
  if (expanded != 0) return expanded;
  if (sdpModifications::sdpInsertPrecondions(text, sizeof text, a, b, preconditions) != 0) {
    trace::error(
        "Preconditions attributes cannot add to the buffer,since it exceeds the MAX_SDP_PROTOCOL_DATA_SIZE");
    return 1;
  }
  trace::info("Preconditions attributes have added to the SDP.");
  return sdpneg::storeOrStay(*this, text);
}
