#include "hostIPAddress.h"

#include <arpa/inet.h>

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <cstring>
#include <iterator>

#include "cMsgIPAddress.h"

namespace {

std::atomic<int> resets{0};

eIPAddressVersion parse(const char* text, std::uint8_t* bytes) {
  if (text == nullptr) return HOST_IP_NONE;
  if (inet_pton(AF_INET, text, bytes) == 1) return HOST_IP_4;
  if (inet_pton(AF_INET6, text, bytes) == 1) return HOST_IP_6;
  return HOST_IP_NONE;
}

}  // namespace

int hostAddressResets() { return resets; }

void cMsgIPAddress::init() {
  ++resets;
  std::fill(std::begin(bytes_), std::end(bytes_), std::uint8_t{0});
  version_ = HOST_IP_NONE;
}

void cMsgIPAddress::setIPAddress(const char* text) {
  init();
  version_ = parse(text, bytes_);
}

void cMsgIPAddress::getIPAddressText(char* text, int size) const {
  if (text == nullptr || size <= 0) return;
  char whole[INET6_ADDRSTRLEN] = "0.0.0.0";
  if (version_ != HOST_IP_NONE) inet_ntop(version_, bytes_, whole, sizeof whole);
  const std::size_t length = std::min(std::strlen(whole), static_cast<std::size_t>(size) - 1);
  std::copy_n(whole, length, text);
  text[length] = 0;
}

eIPAddressVersion cMsgIPAddress::getIPAddressVersion() const {
  return static_cast<eIPAddressVersion>(version_);
}

bool cMsgIPAddress::isIPv6() const { return version_ == HOST_IP_6; }

bool cMsgIPAddress::isZero() const {
  return version_ == HOST_IP_NONE &&
         std::all_of(std::begin(bytes_), std::end(bytes_), [](std::uint8_t byte) { return byte == 0; });
}

bool cMsgIPAddress::operator==(const cMsgIPAddress& other) const {
  return version_ == other.version_ &&
         std::equal(std::begin(bytes_), std::end(bytes_), std::begin(other.bytes_));
}

eIPAddressVersion cMsgIPAddress::getIPAddressVersion(const char* text) {
  std::uint8_t bytes[16];
  return parse(text, bytes);
}

bool cMsgIPAddress::isIPv4(const char* text) { return getIPAddressVersion(text) == HOST_IP_4; }
bool cMsgIPAddress::isIPv6(const char* text) { return getIPAddressVersion(text) == HOST_IP_6; }
bool cMsgIPAddress::isValid(const char* text) { return getIPAddressVersion(text) != HOST_IP_NONE; }
