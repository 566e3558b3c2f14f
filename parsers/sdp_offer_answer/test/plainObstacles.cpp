#include "plainObstacles.h"

#include <algorithm>
#include <cstdlib>
#include <string>

namespace plain {
namespace {

using sdp::SectionOutcome;

/// A section of a body.
struct Place {
  const PlainBody& body;
  std::size_t number;

  const PlainSection& section() const { return body.sections[number]; }
  bool isRtp() const { return section().transport().find("RTP/") != std::string_view::npos; }
  /// Values of an attribute of a section, the session as number 0.
  Words valuesIn(std::size_t where, std::string_view name) const {
    Words values;
    for (const PlainLine& line : body.lines) {
      if (line.section == where && attributeName(line.content) == name) {
        values.push_back(attributeValue(line.content));
      }
    }
    return values;
  }
  Words values(std::string_view name) const { return valuesIn(number, name); }
};

bool stands(std::string_view part, std::string_view text) {
  return text.find(part) != std::string_view::npos;
}

std::string lowered(std::string_view text) {
  std::string result(text);
  std::transform(result.begin(), result.end(), result.begin(),
                 [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
  return result;
}

bool isSecure(const Place& place) {
  return stands("SAVP", place.section().transport()) || stands("TLS", place.section().transport());
}

// Formats.

/// "pcmu/8000"; empty when it is unknown.
std::string encodingOf(const Place& place, std::string_view payload) {
  for (const std::string_view value : place.values("rtpmap")) {
    if (wordOf(value, 0) != payload || wordsOf(value).size() < 2) continue;
    std::string encoding = lowered(wordOf(value, 1));
    if (encoding.ends_with("/1")) encoding.resize(encoding.size() - 2);
    return encoding;
  }
  constexpr std::pair<std::string_view, std::string_view> kStatic[] = {
      {"0", "pcmu/8000"}, {"3", "gsm/8000"},   {"8", "pcma/8000"},   {"9", "g722/8000"},
      {"13", "cn/8000"},  {"18", "g729/8000"}, {"31", "h261/90000"}, {"34", "h263/90000"}};
  for (const auto& [number, encoding] : kStatic) {
    if (number == payload) return std::string(encoding);
  }
  return {};
}

std::string_view parametersOf(const Place& place, std::string_view payload) {
  for (const std::string_view value : place.values("fmtp")) {
    if (wordOf(value, 0) == payload) return value.substr(value.find(payload) + payload.size());
  }
  return {};
}

std::string nameOf(const std::string& encoding) { return encoding.substr(0, encoding.find('/')); }

bool isAmong(const std::string& encoding, const Words& names) { return isIn(nameOf(encoding), names); }

bool isCompanion(const std::string& encoding) {
  return isAmong(encoding,
                 {"rtx", "red", "ulpfec", "flexfec", "flexfec-03", "parityfec", "1d-interleaved-parityfec",
                  "raptorfec", "rtploopback", "encaprtp", "cn", "tone", "telephone-event"});
}

/// Whether formats of an encoding are the same by their parameters, too.
bool dependsOnParameters(const std::string& encoding) {
  return isAmong(encoding, {"h264", "h265", "vp9", "av1", "amr", "amr-wb", "rtx", "red", "telephone-event"});
}

/// Whether some format is the same on both sides without any doubt.
bool haveCommonPayload(const Place& offer, const Place& local) {
  const Words offered = offer.section().formats();
  const bool hasCodec = std::any_of(offered.begin(), offered.end(), [&](std::string_view payload) {
    return !isCompanion(encodingOf(offer, payload));
  });
  for (const std::string_view theirs : offered) {
    const std::string encoding = encodingOf(offer, theirs);
    if (encoding.empty() || (hasCodec && isCompanion(encoding))) continue;
    for (const std::string_view ours : local.section().formats()) {
      if (encodingOf(local, ours) != encoding) continue;
      if (!dependsOnParameters(encoding) || parametersOf(offer, theirs) == parametersOf(local, ours))
        return true;
    }
  }
  return false;
}

bool haveCommonWord(const Place& offer, const Place& local) {
  const Words ours = local.section().formats();
  const Words offered = offer.section().formats();
  return std::any_of(offered.begin(), offered.end(), [&ours](std::string_view theirs) {
    return std::any_of(ours.begin(), ours.end(),
                       [theirs](std::string_view word) { return sameLetters(word, theirs); });
  });
}

// Transports and keys.

bool isProfile(std::string_view transport) {
  const std::string_view profile = transport.substr(transport.find("RTP/") + 4);
  return profile == "AVP" || profile == "AVPF" || profile == "SAVP" || profile == "SAVPF";
}

bool haveServingTransports(const Place& offer, const Place& local) {
  const std::string_view theirs = offer.section().transport();
  const std::string_view ours = local.section().transport();
  if (!offer.isRtp()) return sameLetters(theirs, ours);
  if (theirs == ours) return true;
  return local.isRtp() && isProfile(theirs) && isProfile(ours) &&
         theirs.starts_with("TCP") == ours.starts_with("TCP");
}

/// Attributes of the section, of the session unless they are crypto, or of sections with which it is bundled.
Words keysOf(const Place& place, std::string_view name) {
  Words keys = place.values(name);
  if (keys.empty() && name != "crypto") keys = place.valuesIn(0, name);
  for (const std::string_view group : place.valuesIn(0, "group")) {
    const Words mids = wordsOf(group);
    if (!keys.empty() || mids.empty() || mids[0] != "BUNDLE" || !isIn(place.section().mid, mids)) continue;
    for (std::size_t other = 1; other < place.body.sections.size() && keys.empty(); ++other) {
      if (place.body.sections[other].alive && isIn(place.body.sections[other].mid, mids)) {
        keys = place.valuesIn(other, name);
      }
    }
  }
  return keys;
}

bool hasKeys(const Place& place) {
  return !keysOf(place, "crypto").empty() || !keysOf(place, "fingerprint").empty() ||
         !keysOf(place, "key-mgmt").empty();
}

/// Whether an offered suite is a local one without any doubt.
bool haveCommonSuite(const Place& offer, const Place& local) {
  for (const std::string_view theirs : keysOf(offer, "crypto")) {
    if (wordsOf(theirs).size() != 3 || !hasOnlyDigits(wordOf(theirs, 0))) continue;
    for (const std::string_view ours : keysOf(local, "crypto")) {
      if (wordOf(theirs, 1) == wordOf(ours, 1)) return true;
    }
  }
  return false;
}

Obstacles keyObstacles(const Place& offer, const Place& local) {
  if (!offer.isRtp())
    return local.isRtp() && isSecure(local) ? Obstacles{SectionOutcome::notProtected} : Obstacles{};
  if (!isSecure(offer) && !isSecure(local)) return {};
  if (!keysOf(offer, "fingerprint").empty() && !keysOf(local, "fingerprint").empty()) return {};
  if (!stands("TLS", offer.section().transport()) && haveCommonSuite(offer, local)) return {};
  const bool hasOtherKeys = hasKeys(isSecure(offer) ? local : offer);
  return {hasOtherKeys ? SectionOutcome::noCommonKeys : SectionOutcome::notProtected};
}

// Addresses and fax.

/// The address of a section, without what stands behind its slash.
std::string addressOf(const Place& place) {
  for (const std::size_t where : {place.number, std::size_t{0}}) {
    for (const PlainLine& line : place.body.lines) {
      if (line.section != where || line.content.substr(0, 2) != "c=") continue;
      const std::string_view address = wordOf(line.content.substr(2), 2);
      return lowered(address.substr(0, address.find('/')));
    }
  }
  return {};
}

bool isMulticast(const std::string& address) {
  if (address.find(':') != std::string::npos) return address.starts_with("ff");
  const int first = std::atoi(address.c_str());
  return first >= 224 && first <= 239;
}

bool differInRateManagement(const Place& offer, const Place& local) {
  const Words theirs = offer.values("T38FaxRateManagement");
  const Words ours = local.values("T38FaxRateManagement");
  return !theirs.empty() && !ours.empty() && !sameLetters(wordOf(theirs[0], 0), wordOf(ours[0], 0));
}

}  // namespace

Obstacles obstaclesBetween(const PlainBody& offer, std::size_t offered, const PlainBody& local,
                           std::size_t served) {
  const Place theirs{offer, offered};
  const Place ours{local, served};
  if (!haveServingTransports(theirs, ours)) return {SectionOutcome::otherTransport};
  Obstacles obstacles = keyObstacles(theirs, ours);
  if (theirs.isRtp() ? !haveCommonPayload(theirs, ours) : !haveCommonWord(theirs, ours))
    obstacles.insert(SectionOutcome::noCommonFormat);
  const std::string address = addressOf(theirs);
  if (isMulticast(address) && address != addressOf(ours)) obstacles.insert(SectionOutcome::otherMulticast);
  if (differInRateManagement(theirs, ours)) obstacles.insert(SectionOutcome::otherRateManagement);
  if (theirs.section().bundleOnly && theirs.section().zero) obstacles.insert(SectionOutcome::notInGroup);
  return obstacles;
}

}  // namespace plain
