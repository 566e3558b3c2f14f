#include "captures/endpoint.h"

#include <arpa/inet.h>

#include <algorithm>
#include <cstring>

#include "text/fixedText.h"
#include "text/search.h"

namespace tool {
namespace {

constexpr std::size_t kIp4Size = 4;
constexpr std::size_t kIp6Size = 16;

/// A port in decimal digits alone.
std::optional<std::uint16_t> parsePort(std::string_view text) {
  if (text.empty() || !std::all_of(text.begin(), text.end(), sdpneg::isDigit)) return std::nullopt;
  const auto number = sdpneg::leadingNumber<std::uint32_t>(text);
  if (!number || number->value > 65535) return std::nullopt;
  return static_cast<std::uint16_t>(number->value);
}

/// Spreads a number over all bits (the finish of MurmurHash3).
std::uint64_t mixed(std::uint64_t value) {
  value ^= value >> 33U;
  value *= 0xFF51AFD7ED558CCDU;
  value ^= value >> 33U;
  value *= 0xC4CEB9FE1A85EC53U;
  return value ^ value >> 33U;
}

}  // namespace

std::string IpAddress::text() const {
  char buffer[INET6_ADDRSTRLEN];
  if (family == AddressFamily::unknown) return "unknown";
  const int type = family == AddressFamily::ip4 ? AF_INET : AF_INET6;
  const char* const written = ::inet_ntop(type, bytes.data(), buffer, sizeof buffer);
  return written == nullptr ? "unknown" : written;
}

IpAddress addressOfBytes(std::string_view bytes) {
  IpAddress address;
  if (bytes.size() != kIp4Size && bytes.size() != kIp6Size) return address;
  address.family = bytes.size() == kIp4Size ? AddressFamily::ip4 : AddressFamily::ip6;
  std::memcpy(address.bytes.data(), bytes.data(), bytes.size());
  return address;
}

std::optional<IpAddress> parseAddress(std::string_view text) {
  sdpneg::FixedText<INET6_ADDRSTRLEN> ended;
  ended.add(text);
  IpAddress address;
  const bool isIp6 = sdpneg::contains(text, ":");
  address.family = isIp6 ? AddressFamily::ip6 : AddressFamily::ip4;
  const bool isText = !ended.cut() && std::none_of(text.begin(), text.end(), sdpneg::isControl);
  if (!isText || ::inet_pton(isIp6 ? AF_INET6 : AF_INET, ended.text(), address.bytes.data()) != 1) {
    return std::nullopt;
  }
  return address;
}

std::string Endpoint::text() const {
  if (!isKnown() || port == 0) return address.text();
  const std::string number = ":" + std::to_string(port);
  return address.family == AddressFamily::ip6 ? "[" + address.text() + "]" + number : address.text() + number;
}

std::optional<Endpoint> parseEndpoint(std::string_view text) {
  Endpoint endpoint;
  std::string_view host = text;
  std::string_view port;
  const std::size_t colon = text.rfind(':');
  if (sdpneg::startsWith(text, "[")) {
    const std::size_t bracket = text.find(']');
    if (bracket == std::string_view::npos) return std::nullopt;
    host = text.substr(1, bracket - 1);
    port = text.substr(bracket + 1);
  } else if (colon != std::string_view::npos && text.find(':') == colon) {
    host = text.substr(0, colon);
    port = text.substr(colon);
  }
  const std::optional<IpAddress> address = parseAddress(host);
  if (!address) return std::nullopt;
  endpoint.address = *address;
  if (port.empty()) return endpoint;
  const std::optional<std::uint16_t> number = parsePort(port.substr(1));
  if (port.front() != ':' || !number) return std::nullopt;
  endpoint.port = *number;
  return endpoint;
}

std::size_t hashOf(const IpAddress& address) {
  std::uint64_t halves[2];
  static_assert(sizeof halves == sizeof address.bytes);
  std::memcpy(halves, address.bytes.data(), sizeof halves);
  return static_cast<std::size_t>(mixed(halves[0] ^ mixed(halves[1] + 0x9E3779B97F4A7C15U)));
}

std::size_t hashOf(const Flow& flow) {
  const std::uint64_t ports = std::uint64_t{flow.source.port} << 16U | flow.destination.port;
  const std::uint64_t source = hashOf(flow.source.address);
  return static_cast<std::size_t>(mixed(mixed(source + ports) ^ hashOf(flow.destination.address)));
}

}  // namespace tool
