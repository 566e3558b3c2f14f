#include "descriptionView.h"
#include "sdpNegotiatorParser.h"
#include "steps.h"
#include "trace.h"
#include "vocabulary.h"

// How the media of a description are secured.

namespace sdpneg {
namespace {

constexpr KindSet kSecurityLines(AttributeKind::crypto, AttributeKind::setup, AttributeKind::fingerprint,
                                 AttributeKind::keyMgmt);

bool hasMikeyLine(const AttributeIndex& attributes) {
  bool found = false;
  attributes.forEach(KindSet(AttributeKind::keyMgmt, AttributeKind::longerKeyMgmt),
                     [&](const a_line::entry& line, AttributeKind) {
                       found = line.value[0] != '\0';
                       return !found;
                     });
  return found;
}

void noteMikey(sSdpParsedData& data) {
  data.sdpAttributes |= SDP_ATTR_MIKEY;
  trace::progress("Mikey attribute is found.");
}

/// Whether a transport is named, at the beginning as mostly or further on.
bool names(std::string_view transport, std::string_view name) {
  return startsWith(transport, name) || contains(transport, name);
}

void noteSecureMedia(sSdpParsedData& data, Section& section) {
  const std::string_view transport = transportOf(section.media());
  if (names(transport, kSecureTransport) && section.port() != 0) {
    data.sdpAttributes |= SDP_ATTR_SECURE_RTP;
    if (section.kind() == MEDIA_VIDEO) data.sdpAttributes |= SDP_ATTR_SECURE_VIDEO;
    trace::info("Setting secure RTP call flag");
  }
  if (names(transport, kPlainTransport) && section.attributes().hasAnyOf(kSecurityLines)) {
    data.sdpAttributes |= SDP_ATTR_SECURE_RTP;
    trace::info("RTP/AVP media with secure line. Setting secure RTP call flag");
  }
}

}  // namespace

void findMikey(sSdpParsedData& data, Body& body) {
  if (hasMikeyLine(body.session())) return noteMikey(data);
  for (Section& section : body.sections()) {
    if (hasMikeyLine(section.attributes())) noteMikey(data);
  }
}

void findSecureMedia(sSdpParsedData& data, Body& body, int noOfMDs) {
  for (Section& section : body.sections(noOfMDs)) noteSecureMedia(data, section);
}

}  // namespace sdpneg

using namespace sdpneg;

void sdpParserMessage::containsSecureMedia(sSdpParsedData& data, const sDescription& description,
                                           int noOfMDs) {
  Body body(description);
  findSecureMedia(data, body, noOfMDs);
}

void sdpParserMessage::checkForMickey(sSdpParsedData& data, const sDescription& description) {
  Body body(description);
  findMikey(data, body);
}
