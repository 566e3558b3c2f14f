#include <algorithm>
#include <iterator>

#include "refusal.h"
#include "sdpNegotiator.h"
#include "sdpNegotiator/parse.h"
#include "sdpNegotiatorParser/sdpParse.h"
#include "text/search.h"

// The parse of a body into an object, and parts of a summary in their initial state.

namespace sdpneg {

unsigned short parseKnown(const ParseTarget& to, std::string_view sdp, eSdpType type) {
  constexpr unsigned long limit = MAX_SDP_PROTOCOL_DATA_SIZE;
  if (sdp.empty() || sdp.size() > limit) {
    clear(to.data, to.store);
    if (sdp.empty()) return refuse({.reason = SDP_REFUSED_EMPTY_TEXT});
    return refuse({.reason = SDP_REFUSED_TEXT_TOO_LONG,
                   .number = static_cast<long long>(sdp.size()),
                   .limit = static_cast<long long>(limit)});
  }
  return parseInto(to, sdp, [&] { return parseText(to.data, sdp, type); });
}

}  // namespace sdpneg

using namespace sdpneg;

cSdpNegotiator cSdpNegotiator::empty() noexcept {
  cSdpNegotiator object{};
  object.parsedData.init();
  return object;
}

unsigned short cSdpNegotiator::sdpParse(const char* sdp, eSdpType type) {
  return parseKnown({*this, parsedData, rawSdp}, viewOf(sdp), type);
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
