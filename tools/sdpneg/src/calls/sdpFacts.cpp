#include "calls/sdpFacts.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "calls/callKeys.h"
#include "text/anyLines.h"
#include "text/search.h"
#include "text/shown.h"

namespace tool {
namespace {

constexpr std::size_t kMostCodecs = 256;

/// What makes two formats the same codec here. The name must stay where it is.
struct CodecKey {
  std::string_view name;
  std::uint32_t clockRate = 0;

  bool operator==(const CodecKey& other) const {
    return clockRate == other.clockRate && sdpneg::equalNoCase(name, other.name);
  }
  bool operator<(const CodecKey& other) const {
    if (clockRate != other.clockRate) return clockRate < other.clockRate;
    return std::ranges::lexicographical_compare(name, other.name, {}, sdpneg::lower, sdpneg::lower);
  }
};

sdp::Security securityOfKeys(const sdp::Section& section) {
  if (!section.fingerprintHash().empty()) return sdp::Security::dtls;
  return section.has("crypto") ? sdp::Security::sdes : sdp::Security::mikey;
}

bool isWithin(const IpAddress& address, std::uint32_t network, unsigned int bits) {
  std::uint32_t value = 0;
  for (std::size_t i = 0; i < 4; ++i) value = value << 8U | address.bytes[i];
  return value >> (32U - bits) == network >> (32U - bits);
}

}  // namespace

std::string shownPiece(std::string_view piece, std::size_t longest) {
  constexpr char kHexDigits[] = "0123456789ABCDEF";
  std::string shown;
  std::size_t at = 0;
  while (at < std::min(piece.size(), longest)) {
    const sdpneg::Character first = sdpneg::firstCharacter(piece.substr(at));
    const std::string_view bytes = piece.substr(at, std::max<std::size_t>(first.length, 1));
    if (sdpneg::isShown(first)) {
      shown += bytes;
    } else {
      for (const char c : bytes) {
        const auto byte = static_cast<unsigned char>(c);
        shown.append("\\x").append(1, kHexDigits[byte >> 4U]).append(1, kHexDigits[byte & 0xFU]);
      }
    }
    at += bytes.size();
  }
  if (at < piece.size()) shown += "...";
  return shown;
}

bool isActive(const sdp::Section& section) { return section.isReadable() && !section.isDisabled(); }

bool isActiveAudio(const sdp::Section& section) {
  return isActive(section) && sdpneg::equalNoCase(section.media(), "audio");
}

std::string_view addressOf(const sdp::Section& section) {
  const std::optional<sdp::Connection> connection = section.connection();
  if (!connection) return {};
  return connection->address.substr(0, connection->address.find('/'));
}

bool isHeldByAddress(const sdp::Section& section) {
  const std::string_view address = addressOf(section);
  return (address == "0.0.0.0" || address == "::") && !section.hasIce() && section.port() != 9;
}

sdp::Direction meantDirection(const sdp::Section& section) {
  const sdp::Direction direction = section.direction();
  if (!receives(direction) || !isHeldByAddress(section)) return direction;
  return sends(direction) ? sdp::Direction::sendonly : sdp::Direction::inactive;
}

bool sends(sdp::Direction direction) {
  return direction == sdp::Direction::sendrecv || direction == sdp::Direction::sendonly;
}

bool receives(sdp::Direction direction) {
  return direction == sdp::Direction::sendrecv || direction == sdp::Direction::recvonly;
}

bool hasSecureProfile(const sdp::Section& section) {
  const std::string_view transport = section.transport();
  return sdpneg::findNoCase(transport, "SAVP") != sdpneg::npos ||
         sdpneg::findNoCase(transport, "TLS") != sdpneg::npos;
}

bool hasKeys(const sdp::Document& body, const sdp::Section& section) {
  return section.has("crypto") || section.has("key-mgmt") || body.session().has("key-mgmt") ||
         body.session().has("crypto") || !section.fingerprintHash().empty();
}

sdp::Security agreedSecurity(const sdp::Section& offered, const sdp::Section& answered) {
  using sdp::Security;
  const Security offer = offered.security();
  const Security answer = answered.security();
  switch (answer) {
    case Security::keyless:
      return Security::keyless;
    case Security::plain:
      return offer == Security::plain || offer == Security::osrtp ? Security::plain : Security::keyless;
    case Security::osrtp:
      return offer == Security::plain ? Security::plain : securityOfKeys(answered);
    default:
      return offer == Security::plain || offer == Security::keyless ? Security::keyless : answer;
  }
}

std::vector<CodecName> codecsOf(const sdp::Section& section) {
  std::vector<CodecName> codecs;
  if (!section.isRtp()) return codecs;
  NumberedKeys<CodecKey> known;
  for (const sdp::Format& format : section.formats()) {
    const CodecKey key = format.encoding ? CodecKey{format.encoding->name, format.encoding->clockRate}
                                         : CodecKey{format.format, 0};
    if (known.add(key) == codecs.size())
      codecs.push_back({std::string(key.name), key.clockRate, format.encoding && format.isCompanion});
    if (codecs.size() == kMostCodecs) break;
  }
  return codecs;
}

std::vector<CodecName> commonCodecs(const sdp::Section& offered, const sdp::Section& answered) {
  return commonCodecs(codecsOf(offered), codecsOf(answered));
}

std::vector<CodecName> commonCodecs(const std::vector<CodecName>& offered, std::vector<CodecName> answered) {
  const auto keyOf = [](const CodecName& codec) { return CodecKey{codec.name, codec.clockRate}; };
  NumberedKeys<CodecKey> known;
  for (const CodecName& codec : offered) known.add(keyOf(codec));
  std::erase_if(answered, [&](const CodecName& codec) {
    return codec.isCompanion || known.find(keyOf(codec)) == known.size();
  });
  return answered;
}

std::string namesOf(const std::vector<CodecName>& codecs) {
  constexpr std::size_t kMostNames = 12;
  std::vector<std::string_view> told;
  std::string names;
  for (const CodecName& codec : codecs) {
    if (std::ranges::find(told, codec.name) != told.end()) continue;
    if (!told.empty()) names += ',';
    if (told.size() == kMostNames) return names + "...";
    told.push_back(codec.name);
    names += shownPiece(codec.name, 24);
  }
  return names;
}

bool isPrivate(const IpAddress& address) {
  if (address.family == AddressFamily::ip4) {
    return isWithin(address, 0x0A000000, 8) || isWithin(address, 0xAC100000, 12) ||
           isWithin(address, 0xC0A80000, 16) || isWithin(address, 0x64400000, 10) ||
           isWithin(address, 0xA9FE0000, 16) || isWithin(address, 0x7F000000, 8);
  }
  if (address.family != AddressFamily::ip6) return false;
  const bool isLinkLocal = address.bytes[0] == 0xFE && (address.bytes[1] & 0xC0U) == 0x80U;
  IpAddress loopback;
  loopback.family = AddressFamily::ip6;
  loopback.bytes[15] = 1;
  return isLinkLocal || (address.bytes[0] & 0xFEU) == 0xFCU || address == loopback;
}

bool isPublic(const IpAddress& address) {
  if (address.family == AddressFamily::unknown || isPrivate(address)) return false;
  if (address.family == AddressFamily::ip4) return address.bytes[0] != 0 && address.bytes[0] < 224;
  return address.bytes[0] != 0 && address.bytes[0] != 0xFF;
}

std::optional<Origin> originOf(std::string_view sdp) {
  sdpneg::AnyLines lines(sdp);
  while (!lines.atEnd()) {
    const sdpneg::AnyLine line = lines.next();
    if (line.content.starts_with("m=")) break;
    if (!line.content.starts_with("o=")) continue;
    const sdp::Fields fields(line.content.substr(2));
    return Origin{fields[0], fields[1], fields[2], line.whole};
  }
  return std::nullopt;
}

}  // namespace tool
