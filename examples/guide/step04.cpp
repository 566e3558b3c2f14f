// Restricts and orders codecs.

#include "guide.h"

int main() {
  const unsigned char pcma = cSdpNegotiator::getRtpMapAudioCodecValue("PCMA");
  const unsigned char pcmu = cSdpNegotiator::getRtpMapAudioCodecValue("PCMU");
  const unsigned char g729 = cSdpNegotiator::getRtpMapAudioCodecValue("G729");
  const unsigned char vp8 = cSdpNegotiator::getVideoCodecValue("VP8");

  cSdpNegotiator offer;
  if (offer.sdpParse(kOffer, SDP_TYPE_OFFER) != 0) return 1;
  offer.sdpChangeAudioCodecPreference(pcmu);
  show(offer, "m=audio");

  // Here 1 tells that the body was rewritten, 0 that nothing was done. A new body that could not be parsed would
  // have left the object empty. Telephone events stay unasked.
  const unsigned char allowed[] = {g729, pcma};
  if (offer.sdpRestrictAudioCodecsTo(allowed, 2, true) != 1 || !offer.isSdpPresent()) return 1;
  show(offer, "m=audio");

  if (offer.sdpRestrictAudioCodecsTo(&g729, 1, true) == 0) std::printf("no common audio codec\n");

  offer.sdpLimitVideoMediaBandwidth(500, H264_LEVEL_2);
  show(offer, "a=fmtp:97");

  if (offer.sdpRestrictVideoCodecsTo(&vp8, 1) == 0) {
    if (offer.sdpRemoveVideoMedia() != 0) return 1;
  }
  show(offer, "m=video");
  return 0;
}
