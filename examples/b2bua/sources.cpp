#include "sources.h"

#include <arpa/inet.h>
#include <netinet/in.h>

#include <algorithm>

namespace b2bua {

namespace {

constexpr std::size_t kMostSources = 4'096;
constexpr std::size_t kNetwork = 8;  ///< bytes of an IPv6 address that its owner has from somebody else
constexpr std::string_view kMapped("\0\0\0\0\0\0\0\0\0\0\xff\xff", 12);

/// @return the bytes of an address, those of IPv4 in four however they come; none for other families
std::string bytesOf(const sockaddr& address) {
  if (address.sa_family == AF_INET) {
    const in_addr& four = reinterpret_cast<const sockaddr_in&>(address).sin_addr;
    return {reinterpret_cast<const char*>(&four), sizeof four};
  }
  if (address.sa_family != AF_INET6) return "";
  const in6_addr& six = reinterpret_cast<const sockaddr_in6&>(address).sin6_addr;
  std::string bytes(reinterpret_cast<const char*>(&six), sizeof six);
  return bytes.starts_with(kMapped) ? bytes.substr(kMapped.size()) : bytes;
}

}  // namespace

void Sources::trust(const std::string& address) {
  char bytes[sizeof(in6_addr)];
  if (inet_pton(AF_INET, address.c_str(), bytes) == 1) trusted_.emplace(bytes, sizeof(in_addr));
  if (inet_pton(AF_INET6, address.c_str(), bytes) == 1) trusted_.emplace(bytes, sizeof(in6_addr));
}

SourceCounts* Sources::of(const sockaddr& address) {
  if (seconds_.sum() == 0) {
    seconds_.add();
    counts_.clear();
    others_ = {};
  }
  const std::string bytes = bytesOf(address);
  if (trusted_.contains(bytes)) return nullptr;
  const std::string source = bytes.substr(0, kNetwork);
  if (counts_.size() >= kMostSources && !counts_.contains(source)) return &others_;
  return &counts_[source];
}

}  // namespace b2bua
