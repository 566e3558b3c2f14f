#include <algorithm>
#include <iterator>

#include "refusal.h"
#include "sdpNegotiator.h"
#include "sdpNegotiator/parse.h"
#include "sdpNegotiatorParser/sdpParse.h"
#include "text/search.h"

// The parse of a body into an object, and parts of a summary in their initial state.

using namespace sdpneg;

cSdpNegotiator cSdpNegotiator::empty() noexcept {
  cSdpNegotiator object{};
  object.parsedData.init();
  return object;
}

unsigned short cSdpNegotiator::sdpParse(const char* sdp, eSdpType type) {
  constexpr unsigned long limit = MAX_SDP_PROTOCOL_DATA_SIZE;
  const std::string_view text = viewOf(sdp);
  if (text.empty() || text.size() > limit) {
    clear(parsedData, rawSdp);
    if (text.empty()) return refuse({.reason = SDP_REFUSED_EMPTY_TEXT});
    return refuse({.reason = SDP_REFUSED_TEXT_TOO_LONG,
                   .number = static_cast<long long>(text.size()),
                   .limit = static_cast<long long>(limit)});
  }
  return parseInto({*this, parsedData, rawSdp}, text, [&] { return parseText(parsedData, text, type); });
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
