#ifndef SDPNEG_IP_PACKET_H
#define SDPNEG_IP_PACKET_H

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

#include "captures/endpoint.h"

// IPv4 (RFC 791) and IPv6 (RFC 8200) headers.

namespace tool {

/// Where in a packet a fragment stands.
struct FragmentPlace {
  std::uint32_t id = 0;
  std::size_t offset = 0;
  bool isLast = false;
};

struct IpPacket {
  IpAddress source;
  IpAddress destination;
  std::uint8_t protocol = 0;
  std::optional<FragmentPlace> fragment;  ///< nothing for a whole packet
  std::string_view payload;               ///< what was captured of it
  std::size_t payloadSize = 0;            ///< what there was on the wire

  bool isCut() const { return payload.size() < payloadSize; }
};

inline constexpr std::uint8_t kProtocolTcp = 6;
inline constexpr std::uint8_t kProtocolUdp = 17;

/// Reads the headers up to the one of the protocol above. Check sums are not looked at: many a sender leaves them to its
/// network card, behind the place where packets are captured.
/// @return nothing when they are not whole
std::optional<IpPacket> parseIpPacket(std::string_view bytes);

/// Goes behind the extension headers that a packet has in front of its payload, as one that was put together from
/// fragments may have.
/// @return whether they are whole
bool passOverExtensions(IpPacket& packet);

}  // namespace tool

#endif
