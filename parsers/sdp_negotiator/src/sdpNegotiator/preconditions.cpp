#include <algorithm>

#include "sdpModifiers/preconditions.h"
#include "sdpNegotiator.h"
#include "sdpNegotiator/request.h"
#include "trace.h"
#include "vocabulary.h"

// Quality-of-service preconditions (RFC 3312).

using namespace sdpneg;

bool cSdpNegotiator::sdpPreconditionsExist() const {
  return std::ranges::any_of(kPreconditions, [this](const char* name) { return contains(name); });
}

unsigned short cSdpNegotiator::sdpDelPrecondions() {
  trace::progress("Request to delete preconditions attributes.");
  return editAndKeep(*this, kStoredOrAsBefore, removePreconditions);
}

unsigned short cSdpNegotiator::sdpInsertPrecondions(int a, int b, const sSdpPrecondions* preconditions) {
  trace::debug("Request to insert  precondition attributes.");
  if (preconditions == nullptr) return refuse({.reason = SDP_REFUSED_NO_PRECONDITIONS_GIVEN});
  // An empty object has an empty text here.
  char buffer[MAX_SDP_PROTOCOL_DATA_SIZE];
  const unsigned short expanded = getRawSDP(buffer, sizeof buffer);
  if (expanded != 0) return expanded;
  const unsigned int before = toldSoFar();
  SdpText text(buffer);
  if (statusOf(insertPreconditions(text, sizeof buffer, a, b, preconditions)) != 0) {
    // The line speaks of the size whatever the reason is.
    tellUnlessTold({.reason = SDP_REFUSED_PRECONDITIONS_NOT_ADDED}, before);
    return 1;
  }
  trace::info("Preconditions attributes have added to the SDP.");
  return keepText(*this, buffer, kStoredOrAsBefore);
}
