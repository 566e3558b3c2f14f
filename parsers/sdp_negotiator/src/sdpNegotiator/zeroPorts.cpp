#include "sdpModifiers/zeroPorts.h"
#include "sdpNegotiator.h"
#include "sdpNegotiator/request.h"
#include "trace.h"

// Removal of m-lines of port 0.

using namespace sdpneg;

void cSdpNegotiator::sdpRemoveMlinesZeroPort() {
  trace::debug("sdpRemoveMlinesZeroPort():Request to remove zero port m-lines");
  editAndParse({*this, parsedData, rawSdp}, removeZeroPorts);
  trace::debug("Exiting sdpRemoveMlinesZeroPort()");
}
