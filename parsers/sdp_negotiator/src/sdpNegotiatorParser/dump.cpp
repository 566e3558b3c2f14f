#include "sdpNegotiatorParser.h"
#include "trace.h"

// A summary as trace lines.

namespace sdpneg {
namespace {

constexpr int kAddressTextSize = 50;

void dumpAddress(const sSdpParsedData& data) {
  char address[kAddressTextSize];
  data.address.getIPAddressText(address, kAddressTextSize);
  trace::progress("address:%s,   addressType:%d,   port:%d", address,
                  static_cast<int>(data.address.getIPAddressVersion()), static_cast<int>(data.port));
}

void dumpAudioCodecs(const sSdpParsedData& data) {
  if (data.audioCodec[0] == SDP_NO_CODEC) {
    trace::progress("No audio codecs found.");
    return;
  }
  for (int i = 0; i < MAX_SDP_NEGOTIATOR_AUDIO_CODECS; ++i) {
    if (data.audioCodec[i] == SDP_NO_CODEC) continue;
    trace::progress("audioCodec:[%d],   packetizationPeriod:[%d]", data.audioCodec[i],
                    data.packetizationPeriod[i]);
  }
}

}  // namespace
}  // namespace sdpneg

using namespace sdpneg;

void sdpParserMessage::sdpDumpMediaInfo(const sSdpParsedData& data) {
  dumpAddress(data);
  dumpAudioCodecs(data);
  trace::progress("sessionMode:%d,   videoMode:%d", data.sessionMode, data.videoMode);
  trace::progress("bandwidth:%u,   videoBandwidth:%u,   echoCancellation:%d,   silenceSuppression:%d",
                  data.bandwidth, data.videoBandwidth, data.echoCancellation, data.silenceSuppression);
  trace::progress("resourceReserve:%d,   gainControl:%d,   mediaType:%d", data.resourceReserve,
                  data.gainControl, static_cast<int>(data.mediaType));
  trace::progress("sdpAttributes:0x%x", data.sdpAttributes);
  trace::progress("The h264 profile is:[%d]", data.h264Profile);
}
