#include <iterator>

#include "ipVersions.h"
#include "removedRecord.h"
#include "requestArguments.h"
#include "requestTable.h"

// Requests for security, ICE and alternative addresses.

namespace tool {
namespace {

unsigned short removeIce(cSdpNegotiator& object, RequestInput& input) {
  const unsigned short status = object.sdpRemoveIce();
  if (status != 0) input.refusal = "the body has no ICE";
  return status;
}

constexpr std::string_view keyKinds[] = {"mikey", "sdes"};

constexpr RequestArgument removeSecureArguments[] = {
    {.name = "KEYS", .expects = "a kind of keys", .values = keyKinds, .optional = true}};

/// Removes media, and tells which.
unsigned short disableMedia(cSdpNegotiator& object, RequestInput& input, eNonSupportedSecurity kind) {
  RemovedRecord record;
  const unsigned short status = object.sdpDisableSRTPMedia(record.data(), kind);
  input.removed = record.text();
  return status;
}

unsigned short removeSecure(cSdpNegotiator& object, RequestInput& input) {
  if (input.words.empty()) return disableMedia(object, input, NON_SUPPORTED_ALL_SECURE);
  const bool isMikey = indexOf(keyKinds, input.words[0]) == 0;
  const bool present = isMikey ? object.isMikeyPresent() : object.isSDESPresent();
  if (!present) {
    input.refusal = isMikey ? "the body has no MIKEY" : "the body has no SDES";
    return 1;
  }
  return disableMedia(object, input, isMikey ? NON_SUPPORTED_MIKEY : NON_SUPPORTED_SDES);
}

unsigned short removePlain(cSdpNegotiator& object, RequestInput& input) {
  return disableMedia(object, input, NON_SUPPORTED_RTP);
}

constexpr RequestArgument recordArguments[] = {
    {.name = "RECORD",
     .expects = "what a removal said that it removed: 1 to 25 numbers of 1 to "
                "255 between commas",
     .accepts = isRemovedRecord}};

unsigned short restoreSecure(cSdpNegotiator& object, RequestInput& input) {
  RemovedRecord record = *RemovedRecord::read(input.words[0]);
  return object.sdpReplaceTransportProtocol(record.data(), true);
}

constexpr std::string_view securityTypes[] = {"none",         "plain",        "secure", "both",
                                              "best-effort1", "best-effort2", "unknown"};

constexpr RequestArgument changeSecurityArguments[] = {
    {.name = "FROM", .expects = "a security type", .values = securityTypes},
    {.name = "TO", .expects = "a security type", .values = securityTypes}};

unsigned short changeSecurity(cSdpNegotiator& object, RequestInput& input) {
  RemovedRecord record;
  const auto from = static_cast<eSecurityType>(indexOf(securityTypes, input.words[0]));
  const auto to = static_cast<eSecurityType>(indexOf(securityTypes, input.words[1]));
  const unsigned short status = object.sdpChangeSdpType(from, to, record.data());
  input.removed = record.text();
  return status;
}

constexpr RequestArgument removeAnatArguments[] = {
    {.name = "FAMILY", .expects = "an address family", .values = addressFamilies}};

unsigned short removeAnat(cSdpNegotiator& object, RequestInput& input) {
  if (!object.isAnatPresent()) {
    input.refusal = "the body has no ANAT group";
    return 1;
  }
  RemovedRecord record;
  const auto version =
      indexOf(addressFamilies, input.words[0]) == 0 ? sdpneg::ipVersion4 : sdpneg::ipVersion6;
  object.sdpRemoveANAT(version, record.data(), true);
  input.removed = record.text();
  return 0;
}

unsigned short reinsertAnat(cSdpNegotiator& object, RequestInput& input) {
  RemovedRecord record = *RemovedRecord::read(input.words[0]);
  return object.sdpReInsertANAT(record.data(), true);
}

constexpr RequestRow rows[] = {
    {"remove-ice",
     {},
     "Remove the attributes of ICE.",
     removeIce,
     "sdpRemoveIce",
     false,
     "no attribute of ICE could be removed"},
    {"remove-candidates",
     {},
     "Remove the candidates of ICE, and keep its other attributes.",
     textRequest<&sdpModifications::sdpRemoveCandidates>,
     "sdpModifications::sdpRemoveCandidates"},
    {"remove-dual-stack-ice",
     {},
     "Remove the candidates of ICE that are not of their media's address family.",
     plainRequest<&cSdpNegotiator::sdpRemoveDualStackIce>,
     "sdpRemoveDualStackIce",
     true,
     "no candidate of the other address family could be removed"},
    {"remove-dtls",
     {},
     "Remove the attributes of DTLS-SRTP: setup and fingerprint.",
     plainRequest<&cSdpNegotiator::sdpRemoveDTLSAttributes>,
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
    {"remove-secure", removeSecureArguments,
     "Remove the RTP/SAVP media; with a kind of keys, only these where the body has both.", removeSecure,
     "sdpDisableSRTPMedia", true},
    {"remove-plain", {}, "Remove the RTP/AVP media.", removePlain, "sdpDisableSRTPMedia", true},
    {"restore-secure", recordArguments, "Put secure m-lines with port 0 in the places of a RECORD.",
     restoreSecure, "sdpReplaceTransportProtocol", true},
    {"change-security", changeSecurityArguments,
     "Turn best-effort2, two m-lines per medium, into best-effort1, one, or secure.", changeSecurity,
     "sdpChangeSdpType", true, "only best-effort2 can be changed, into best-effort1 or secure"},
    {"double-mlines",
     {},
     "Offer every medium twice: as RTP/AVP, and behind it as RTP/SAVP.",
     plainRequest<&cSdpNegotiator::sdpBuild2mLineSDP>,
     "sdpBuild2mLineSDP",
     true},
    {"remove-anat", removeAnatArguments, "Remove the media of an address family, and the ANAT group.",
     removeAnat, "sdpRemoveANAT", true},
    {"reinsert-anat", recordArguments,
     "Put m-lines with port 0 in the places of a RECORD, and make an ANAT group.", reinsertAnat,
     "sdpReInsertANAT", true}};

}  // namespace

std::span<const RequestRow> securityRequests() { return rows; }

}  // namespace tool
