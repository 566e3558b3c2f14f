#include "calls/anonymousAddresses.h"

#include <algorithm>
#include <span>

#include "calls/anonymousNames.h"
#include "text/search.h"

namespace tool {
namespace {

struct Net4 {
  std::uint32_t first;
  unsigned int bits;

  bool has(std::uint32_t address) const { return (address ^ first) >> (32 - bits) == 0; }
};

constexpr std::uint32_t ip4(std::uint32_t a, std::uint32_t b, std::uint32_t c, std::uint32_t d) {
  return a << 24U | b << 16U | c << 8U | d;
}

/// From where addresses are given away, those of a net that hosts have.
struct Pool {
  std::uint32_t first;
  std::uint64_t size;
};

constexpr Pool kPublic[] = {{ip4(192, 0, 2, 1), 254},
                            {ip4(198, 51, 100, 1), 254},
                            {ip4(203, 0, 113, 1), 254},
                            {ip4(198, 18, 0, 1), 0x1FFFE},
                            {ip4(240, 0, 0, 1), 0xFFFFFFE}};
constexpr Pool kTen[] = {{ip4(10, 0, 0, 1), 0xFFFFFF}, {ip4(10, 0, 0, 0), 1}};
constexpr Pool k172[] = {{ip4(172, 16, 0, 1), 0xFFFFF}, {ip4(172, 16, 0, 0), 1}};
constexpr Pool k192[] = {{ip4(192, 168, 0, 1), 0xFFFF}, {ip4(192, 168, 0, 0), 1}};
constexpr Pool kShared[] = {{ip4(100, 64, 0, 1), 0x3FFFFF}, {ip4(100, 64, 0, 0), 1}};
constexpr Pool kLinkLocal[] = {{ip4(169, 254, 0, 1), 0xFFFF}, {ip4(169, 254, 0, 0), 1}};
constexpr Pool kMulticast[] = {{ip4(233, 252, 0, 1), 255}, {ip4(234, 0, 0, 0), 0x2000000}};

struct Kind4 {
  Net4 net;
  std::span<const Pool> pools;  ///< none where addresses stay
};

constexpr Kind4 kKinds4[] = {
    {{ip4(10, 0, 0, 0), 8}, kTen},
    {{ip4(172, 16, 0, 0), 12}, k172},
    {{ip4(192, 168, 0, 0), 16}, k192},
    {{ip4(100, 64, 0, 0), 10}, kShared},
    {{ip4(169, 254, 0, 0), 16}, kLinkLocal},
    {{ip4(224, 0, 0, 0), 4}, kMulticast},
    {{ip4(127, 0, 0, 0), 8}, {}},
    {{0, 32}, {}},
    {{0xFFFFFFFFU, 32}, {}},
};
constexpr std::size_t kPublicKind = std::size(kKinds4);

/// Nets of IPv6 addresses, counted behind those of IPv4.
enum Kind6 : std::size_t { global = kPublicKind + 1, uniqueLocal, linkLocal, multicast };
static_assert(multicast < 16);

/// The address of that number, from 0. Behind the last one it begins anew, which takes more addresses than can be held.
std::uint32_t addressOf(std::span<const Pool> pools, std::uint64_t number) {
  for (const Pool& pool : pools) {
    if (number < pool.size) return pool.first + static_cast<std::uint32_t>(number);
    number -= pool.size;
  }
  return pools.back().first + static_cast<std::uint32_t>(number % pools.back().size);
}

IpAddress ip4Address(std::uint32_t value, const IpAddress* around = nullptr) {
  IpAddress address = around != nullptr ? *around : IpAddress{AddressFamily::ip4, {}};
  for (std::size_t i = 0; i < 4; ++i) {
    address.bytes[(around != nullptr ? 12 : 0) + i] = static_cast<std::uint8_t>(value >> (24 - 8 * i));
  }
  return address;
}

std::uint32_t ip4Value(const std::uint8_t* bytes) { return ip4(bytes[0], bytes[1], bytes[2], bytes[3]); }

bool beginsWith(const IpAddress& address, std::span<const std::uint8_t> bytes) {
  return std::equal(bytes.begin(), bytes.end(), address.bytes.begin());
}

constexpr std::uint8_t kMapped[12] = {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0xFF, 0xFF};
constexpr std::uint8_t kNat64[12] = {0, 0x64, 0xFF, 0x9B, 0, 0, 0, 0, 0, 0, 0, 0};

Kind6 kindOf6(const IpAddress& address) {
  if (address.bytes[0] == 0xFF) return multicast;
  if ((address.bytes[0] & 0xFEU) == 0xFC) return uniqueLocal;
  if (address.bytes[0] == 0xFE && (address.bytes[1] & 0xC0U) == 0x80) return linkLocal;
  return global;
}

bool isAddress6Character(char c) {
  const char small = sdpneg::lower(c);
  return sdpneg::isDigit(c) || (small >= 'a' && small <= 'f') || c == ':' || c == '.';
}

}  // namespace

std::size_t AnonymousAddresses::Hash::operator()(const IpAddress& address) const {
  const std::string_view bytes(reinterpret_cast<const char*>(address.bytes.data()), address.bytes.size());
  return keyedHash(key, bytes);
}

IpAddress AnonymousAddresses::of(const IpAddress& address) {
  if (address.family == AddressFamily::unknown) return address;
  const auto found = given_.find(address);
  if (found != given_.end()) return found->second;
  const IpAddress given =
      address.family == AddressFamily::ip4 ? given4(ip4Value(address.bytes.data())) : given6(address);
  given_.emplace(address, given);
  return given;
}

IpAddress AnonymousAddresses::given4(std::uint32_t address) {
  const auto kind = std::ranges::find_if(kKinds4, [&](const Kind4& one) { return one.net.has(address); });
  const auto index = static_cast<std::size_t>(kind - std::begin(kKinds4));
  if (index == kPublicKind) return ip4Address(addressOf(kPublic, counts_[index]++));
  return ip4Address(kind->pools.empty() ? address : addressOf(kind->pools, counts_[index]++));
}

IpAddress AnonymousAddresses::given6(const IpAddress& address) {
  if (beginsWith(address, kMapped) || beginsWith(address, kNat64)) {
    const IpAddress inner = of(ip4Address(ip4Value(address.bytes.data() + 12)));
    return ip4Address(ip4Value(inner.bytes.data()), &address);
  }
  static constexpr std::uint8_t kFirst15[15] = {};
  if (beginsWith(address, kFirst15) && address.bytes[15] <= 1) return address;  // unspecified, loopback
  const Kind6 kind = kindOf6(address);
  IpAddress given;
  given.family = AddressFamily::ip6;
  constexpr std::uint8_t kStarts[][4] = {
      {0x20, 0x01, 0x0D, 0xB8}, {0xFD, 0, 0, 0}, {0xFE, 0x80, 0, 0}, {0xFF, 0, 0, 0}};
  std::ranges::copy(kStarts[kind - global], given.bytes.begin());
  if (kind == multicast) given.bytes[1] = address.bytes[1];
  const std::uint64_t number = ++counts_[kind];
  for (std::size_t i = 0; i < 8; ++i) given.bytes[15 - i] = static_cast<std::uint8_t>(number >> (8 * i));
  return given;
}

std::optional<AddressInText> leadingIp4(std::string_view text, char separator) {
  std::uint32_t value = 0;
  std::size_t at = 0;
  for (int i = 0; i < 4; ++i) {
    if (i != 0 && (at == text.size() || text[at++] != separator)) return std::nullopt;
    std::uint32_t number = 0;
    const std::size_t begin = at;
    for (; at < text.size() && at - begin < 4 && sdpneg::isDigit(text[at]); ++at) {
      number = number * 10 + static_cast<std::uint32_t>(text[at] - '0');
    }
    if (at == begin || at - begin > 3 || number > 255) return std::nullopt;
    value = value << 8U | number;
  }
  return AddressInText{ip4Address(value), at};
}

std::optional<AddressInText> leadingIp6(std::string_view text) {
  constexpr std::size_t kLongest = 45;  // with an IPv4 address at its end
  std::size_t size = 0;
  // Of three colons in a row the last one is no part of it.
  const auto isThird = [&](std::size_t at) { return at >= 2 && text.substr(at - 2, 3) == ":::"; };
  while (size < text.size() && size <= kLongest && isAddress6Character(text[size]) && !isThird(size)) ++size;
  while (size != 0) {
    const std::string_view candidate = text.substr(0, size);
    const bool isOpen = size < text.size() && isWordCharacter(text[size]) && isWordCharacter(text[size - 1]);
    if (!isOpen && candidate.ends_with('.')) {
      --size;
      continue;
    }
    const std::optional<IpAddress> address = isOpen ? std::nullopt : parseAddress(candidate);
    if (address && address->family == AddressFamily::ip6) return AddressInText{*address, size};
    // Without its last group, and without the colon before that, except where that is one of two.
    const std::size_t colon = candidate.substr(0, size - 1).find_last_of(':');
    if (colon == std::string_view::npos) break;
    size = candidate.ends_with(':') && !candidate.ends_with("::") ? size - 1 : colon;
    if (size != 0 && text[size - 1] == ':') ++size;
  }
  return std::nullopt;
}

}  // namespace tool
