// The hash behind the tables that find entries by a text.

#include "textSlots.h"

#include <chrono>
#include <cstring>

namespace sdp::core {
namespace {

constexpr std::uint64_t kMix = 0x9E3779B97F4A7C15U;

std::uint64_t mixed(std::uint64_t value) {
  value ^= value >> 32U;
  value *= 0xD6E8FEB86659FD93U;
  value ^= value >> 32U;
  value *= 0xD6E8FEB86659FD93U;
  return value ^ (value >> 32U);
}

std::uint64_t makeSeed() {
  const auto now = static_cast<std::uint64_t>(std::chrono::steady_clock::now().time_since_epoch().count());
  const auto place = reinterpret_cast<std::uintptr_t>(&now);  // random where addresses are
  return mixed(now) ^ mixed(place * kMix);
}

}  // namespace

std::uint64_t hashOf(std::string_view text, Index with) {
  static const std::uint64_t seed = makeSeed();
  std::uint64_t hash = mixed(seed ^ (text.size() * kMix) ^ with);
  while (!text.empty()) {
    std::uint64_t piece = 0;
    const std::size_t length = text.size() < sizeof piece ? text.size() : sizeof piece;
    std::memcpy(&piece, text.data(), length);
    hash = mixed(hash ^ piece);
    text.remove_prefix(length);
  }
  return hash;
}

}  // namespace sdp::core
