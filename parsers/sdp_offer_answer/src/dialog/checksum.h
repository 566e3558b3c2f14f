#ifndef SDP_OFFER_ANSWER_CHECKSUM_H
#define SDP_OFFER_ANSWER_CHECKSUM_H

// CRC-64 (ECMA-182, reflected): any change within 64 bits in a row is told, and of others all but one in 2^64.

#include <array>
#include <cstdint>
#include <string_view>

namespace sdp::exchange {

/// The remainder of each byte.
constexpr std::array<std::uint64_t, 256> checksumTable() {
  constexpr std::uint64_t kPolynomial = 0xC96C5795D7870F42ULL;
  std::array<std::uint64_t, 256> table{};
  for (std::uint64_t byte = 0; byte < table.size(); ++byte) {
    std::uint64_t remainder = byte;
    for (int bit = 0; bit < 8; ++bit) {
      remainder = (remainder & 1U) != 0 ? (remainder >> 1U) ^ kPolynomial : remainder >> 1U;
    }
    table[byte] = remainder;
  }
  return table;
}

inline std::uint64_t checksumOf(std::string_view bytes) {
  static constexpr std::array<std::uint64_t, 256> kTable = checksumTable();
  std::uint64_t sum = ~std::uint64_t{0};
  for (const char byte : bytes) sum = kTable[(sum ^ static_cast<unsigned char>(byte)) & 0xFFU] ^ (sum >> 8U);
  return ~sum;
}

}  // namespace sdp::exchange

#endif
