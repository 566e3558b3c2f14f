#include "sdpModifiers.h"
#include "sdpNegotiator.h"
#include "sdpNegotiator/request.h"
#include "trace.h"

// Requests that remove alternatives for the other side's sake, or put m-lines back that were removed before.

using namespace sdpneg;

using sdpneg::asStatus;
using sdpneg::editWithOLineAndParse;
using M = sdpModifications;

unsigned short cSdpNegotiator::sdpRemoveDualStackIce() {
  trace::progress("Request to remove Invalid Candidates.");
  // Nothing to remove is no failure, and is not told from an edit that failed.
  unsigned short parsed = 0;
  sdpneg::editText(*this, M::sdpRemoveDualStackIce,
                   [&](const char* text) { return parsed = sdpParse(text, SDP_TYPE_UNKNOWN); });
  return parsed;
}

unsigned short cSdpNegotiator::sdpReplaceTransportProtocol(char* removed, bool flag) {
  trace::progress("Request to restore the RTP/SAVP.");
  if (removed == nullptr) {
    return asStatus(trace::error("The request to restore the RTP/SAVP is invalid."));
  }
  return editWithOLineAndParse(*this, [&](char* text, unsigned short& oLineEnd) {
    M::sdpReplaceTransProtocol(text, removed, oLineEnd, flag);
  });
}

unsigned short cSdpNegotiator::sdpReInsertANAT(char* removed, bool flag) {
  trace::progress("Request to re-insert the ANAT media.");
  if (removed == nullptr) {
    return asStatus(trace::error("The Request to re-insert the ANAT is invalid."));
  }
  return editWithOLineAndParse(*this, [&](char* text, unsigned short& oLineEnd) {
    M::sdpReInsertAnat(text, removed, oLineEnd, flag);
  });
}
