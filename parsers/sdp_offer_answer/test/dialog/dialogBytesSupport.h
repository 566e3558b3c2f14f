#ifndef DIALOG_BYTES_SUPPORT_H
#define DIALOG_BYTES_SUPPORT_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

// The check sum of dialogs as bytes, bit by bit, for bytes that have a good one and are wrong all the same.

namespace dialogBytes {

constexpr std::size_t kSum = 8;

inline std::uint64_t sumOf(std::string_view bytes) {
  std::uint64_t sum = ~std::uint64_t{0};
  for (const char byte : bytes) {
    sum ^= static_cast<unsigned char>(byte);
    for (int bit = 0; bit < 8; ++bit) sum = (sum & 1U) != 0 ? (sum >> 1U) ^ 0xC96C5795D7870F42ULL : sum >> 1U;
  }
  return ~sum;
}

/// The bytes with a check sum in place of their last eight.
inline std::string withSum(std::string bytes) {
  if (bytes.size() < kSum) return bytes;
  bytes.resize(bytes.size() - kSum);
  const std::uint64_t sum = sumOf(bytes);
  for (std::size_t i = 0; i < kSum; ++i) bytes.push_back(static_cast<char>((sum >> (8 * i)) & 0xFFU));
  return bytes;
}

}  // namespace dialogBytes

#endif
