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

constexpr KindSet kMikeyLines(AttributeKind::keyMgmt, AttributeKind::longerKeyMgmt);

bool hasMikeyLine(const AttributeIndex& attributes) {
  bool found = false;
  attributes.forEach(kMikeyLines, [&](const a_line::entry& line, AttributeKind) {
    found = line.value[0] != '\0';
    return !found;
  });
  return found;
}

void noteMikey(sSdpParsedData& data) {
  data.sdpAttributes |= SDP_ATTR_MIKEY;
  trace::progress("Mikey attribute is found.");
}

/// Which transports a transport field names, at its beginning as mostly or further on.
struct Named {
  bool plain;
  bool secure;
};

/// Whether nothing stands behind the name of a transport, or what tells one with feedback.
bool isEndOfName(const char* behind) { return behind[0] == '\0' || (behind[0] == 'F' && behind[1] == '\0'); }

Named namedBy(const char* transport) {
  constexpr std::string_view tls = "UDP/TLS/";
  constexpr std::string_view plain = kPlainTransport;
  constexpr std::string_view secure = kSecureTransport;
  const char* const name = textStartsWith(transport, tls) ? transport + tls.size() : transport;
  if (textStartsWith(name, plain) && isEndOfName(name + plain.size())) return {true, false};
  if (textStartsWith(name, secure) && isEndOfName(name + secure.size())) return {false, true};
  return {contains(transport, plain), contains(transport, secure)};
}

void noteSecureMedia(sSdpParsedData& data, Section& section) {
  const Named named = namedBy(section.media().mLine.transport);
  if (named.secure && section.port() != 0) {
    data.sdpAttributes |= SDP_ATTR_SECURE_RTP;
    if (section.kind() == MEDIA_VIDEO) data.sdpAttributes |= SDP_ATTR_SECURE_VIDEO;
    trace::info("Setting secure RTP call flag");
  }
  if (named.plain && section.attributes().hasAnyOf(kSecurityLines)) {
    data.sdpAttributes |= SDP_ATTR_SECURE_RTP;
    trace::info("RTP/AVP media with secure line. Setting secure RTP call flag");
  }
}

}  // namespace

void findMikey(sSdpParsedData& data, Body& body) {
  if (hasMikeyLine(body.session())) return noteMikey(data);
  if (!body.lines().kinds.hasAnyOf(kMikeyLines)) return;
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
