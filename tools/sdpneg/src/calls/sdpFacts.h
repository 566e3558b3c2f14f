#ifndef SDPNEG_SDP_FACTS_H
#define SDPNEG_SDP_FACTS_H

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "captures/endpoint.h"
#include "sdpDocument.h"

// What sections of bodies mean to a call.

namespace tool {

/// A piece of a message for people: what is no plain character is shown as "\xHH", and what is long is cut.
std::string shownPiece(std::string_view piece, std::size_t longest = 64);

/// Whether a section takes part: it can be read, and has a port or gets one from its group.
bool isActive(const sdp::Section& section);
/// Whether it is active and "audio".
bool isActiveAudio(const sdp::Section& section);

/// The address of its c-line, without what stands behind a slash; empty without one.
std::string_view addressOf(const sdp::Section& section);
/// Whether it is held as of old: it has no address, neither ICE nor the port of browsers that wait for ICE.
bool isHeldByAddress(const sdp::Section& section);
/// Its direction; one that is held as of old does not receive.
sdp::Direction meantDirection(const sdp::Section& section);
bool sends(sdp::Direction direction);
bool receives(sdp::Direction direction);

/// Whether its transport promises protection.
bool hasSecureProfile(const sdp::Section& section);
/// Whether it has keys of any kind, or the session has keys for it.
bool hasKeys(const sdp::Document& body, const sdp::Section& section);
/// What protects what both agreed on: plain, sdes, mikey or dtls, and keyless where one side lacks keys that the
/// transport of either wants.
sdp::Security agreedSecurity(const sdp::Section& offered, const sdp::Section& answered);

/// A codec, or what serves codecs.
struct CodecName {
  std::string name;  ///< as it is written; the number where nothing is known of it
  std::uint32_t clockRate = 0;
  bool isCompanion = false;
};
/// What a section of RTP has, in its order, each once; of endless lists the first ones.
std::vector<CodecName> codecsOf(const sdp::Section& section);
/// Those of the answer that were offered as well, in its order, without what serves codecs.
std::vector<CodecName> commonCodecs(const sdp::Section& offered, const sdp::Section& answered);
/// The same of lists that codecsOf() made.
std::vector<CodecName> commonCodecs(const std::vector<CodecName>& offered, std::vector<CodecName> answered);
/// "opus,PCMA" for people.
std::string namesOf(const std::vector<CodecName>& codecs);

/// Whether packets to an address stay in a network of one's own (RFC 1918, RFC 6598, RFC 4193, link-local, loopback).
bool isPrivate(const IpAddress& address);
/// Whether it is a single host's, known, and not private.
bool isPublic(const IpAddress& address);

/// Session id and version of a body's first o-line.
struct Origin {
  std::string_view user;
  std::string_view session;
  std::string_view version;
  std::string_view line;  ///< with its end
};
std::optional<Origin> originOf(std::string_view sdp);

}  // namespace tool

#endif
