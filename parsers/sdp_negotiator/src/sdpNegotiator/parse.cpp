#include <algorithm>
#include <cstring>
#include <iterator>

#include "sdpNegotiator.h"
#include "sdpNegotiatorParser.h"
#include "trace.h"

using namespace sdpneg;

cSdpNegotiator cSdpNegotiator::empty() noexcept {
  cSdpNegotiator object{};
  object.parsedData.init();
  return object;
}

void cSdpNegotiator::reset() {
  parsedData.init();
  std::memset(rawSdp, 0, sizeof rawSdp);
}

unsigned short cSdpNegotiator::sdpParse(const char* sdp, eSdpType type) {
  reset();
  if (sdp == nullptr || *sdp == '\0') {
    trace::error("Empty buffer. Nothing to be parsed.");
    return 1;
  }
  constexpr unsigned long limit = MAX_SDP_PROTOCOL_DATA_SIZE;
  const unsigned long length = std::strlen(sdp);
  if (length > limit) {
    trace::error("The SDP size=%lu exceeds MAX_SDP_PROTOCOL_DATA_SIZE=%lu", length, limit);
    return 1;
  }
  trace::progress("Entering sdpParse() method: SDP length is %lu", length);
  if (sdpParserMessage::sdpParse(sdp, type, parsedData) != 0) {
    trace::error("Exiting sdpParse() method. Exiting...");
    reset();
    return 1;
  }
  const unsigned short status = setRawSDP(sdp);
  if (status != 0) reset();
  return status;
}

void cSdpNegotiator::initAudioCodecs() {
  std::fill(std::begin(parsedData.audioCodec), std::end(parsedData.audioCodec), SDP_NO_CODEC);
}

void cSdpNegotiator::initPacketizationPeriod() {
  std::fill(std::begin(parsedData.packetizationPeriod), std::end(parsedData.packetizationPeriod),
            SDP_PACKETIZATION_NOT_SET);
}

void cSdpNegotiator::initSdpDescriptor() {
  parsedData.port = SDP_PORT_NOT_SET;
  parsedData.address.init();
}
