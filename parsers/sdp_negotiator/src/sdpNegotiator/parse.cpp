#include <algorithm>
#include <cstring>
#include <iterator>

#include "refusal.h"
#include "sdpNegotiator.h"
#include "sdpNegotiatorParser/sdpParse.h"
#include "trace.h"

// The parse of a body into an object, and parts of a summary in their initial state.

namespace sdpneg {
namespace {

/// Empties an object, all of its text store included.
void clear(sSdpParsedData& data, char (&text)[SDP_STORED_TEXT_SIZE]) {
  data.init();
  std::memset(text, 0, sizeof text);
}

}  // namespace
}  // namespace sdpneg

using namespace sdpneg;

cSdpNegotiator cSdpNegotiator::empty() noexcept {
  cSdpNegotiator object{};
  object.parsedData.init();
  return object;
}

unsigned short cSdpNegotiator::sdpParse(const char* sdp, eSdpType type) {
  constexpr unsigned long limit = MAX_SDP_PROTOCOL_DATA_SIZE;
  const unsigned long length = sdp != nullptr ? std::strlen(sdp) : 0;
  // A text that is stored as it is takes all of the store, and need not find it empty.
  if (length == 0 || length >= sizeof rawSdp) {
    clear(parsedData, rawSdp);
  } else {
    parsedData.init();
  }
  if (length == 0) return refuse({.reason = SDP_REFUSED_EMPTY_TEXT});
  if (length > limit) {
    return refuse({.reason = SDP_REFUSED_TEXT_TOO_LONG,
                   .number = static_cast<long long>(length),
                   .limit = static_cast<long long>(limit)});
  }
  trace::progress("Entering sdpParse() method: SDP length is %lu", length);
  if (parseText(parsedData, {sdp, length}, type) != 0) {
    trace::error("Exiting sdpParse() method. Exiting...");  // behind the refusal that says why
    clear(parsedData, rawSdp);
    return 1;
  }
  const unsigned short status = setRawSDP(sdp);
  if (status != 0) clear(parsedData, rawSdp);
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
