#include "sdpModifiers/attributeRemoval.h"
#include "sdpModifiers/dualStackIce.h"
#include "sdpNegotiator.h"
#include "sdpNegotiator/request.h"
#include "trace.h"

// Interactive connectivity establishment (RFC 8839): its removal, and that of candidates of the other address version.

using namespace sdpneg;

unsigned short cSdpNegotiator::sdpRemoveIce() {
  constexpr unsigned int kIce = SDP_ATTR_ICE_LITE | SDP_ATTR_FULL_ICE;
  trace::progress("Request to remove the FICE attributes.");
  if ((parsedData.sdpAttributes & kIce) == 0) return refuse({.reason = SDP_REFUSED_NO_ICE});
  const unsigned short status = editAndKeep(*this, kStoredOrAsBefore, [](SdpText& text) { removeIce(text); });
  if (status == 0) parsedData.sdpAttributes &= ~kIce;
  return 0;
}

unsigned short cSdpNegotiator::sdpRemoveDualStackIce() {
  trace::progress("Request to remove Invalid Candidates.");
  // Nothing to remove is no failure, and is not told from an edit that failed.
  bool edited = false;
  const unsigned short status = editAndParse({*this, parsedData, rawSdp}, [&](SdpText& text) {
    const Refusal refusal = removeDualStackIce(text);
    edited = !refusal;
    return refusal;
  });
  return edited ? status : 0;
}
