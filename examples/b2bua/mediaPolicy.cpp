#include "mediaPolicy.h"

#include <sdpModifiers.h>

#include <algorithm>
#include <string_view>

#include "audioRule.h"
#include "bodyLines.h"
#include "policyCheck.h"
#include "videoRule.h"

namespace b2bua {

namespace {

constexpr const char* kPlain = "RTP/AVP";
constexpr const char* kSecure = "RTP/SAVP";

/// Removes attributes that the library's requests leave.
template <typename Predicate>
std::string withoutAttributes(Body& body, Predicate isUnwanted) {
  const auto keep = [&](const std::string& line) { return isUnwanted(attributeOf(line)) ? "" : line; };
  return store(withLines(textOf(body), keep), body);
}

// -- address family: ANAT (RFC 4091) offers a medium twice

/// An offer that is not of two address families may still have candidates of both.
std::string keepCandidates(const Policy& policy, Body& body) {
  return withoutAttributes(body,
                           [&](const Attribute& attribute) { return isOtherFamily(policy, attribute); });
}

std::string keepFamily(const Policy& policy, Body& offer, OfferChanges& changes) {
  if (policy.addressFamily == IP_VERSION_UNKNOWN) return "";
  offer.sdpRemoveANAT(policy.addressFamily == IP_VERSION_4 ? IP_VERSION_6 : IP_VERSION_4, changes.anat,
                      false);
  if (offer.isFullIcePresent()) offer.sdpRemoveDualStackIce();
  if (std::string reason = keepCandidates(policy, offer); !reason.empty()) return reason;
  const bool replaced = !policy.connectionAddress.empty();
  const eIPAddressVersion version = offer.getParsedData().address.getIPAddressVersion();
  return hasMedia(offer) && !replaced && version != policy.addressFamily ? "address family not allowed" : "";
}

std::string returnFamily(const Policy& policy, Body& answer, OfferChanges& changes) {
  if (changes.anat[0] != 0) answer.sdpReInsertANAT(changes.anat, false);
  return policy.addressFamily != IP_VERSION_UNKNOWN ? keepCandidates(policy, answer) : "";
}

// -- security

std::string makePlain(Body& offer, OfferChanges& changes) {
  if (offer.contains(kSecure)) {
    offer.sdpDisableSRTPMedia(changes.security, NON_SUPPORTED_ALL_SECURE);
    changes.mLines = MLineChange::secureRemoved;
  }
  if (offer.isSDESPresent()) offer.sdpDisableSDESCryptoMedia();
  if (offer.isMikeyPresent()) offer.sdpRemoveMikeyAttribute();
  if (offer.isDTLSPresent()) offer.sdpRemoveDTLSAttributes();
  return hasMedia(offer) ? "" : "no plain media";
}

/// @return whether all m-lines are plain ones with keys
bool isBestEffort1(const Body& offer) {
  const sdp::Document document = documentOf(textOf(offer));
  const auto hasKeys = [](const sdp::Section& section) { return section.has("crypto"); };
  return document.sectionCount() != 0 && !offer.contains(kSecure) && offer.contains(kPlain) &&
         std::ranges::all_of(document.sections(), hasKeys);
}

std::string makeSecure(Body& offer, OfferChanges& changes) {
  if (isBestEffort1(offer)) {
    offer.sdpModifyTransportTypes(kPlain, kSecure);
    changes.mLines = MLineChange::madeSecure;
  } else if (offer.contains(kPlain)) {
    offer.sdpDisableSRTPMedia(changes.security, NON_SUPPORTED_RTP);
    changes.mLines = MLineChange::plainRemoved;
  }
  return hasMedia(offer) ? "" : "no secure media";
}

/// Best effort is only made of best effort: an offer without keys gets none, one that insists on security keeps it.
std::string makeBestEffort(Body& offer, OfferChanges& changes, eSecurityType form) {
  if (form == BE_SRTP_1m_LINE && offer.getSdpBestEffortSrtpType() == BE_SRTP_2m_LINE) {
    offer.sdpChangeSdpType(BE_SRTP_2m_LINE, form, changes.security);
    changes.mLines = MLineChange::merged;
  } else if (form == BE_SRTP_2m_LINE && isBestEffort1(offer)) {
    offer.sdpBuild2mLineSDP();
    changes.mLines = MLineChange::split;
  }
  return "";
}

std::string setSecurity(const Policy& policy, Body& offer, OfferChanges& changes) {
  if (!hasMedia(offer)) return "";
  switch (policy.security) {
    case Security::plain:
      return makePlain(offer, changes);
    case Security::secure:
      return makeSecure(offer, changes);
    case Security::bestEffort1:
      return makeBestEffort(offer, changes, BE_SRTP_1m_LINE);
    case Security::bestEffort2:
      return makeBestEffort(offer, changes, BE_SRTP_2m_LINE);
    default:
      return "";
  }
}

/// The place of a recorded m-line among all, from 1 (see `sdpModifications::sdpRemoveMline`).
int placeOf(char code) { return (static_cast<unsigned char>(code) - 1) % 25 + 1; }

/// Turns the record of one m-line of each pair into that of the other.
void takeOtherOfPairs(char (&record)[32]) {
  for (char& code : record) {
    if (code == 0) break;
    code = static_cast<char>(code + (placeOf(code) % 2 == 1 ? 1 : -1));
  }
}

/// Refused m-lines come back as secure ones; those that were plain become so again.
std::string returnPlainMLines(Body& answer, char (&record)[32]) {
  answer.sdpReplaceTransportProtocol(record, false);
  sdp::Document document = documentOf(textOf(answer));
  for (const char* code = record; *code != 0; ++code) {
    const auto place = static_cast<std::uint32_t>(placeOf(*code));
    if (document.section(place).transport() == kSecure)
      static_cast<void>(document.setTransport(place, kPlain));
  }
  return store(document, answer);
}

/// Two m-lines were offered, the target has answered to one: it stands for the plain or the secure one.
std::string unmerge(Body& answer, char (&record)[32]) {
  if (answer.isSDESPresent()) {
    answer.sdpModifyTransportTypes(kPlain, kSecure);
    return returnPlainMLines(answer, record);
  }
  takeOtherOfPairs(record);
  answer.sdpReplaceTransportProtocol(record, false);
  return "";
}

/// One m-line was offered, the target has answered to two and refused one of them.
std::string unsplit(Body& answer) {
  const auto count = [&] { return documentOf(textOf(answer)).sectionCount(); };
  const std::uint32_t offered = count();
  answer.sdpRemoveMlinesZeroPort();
  answer.sdpModifyTransportTypes(kSecure, kPlain);
  return 2 * count() == offered ? "" : "not one m-line of each pair accepted";
}

std::string returnSecurity(const Policy&, Body& answer, OfferChanges& changes) {
  switch (changes.mLines) {
    case MLineChange::secureRemoved:
      answer.sdpReplaceTransportProtocol(changes.security, false);
      break;
    case MLineChange::plainRemoved:
      return returnPlainMLines(answer, changes.security);
    case MLineChange::merged:
      return unmerge(answer, changes.security);
    case MLineChange::split:
      return unsplit(answer);
    case MLineChange::madeSecure:
      answer.sdpModifyTransportTypes(kSecure, kPlain);
      break;
    case MLineChange::none:
      break;
  }
  return "";
}

// -- ICE, address

std::string removeIce(const Policy& policy, Body& body, OfferChanges&) {
  if (!policy.removeIce) return "";
  body.sdpRemoveIce();
  return withoutAttributes(body, [](const Attribute& attribute) {
    return attribute.name == "end-of-candidates" || attribute.name == "ice-pacing" ||
           attribute.name == "ice-mismatch";
  });
}

/// The unspecified address stays: it puts the call on hold (RFC 3264 8.4).
std::string setAddress(const Policy& policy, Body& body, OfferChanges&) {
  const std::string& address = policy.connectionAddress;
  const std::string text = textOf(body);
  if (address.empty() || !hasPort(documentOf(text))) return "";
  if (text.find("\nc=") == std::string::npos) return "no connection line";
  const std::string type = address.find(':') == std::string::npos ? "IP4 " : "IP6 ";
  const auto replace = [&](const std::string& line) {
    const std::string_view present = sdp::Fields(line)[2];
    const bool isKept = !line.starts_with("c=") || present == "0.0.0.0" || present == "::";
    return isKept ? line : "c=IN " + type + address;
  };
  return store(withLines(text, replace), body);
}

/// What each key of the policy means: requests of the library to the offer and to its answer.
struct Rule {
  std::string (*offer)(const Policy&, Body&, OfferChanges&);
  std::string (*answer)(const Policy&, Body&, OfferChanges&);
};

constexpr Rule kRules[] = {
    {keepFamily, returnFamily},      // address-family
    {setSecurity, returnSecurity},   // security
    {restrictAudio, restrictAudio},  // audio-codecs
    {limitVideo, limitVideo},        // video
    {removeIce, removeIce},          // ice
    {setAddress, setAddress},        // connection-address
};

/// Some requests leave the summary behind the text.
/// @param before  the text when both were the same
std::string parsedAnew(Body& body, const std::string& before) {
  const std::string text = textOf(body);
  if (text == before || body.sdpParse(text.c_str(), SDP_TYPE_UNKNOWN) == 0) return "";
  return "not usable after the policy";
}

/// A body without what codecs make of it.
std::string withoutCodecs(const Body& body) {
  return withLines(textOf(body), [](const std::string& line) {
    if (line.starts_with("o=") || line.starts_with("a=rtpmap:") || line.starts_with("a=fmtp:"))
      return std::string();
    const sdp::Fields words(line);
    return line.starts_with("m=audio ") ? "m=audio " + std::string(words[1]) + " " + std::string(words[2])
                                        : line;
  });
}

}  // namespace

bool hasMedia(const Body& body) { return body.getParsedData().mediaType != 0; }

sdp::Document documentOf(const std::string& text) {
  sdp::Document document;
  static_cast<void>(document.read(text));  // then it is empty, and so is what is stored of it
  return document;
}

bool hasPort(const sdp::Document& document) {
  const auto isOn = [](const sdp::Section& section) { return !section.isDisabled(); };
  return std::ranges::any_of(document.sections(), isOn);
}

std::string store(const sdp::Document& document, Body& body) {
  return store(std::string(document.text()), body);
}

std::string store(const std::string& text, Body& body) {
  if (text.size() >= MAX_SDP_PROTOCOL_DATA_SIZE) return "too long after the policy";
  if (text == textOf(body) || body.sdpParse(text.c_str(), SDP_TYPE_UNKNOWN) == 0) return "";
  return "not usable after the policy";
}

std::string textOf(const Body& object) {
  // Much more than what it gets; not to be filled each time.
  char text[MAX_SDP_PROTOCOL_DATA_SIZE + 1];
  if (object.getRawSDP(text, sizeof text) != 0) return "";
  return text;
}

std::string applyToOffer(const Policy& policy, Body& offer, OfferChanges& changes) {
  const std::string before = textOf(offer);
  for (const Rule& rule : kRules) {
    if (std::string reason = rule.offer(policy, offer, changes); !reason.empty()) return reason;
  }
  return parsedAnew(offer, before);
}

// In the opposite order: what was taken last is the first to come back.
std::string applyToAnswer(const Policy& policy, Body& answer, const OfferChanges& changes) {
  const std::string before = textOf(answer);
  OfferChanges record = changes;
  for (auto rule = std::rbegin(kRules); rule != std::rend(kRules); ++rule) {
    if (std::string reason = rule->answer(policy, answer, record); !reason.empty()) return reason;
  }
  return parsedAnew(answer, before);
}

bool onlyCodecsDiffer(const Body& one, const Body& other) {
  return withoutCodecs(one) == withoutCodecs(other);
}

// It is secure as the library makes it, but an engine without media has no keys to go with it.
void makeDummyOffer(const Policy& policy, bool ipv6, Body& offer) {
  offer.sdpCreateRmDummyOffer(1, 1, ipv6);
  offer.sdpModifyTransportTypes(kSecure, kPlain);
  Policy codecsAndAddress;
  codecsAndAddress.audioCodecs = policy.audioCodecs;
  codecsAndAddress.connectionAddress = policy.connectionAddress;
  OfferChanges none;
  applyToOffer(codecsAndAddress, offer, none);
}

}  // namespace b2bua
