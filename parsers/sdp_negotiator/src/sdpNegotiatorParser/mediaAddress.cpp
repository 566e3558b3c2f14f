#include "mediaAddress.h"

#include "sdpNegotiatorParser.h"
#include "vocabulary.h"

// Ports and addresses of chosen media.

namespace sdpneg {

namespace {

/// The section's number, from 1.
int numberOf(const Body& body, const Section& section) {
  return static_cast<int>(&section.media() - body.description().media) + 1;
}

}  // namespace

Refusal checkPort(const char* kind, const Body& body, Section& section) {
  const int port = section.port();
  if (isMediaPort(port)) return {};
  return {.reason = SDP_REFUSED_INVALID_PORT,
          .what = kind,
          .number = port,
          .section = numberOf(body, section),
          .field = SDP_REFUSAL_FIELD_PORT};
}

Refusal takeAddress(sSdpParsedData& data, ReadAddress& addresses, const c_line& line, int section) {
  const char* const text = addressOf(line);
  const cMsgIPAddress& address = addresses.read(text);
  if (address.getIPAddressVersion() == kIpVersionUnknown) {
    return {.reason = SDP_REFUSED_INVALID_ADDRESS,
            .what = viewOf(text),
            .section = section,
            .field = SDP_REFUSAL_FIELD_ADDRESS};
  }
  data.address = address;
  return {};
}

Refusal takeAddressOf(sSdpParsedData& data, Body& body, const Section& section) {
  return takeAddress(data, body.addresses(), section.connection(), numberOf(body, section));
}

Refusal addressWithoutAudio(sSdpParsedData& data, Body& body, Section& section, const char* kind) {
  if (body.holds(MEDIA_AUDIO) || !hasConnection(section.connection())) return {};
  if (const Refusal refusal = checkPort(kind, body, section)) return refusal;
  data.port = static_cast<std::uint32_t>(section.port());
  return takeAddressOf(data, body, section);
}

}  // namespace sdpneg

using namespace sdpneg;

unsigned short sdpParserMessage::getIpAddr(sSdpParsedData& data, const c_line& line) {
  ReadAddress addresses;
  return statusOf(takeAddress(data, addresses, line, 0));
}
