#include <string_view>

#include "descriptionView.h"
#include "namePattern.h"
#include "readsBehindNul.h"
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

/// Which transports a transport field names, mostly as a whole.
struct Named {
  bool plain;
  bool secure;
};

Named namedBy(const char (&transport)[SDP_TRANSPORT_SIZE]) {
  constexpr std::string_view tlsPrefix = "UDP/TLS/";
  constexpr NamePattern tls(tlsPrefix, NameTest::prefix);
  constexpr NamePattern plain("RTP/AVP", NameTest::whole);
  constexpr NamePattern plainWithFeedback("RTP/AVPF", NameTest::whole);
  constexpr NamePattern secure("RTP/SAVP", NameTest::whole);
  constexpr NamePattern secureWithFeedback("RTP/SAVPF", NameTest::whole);
  static_assert(kPlainTransport == std::string_view("RTP/AVP") &&
                kSecureTransport == std::string_view("RTP/SAVP"));
  if constexpr (kReadsBehindNul) {
    const char* const name = transport + (tls.matchesAt(transport) ? tlsPrefix.size() : 0);
    if (plain.matchesAt(name) || plainWithFeedback.matchesAt(name)) return {true, false};
    if (secure.matchesAt(name) || secureWithFeedback.matchesAt(name)) return {false, true};
  }
  return {contains(transport, kPlainTransport), contains(transport, kSecureTransport)};
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
  if (!body.mayHaveOtherTransport() && !body.lines().kinds.hasAnyOf(kSecurityLines)) return;
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
