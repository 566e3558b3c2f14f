#ifndef SDP_DOCUMENT_SPELLINGS_H
#define SDP_DOCUMENT_SPELLINGS_H

// Words of m-lines that the library knows.

#include <algorithm>
#include <array>
#include <string_view>

namespace sdp::core {

inline constexpr std::array<std::string_view, 6> kMedia = {"audio",       "video",   "text",
                                                           "application", "message", "image"};

/// The profiles of RTP that a section can be given (RFC 3551, 4585, 3711, 5124, 5764).
inline constexpr std::array<std::string_view, 6> kProfiles = {
    "RTP/AVP", "RTP/AVPF", "RTP/SAVP", "RTP/SAVPF", "UDP/TLS/RTP/SAVP", "UDP/TLS/RTP/SAVPF"};

/// All transports with a spelling of their own.
inline constexpr std::array<std::string_view, 20> kTransports = {"RTP/AVP",
                                                                 "RTP/AVPF",
                                                                 "RTP/SAVP",
                                                                 "RTP/SAVPF",
                                                                 "UDP/TLS/RTP/SAVP",
                                                                 "UDP/TLS/RTP/SAVPF",
                                                                 "TCP/RTP/AVP",
                                                                 "TCP/RTP/AVPF",
                                                                 "TCP/RTP/SAVP",
                                                                 "TCP/RTP/SAVPF",
                                                                 "TCP/UDP/TLS/RTP/SAVP",
                                                                 "TCP/UDP/TLS/RTP/SAVPF",
                                                                 "udptl",
                                                                 "UDP/DTLS/SCTP",
                                                                 "TCP/DTLS/SCTP",
                                                                 "TCP/MSRP",
                                                                 "TCP/TLS/MSRP",
                                                                 "UDP/BFCP",
                                                                 "TCP/BFCP",
                                                                 "TCP/TLS/BFCP"};

inline bool isKnownMedia(std::string_view text) {
  return std::find(kMedia.begin(), kMedia.end(), text) != kMedia.end();
}

inline bool isProfile(std::string_view text) {
  return std::find(kProfiles.begin(), kProfiles.end(), text) != kProfiles.end();
}

}  // namespace sdp::core

#endif
