#ifndef SDPNEG_ANONYMOUS_NUMBERS_H
#define SDPNEG_ANONYMOUS_NUMBERS_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_set>

#include "calls/keyedHash.h"

// Telephone numbers for others.

namespace tool {

/// Gives each number another one of as many digits. Numbers that end alike go on ending alike, so that the writings of one
/// number go on being told from others': +49 30 123456, 0049 30 123456, 030 123456. What a number becomes follows from the
/// key alone, so nothing is kept of numbers that are not searched.
class AnonymousNumbers {
 public:
  explicit AnonymousNumbers(const HashKey& key) : key_(key) {}

  /// Up to two zeros in front stay, and no other number has the same one.
  std::string of(std::string_view digits) const;

  /// Notes that these digits are somebody's number.
  void learn(std::string_view digits);
  bool isKnown(std::string_view digits) const;
  std::size_t size() const { return known_.size(); }

 private:
  HashKey key_;
  std::unordered_set<std::uint64_t> known_;
};

}  // namespace tool

#endif
