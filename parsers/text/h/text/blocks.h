#ifndef SDP_TEXT_BLOCKS_H
#define SDP_TEXT_BLOCKS_H

#ifdef __SSE2__
#include <emmintrin.h>
#endif

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

// Sixteen characters looked at together: what all searches by blocks stand on, and the only place that knows a processor.

namespace sdpneg::blocks {

inline constexpr std::size_t kSize = 16;

/// Sixteen characters, or places among them: all bits of each one that is meant.
using Block = unsigned char __attribute__((vector_size(kSize)));

/// @param text sixteen characters of it can be read
inline Block at(const char* text) {
  Block block;
  std::memcpy(&block, text, sizeof block);
  return block;
}

/// @param text sixteen characters of it can be written
inline void store(Block block, char* text) { std::memcpy(text, &block, sizeof block); }

inline Block of(char c) { return Block{} + static_cast<unsigned char>(c); }

inline Block whereEqual(Block a, Block b) { return reinterpret_cast<Block>(a == b); }
inline Block where(Block block, char c) { return whereEqual(block, of(c)); }
/// Where characters are not above `most`.
inline Block whereUpTo(Block block, char most) { return reinterpret_cast<Block>(block <= of(most)); }

/// The last places.
/// @param count at most all
inline Block lastPlaces(std::size_t count) {
  static constexpr auto kAll = static_cast<char>(0xFF);
  static constexpr char kBytes[2 * kSize] = {0,    0,    0,    0,    0,    0,    0,    0,    0,    0,    0,
                                             0,    0,    0,    0,    0,    kAll, kAll, kAll, kAll, kAll, kAll,
                                             kAll, kAll, kAll, kAll, kAll, kAll, kAll, kAll, kAll, kAll};
  return at(kBytes + count);
}

/// A bit for each place, the lowest one for the first; on any machine.
inline unsigned int bitsOnAnyMachine(Block places) {
  std::uint64_t halves[2];
  std::memcpy(halves, &places, sizeof halves);
  const auto gathered = [](std::uint64_t half) {
    if constexpr (std::endian::native == std::endian::big) half = __builtin_bswap64(half);
    return static_cast<unsigned int>((((half >> 7) & 0x0101010101010101U) * 0x0102040810204080U) >> 56);
  };
  return gathered(halves[0]) | gathered(halves[1]) << 8;
}

/// The sum of all that the places of a block count; on any machine.
inline std::size_t sumOnAnyMachine(Block counts) {
  std::size_t sum = 0;
  for (std::size_t i = 0; i < kSize; ++i) sum += counts[i];
  return sum;
}

#ifdef __SSE2__
inline unsigned int bitsOf(Block places) {
  return static_cast<unsigned int>(_mm_movemask_epi8(reinterpret_cast<__m128i>(places)));
}

inline std::size_t sumOf(Block counts) {
  const __m128i halves = _mm_sad_epu8(reinterpret_cast<__m128i>(counts), _mm_setzero_si128());
  return static_cast<std::size_t>(_mm_cvtsi128_si32(halves)) +
         static_cast<std::size_t>(_mm_cvtsi128_si32(_mm_srli_si128(halves, 8)));
}
#else
inline unsigned int bitsOf(Block places) { return bitsOnAnyMachine(places); }
inline std::size_t sumOf(Block counts) { return sumOnAnyMachine(counts); }
#endif

/// The first of the places that bits tell, which are not none.
inline std::size_t firstOf(std::uint64_t bits) { return static_cast<std::size_t>(std::countr_zero(bits)); }

/// Characters whose places are the bits of one word.
inline constexpr std::size_t kWindow = 4 * kSize;

/// A bit for each place in a window, the lowest one for the first.
/// @param window all of it can be read
/// @param places gives the places in a block
template <typename Places>
std::uint64_t bitsOfWindow(const char* window, Places places) {
  const auto bits = [&](std::size_t offset) {
    return std::uint64_t{bitsOf(places(at(window + offset)))} << offset;
  };
  return bits(0) | bits(kSize) | bits(2 * kSize) | bits(3 * kSize);
}

}  // namespace sdpneg::blocks

#endif
