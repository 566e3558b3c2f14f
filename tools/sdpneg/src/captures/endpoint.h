#ifndef SDPNEG_ENDPOINT_H
#define SDPNEG_ENDPOINT_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

// Addresses and ports between which messages go.

namespace tool {

enum class AddressFamily : std::uint8_t { unknown, ip4, ip6 };

struct IpAddress {
  AddressFamily family = AddressFamily::unknown;
  std::array<std::uint8_t, 16> bytes{};  ///< of which IPv4 has the first four

  bool operator==(const IpAddress&) const = default;

  /// "192.0.2.1", "2001:db8::1" or "unknown".
  std::string text() const;
};

/// An address of 4 or 16 bytes; an unknown one for any other number of them.
IpAddress addressOfBytes(std::string_view bytes);
/// Reads an address as text() has it.
std::optional<IpAddress> parseAddress(std::string_view text);

struct Endpoint {
  IpAddress address;
  std::uint16_t port = 0;  ///< 0 where it is not known

  bool operator==(const Endpoint&) const = default;

  bool isKnown() const { return address.family != AddressFamily::unknown; }
  /// "192.0.2.1:5060", "[2001:db8::1]:5060", without a port that is not known; or "unknown".
  std::string text() const;
};

/// Reads an address with or without a port, an IPv6 address in brackets where there is one.
std::optional<Endpoint> parseEndpoint(std::string_view text);

/// From where to where.
struct Flow {
  Endpoint source;
  Endpoint destination;

  bool operator==(const Flow&) const = default;
};

/// For tables of addresses; the same in each run.
std::size_t hashOf(const IpAddress& address);
std::size_t hashOf(const Flow& flow);

}  // namespace tool

#endif
