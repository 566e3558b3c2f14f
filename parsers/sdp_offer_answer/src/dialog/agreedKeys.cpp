// Which keys were agreed.

#include "agreedParts.h"
#include "text/search.h"
#include "transports.h"

namespace sdp::exchange {
namespace {

/// The tag of a crypto attribute (RFC 4568, section 9.1).
std::string_view tagOf(const Attribute& crypto) { return crypto.fields()[0]; }

/// The answer has one of the offered lines; each side has keys of its own beside the same tag.
void chooseCrypto(AgreedSection& agreed, const SidePart& local, const SidePart& remote, bool isOfferLocal) {
  const SidePart& offer = isOfferLocal ? local : remote;
  const SidePart& answer = isOfferLocal ? remote : local;
  std::string& offered = isOfferLocal ? agreed.local.crypto : agreed.remote.crypto;
  std::string& answered = isOfferLocal ? agreed.remote.crypto : agreed.local.crypto;
  const auto lines = answer.bundles.attributesOf(answer.section, Credential::crypto);
  const auto chosen = lines.begin();
  if (chosen == Range<AttributeCursor>::end()) return;
  for (const Attribute& crypto : offer.bundles.attributesOf(offer.section, Credential::crypto)) {
    if (tagOf(crypto) != tagOf(*chosen)) continue;
    offered = crypto.value.value_or(std::string_view());
    answered = chosen->value.value_or(std::string_view());
    return;
  }
}

DtlsRole roleOf(const AgreedSection& agreed, bool isOfferLocal) {
  const std::string& answered = isOfferLocal ? agreed.remote.setup : agreed.local.setup;
  const std::string& offered = isOfferLocal ? agreed.local.setup : agreed.remote.setup;
  // What is missing is active in an offer and passive in an answer (RFC 4145, section 4).
  bool isAnswererClient = answered == "active";
  if (answered != "active" && answered != "passive") isAnswererClient = offered == "passive";
  return isAnswererClient == isOfferLocal ? DtlsRole::server : DtlsRole::client;
}

std::string_view transportOf(const SidePart& side) { return side.body.section(side.section).transport(); }
bool wantsKeys(std::string_view transport) {
  return hasTls(transport) || sdpneg::contains(transport, "SAVP");
}

}  // namespace

void chooseKeys(AgreedSection& agreed, const SidePart& local, const SidePart& remote, bool isOfferLocal) {
  const std::string_view ours = transportOf(local);
  const std::string_view theirs = transportOf(remote);
  const bool isTls = hasTls(agreed.transport);
  const bool isRtp = sdpneg::contains(agreed.transport, "RTP/");
  if (isRtp && !isTls) chooseCrypto(agreed, local, remote, isOfferLocal);
  const bool hasFingerprints = !agreed.local.fingerprints.empty() && !agreed.remote.fingerprints.empty();
  if (!agreed.local.crypto.empty()) {
    agreed.security = Security::sdes;
  } else if (hasFingerprints && (isRtp || isTls)) {
    agreed.security = Security::dtls;
    agreed.dtlsRole = roleOf(agreed, isOfferLocal);
  } else if (isRtp && !isTls && !agreed.local.keyMgmt.empty() && !agreed.remote.keyMgmt.empty()) {
    agreed.security = Security::mikey;
  } else if (!isRtp && hasTls(ours) && hasTls(theirs)) {
    agreed.security = Security::dtls;  // with certificates that nothing tells of
  } else if (wantsKeys(ours) || wantsKeys(theirs)) {
    agreed.security = Security::keyless;  // an answer that drops them makes no secure offer a plain one
  }
}

}  // namespace sdp::exchange
