#include "policyCheck.h"

#include <arpa/inet.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <optional>
#include <string_view>

namespace b2bua {

namespace {

constexpr std::ptrdiff_t kLevelDigits = 6;

/// Those of eH264_profile_id, as `levelIn` tells them.
constexpr unsigned int kLevels[] = {20, 21, 22, 24, 26, 40, 42, 44, 60, 62, 64, 80, 82, 84, 100, 102};

/// An address as bytes, so that its spelling does not count.
struct Address {
  int family = AF_UNSPEC;  ///< unspecified for a name
  std::array<unsigned char, 16> bytes{};

  bool isZero() const { return family != AF_UNSPEC && bytes == std::array<unsigned char, 16>{}; }
  bool operator==(const Address&) const = default;
};

/// @param text  also with a zone, or in brackets
Address addressOf(std::string_view text) {
  if (text.starts_with('[')) text.remove_prefix(1);
  const std::string host(text.substr(0, text.find_first_of("/%]")));
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

/// @param transport  lower case
bool isSecure(std::string_view transport) {
  constexpr std::string_view kSecureParts[] = {"savp", "tls", "wss"};
  return std::ranges::any_of(
      kSecureParts, [&](std::string_view part) { return transport.find(part) != std::string_view::npos; });
}

/// @return the transports that a section may be given instead of its own (RFC 5939), in lower case
std::vector<std::string> otherTransports(const BodySection& section) {
  std::vector<std::string> transports;
  for (const Attribute& attribute : section.attributes()) {
    std::vector<std::string> words = wordsOf(lowerCase(attribute.value));
    if (attribute.name != "tcap" || words.size() < 2) continue;
    transports.insert(transports.end(), words.begin() + 1, words.end());  // behind the first one's number
  }
  return transports;
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

/// @return where the type of a further address stands among an attribute's words, in front of the address: that of
/// RTCP, or one to choose from (RFC 6947, RFC 7195)
std::optional<std::size_t> typeOfFurtherAddress(const Attribute& attribute) {
  if (attribute.name == "rtcp" || attribute.name == "ccap") return 2;
  if (attribute.name == "altc") return 1;
  return std::nullopt;
}

/// What ICE, RTCP and capabilities say of further addresses.
std::string wrongFamily(const Policy& policy, const BodySection& section) {
  if (policy.addressFamily == IP_VERSION_UNKNOWN) return "";
  for (const Attribute& attribute : section.attributes()) {
    const std::vector<std::string> words = wordsOf(attribute.value);
    const std::optional<std::size_t> type = typeOfFurtherAddress(attribute);
    const bool further = type && words.size() > *type + 1;
    if (isOtherFamily(policy, attribute) ||
        (further && !isOfFamily(policy, words[*type], addressOf(words[*type + 1]))))
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
  return codec ? "" : "audio without a codec that is allowed";
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

/// @return the highest level of H.264 in the parameters of a format, twice that of its level_idc, for 1b to lie behind 1;
/// 0 for none. Other codecs have a profile-level-id too, but none of six digits.
unsigned int levelIn(const std::string& parameters) {
  constexpr std::string_view kName = "profile-level-id=";
  std::string text = lowerCase(parameters);
  std::erase_if(text, [](char c) { return c == ' ' || c == '\t'; });
  unsigned int highest = 0;
  for (std::size_t at = text.find(kName); at != std::string::npos; at = text.find(kName, at)) {
    at += kName.size();
    const std::string_view digits = std::string_view(text).substr(at, kLevelDigits);
    unsigned int number = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number, 16);
    if (error != std::errc() || end != digits.data() + kLevelDigits) continue;
    const unsigned int level = number & 0xFF;
    const bool is1b = level == 9 || (level == 11 && (number & 0x1000) != 0);
    highest = std::max(highest, is1b ? 2 * 10 + 1 : 2 * level);
  }
  return highest;
}

std::string wrongVideo(const Policy& policy, const BodySection& section) {
  if (section.media != "video" || policy.video == Video::on) return "";
  if (policy.video == Video::off) return "video";
  for (const BodyLine& line : section.lines) {
    if (line.type == 'b' && !isWithin(line.value, policy.videoBandwidth)) return "too much bandwidth";
  }
  const unsigned int highest = kLevels[policy.videoLevel];
  for (const Attribute& attribute : section.attributes()) {
    if (attribute.name == "fmtp" && levelIn(attribute.value) > highest) return "too high a level";
  }
  return "";
}

std::string wrongSecurity(const Policy& policy, const BodySection& section, bool keysSuffice) {
  if (policy.security == Security::plain && hasKeys(section)) return "keys";
  const std::vector<std::string> others = otherTransports(section);
  if (policy.security == Security::plain && std::ranges::any_of(others, isSecure))
    return "a secure transport";
  if (policy.security == Security::secure && !std::ranges::all_of(others, isSecure))
    return "a plain transport";
  if (!section.isActive()) return "";
  const bool secure = isSecure(section.transport);
  if (policy.security == Security::plain && secure) return "a secure m-line";
  if (policy.security == Security::secure && !secure && !(keysSuffice && hasKeys(section)))
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

bool forbidsNothing(const Policy& policy) {
  return policy.audioCodecs.empty() && policy.video == Video::on && !policy.removeIce &&
         policy.security != Security::plain && policy.security != Security::secure &&
         policy.addressFamily == IP_VERSION_UNKNOWN && policy.connectionAddress.empty();
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
  if (forbidsNothing(policy)) return "";
  const BodyLines lines(body);
  for (std::size_t i = 0; i < lines.sections.size(); ++i) {
    const std::string reason = wrongIn(policy, lines, lines.sections[i], keysSuffice);
    if (!reason.empty())
      return "the policy forbids " + reason + (i == 0 ? "" : ", m-line " + std::to_string(i));
  }
  return "";
}

}  // namespace b2bua
