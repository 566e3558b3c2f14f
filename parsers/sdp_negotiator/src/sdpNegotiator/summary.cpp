#include <algorithm>
#include <iterator>

#include "sdpNegotiator.h"
#include "vocabulary.h"

// Taking a summary over into an object.

namespace sdpneg {
namespace {

/// The values that a request which parses the text again overwrites.
void applyParsedValues(cSdpNegotiator& object, const sSdpParsedData& data) {
  object.setGainControl(data.gainControl);
  object.setMediaType(data.mediaType);
  object.setSdpAttributes(data.sdpAttributes);
  object.setT38MaxBitRate(data.T38MaxBitRate);
}

void applySettings(cSdpNegotiator& object, const sSdpParsedData& data) {
  object.setAudioCodecs(data.audioCodec, MAX_SDP_NEGOTIATOR_AUDIO_CODECS);
  object.setPacketizationPeriod(data.packetizationPeriod, MAX_SDP_NEGOTIATOR_AUDIO_CODECS);
  object.setSdpDescriptor({data.address, data.port});
  object.setEchoCancellation(data.echoCancellation);
  object.setEchoCancelDirection(data.echoCancelDirection);
  object.setResourceReserve(data.resourceReserve);
  object.setBandwidth(data.bandwidth);
  applyParsedValues(object, data);
}

/// With telephone events in the list, silence suppression off is not requested.
bool requestsSilenceSuppression(const sSdpParsedData& data, unsigned char current) {
  const bool events = std::find(std::begin(data.audioCodec), std::end(data.audioCodec),
                                kCodecTelephoneEvent) != std::end(data.audioCodec);
  return data.silenceSuppression != current && !(events && data.silenceSuppression == FEATURE_STATE_OFF);
}

}  // namespace
}  // namespace sdpneg

using namespace sdpneg;

void cSdpNegotiator::setParsedData(const sSdpParsedData& given) {
  const sSdpParsedData data = given;  // it may be the object's own
  const unsigned char mode = parsedData.sessionMode;
  const unsigned char suppression = parsedData.silenceSuppression;
  applySettings(*this, data);
  if (data.sessionMode != mode) sdpReplaceMode(data.sessionMode);
  if (requestsSilenceSuppression(data, suppression)) sdpInsertSilenceSuppression(data.silenceSuppression);
  parsedData.videoBandwidth = data.videoBandwidth;
  applyParsedValues(*this, data);
  // A changed mode is requested twice: the comparison is with the mode that the object had at first.
  if (data.sessionMode != mode) sdpReplaceMode(data.sessionMode);
  parsedData.videoMode = data.videoMode;
}
