// Puts the media on another address and other ports.

#include "guide.h"

namespace {

/// What has no request of the object is edited in a text: take it out, edit it, parse it again.
unsigned short setAudioPort(cSdpNegotiator& object, unsigned int port) {
  char text[MAX_SDP_PROTOCOL_DATA_SIZE];
  if (object.getSDP(text, sizeof text) != 0) return 1;
  const unsigned short edited = sdpModifications::sdpSetMediaPort(text, MEDIA_AUDIO, IP_VERSION_UNKNOWN,
                                                                  sdpModifications::MEDIA_SECURITY_ANY, port);
  return edited != 0 ? edited : object.sdpParse(text, SDP_TYPE_UNKNOWN);
}

}  // namespace

int main() {
  cSdpNegotiator offer;
  if (offer.sdpParse(kOffer, SDP_TYPE_OFFER) != 0) return 1;

  if (offer.sdpReplaceCxIP("2001:db8::5") != 0) return 1;  // the first c-line
  if (setAudioPort(offer, 20000) != 0) return 1;
  if (offer.sdpDisablePort(MEDIA_VIDEO) != 0) return 1;
  show(offer, "c=");
  show(offer, "m=");

  std::printf("a host name: status %u\n", offer.sdpReplaceCxIP("media.example.net"));
  std::printf("port 80: status %u\n", setAudioPort(offer, 80));
  show(offer, "c=");
  return 0;
}
