#include "mediaPolicy.h"

#include <sdpModifiers.h>

#include <algorithm>
#include <cstring>
#include <string_view>

#include "audioRule.h"
#include "policyCheck.h"

namespace b2bua {

namespace {

constexpr const char* kPlain = "RTP/AVP";
constexpr const char* kSecure = "RTP/SAVP";

/// Removes attributes that the library's requests leave.
template <typename Predicate>
std::string withoutLines(Body& body, Predicate isUnwanted) {
  BodyLines lines(textOf(body));
  for (BodySection& section : lines.sections) {
    std::erase_if(section.lines, [&](const BodyLine& line) {
      return line.type == 'a' && isUnwanted(attributeOf(line.value));
    });
  }
  return store(lines.text(), body);
}

bool hasMedia(const Body& body) { return body.getParsedData().mediaType != 0; }

// -- address family: ANAT (RFC 4091) offers a medium twice

/// An offer that is not of two address families may still have candidates of both.
std::string keepCandidates(const Policy& policy, Body& body) {
  return withoutLines(body, [&](const Attribute& attribute) { return isOtherFamily(policy, attribute); });
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
  const std::string text = textOf(offer);
  std::size_t section = text.find("\nm=");
  if (section == std::string::npos || offer.contains(kSecure) || !offer.contains(kPlain)) return false;
  while (section != std::string::npos) {
    const std::size_t next = text.find("\nm=", section + 1);
    if (text.find("\na=crypto:", section) >= next) return false;
    section = next;
  }
  return true;
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
void returnPlainMLines(Body& answer, char (&record)[32]) {
  answer.sdpReplaceTransportProtocol(record, false);
  char text[MAX_SDP_PROTOCOL_DATA_SIZE] = "";
  answer.getSDP(text, sizeof text);
  int place = 0;
  for (char* line = text; (line = std::strstr(line, "\nm=")) != nullptr;) {
    ++line;
    ++place;
    char* const end = std::strchr(line, '\n');
    if (end == nullptr) break;
    if (std::any_of(record, std::find(record, record + sizeof record, '\0'),
                    [&](char code) { return placeOf(code) == place; })) {
      sdpModifications::sdpReplaceMLineTransportProtocol(line, end, kSecure, kPlain);
    }
  }
  answer.sdpParse(text, SDP_TYPE_ANSWER);
}

/// Two m-lines were offered, the target has answered to one: it stands for the plain or the secure one.
void unmerge(Body& answer, char (&record)[32]) {
  if (answer.isSDESPresent()) {
    answer.sdpModifyTransportTypes(kPlain, kSecure);
    returnPlainMLines(answer, record);
  } else {
    takeOtherOfPairs(record);
    answer.sdpReplaceTransportProtocol(record, false);
  }
}

std::size_t countMLines(const Body& body) {
  const std::string text = textOf(body);
  std::size_t count = 0;
  for (std::size_t at = 0; (at = text.find("\nm=", at)) != std::string::npos; ++at) ++count;
  return count;
}

/// One m-line was offered, the target has answered to two and refused one of them.
std::string unsplit(Body& answer) {
  const std::size_t offered = countMLines(answer);
  answer.sdpRemoveMlinesZeroPort();
  answer.sdpModifyTransportTypes(kSecure, kPlain);
  return 2 * countMLines(answer) == offered ? "" : "not one m-line of each pair accepted";
}

std::string returnSecurity(const Policy&, Body& answer, OfferChanges& changes) {
  switch (changes.mLines) {
    case MLineChange::secureRemoved:
      answer.sdpReplaceTransportProtocol(changes.security, false);
      break;
    case MLineChange::plainRemoved:
      returnPlainMLines(answer, changes.security);
      break;
    case MLineChange::merged:
      unmerge(answer, changes.security);
      break;
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

// -- codecs, video, ICE, address

/// A port of zero refuses no section that says it shares another's.
std::string refuseBundled(Body& body, std::string_view media) {
  BodyLines lines(textOf(body));
  for (BodySection& section : lines.sections) {
    if (section.media != media) continue;
    std::erase_if(section.lines, [](const BodyLine& line) {
      return line.type == 'a' && attributeOf(line.value).name == "bundle-only";
    });
  }
  return store(lines.text(), body);
}

std::string limitVideo(const Policy& policy, Body& body, OfferChanges&) {
  if (policy.video == Video::capped && (body.getParsedData().mediaType & MEDIA_VIDEO) != 0)
    body.sdpLimitVideoMediaBandwidth(policy.videoBandwidth, policy.videoLevel);
  if (policy.video != Video::off) return "";
  const bool had = hasMedia(body);
  // By the edit, which leaves the rest of the body; the object's own removal may take lines of the next section along.
  char text[MAX_SDP_PROTOCOL_DATA_SIZE] = "";
  body.getSDP(text, sizeof text);
  sdpModifications::sdpSetMediaPort(text, MEDIA_VIDEO, IP_VERSION_UNKNOWN,
                                    sdpModifications::MEDIA_SECURITY_ANY, 0);
  body.sdpParse(text, SDP_TYPE_UNKNOWN);
  if (std::string reason = refuseBundled(body, "video"); !reason.empty()) return reason;
  return !had || hasMedia(body) ? "" : "no media but video";
}

std::string removeIce(const Policy& policy, Body& body, OfferChanges&) {
  if (!policy.removeIce) return "";
  body.sdpRemoveIce();
  return withoutLines(body, [](const Attribute& attribute) {
    return attribute.name == "end-of-candidates" || attribute.name == "ice-pacing" ||
           attribute.name == "ice-mismatch";
  });
}

bool isUnspecified(const BodyLine& connection) {
  const std::vector<std::string> words = wordsOf(connection.value);
  return words.size() > 2 && (words[2] == "0.0.0.0" || words[2] == "::");
}

const BodyLine* firstConnection(const BodyLines& body) {
  for (const BodySection& section : body.sections) {
    for (const BodyLine& line : section.lines) {
      if (line.type == 'c') return &line;
    }
  }
  return nullptr;
}

void replaceConnection(BodyLine& line, const std::string& address) {
  line.bytes =
      std::string("c=IN ") + (address.find(':') == std::string::npos ? "IP4 " : "IP6 ") + address + "\r\n";
}

/// The unspecified address stays: it puts the call on hold (RFC 3264 8.4).
std::string setAddress(const Policy& policy, Body& body, OfferChanges&) {
  if (policy.connectionAddress.empty()) return "";
  BodyLines lines(textOf(body));
  if (std::ranges::none_of(lines.sections, &BodySection::isActive)) return "";
  const BodyLine* const first = firstConnection(lines);
  if (first == nullptr) return "no connection line";
  if (!isUnspecified(*first) && body.sdpReplaceCxIP(policy.connectionAddress.c_str()) != 0)
    return "no connection line";
  // That was the first one; sections may have further ones.
  lines = BodyLines(textOf(body));
  for (BodySection& section : lines.sections) {
    for (BodyLine& line : section.lines) {
      if (line.type == 'c' && !isUnspecified(line)) replaceConnection(line, policy.connectionAddress);
    }
  }
  return store(lines.text(), body);
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

/// The lines of a body without what codecs make of them.
std::string withoutCodecs(const Body& body) {
  std::string rest;
  for (const BodySection& section : BodyLines(textOf(body)).sections) {
    for (const BodyLine& line : section.lines) {
      const bool mapping = line.bytes.starts_with("a=rtpmap:") || line.bytes.starts_with("a=fmtp:");
      if (line.type == 'o' || mapping) continue;
      const bool audio = line.bytes.starts_with("m=audio ");
      rest += audio ? "m=audio " + section.port + " " + section.transport + "\n" : line.bytes;
    }
  }
  return rest;
}

}  // namespace

std::string store(const std::string& text, Body& body) {
  if (text.size() >= MAX_SDP_PROTOCOL_DATA_SIZE) return "too long after the policy";
  if (text == textOf(body) || body.sdpParse(text.c_str(), SDP_TYPE_UNKNOWN) == 0) return "";
  return "not usable after the policy";
}

std::string textOf(const Body& object) {
  char text[MAX_SDP_PROTOCOL_DATA_SIZE];  // much more than what it gets; not to be filled each time
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
