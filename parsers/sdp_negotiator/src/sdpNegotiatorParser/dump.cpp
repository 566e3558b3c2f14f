#include "sdpNegotiatorParser.h"
#include "sdpNegotiatorTrace.h"

namespace {

constexpr int addressTextSize = 50;

void dumpAddress(const sSdpParsedData& data) {
  char address[addressTextSize];
  data.address.getIPAddressText(address, addressTextSize);
  cNegotTraceManager::writeTraceMsg(8, 4, "address:%s,   addressType:%d,   port:%d", address,
                                    static_cast<int>(data.address.getIPAddressVersion()),
                                    static_cast<int>(data.port));
}

void dumpAudioCodecs(const sSdpParsedData& data) {
  if (data.audioCodec[0] == SDP_NO_CODEC) {
    cNegotTraceManager::writeTraceMsg(8, 4, "No audio codecs found.");
    return;
  }
  for (int i = 0; i < MAX_SDP_NEGOTIATOR_AUDIO_CODECS; ++i) {
    if (data.audioCodec[i] == SDP_NO_CODEC) continue;
    cNegotTraceManager::writeTraceMsg(8, 4, "audioCodec:[%d],   packetizationPeriod:[%d]", data.audioCodec[i],
                                      data.packetizationPeriod[i]);
  }
}

}  // namespace

void sdpParserMessage::sdpDumpMediaInfo(const sSdpParsedData& data) {
  dumpAddress(data);
  dumpAudioCodecs(data);
  cNegotTraceManager::writeTraceMsg(8, 4, "sessionMode:%d,   videoMode:%d", data.sessionMode, data.videoMode);
  cNegotTraceManager::writeTraceMsg(
      8, 4, "bandwidth:%u,   videoBandwidth:%u,   echoCancellation:%d,   silenceSuppression:%d",
      data.bandwidth, data.videoBandwidth, data.echoCancellation, data.silenceSuppression);
  cNegotTraceManager::writeTraceMsg(8, 4, "resourceReserve:%d,   gainControl:%d,   mediaType:%d",
                                    data.resourceReserve, data.gainControl, static_cast<int>(data.mediaType));
  cNegotTraceManager::writeTraceMsg(8, 4, "sdpAttributes:0x%x", data.sdpAttributes);
  cNegotTraceManager::writeTraceMsg(8, 4, "The h264 profile is:[%d]", data.h264Profile);
}
