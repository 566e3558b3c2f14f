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

unsigned short refusePort(const char* kind, const Body& body, Section& section) {
  return refuse({.reason = SDP_REFUSED_INVALID_PORT,
                 .what = kind,
                 .number = section.port(),
                 .section = numberOf(body, section),
                 .field = SDP_REFUSAL_FIELD_PORT});
}

bool takeAddress(sSdpParsedData& data, ReadAddress& addresses, const c_line& line) {
  const cMsgIPAddress& address = addresses.read(addressOf(line));
  if (address.getIPAddressVersion() == kIpVersionUnknown) return false;
  data.address = address;
  return true;
}

Refusal refusalOfAddress(const c_line& line, int section) {
  return {.reason = SDP_REFUSED_INVALID_ADDRESS,
          .what = viewOf(addressOf(line)),
          .section = section,
          .field = SDP_REFUSAL_FIELD_ADDRESS};
}

unsigned short takeAddressOf(sSdpParsedData& data, Body& body, const Section& section) {
  const c_line& line = section.connection();
  return takeAddress(data, body.addresses(), line) ? 0
                                                   : refuse(refusalOfAddress(line, numberOf(body, section)));
}

unsigned short addressWithoutAudio(sSdpParsedData& data, Body& body, Section& section, const char* kind) {
  if (body.holds(MEDIA_AUDIO) || !hasConnection(section.connection())) return 0;
  if (checkPort(kind, body, section) != 0) return 1;
  data.port = static_cast<std::uint32_t>(section.port());
  return takeAddressOf(data, body, section);
}

}  // namespace sdpneg

using namespace sdpneg;

unsigned short sdpParserMessage::getIpAddr(sSdpParsedData& data, const c_line& line) {
  ReadAddress addresses;
  return takeAddress(data, addresses, line) ? 0 : refuse(refusalOfAddress(line, 0));
}
