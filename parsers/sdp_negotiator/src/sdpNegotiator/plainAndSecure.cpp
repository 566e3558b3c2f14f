#include "sdpModifiers/plainAndSecure.h"
#include "sdpNegotiator.h"
#include "sdpNegotiator/request.h"
#include "trace.h"

// A plain and a secure m-line in the place of each.

using namespace sdpneg;

unsigned short cSdpNegotiator::sdpBuild2mLineSDP() {
  trace::debug("Request to build 2mLine SDP.");
  return editAndParse({*this, parsedData, rawSdp}, buildPlainAndSecure);
}
