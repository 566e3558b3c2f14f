// Directions and kinds of security as words.

#include <algorithm>
#include <array>

#include "sdpDocumentViews.h"

namespace sdp {
namespace {

constexpr std::array<std::string_view, 4> kDirectionWords = {"sendrecv", "sendonly", "recvonly", "inactive"};
constexpr std::array<std::string_view, 6> kSecurityWords = {"plain", "keyless", "sdes",
                                                            "mikey", "dtls",    "osrtp"};

}  // namespace

std::string_view textOf(Direction direction) noexcept {
  const auto index = static_cast<std::size_t>(direction);
  return index < kDirectionWords.size() ? kDirectionWords[index] : std::string_view();
}

std::optional<Direction> directionOf(std::string_view word) noexcept {
  const auto* const found = std::find(kDirectionWords.begin(), kDirectionWords.end(), word);
  if (found == kDirectionWords.end()) return std::nullopt;
  return static_cast<Direction>(found - kDirectionWords.begin());
}

std::string_view textOf(Security security) noexcept {
  const auto index = static_cast<std::size_t>(security);
  return index < kSecurityWords.size() ? kSecurityWords[index] : std::string_view();
}

}  // namespace sdp
