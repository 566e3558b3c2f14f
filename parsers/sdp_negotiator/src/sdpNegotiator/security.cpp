#include "sdpModifiers/attributeRemoval.h"
#include "sdpModifiers/mediaRemoval.h"
#include "sdpNegotiator.h"
#include "sdpNegotiator/request.h"
#include "trace.h"
#include "vocabulary.h"

// How a body secures its media, and removal of what the other side does not support.

namespace sdpneg {
namespace {

constexpr std::size_t kSecureRecordSize = 28;

int traceDetail(const char* text) { return trace::progress("%s", text); }

unsigned short removeLinesAndParse(cSdpNegotiator& object, const char* prefix) {
  return editAndKeep(object, kParsed, [&](SdpText& text) { removeSecureAttributes(text, prefix); });
}

unsigned short removeSecureMedia(cSdpNegotiator& object, char* removed) {
  return editWithOLineAndParse(object, [&](SdpText& text, unsigned short& oLineEnd) {
    sdpneg::removeSecureMedia(text, removed, oLineEnd);
  });
}

unsigned short removePlainMedia(cSdpNegotiator& object, char* removed) {
  bool expanded = false;
  const unsigned short status = editWithOLineAndParse(object, [&](SdpText& text, unsigned short& oLineEnd) {
    expanded = true;
    removeMLines(text, removed, oLineEnd, kPlainTransport, true);
  });
  // A text that cannot be expanded is tried again, for the secure media: it fails there as well.
  return expanded ? status : removeSecureMedia(object, removed);
}

/// One of two ways to agree on keys, and what is removed of it: its attributes where media may use the other, all
/// secure media where they cannot.
struct KeyExchange {
  bool (cSdpNegotiator::*isPresent)() const;
  bool (cSdpNegotiator::*isOtherPresent)() const;
  unsigned short (*removeAttributes)(cSdpNegotiator& object);
  const char* name;
  const char* request;
  const char* besideOther;
  const char* alone;
};

constexpr KeyExchange kMikey = {
    &cSdpNegotiator::isMikeyPresent,
    &cSdpNegotiator::isSDESPresent,
    [](cSdpNegotiator& object) { return object.sdpRemoveMikeyAttribute(); },
    "MIKEY",
    "Request to remove MIKEY secure media streams.",
    "Only the MIKEY attributes will be removed. SDP has also SDES secure media",
    "SDP does not have SDES security. Will remove all secure MIKEY media",
};

constexpr KeyExchange kSdes = {
    &cSdpNegotiator::isSDESPresent,
    &cSdpNegotiator::isMikeyPresent,
    [](cSdpNegotiator& object) { return removeLinesAndParse(object, kAnyCrypto); },
    "SDES",
    "Request to remove SDES secure media streams.",
    "Only the SDES attributes will be removed. SDP has also MIKEY secure media",
    "SDP does not have MIKEY security. Will remove all secure SDES media",
};

unsigned short removeKeyExchange(cSdpNegotiator& object, char* removed, const KeyExchange& keys) {
  traceDetail(keys.request);
  if (!(object.*keys.isPresent)()) {
    return asStatus(tell({.reason = SDP_REFUSED_NO_SUCH_KEYS, .what = keys.name}));
  }
  if ((object.*keys.isOtherPresent)()) {
    traceDetail(keys.besideOther);
    return keys.removeAttributes(object);
  }
  traceDetail(keys.alone);
  return removeSecureMedia(object, removed);
}

}  // namespace
}  // namespace sdpneg

using namespace sdpneg;

eSecurityType cSdpNegotiator::getSdpSecurityType() const {
  if (!isSdpPresent()) return SECURITY_NONE;
  const bool secure = contains(kSecureTransport);
  if (!contains(kPlainTransport)) return secure ? SECURITY_SRTP_ONLY : SECURITY_NONE;
  const bool both = secure || isDTLSPresent() || contains("a=key-mgmt") || isSDESPresent();
  return both ? SECURITY_BOTH : SECURITY_RTP_ONLY;
}

bool cSdpNegotiator::isDTLSPresent() const { return contains("a=setup") || contains("a=fingerprint"); }

unsigned short cSdpNegotiator::sdpDisableSRTPMedia(char* removed, eNonSupportedSecurity kind) {
  clearRecord(removed, kSecureRecordSize);
  switch (kind) {
    case NON_SUPPORTED_MIKEY:
      return removeKeyExchange(*this, removed, kMikey);
    case NON_SUPPORTED_SDES:
      return removeKeyExchange(*this, removed, kSdes);
    case NON_SUPPORTED_RTP:
      trace::debug("Request to remove RTP media streams.");
      return removePlainMedia(*this, removed);
    default:
      traceDetail("Request to remove all the secure media streams.");
      return removeSecureMedia(*this, removed);
  }
}

unsigned short cSdpNegotiator::sdpRemoveMikeyAttribute() {
  trace::debug("Request to remove the mi-key attributes.");
  return removeLinesAndParse(*this, kKeyManagement);
}

unsigned short cSdpNegotiator::sdpDisableSDESCryptoMedia() {
  traceDetail("Request to remove crypto media streams.");
  return removeLinesAndParse(*this, kAnyCrypto);
}

unsigned short cSdpNegotiator::sdpRemoveDTLSAttributes() {
  trace::debug("Request to remove DTLS secure attributes.");
  if (!isDTLSPresent()) return refuse({.reason = SDP_REFUSED_NO_SUCH_KEYS, .what = "DTLS"});
  traceDetail("DTLS media attributes are present and will be removed from the SDP.");
  return editAndKeep(*this, kParsedWhateverComes, removeDtlsAttributes) == 0 ? 0 : 1;
}
