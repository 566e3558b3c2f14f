// Holds a call and resumes it.

#include "guide.h"

int main() {
  cSdpNegotiator call;
  if (call.sdpParse(kOffer, SDP_TYPE_OFFER) != 0) return 1;

  const cSdpNegotiator active = call;  // an assignment copies all there is
  constexpr int kAllMedia = 0;
  if (call.sdpReplaceMode(CONNECTION_MODE_SENDONLY, kAllMedia) != 0) return 1;
  if (call.sdpIncVersion() != 0) return 1;
  show(call, "o=");
  show(call, "a=sendonly");  // of the session, the audio and the video
  std::printf("on hold: %s\n", call.isHoldState() ? "yes" : "no");

  // Directions only ever narrow, so resuming goes back to the body from before, with the next version.
  const cSdpNegotiator held = call;
  call = active;
  if (call.copyOLine(&held) != 0 || call.sdpIncVersion() != 0) return 1;
  show(call, "o=");
  show(call, "a=sendonly");
  std::printf("on hold: %s\n", call.isHoldState() ? "yes" : "no");
  return 0;
}
