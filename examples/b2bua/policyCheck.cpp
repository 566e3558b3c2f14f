#include "policyCheck.h"

#include <arpa/inet.h>
#include <sdpDocumentRequests.h>

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>

#include "reasons.h"
#include "videoRule.h"

namespace b2bua {

namespace {

/// The session, or a section, as the most tolerant reader takes it.
struct Part {
  explicit Part(const sdp::Session& session) { readLines(session); }
  explicit Part(const sdp::Section& read)
      : media(tolerantly(read.media())), transport(tolerantly(read.transport())), section(read) {
    readLines(read);
    isActive = read.port() != 0 || has({"bundle-only"});
  }

  void readLines(const auto& part) {
    for (const sdp::Line& line : part.lines()) {
      hasKeyLine = hasKeyLine || line.content.starts_with("k=");
      if (line.content.starts_with("a=")) attributes.push_back(attributeOf(line.content));
      if (line.content.starts_with("c=")) connections.push_back(tolerantly(line.content.substr(2)));
    }
  }

  /// @return whether an attribute has one of the names
  bool has(std::initializer_list<std::string_view> names) const {
    return std::ranges::any_of(attributes, [&](const Attribute& attribute) {
      return std::ranges::find(names, attribute.name) != names.end();
    });
  }
  bool hasKeys() const { return hasKeyLine || has({"crypto", "key-mgmt", "fingerprint", "zrtp-hash"}); }

  std::vector<Attribute> attributes;
  std::vector<std::string> connections;  ///< behind "c="
  bool hasKeyLine = false;
  bool isActive = false;
  std::string media;
  std::string transport;
  sdp::Section section;
};

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

/// @param transport  lower case
bool isSecure(std::string_view transport) {
  constexpr std::string_view kSecureParts[] = {"savp", "tls", "wss"};
  return std::ranges::any_of(
      kSecureParts, [&](std::string_view part) { return transport.find(part) != std::string_view::npos; });
}

/// @return whether a part may be given a transport instead of its own (RFC 5939) that is secure, or one that is not
bool offersTransport(const Part& part, bool secure) {
  for (const Attribute& attribute : part.attributes) {
    if (attribute.name != "tcap") continue;
    for (std::size_t i = 1; !attribute.word(i).empty(); ++i) {  // behind the first one's number
      if (isSecure(attribute.word(i)) == secure) return true;
    }
  }
  return false;
}

bool isIce(const Attribute& attribute) {
  return attribute.name.starts_with("ice-") || attribute.name.ends_with("candidate") ||
         attribute.name.ends_with("candidates");
}

/// @param keyword  IP4 or IP6 in front of the address, in lower case; empty for none
bool isOfFamily(const Policy& policy, std::string_view keyword, const Address& address) {
  const bool four = policy.addressFamily == IP_VERSION_4;
  if (address.isZero()) return true;
  if (address.family != AF_UNSPEC && address.family != (four ? AF_INET : AF_INET6)) return false;
  return keyword.empty() || keyword == (four ? "ip4" : "ip6");
}

/// @param connections  of the section, or of the session when it has none
std::string wrongConnection(const Policy& policy, const std::vector<std::string>& connections) {
  if (!policy.connectionAddress.empty()) {
    const Address wanted = addressOf(policy.connectionAddress);
    if (connections.empty()) return "no connection line";
    const auto isWanted = [&](const std::string& connection) {
      const Address address = addressOf(sdp::Fields(connection)[2]);
      return address == wanted || address.isZero();
    };
    return std::ranges::all_of(connections, isWanted) ? "" : "another connection address";
  }
  const auto isRight = [&](const std::string& connection) {
    const sdp::Fields words(connection);
    return isOfFamily(policy, words[1].empty() ? "none" : words[1], addressOf(words[2]));
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
std::string wrongFamily(const Policy& policy, const Part& part) {
  if (policy.addressFamily == IP_VERSION_UNKNOWN) return "";
  for (const Attribute& attribute : part.attributes) {
    const std::optional<std::size_t> type = typeOfFurtherAddress(attribute);
    const std::string_view address = type ? attribute.word(*type + 1) : "";
    if (isOtherFamily(policy, attribute) ||
        (!address.empty() && !isOfFamily(policy, attribute.word(*type), addressOf(address))))
      return "an address of the other family";
  }
  return "";
}

/// @return the format that an attribute is about; readers of numbers skip zeros in front
std::string_view formatOf(const Attribute& attribute) {
  const std::string_view format = attribute.word(0);
  const std::size_t first = format.find_first_not_of('0');
  return first != std::string_view::npos ? format.substr(first) : format.substr(0, 1);
}

/// @return whether a part tells what a format of an active section means, and that is not allowed
bool hasWrongMapping(const Policy& policy, const Part& part) {
  return std::ranges::any_of(part.attributes, [&](const Attribute& attribute) {
    const std::string name(attribute.word(1).substr(0, attribute.word(1).find('/')));
    return attribute.name == "rtpmap" && part.section.format(formatOf(attribute)) && !isCompanion(name) &&
           !isAllowedCodec(policy, name);
  });
}

std::string wrongCodec(const Policy& policy, const Part& part) {
  bool codec = false;
  if (hasWrongMapping(policy, part)) return "an audio codec that is not allowed";
  for (const sdp::Format& format : part.section.formats()) {
    const std::string name = lowerCase(format.encoding ? format.encoding->name : "");
    if (isCompanion(name)) continue;
    if (!isAllowedCodec(policy, name)) return "an audio codec that is not allowed";
    codec = true;
  }
  return codec ? "" : "audio without a codec that is allowed";
}

std::string wrongSecurity(const Policy& policy, const Part& part, bool keysSuffice) {
  const bool plain = policy.security == Security::plain;
  if (plain && part.hasKeys()) return "keys";
  if (plain && offersTransport(part, true)) return "a secure transport";
  if (policy.security == Security::secure && offersTransport(part, false)) return "a plain transport";
  if (!part.isActive) return "";
  const bool secure = isSecure(part.transport);
  if (plain && secure) return "a secure m-line";
  if (policy.security == Security::secure && !secure && !(keysSuffice && part.hasKeys()))
    return "a plain m-line";
  return "";
}

std::string wrongIn(const Policy& policy, const Part& session, const Part& part, bool keysSuffice) {
  const bool isSession = part.media.empty();
  const bool isAudio = !policy.audioCodecs.empty() && part.media == "audio";
  std::string reason = wrongSecurity(policy, part, keysSuffice);
  if (reason.empty() && policy.removeIce && std::ranges::any_of(part.attributes, isIce)) reason = "ICE";
  if (reason.empty() && (isSession || part.isActive)) reason = wrongFamily(policy, part);
  if (reason.empty() && !policy.audioCodecs.empty() && (isSession || isAudio) && part.has({"rmcap", "omcap"}))
    reason = "codecs to choose";
  if (!reason.empty() || !part.isActive) return reason;
  if (policy.video == Video::off && part.media == "video") return "video";
  if (isAudio) reason = wrongCodec(policy, part);
  if (!reason.empty()) return reason;
  return wrongConnection(policy, part.connections.empty() ? session.connections : part.connections);
}

/// @return whether some readers see other fields in an m-line than the library, whose fields end at blanks alone
bool hasControls(const sdp::Section& section) {
  const std::string_view mLine = (*section.lines().begin()).content;
  return tolerantly(mLine) != lowerCase(mLine);
}

bool forbidsNothing(const Policy& policy) {
  return policy.audioCodecs.empty() && policy.video == Video::on && !policy.removeIce &&
         policy.security != Security::plain && policy.security != Security::secure &&
         policy.addressFamily == IP_VERSION_UNKNOWN && policy.connectionAddress.empty();
}

}  // namespace

bool isOtherFamily(const Policy& policy, const Attribute& candidate) {
  return policy.addressFamily != IP_VERSION_UNKNOWN && candidate.name == "candidate" &&
         !isOfFamily(policy, "", addressOf(candidate.word(4)));
}

bool isCompanion(std::string_view name) { return name == "telephone-event" || name == "cn"; }

bool isAllowedCodec(const Policy& policy, const std::string& name) {
  return std::ranges::any_of(audioCodecTable, [&](const audioCodecRow& row) {
    if (std::ranges::find(policy.audioCodecs, row.value) == policy.audioCodecs.end()) return false;
    const std::string listed = row.encodingName;
    const std::string known = lowerCase(listed.substr(0, listed.find_first_of("/@")));
    // The annexes of G.729 are told by parameters, and GSM has no name in the table.
    return known == name || (known.starts_with("g729") && name.starts_with("g729")) ||
           (name == "gsm" && std::string_view(row.textName) == "GSMFULLRATE");
  });
}

std::string whatIsForbidden(const Policy& policy, const std::string& body, bool keysSuffice) {
  const std::string forbids = "the policy forbids ";
  if (forbidsNothing(policy)) return "";
  sdp::Document document;
  sdp::Refusal refusal = document.read(body);
  if (!refusal) refusal = sdp::canonicalise(document);
  if (refusal) return "not usable after the policy: " + reasonOf(refusal);
  if (policy.video == Video::capped && withVideoCapped(policy, body) != body)
    return forbids + "more video than its cap";
  const Part session(document.session());
  std::string reason = wrongIn(policy, session, session, keysSuffice);
  if (!reason.empty()) return forbids + reason;
  for (const sdp::Section& section : document.sections()) {
    reason =
        hasControls(section) ? "control characters" : wrongIn(policy, session, Part(section), keysSuffice);
    if (!reason.empty()) return forbids + reason + ", m-line " + std::to_string(section.index());
  }
  return "";
}

}  // namespace b2bua
