// Address literals (RFC 4566, section 9; RFC 4291, section 2.2), read without the system's resolver.

#include <algorithm>

#include "fieldReader.h"
#include "requests/media.h"

namespace sdp::core {
namespace {

constexpr std::size_t kGroups = 8;  ///< of an IPv6 address, 16 bits each

/// A part in front of a separator, which is taken away.
std::string_view take(std::string_view& text, char separator) {
  const std::size_t at = std::min(text.find(separator), text.size());
  const std::string_view part = text.substr(0, at);
  text.remove_prefix(std::min(at + 1, text.size()));
  return part;
}

bool isOctet(std::string_view text) {
  if (text.size() > 3 || !isDigits(text) || (text.size() > 1 && text[0] == '0')) return false;
  return *numberOf(text) <= 255;
}

bool isIp4(std::string_view text) {
  if (std::count(text.begin(), text.end(), '.') != 3) return false;
  for (int i = 0; i < 4; ++i) {
    if (!isOctet(take(text, '.'))) return false;
  }
  return true;
}

bool isHex(char c) { return sdpneg::isDigit(c) || (sdpneg::lower(c) >= 'a' && sdpneg::lower(c) <= 'f'); }

/// The groups of 16 bits that a piece of an IPv6 address tells, 0 of an empty one.
/// @param last an IPv4 address may stand at its end
std::optional<std::size_t> groupsOf(std::string_view text, bool last) {
  if (text.empty()) return 0;
  if (text.back() == ':') return std::nullopt;
  std::size_t groups = 0;
  while (!text.empty()) {
    const std::string_view group = take(text, ':');
    if (last && text.empty() && isIp4(group)) return groups + 2;
    if (group.empty() || group.size() > 4 || !std::all_of(group.begin(), group.end(), isHex))
      return std::nullopt;
    ++groups;
  }
  return groups;
}

bool isIp6(std::string_view text) {
  const std::size_t gap = text.find("::");
  if (gap == std::string_view::npos) return groupsOf(text, true) == kGroups;
  const std::optional<std::size_t> front = groupsOf(text.substr(0, gap), false);
  const std::optional<std::size_t> back = groupsOf(text.substr(gap + 2), true);
  return front && back && *front + *back < kGroups;
}

}  // namespace

std::optional<AddressLiteral> addressLiteralOf(std::string_view text) {
  if (isIp4(text)) return AddressLiteral{"IP4", text};
  if (isIp6(text)) return AddressLiteral{"IP6", text};
  return std::nullopt;
}

}  // namespace sdp::core
