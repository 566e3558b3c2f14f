#include "policyCheck.h"

#include <arpa/inet.h>

#include <algorithm>
#include <array>
#include <charconv>

namespace b2bua {

namespace {

/// An address as bytes, so that its spelling does not count.
struct Address {
  int family = AF_UNSPEC;  ///< unspecified for a name
  std::array<unsigned char, 16> bytes{};

  bool isZero() const { return family != AF_UNSPEC && bytes == std::array<unsigned char, 16>{}; }
  bool operator==(const Address&) const = default;
};

Address addressOf(const std::string& text) {
  const std::string host = text.substr(0, text.find('/'));
  Address address;
  for (const int family : {AF_INET, AF_INET6}) {
    if (inet_pton(family, host.c_str(), address.bytes.data()) == 1) {
      address.family = family;
      return address;
    }
  }
  return address;
}

/// @param words  a network type, an address type and an address among them, such as those of a c-line
Address addressBehindType(const std::vector<std::string>& words, std::size_t type) {
  return words.size() > type + 1 ? addressOf(words[type + 1]) : Address{};
}

bool isSecure(const BodySection& section) {
  return section.transport.find("savp") != std::string::npos ||
         section.transport.find("tls") != std::string::npos;
}

bool hasKeys(const BodySection& section) {
  return section.has({"crypto", "key-mgmt", "fingerprint", "zrtp-hash"}) ||
         std::ranges::any_of(section.lines, [](const BodyLine& line) { return line.type == 'k'; });
}

bool isIce(const BodySection& section) {
  return std::ranges::any_of(section.attributes(), [](const Attribute& attribute) {
    return attribute.name.starts_with("ice-") || attribute.name.ends_with("candidate") ||
           attribute.name.ends_with("candidates");
  });
}

/// The addresses that a section's media go to: of its own c-lines, or of the session's.
std::vector<std::vector<std::string>> connectionsOf(const BodyLines& body, const BodySection& section) {
  std::vector<std::vector<std::string>> connections;
  for (const BodySection* const place : {&section, &body.sections.front()}) {
    for (const BodyLine& line : place->lines) {
      if (line.type == 'c') connections.push_back(wordsOf(line.value));
    }
    if (!connections.empty()) break;
  }
  return connections;
}

/// @param keyword  IP4 or IP6 in front of the address; empty for none
bool isOfFamily(const Policy& policy, const std::string& keyword, const Address& address) {
  const bool four = policy.addressFamily == IP_VERSION_4;
  if (address.isZero()) return true;
  if (address.family != AF_UNSPEC && address.family != (four ? AF_INET : AF_INET6)) return false;
  return keyword.empty() || lowerCase(keyword) == (four ? "ip4" : "ip6");
}

std::string wrongConnection(const Policy& policy, const BodyLines& body, const BodySection& section) {
  const Address wanted = addressOf(policy.connectionAddress);
  const auto connections = connectionsOf(body, section);
  if (!policy.connectionAddress.empty()) {
    if (connections.empty()) return "no connection line";
    const auto isWanted = [&](const std::vector<std::string>& words) {
      const Address address = addressBehindType(words, 1);
      return address == wanted || address.isZero();
    };
    return std::ranges::all_of(connections, isWanted) ? "" : "another connection address";
  }
  const auto isRight = [&](const std::vector<std::string>& words) {
    return isOfFamily(policy, words.size() > 1 ? words[1] : "none", addressBehindType(words, 1));
  };
  if (policy.addressFamily == IP_VERSION_UNKNOWN || std::ranges::all_of(connections, isRight)) return "";
  return "a connection address of the other family";
}

/// What ICE and RTCP say of further addresses.
std::string wrongFamily(const Policy& policy, const BodySection& section) {
  if (policy.addressFamily == IP_VERSION_UNKNOWN) return "";
  for (const Attribute& attribute : section.attributes()) {
    const std::vector<std::string> words = wordsOf(attribute.value);
    const bool rtcp = attribute.name == "rtcp" && words.size() > 3;
    if (isOtherFamily(policy, attribute) || (rtcp && !isOfFamily(policy, words[2], addressOf(words[3]))))
      return "an address of the other family";
  }
  return "";
}

std::string wrongCodec(const Policy& policy, const BodySection& section) {
  if (policy.audioCodecs.empty() || section.media != "audio") return "";
  bool codec = false;
  for (const std::string& format : section.formats) {
    for (const Format& told : formatsOf(section, format)) {
      if (!told.isCodec()) continue;
      if (!isAllowedCodec(policy, told)) return "an audio codec that is not allowed";
      codec = true;
    }
  }
  return codec ? "" : "no audio codec";
}

/// Bandwidths of media in kbit/s or bit/s; those of RTCP are none.
bool isWithin(const std::string& value, unsigned long most) {
  const std::size_t colon = std::min(value.find(':'), value.size());
  const std::string kind = lowerCase(value.substr(0, colon));
  if (kind != "as" && kind != "tias") return true;
  const std::string number = value.substr(std::min(colon + 1, value.size()));
  unsigned long bandwidth = 0;
  const auto [end, error] = std::from_chars(number.data(), number.data() + number.size(), bandwidth);
  if (error != std::errc() || end != number.data() + number.size()) return false;
  return (kind == "tias" ? bandwidth / 1000 : bandwidth) <= most;
}

/// The level stands in the last two of six hexadecimal digits (RFC 6184 8.1).
bool isWithinLevel(const Attribute& attribute, eH264_profile_id most) {
  constexpr std::array<unsigned int, 16> kLevels = {10, 11, 11, 12, 13, 20, 21, 22,
                                                    30, 31, 32, 40, 41, 42, 50, 51};
  constexpr std::string_view kName = "profile-level-id=";
  constexpr std::size_t kDigits = 6;
  if (attribute.name != "fmtp") return true;
  std::string value = lowerCase(attribute.value);
  std::erase_if(value, [](char c) { return c == ' ' || c == '\t'; });
  for (std::size_t at = 0; (at = value.find(kName, at)) != std::string::npos;) {
    at += kName.size();
    const char* const digits = value.data() + at;
    const char* const last = digits + std::min(kDigits, value.size() - at);
    unsigned int profile = 0;
    const auto [end, error] = std::from_chars(digits, last, profile, 16);
    const bool whole = error == std::errc() && end == digits + kDigits;
    if (whole && (profile & 0xFFU) > kLevels[static_cast<std::size_t>(most)]) return false;
  }
  return true;
}

std::string wrongVideo(const Policy& policy, const BodySection& section) {
  if (section.media != "video" || policy.video == Video::on) return "";
  if (policy.video == Video::off) return "video";
  for (const BodyLine& line : section.lines) {
    if (line.type == 'b' && !isWithin(line.value, policy.videoBandwidth)) return "too much bandwidth";
  }
  for (const Attribute& attribute : section.attributes()) {
    if (!isWithinLevel(attribute, policy.videoLevel)) return "a higher level of H.264";
  }
  return "";
}

std::string wrongSecurity(const Policy& policy, const BodySection& section, bool keysSuffice) {
  if (policy.security == Security::plain && hasKeys(section)) return "keys";
  if (!section.isActive()) return "";
  if (policy.security == Security::plain && isSecure(section)) return "a secure m-line";
  if (policy.security == Security::secure && !isSecure(section) && !(keysSuffice && hasKeys(section)))
    return "a plain m-line";
  return "";
}

std::string wrongIn(const Policy& policy, const BodyLines& body, const BodySection& section,
                    bool keysSuffice) {
  std::string reason = wrongSecurity(policy, section, keysSuffice);
  if (reason.empty() && policy.removeIce && isIce(section)) reason = "ICE";
  if (reason.empty() && (section.isActive() || section.media.empty())) reason = wrongFamily(policy, section);
  if (!reason.empty() || !section.isActive()) return reason;
  reason = wrongVideo(policy, section);
  if (reason.empty()) reason = wrongCodec(policy, section);
  if (reason.empty()) reason = wrongConnection(policy, body, section);
  return reason;
}

}  // namespace

bool isOtherFamily(const Policy& policy, const Attribute& candidate) {
  const std::vector<std::string> words = wordsOf(candidate.value);
  return policy.addressFamily != IP_VERSION_UNKNOWN && candidate.name == "candidate" && words.size() > 4 &&
         !isOfFamily(policy, "", addressOf(words[4]));
}

bool isAllowedCodec(const Policy& policy, const Format& format) {
  return std::ranges::any_of(audioCodecTable, [&](const audioCodecRow& row) {
    if (std::ranges::find(policy.audioCodecs, row.value) == policy.audioCodecs.end()) return false;
    const std::string listed = row.encodingName;
    const std::string name = lowerCase(listed.substr(0, listed.find_first_of("/@")));
    // The annexes of G.729 are told by parameters, and GSM has no name in the table.
    return name == format.name || (name.starts_with("g729") && format.name.starts_with("g729")) ||
           (format.name == "gsm" && std::string_view(row.textName) == "GSMFULLRATE");
  });
}

std::string whatIsForbidden(const Policy& policy, const std::string& body, bool keysSuffice) {
  const BodyLines lines(body);
  for (std::size_t i = 0; i < lines.sections.size(); ++i) {
    const std::string reason = wrongIn(policy, lines, lines.sections[i], keysSuffice);
    if (!reason.empty())
      return "the policy forbids " + reason + (i == 0 ? "" : ", m-line " + std::to_string(i));
  }
  return "";
}

}  // namespace b2bua
