#ifndef SDP_NEGOTIATOR_VOCABULARY_H
#define SDP_NEGOTIATOR_VOCABULARY_H

#include <cstdint>
#include <string_view>

#include "cMsgIPAddress.h"
#include "sdpDataDefinitions.h"

// What edits, analysis and object spell alike: codec values, media selections, ports, address types, directions.

namespace sdpneg {

// Codecs that the library knows by name, as values of `audioCodecTable` and `videoCodecTable`.
inline constexpr std::uint8_t kCodecPcma = 1;
inline constexpr std::uint8_t kCodecPcmu = 3;
inline constexpr std::uint8_t kCodecG729 = 10;
inline constexpr std::uint8_t kCodecG729AnnexA = 11;
inline constexpr std::uint8_t kCodecG729AnnexAWithAnnexB = 15;
inline constexpr std::uint8_t kCodecT38Image = 28;
inline constexpr std::uint8_t kCodecTelephoneEvent = 29;
inline constexpr std::uint8_t kCodecComfortNoise = 37;
inline constexpr std::uint8_t kCodecH264 = 2;

// Selections of media by those that take a number: audio or video alone, any other both.
inline constexpr int kAudioAlone = 1;
inline constexpr int kVideoAlone = 2;
inline constexpr int kAudioAndVideo = 64;
inline constexpr int kAnyMedia = -1;

// The ports that media may have, besides 0.
inline constexpr int kSmallestPort = 1024;
inline constexpr int kLargestPort = 65535;

/// Whether a port is reserved: one of 1 to 1023.
inline bool isReservedPort(long long port) { return port > 0 && port < kSmallestPort; }

/// Whether media may have a port: 0, or one that is not reserved.
inline bool isMediaPort(long long port) {
  return port == 0 || (port >= kSmallestPort && port <= kLargestPort);
}

// Address versions. A host's own address class may name these otherwise; the values are fixed.
inline constexpr auto kIpVersionUnknown = static_cast<eIPAddressVersion>(0);
inline constexpr auto kIpVersion4 = static_cast<eIPAddressVersion>(2);
inline constexpr auto kIpVersion6 = static_cast<eIPAddressVersion>(10);

// What lines begin with; for m-lines see text/sections.h.
inline constexpr std::string_view kOriginLine = "o=";
inline constexpr std::string_view kSessionNameLine = "s=";
inline constexpr std::string_view kCLine = "c=";
inline constexpr std::string_view kAttribute = "a=";

// Attributes that several look for. Texts for callers that take one which ends in NUL, too.
inline constexpr const char* kAnat = "a=group:ANAT";
inline constexpr const char* kKeyManagement = "a=key-mgmt:";
inline constexpr std::string_view kCrypto = "a=crypto:";
/// Also of attributes with a longer name.
inline constexpr const char* kAnyCrypto = "a=crypto";
inline constexpr const char* kPreconditions[] = {"a=curr:", "a=des:", "a=conf:"};

// Transports (RFC 3551, RFC 3711).
inline constexpr const char* kPlainTransport = "RTP/AVP";
inline constexpr const char* kSecureTransport = "RTP/SAVP";

// Address types of o- and c-lines (RFC 4566 5.2, 5.7).
inline constexpr const char* kIp4 = "IP4";
inline constexpr const char* kIp6 = "IP6";

/// The address type of a version; that of IPv6 for any but IPv4.
inline const char* addressTypeOf(int version) { return version == kIpVersion4 ? kIp4 : kIp6; }

/// Characters of every direction's name.
inline constexpr std::size_t kDirectionLength = 8;

/// @return the direction of that name (RFC 4566 6), or of "confrnce"; CONNECTION_MODE_NONE for another name
constexpr eConnectionMode directionOf(std::string_view name) {
  if (name.size() != kDirectionLength) return CONNECTION_MODE_NONE;
  if (name == "sendonly") return CONNECTION_MODE_SENDONLY;
  if (name == "recvonly") return CONNECTION_MODE_RECVONLY;
  if (name == "sendrecv") return CONNECTION_MODE_SENDRECV;
  if (name == "inactive") return CONNECTION_MODE_INACTIVE;
  return name == "confrnce" ? CONNECTION_MODE_CONFRNCE : CONNECTION_MODE_NONE;
}

/// Whether a text begins with the direction of a medium; "confrnce" is none.
inline bool startsWithDirection(std::string_view text) {
  const eConnectionMode mode = directionOf(text.substr(0, kDirectionLength));
  return mode != CONNECTION_MODE_NONE && mode != CONNECTION_MODE_CONFRNCE;
}

/// The first direction that is given.
inline unsigned char firstGiven(unsigned char direction, unsigned char otherwise) {
  return direction != CONNECTION_MODE_NONE ? direction : otherwise;
}

/// The name of a direction, which ends in NUL; empty for one that no line has.
inline std::string_view nameOf(eConnectionMode direction) {
  switch (direction) {
    case CONNECTION_MODE_SENDONLY:
      return "sendonly";
    case CONNECTION_MODE_RECVONLY:
      return "recvonly";
    case CONNECTION_MODE_SENDRECV:
      return "sendrecv";
    case CONNECTION_MODE_INACTIVE:
      return "inactive";
    default:
      return {};
  }
}

}  // namespace sdpneg

#endif
