#ifndef SDPNEG_ANONYMOUS_ADDRESSES_H
#define SDPNEG_ANONYMOUS_ADDRESSES_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <unordered_map>

#include "calls/keyedHash.h"
#include "captures/endpoint.h"

// Addresses for others of the same kind.

namespace tool {

/// Gives each address another one of its kind, in the order in which they come:
/// - public IPv4: 192.0.2.1 to 192.0.2.254, then 198.51.100.x, 203.0.113.x (RFC 5737), then 198.18.0.0/15 (RFC 2544) and
///   240.0.0.0/4 (reserved);
/// - IPv4 of 10/8, 172.16/12, 192.168/16, 100.64/10 and 169.254/16: of the same net, from its first address on;
/// - multicast: 233.252.0.0/24 (RFC 6676), then 234/7;
/// - IPv6: of 2001:db8::/32, or fd00::/8 for unique local ones, fe80::/10 for link-local ones, and multicast with the same
///   flags and scope; what holds an IPv4 address (mapped, NAT64) goes on holding it.
/// Loopback, unspecified and broadcast addresses stay.
class AnonymousAddresses {
 public:
  explicit AnonymousAddresses(const HashKey& key) : given_(0, Hash{key}) {}

  IpAddress of(const IpAddress& address);
  /// How many addresses were given away.
  std::size_t size() const { return given_.size(); }

 private:
  struct Hash {
    HashKey key;
    std::size_t operator()(const IpAddress& address) const;
  };

  IpAddress given4(std::uint32_t address);
  IpAddress given6(const IpAddress& address);

  std::unordered_map<IpAddress, IpAddress, Hash> given_;
  std::array<std::uint64_t, 16> counts_{};
};

/// An address in a text.
struct AddressInText {
  IpAddress address;
  std::size_t size;  ///< characters that it takes
};
/// The IPv4 address that a text begins with, its numbers parted by a character: '.', or what names put in its place. Zeros
/// may stand before its numbers.
std::optional<AddressInText> leadingIp4(std::string_view text, char separator = '.');
/// The IPv6 address that a text begins with, the longest one that is none of a word's middle.
std::optional<AddressInText> leadingIp6(std::string_view text);

}  // namespace tool

#endif
