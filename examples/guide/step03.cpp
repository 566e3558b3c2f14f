// Asks an offer what it says.

#include "guide.h"

namespace {

const char* yesOrNo(bool value) { return value ? "yes" : "no"; }

void showAudio(const sSdpParsedData& summary) {
  char address[46];  // holds every address
  summary.address.getIPAddressText(address, sizeof address);
  std::printf("audio at %s port %u:", address, summary.port);
  for (const unsigned char codec : summary.audioCodec) {
    if (codec == SDP_NO_CODEC) break;
    std::printf(" %s", cSdpNegotiator::getAudioCodecText(codec));
  }
  std::printf(", %d ms\n", summary.packetizationPeriod[0]);
}

void showVideo(const cSdpNegotiator& offer) {
  unsigned char codecs[SDP_VIDEO_CODEC_LIST_SIZE];
  unsigned int attributes = 0;
  if (offer.getVideoCodecs(codecs, attributes) != 0) return;
  std::printf("video:");
  for (const unsigned char codec : codecs) {
    if (codec == SDP_NO_CODEC) break;
    std::printf(" %s", cSdpNegotiator::getVideoCodecText(codec));
  }
  const bool level31 = offer.getParsedData().h264Profile == H264_LEVEL_3_1;
  std::printf(", H.264 level 3.1: %s\n", yesOrNo(level31));
}

}  // namespace

int main() {
  cSdpNegotiator offer;
  if (offer.sdpParse(kOffer, SDP_TYPE_OFFER) != 0) return 1;
  const sSdpParsedData& summary = offer.getParsedData();
  showAudio(summary);
  showVideo(offer);
  std::printf("has video: %s, has fax: %s\n", yesOrNo((summary.mediaType & MEDIA_VIDEO) != 0),
              yesOrNo((summary.mediaType & MEDIA_IMAGE) != 0));
  std::printf("secure: %s, SDES keys: %s, ICE: %s, on hold: %s\n", yesOrNo(offer.isSecureCall()),
              yesOrNo(offer.isSDESPresent()), yesOrNo(offer.isFullIcePresent() || offer.isIceLitePresent()),
              yesOrNo(offer.isHoldState()));
  return 0;
}
