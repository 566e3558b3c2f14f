// What one side tells of a section.

#include <algorithm>
#include <limits>

#include "agreedParts.h"
#include "parameters.h"

namespace sdp::exchange {
namespace {

std::uint32_t timeOf(const Section& section, std::string_view name) {
  const std::optional<Attribute> attribute = section.attribute(name);
  const std::uint64_t time = attribute ? readNumber(attribute->fields()[0]).value_or(0) : 0;
  return static_cast<std::uint32_t>(std::min<std::uint64_t>(time, std::numeric_limits<std::uint32_t>::max()));
}

/// The address of an a=rtcp: "IN IP4 192.0.2.1" behind its port.
void fillRtcp(AgreedSide& side, const Section& transport, bool usesRtcpMux) {
  constexpr std::uint16_t kMost = std::numeric_limits<std::uint16_t>::max();
  side.rtcpAddress = side.address;
  side.rtcpPort = side.port;
  if (usesRtcpMux) return;
  const std::optional<Rtcp> rtcp = transport.rtcp();
  if (rtcp && rtcp->port && *rtcp->port <= kMost) {
    side.rtcpPort = static_cast<std::uint16_t>(*rtcp->port);
    if (!rtcp->address.empty()) side.rtcpAddress = rtcp->address;
    return;
  }
  side.rtcpPort = side.port == kMost ? 0 : static_cast<std::uint16_t>(side.port + 1);
}

std::vector<std::string> valuesOf(Range<AttributeCursor> attributes) {
  std::vector<std::string> values;
  for (const Attribute& attribute : attributes)
    values.emplace_back(attribute.value.value_or(std::string_view()));
  return values;
}

}  // namespace

void fillSide(AgreedSide& side, const SidePart& part) {
  const Section own = part.body.section(part.section);
  const Section transport = part.body.section(part.transportSection);
  if (const std::optional<Connection> connection = transport.connection()) {
    side.address = connection->address;
    side.addressType = connection->addressType;
  }
  side.port = transport.port();
  if (own.isRtp()) fillRtcp(side, transport, part.usesRtcpMux);
  side.ptime = timeOf(own, "ptime");
  side.maxptime = timeOf(own, "maxptime");
  side.fingerprints = valuesOf(part.bundles.attributesOf(part.section, Credential::fingerprint));
  const auto keyMgmt = part.bundles.attributesOf(part.section, Credential::keyMgmt);
  if (!keyMgmt.empty()) side.keyMgmt = keyMgmt.begin()->value.value_or(std::string_view());
  side.setup = part.bundles.valueOf(part.section, Credential::setup);
  side.tlsId = part.bundles.valueOf(part.section, Credential::tlsId);
  side.iceUfrag = part.bundles.valueOf(part.transportSection, Credential::iceUfrag);
  side.icePwd = part.bundles.valueOf(part.transportSection, Credential::icePwd);
  side.candidates = valuesOf(transport.attributes("candidate"));
  side.isIceLite = part.body.session().has("ice-lite");
}

}  // namespace sdp::exchange
