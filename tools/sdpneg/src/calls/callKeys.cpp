#include "calls/callKeys.h"

#include <bit>

#include "calls/keyedHash.h"

namespace tool {
namespace {

constexpr std::size_t kLeastPlaces = 16;

/// Two rounds of what spreads a number over all bits, with what nobody can guess.
std::uint64_t hashOf(const WordKeys::Key& key) {
  static const HashKey secret = HashKey::random();
  std::uint64_t hash = (key.first ^ secret.first) * 0xFF51AFD7ED558CCDU;
  hash = ((hash ^ hash >> 32U) + (key.second ^ secret.second)) * 0xC4CEB9FE1A85EC53U;
  return hash ^ hash >> 32U;
}

std::size_t placesFor(std::size_t keys) { return std::bit_ceil(kLeastPlaces + 2 * keys); }

}  // namespace

WordKeys::WordKeys(std::size_t expected) : places_(placesFor(expected)) { keys_.reserve(expected); }

std::size_t WordKeys::placeOf(const Key& key) const {
  const std::size_t mask = places_.size() - 1;
  std::size_t place = hashOf(key) & mask;
  while (places_[place] != 0 && !(keys_[places_[place] - 1] == key)) place = (place + 1) & mask;
  return place;
}

std::size_t WordKeys::add(const Key& key) {
  const std::size_t place = placeOf(key);
  if (places_[place] != 0) return places_[place] - 1;
  keys_.push_back(key);
  places_[place] = static_cast<std::uint32_t>(keys_.size());
  if (2 * keys_.size() > places_.size()) grow();
  return keys_.size() - 1;
}

void WordKeys::grow() {
  places_.assign(2 * places_.size(), 0);
  for (std::size_t i = 0; i < keys_.size(); ++i)
    places_[placeOf(keys_[i])] = static_cast<std::uint32_t>(i + 1);
}

}  // namespace tool
