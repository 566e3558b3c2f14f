#include "sdpModifiers/videoDisabling.h"
#include "sdpNegotiator.h"
#include "sdpNegotiator/request.h"
#include "trace.h"

// Port 0 for video.

using namespace sdpneg;

unsigned short cSdpNegotiator::sdpRemoveAllVideoMedia() {
  trace::debug("Request to remove ALL video media.");
  return editAndParse({*this, parsedData, rawSdp}, [](SdpText& text) { disableVideo(text, true); });
}

unsigned short cSdpNegotiator::sdpRemoveVideoMedia() {
  trace::debug("Request to remove video media.");
  return editAndParse({*this, parsedData, rawSdp}, [](SdpText& text) { disableVideo(text, false); });
}
