#ifndef SDPNEG_KEYED_HASH_H
#define SDPNEG_KEYED_HASH_H

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace tool {

/// What makes hashes of a run unlike those of another one.
struct HashKey {
  std::uint64_t first = 0;
  std::uint64_t second = 0;

  /// One that nobody can guess.
  static HashKey random();
};

/// A hash that cannot be turned back, and whose equal values cannot be made, without its key (SipHash-2-4).
std::uint64_t keyedHash(const HashKey& key, std::string_view text);

/// For tables whose keys come from a capture: hashes with the key of the run.
struct KeyedHasher {
  std::size_t operator()(std::string_view text) const;
};

/// For tables whose keys are such hashes.
struct HashedAlready {
  std::size_t operator()(std::uint64_t hash) const { return static_cast<std::size_t>(hash); }
};

}  // namespace tool

#endif
