#include "sdpNegotiator/strictBlock.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

// The header of a block of dynamic codes, RFC 1951, 3.2.7.

namespace sdpneg {
namespace {

constexpr unsigned kCodeLengthCodes = 19;
constexpr unsigned kLongestCodeLengthCode = 7;
constexpr unsigned kLongestCode = 15;

/// Bits of a stream, the lowest of a byte first.
class Bits {
 public:
  explicit Bits(std::string_view bytes)
      : bytes_(reinterpret_cast<const unsigned char*>(bytes.data())), size_(bytes.size()) {}

  /// Whether no byte is left in front of the four of the checksum.
  bool ended() const { return at_ / 8 + kChecksum >= size_; }
  /// The next bits, 16 at most, which stay. Where it has ended they are 0.
  unsigned peek(unsigned count) const {
    if (ended()) return 0;
    const unsigned char* const next = bytes_ + at_ / 8;
    const std::uint32_t word = next[0] | std::uint32_t{next[1]} << 8U | std::uint32_t{next[2]} << 16U;
    return (word >> (at_ % 8)) & ((1U << count) - 1U);
  }
  void skip(unsigned count) { at_ += count; }
  unsigned take(unsigned count) {
    const unsigned value = peek(count);
    skip(count);
    return value;
  }

 private:
  static constexpr std::size_t kChecksum = 4;
  const unsigned char* bytes_;
  std::size_t size_;
  std::size_t at_ = 0;
};

/// The code in which the lengths of the other codes are written.
class CodeLengthCode {
 public:
  /// @return false when it is not complete
  bool read(Bits& bits, unsigned count) {
    static constexpr unsigned char kOrder[kCodeLengthCodes] = {16, 17, 18, 0, 8,  7, 9,  6, 10, 5,
                                                               11, 4,  12, 3, 13, 2, 14, 1, 15};
    std::array<unsigned char, kCodeLengthCodes> lengths{};
    for (unsigned i = 0; i < count; ++i) lengths[kOrder[i]] = static_cast<unsigned char>(bits.take(3));
    return fill(lengths);
  }

  unsigned symbol(Bits& bits) const {
    const Entry& entry = entries_[bits.peek(kLongestCodeLengthCode)];
    bits.skip(entry.length);
    return entry.symbol;
  }

 private:
  struct Entry {
    unsigned char symbol;
    unsigned char length;
  };

  /// Words are given in the order of their lengths, and among those of one length in that of their symbols. They are read
  /// from their first bit on, which is the lowest, so counting up is done from the highest bit down.
  bool fill(const std::array<unsigned char, kCodeLengthCodes>& lengths) {
    unsigned word = 0;
    std::size_t used = 0;
    for (unsigned length = 1; length <= kLongestCodeLengthCode; ++length) {
      for (unsigned symbol = 0; symbol < kCodeLengthCodes; ++symbol) {
        if (lengths[symbol] != length) continue;
        used += entries_.size() >> length;
        if (used > entries_.size()) return false;
        for (std::size_t at = word; at < entries_.size(); at += std::size_t{1} << length) {
          entries_[at] = {static_cast<unsigned char>(symbol), static_cast<unsigned char>(length)};
        }
        word = nextWord(word, length);
      }
    }
    return used == entries_.size();
  }

  static unsigned nextWord(unsigned word, unsigned length) {
    unsigned bit = 1U << (length - 1);
    while (bit != 0 && (word & bit) != 0) {
      word ^= bit;
      bit >>= 1U;
    }
    return word | bit;
  }

  std::array<Entry, 1U << kLongestCodeLengthCode> entries_;
};

/// How much of all words a code has taken, in words of the longest length.
struct CodeSpace {
  std::uint32_t used = 0;

  void add(unsigned length, unsigned symbols) {
    if (length != 0) used += symbols << (kLongestCode - length);
  }
  bool full() const { return used == 1U << kLongestCode; }
};

/// Reads the lengths of the codes for literals and of those for distances, which are one sequence.
bool codesAreComplete(Bits& bits, const CodeLengthCode& code, unsigned literals, unsigned distances) {
  CodeSpace ofLiterals;
  CodeSpace ofDistances;
  unsigned length = 0;
  const unsigned all = literals + distances;
  for (unsigned at = 0; at < all;) {
    const unsigned symbol = code.symbol(bits);
    unsigned repeats = 1;
    if (symbol <= kLongestCode) {
      length = symbol;
    } else if (symbol == 16) {
      if (at == 0) return false;
      repeats = 3 + bits.take(2);
    } else {
      length = 0;
      repeats = symbol == 17 ? 3 + bits.take(3) : 11 + bits.take(7);
    }
    if (repeats > all - at || bits.ended()) return false;
    const unsigned forLiterals = at < literals ? std::min(repeats, literals - at) : 0;
    ofLiterals.add(length, forLiterals);
    ofDistances.add(length, repeats - forLiterals);
    at += repeats;
  }
  return ofLiterals.full() && ofDistances.full();
}

}  // namespace

bool isOneStrictBlock(std::string_view stream) {
  constexpr unsigned kHeaderOfStream = 16;
  constexpr unsigned kLastOfDynamicCodes = 5;
  constexpr unsigned kMostLiterals = 286;
  constexpr unsigned kMostDistances = 30;
  Bits bits(stream);
  bits.skip(kHeaderOfStream);
  if (bits.take(3) != kLastOfDynamicCodes) return false;
  const unsigned literals = 257 + bits.take(5);
  const unsigned distances = 1 + bits.take(5);
  const unsigned codeLengths = 4 + bits.take(4);
  if (literals > kMostLiterals || distances > kMostDistances) return false;
  CodeLengthCode code;
  return code.read(bits, codeLengths) && codesAreComplete(bits, code, literals, distances);
}

}  // namespace sdpneg
