#include "cMsgIPAddress.h"

#include <arpa/inet.h>
#include <netinet/in.h>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <string_view>

// IP addresses: from text to bytes, back, and compared.

static_assert(IP_VERSION_UNKNOWN == AF_UNSPEC && IP_VERSION_4 == AF_INET && IP_VERSION_6 == AF_INET6);

namespace {

/// How a place that needs an address says that there is none.
constexpr std::string_view kUnspecifiedText = "0.0.0.0";

/// Whether a text is short enough to be an address; reads no further than that takes.
bool hasAddressLength(const char* text) { return strnlen(text, INET6_ADDRSTRLEN) < INET6_ADDRSTRLEN; }

bool isDigit(char c) { return c >= '0' && c <= '9'; }

bool isHexDigit(char c) { return isDigit(c) || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F'); }

/// Reads a decimal number from 0 to 255 without leading zeros, and leaves `text` behind it.
bool readByte(const char*& text, std::uint8_t& byte) {
  if (!isDigit(*text)) return false;
  unsigned int value = static_cast<unsigned int>(*text++ - '0');
  for (int more = 0; more < 2 && value != 0 && isDigit(*text); ++more) {
    value = value * 10 + static_cast<unsigned int>(*text++ - '0');
  }
  byte = static_cast<std::uint8_t>(value);
  return value <= UINT8_MAX;
}

/// inet_pton(3) for IPv4, which almost all addresses are.
/// @param bytes its first four receive the address in network order, or some of it where there is none
bool parseIPv4(const char* text, std::uint8_t (&bytes)[16]) {
  for (int i = 0; i < 4; ++i) {
    if (i != 0 && *text++ != '.') return false;
    if (!readByte(text, bytes[i])) return false;
  }
  return *text == '\0';
}

/// Whether a text begins as each IPv6 address does: with at most four hexadecimal digits in front of a colon. Most texts
/// that are no address do not.
bool mayBeIPv6(const char* text) {
  constexpr int mostDigits = 4;
  int digits = 0;
  while (digits < mostDigits && isHexDigit(text[digits])) ++digits;
  return text[digits] == ':';
}

/// @param bytes receives the address in network order, when there is one; an IPv4 address in its first four
/// @return the version of the address, unknown when the text is none
eIPAddressVersion parse(const char* text, std::uint8_t (&bytes)[16]) {
  if (text == nullptr) return IP_VERSION_UNKNOWN;
  if (parseIPv4(text, bytes)) return IP_VERSION_4;
  return mayBeIPv6(text) && hasAddressLength(text) && inet_pton(AF_INET6, text, bytes) == 1
             ? IP_VERSION_6
             : IP_VERSION_UNKNOWN;
}

/// Copies as much as fits in front of the NUL; `size` is at least 1.
void copyCut(std::string_view from, char* to, std::size_t size) {
  const std::size_t length = std::min(from.size(), size - 1);
  std::copy_n(from.data(), length, to);
  to[length] = '\0';
}

}  // namespace

void cMsgIPAddress::init() { *this = cMsgIPAddress{}; }

void cMsgIPAddress::setIPAddress(const char* text) {
  std::uint8_t parsed[sizeof bytes] = {};
  version = parse(text, parsed);
  // A text that is no address may have left some of one.
  if (version == IP_VERSION_UNKNOWN) std::memset(parsed, 0, sizeof parsed);
  std::memcpy(bytes, parsed, sizeof bytes);
}

void cMsgIPAddress::getIPAddressText(char* text, int size) const {
  if (text == nullptr || size <= 0) return;
  char whole[INET6_ADDRSTRLEN] = "";
  const bool written = inet_ntop(getIPAddressVersion(), bytes, whole, sizeof whole) != nullptr;
  copyCut(written ? whole : kUnspecifiedText, text, static_cast<std::size_t>(size));
}

eIPAddressVersion cMsgIPAddress::getIPAddressVersion() const {
  if (version == IP_VERSION_4) return IP_VERSION_4;
  return version == IP_VERSION_6 ? IP_VERSION_6 : IP_VERSION_UNKNOWN;
}

eIPAddressVersion cMsgIPAddress::getIPAddressVersion(const char* text) {
  std::uint8_t parsed[sizeof bytes];
  return parse(text, parsed);
}

bool cMsgIPAddress::isIPv4(const char* text) { return getIPAddressVersion(text) == IP_VERSION_4; }

bool cMsgIPAddress::isIPv6(const char* text) { return getIPAddressVersion(text) == IP_VERSION_6; }

bool cMsgIPAddress::isValid(const char* text) { return getIPAddressVersion(text) != IP_VERSION_UNKNOWN; }

bool cMsgIPAddress::isIPv6() const { return version == IP_VERSION_6; }

bool cMsgIPAddress::isZero() const { return *this == cMsgIPAddress{}; }

bool cMsgIPAddress::operator==(const cMsgIPAddress& other) const {
  return version == other.version && std::equal(bytes, bytes + sizeof bytes, other.bytes);
}
