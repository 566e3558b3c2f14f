#include <algorithm>
#include <iterator>
#include <utility>

#include "inspection/names.h"
#include "inspection/refusal.h"
#include "requests/removedRecord.h"
#include "requests/requestArguments.h"
#include "requests/requestTable.h"

// Requests for security, ICE and alternative addresses.

namespace tool {
namespace {

/// Ends a request for which there is nothing to do.
unsigned short beIdle(RequestInput& input, std::string why) {
  input.idle = std::move(why);
  return 0;
}

/// The library edits only where it sees ICE, and it sees more than it removes.
unsigned short removeIce(cSdpNegotiator& object, RequestInput& input) {
  if (object.sdpRemoveIce() != 0) return beIdle(input, "the body has no ICE");
  input.failure = "no attribute of ICE could be removed";
  return 0;
}

/// The library goes through the sections and ends early where it cannot tell the address family. What it has
/// removed until then stays so.
unsigned short removeDualStackIce(cSdpNegotiator& object, RequestInput& input) {
  input.idle = "all candidates are of their media's address family";
  const RefusalWatch watch;
  const unsigned short status = object.sdpRemoveDualStackIce();
  if (watch.saw(SDP_REFUSED_CANDIDATE_WITHOUT_ADDRESS)) {
    input.failure = "a candidate has no address";
  } else if (watch.saw(SDP_REFUSED_ICE_SESSION_ADDRESS_TYPE) || watch.saw(SDP_REFUSED_ICE_ADDRESS_TYPE)) {
    input.failure = "an address type is neither IP4 nor IP6";
  } else if (watch.sawFailure()) {
    return 1;
  }
  return status;
}

unsigned short removeDtls(cSdpNegotiator& object, RequestInput& input) {
  if (!object.isDTLSPresent()) return beIdle(input, "the body has no DTLS-SRTP");
  return object.sdpRemoveDTLSAttributes();
}

constexpr std::string_view kKeyKinds[] = {"mikey", "sdes"};

constexpr RequestArgument kRemoveSecureArguments[] = {
    {.name = "KEYS", .expects = "a kind of keys", .values = kKeyKinds, .optional = true}};

/// Removes media, and tells which.
unsigned short disableMedia(cSdpNegotiator& object, RequestInput& input, eNonSupportedSecurity kind) {
  RemovedRecord record;
  const unsigned short status = object.sdpDisableSRTPMedia(record.data(), kind);
  input.removed = record.text();
  return status;
}

unsigned short removeSecure(cSdpNegotiator& object, RequestInput& input) {
  if (input.words.empty()) return disableMedia(object, input, NON_SUPPORTED_ALL_SECURE);
  const bool isMikey = indexOf(kKeyKinds, input.words[0]) == 0;
  const bool present = isMikey ? object.isMikeyPresent() : object.isSDESPresent();
  if (!present) return beIdle(input, isMikey ? "the body has no MIKEY" : "the body has no SDES");
  return disableMedia(object, input, isMikey ? NON_SUPPORTED_MIKEY : NON_SUPPORTED_SDES);
}

unsigned short removePlain(cSdpNegotiator& object, RequestInput& input) {
  return disableMedia(object, input, NON_SUPPORTED_RTP);
}

constexpr RequestArgument kRecordArguments[] = {
    {.name = "RECORD",
     .expects = "what a removal said that it removed: 1 to 25 numbers of 1 to 255 between commas",
     .accepts = isRemovedRecord}};

unsigned short restoreSecure(cSdpNegotiator& object, RequestInput& input) {
  RemovedRecord record = *RemovedRecord::read(input.words[0]);
  return object.sdpReplaceTransportProtocol(record.data(), true);
}

constexpr std::string_view kSecurityTypes[] = {"none",         "plain",        "secure", "both",
                                               "best-effort1", "best-effort2", "unknown"};

constexpr RequestArgument kChangeSecurityArguments[] = {
    {.name = "FROM", .expects = "a security type", .values = kSecurityTypes},
    {.name = "TO", .expects = "a security type", .values = kSecurityTypes}};

unsigned short changeSecurity(cSdpNegotiator& object, RequestInput& input) {
  RemovedRecord record;
  const auto from = static_cast<eSecurityType>(indexOf(kSecurityTypes, input.words[0]));
  const auto to = static_cast<eSecurityType>(indexOf(kSecurityTypes, input.words[1]));
  if (from == to) return beIdle(input, "FROM and TO are the same");
  if (from != BE_SRTP_2m_LINE || (to != BE_SRTP_1m_LINE && to != SECURITY_SRTP_ONLY)) {
    input.refusal = "only best-effort2 can be changed, into best-effort1 or secure";
    return 1;
  }
  input.idle = "the body has no plain m-line beside a secure one";
  const unsigned short status = object.sdpChangeSdpType(from, to, record.data());
  input.removed = record.text();
  return status;
}

constexpr RequestArgument kRemoveAnatArguments[] = {
    {.name = "FAMILY", .expects = "an address family", .values = kAddressFamilies}};

unsigned short removeAnat(cSdpNegotiator& object, RequestInput& input) {
  if (!object.isAnatPresent()) return beIdle(input, "the body has no ANAT group");
  RemovedRecord record;
  const auto version = indexOf(kAddressFamilies, input.words[0]) == 0 ? kIpVersion4 : kIpVersion6;
  object.sdpRemoveANAT(version, record.data(), true);
  input.removed = record.text();
  return 0;
}

unsigned short reinsertAnat(cSdpNegotiator& object, RequestInput& input) {
  RemovedRecord record = *RemovedRecord::read(input.words[0]);
  return object.sdpReInsertANAT(record.data(), true);
}

constexpr RequestRow kRows[] = {
    {"remove-ice", {}, "Remove the attributes of ICE.", removeIce, "sdpRemoveIce"},
    {"remove-candidates",
     {},
     "Remove the candidates of ICE, and keep its other attributes.",
     textRequest<&sdpModifications::sdpRemoveCandidates>,
     "sdpModifications::sdpRemoveCandidates"},
    {"remove-dual-stack-ice",
     {},
     "Remove the candidates of ICE that are not of their media's address family.",
     removeDualStackIce,
     "sdpRemoveDualStackIce"},
    {"remove-dtls",
     {},
     "Remove the attributes of DTLS-SRTP: setup and fingerprint.",
     removeDtls,
     "sdpRemoveDTLSAttributes"},
    {"remove-mikey",
     {},
     "Remove the key-mgmt attributes of MIKEY.",
     plainRequest<&cSdpNegotiator::sdpRemoveMikeyAttribute>,
     "sdpRemoveMikeyAttribute"},
    {"remove-sdes",
     {},
     "Remove the crypto attributes of SDES.",
     plainRequest<&cSdpNegotiator::sdpDisableSDESCryptoMedia>,
     "sdpDisableSDESCryptoMedia"},
    {"remove-secure", kRemoveSecureArguments,
     "Remove the RTP/SAVP media; with a kind of keys, only these where the body has both.", removeSecure,
     "sdpDisableSRTPMedia", true, Takes::any},
    {"remove-plain", {}, "Remove the RTP/AVP media.", removePlain, "sdpDisableSRTPMedia", true, Takes::any},
    {"restore-secure", kRecordArguments, "Put secure m-lines with port 0 in the places of a RECORD.",
     restoreSecure, "sdpReplaceTransportProtocol", true},
    {"change-security", kChangeSecurityArguments,
     "Turn best-effort2, two m-lines per medium, into best-effort1, one, or secure.", changeSecurity,
     "sdpChangeSdpType", true, Takes::any},
    {"double-mlines",
     {},
     "Offer every medium twice: as RTP/AVP, and behind it as RTP/SAVP.",
     plainRequest<&cSdpNegotiator::sdpBuild2mLineSDP>,
     "sdpBuild2mLineSDP",
     true},
    {"remove-anat", kRemoveAnatArguments, "Remove the media of an address family, and the ANAT group.",
     removeAnat, "sdpRemoveANAT", true, Takes::any},
    {"reinsert-anat", kRecordArguments,
     "Put m-lines with port 0 in the places of a RECORD, and make an ANAT group.", reinsertAnat,
     "sdpReInsertANAT", true}};

}  // namespace

std::span<const RequestRow> securityRequests() { return kRows; }

}  // namespace tool
