#ifndef SDP_NAME_PATTERN_H
#define SDP_NAME_PATTERN_H

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "aLine.h"
#include "text/search.h"

// Names of attributes to compare with, prepared so that a comparison takes a few instructions.

namespace sdpneg {

/// What of a name has to match.
enum class NameTest : std::uint8_t { whole, prefix, wholeAnyCase, prefixAnyCase };

/// The name of an attribute, or a prefix of names. At most 15 characters.
class NamePattern {
 public:
  static constexpr std::size_t kSize = 16;

  constexpr NamePattern(std::string_view text, NameTest test) {
    const bool anyCase = test == NameTest::wholeAnyCase || test == NameTest::prefixAnyCase;
    const bool isWhole = test == NameTest::whole || test == NameTest::wholeAnyCase;
    Bytes wanted{};
    Bytes compared{};
    Bytes toLower{};
    for (std::size_t i = 0; i < text.size(); ++i) {
      const char inLowerCase = lower(text[i]);
      const bool isLetter = inLowerCase >= 'a' && inLowerCase <= 'z';
      wanted[i] = static_cast<std::uint8_t>(anyCase ? inLowerCase : text[i]);
      compared[i] = 0xFF;
      toLower[i] = anyCase && isLetter ? kCaseBit : 0;
    }
    // A whole name ends in NUL where the pattern does.
    compared[text.size()] = isWhole ? 0xFF : 0;
    wanted_ = std::bit_cast<Words>(wanted);
    compared_ = std::bit_cast<Words>(compared);
    toLower_ = std::bit_cast<Words>(toLower);
  }

  /// @param name of an attribute line; what stands behind its NUL does not count
  bool matches(const char (&name)[SDP_ATTRIBUTE_NAME_SIZE]) const {
    static_assert(kSize <= SDP_ATTRIBUTE_NAME_SIZE);
    return matchesAt(name);
  }

  /// @param text of which kSize characters can be read; what stands behind a NUL does not count
  bool matchesAt(const char* text) const { return differences(text, 0) == 0 && differences(text, 1) == 0; }

 private:
  using Bytes = std::array<std::uint8_t, kSize>;
  struct Words {
    std::uint64_t at[kSize / sizeof(std::uint64_t)] = {};
  };
  static constexpr std::uint8_t kCaseBit = 'a' - 'A';

  std::uint64_t differences(const char* text, std::size_t i) const {
    std::uint64_t word = 0;
    std::memcpy(&word, text + i * sizeof word, sizeof word);
    return ((word | toLower_.at[i]) ^ wanted_.at[i]) & compared_.at[i];
  }

  Words wanted_;
  Words compared_;
  Words toLower_;
};

}  // namespace sdpneg

#endif
