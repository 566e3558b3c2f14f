#include "sdpModifiers.h"
#include "sdpNegotiator.h"
#include "sdpNegotiator/request.h"
#include "trace.h"

// Quality-of-service preconditions (RFC 3312).

using namespace sdpneg;

bool cSdpNegotiator::sdpPreconditionsExist() const {
  return contains("a=curr:") || contains("a=des:") || contains("a=conf:");
}

unsigned short cSdpNegotiator::sdpDelPrecondions() {
  trace::progress("Request to delete preconditions attributes.");
  return editAndKeep(*this, kStoredOrAsBefore, sdpModifications::sdpDelPreconditions);
}

unsigned short cSdpNegotiator::sdpInsertPrecondions(int a, int b, const sSdpPrecondions* preconditions) {
  trace::debug("Request to insert  precondition attributes.");
  if (preconditions == nullptr) return refuse({.reason = SDP_REFUSED_NO_PRECONDITIONS_GIVEN});
  // An empty object has an empty text here.
  char text[MAX_SDP_PROTOCOL_DATA_SIZE];
  const unsigned short expanded = getRawSDP(text, sizeof text);
  if (expanded != 0) return expanded;
  const unsigned int before = toldSoFar();
  if (sdpModifications::sdpInsertPrecondions(text, sizeof text, a, b, preconditions) != 0) {
    // The line speaks of the size whatever the reason is.
    tellUnlessTold({.reason = SDP_REFUSED_PRECONDITIONS_NOT_ADDED}, before);
    return 1;
  }
  trace::info("Preconditions attributes have added to the SDP.");
  return keepText(*this, text, kStoredOrAsBefore);
}
