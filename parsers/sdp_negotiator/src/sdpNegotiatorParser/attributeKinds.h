#ifndef SDP_ATTRIBUTE_KINDS_H
#define SDP_ATTRIBUTE_KINDS_H

#include <bit>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <span>

#include "aLine.h"
#include "namePattern.h"

// What the attribute lines of a section are, read once for all steps of the analysis.

namespace sdpneg {

/// What an attribute line is by its name. Names are compared exactly where nothing else is said.
enum class AttributeKind : std::uint8_t {
  other,
  rtpmap,
  longerRtpmap,  ///< begins with "rtpmap"
  fmtp,
  longerFmtp,  ///< begins with "fmtp"
  keyMgmt,
  longerKeyMgmt,  ///< begins with "key-mgmt"
  crypto,
  setup,
  fingerprint,
  direction,
  mptime,
  ptime,
  silenceSupp,
  ecan,
  gpmd,
  label,
  t38MaxBitRate,
  candidate,     ///< in any case
  iceWithValue,  ///< "ice-ufrag", "ice-pwd" or "ice-options" in any case
  remoteOrIce,   ///< begins with "remote-" or otherwise with "ice-" in any case
};

/// A set of kinds.
class KindSet {
 public:
  /// Undefined, as a member of a record that is filled later.
  KindSet() = default;
  template <typename... Kinds>
  constexpr explicit KindSet(AttributeKind first, Kinds... others)
      : bits_((bitOf(first) | ... | bitOf(others))) {}

  static constexpr KindSet none() { return KindSet(Bits{0}); }

  constexpr void add(KindSet others) { bits_ |= others.bits_; }
  constexpr bool has(AttributeKind kind) const { return (bits_ & bitOf(kind)) != 0; }
  constexpr bool hasAnyOf(KindSet others) const { return (bits_ & others.bits_) != 0; }
  constexpr bool hasAllOf(KindSet others) const { return (bits_ & others.bits_) == others.bits_; }

 private:
  using Bits = std::uint32_t;

  constexpr explicit KindSet(Bits bits) : bits_(bits) {}
  static constexpr Bits bitOf(AttributeKind kind) { return Bits{1} << static_cast<unsigned int>(kind); }

  Bits bits_;
};

/// Each kind once, those together whose lines are asked for together.
inline constexpr KindSet kKindsOfTopics[] = {
    KindSet(AttributeKind::other, AttributeKind::crypto, AttributeKind::setup, AttributeKind::fingerprint,
            AttributeKind::direction),
    KindSet(AttributeKind::rtpmap, AttributeKind::longerRtpmap),
    KindSet(AttributeKind::fmtp, AttributeKind::longerFmtp),
    KindSet(AttributeKind::mptime, AttributeKind::ptime, AttributeKind::silenceSupp, AttributeKind::ecan,
            AttributeKind::gpmd),
    KindSet(AttributeKind::candidate, AttributeKind::iceWithValue, AttributeKind::remoteOrIce),
    KindSet(AttributeKind::keyMgmt, AttributeKind::longerKeyMgmt, AttributeKind::label,
            AttributeKind::t38MaxBitRate),
};
inline constexpr std::size_t kAttributeTopics = std::size(kKindsOfTopics);

/// The names that are also looked for by themselves.
inline constexpr NamePattern kRtpmapName{"rtpmap", NameTest::whole};
inline constexpr NamePattern kRtpmapPrefix{"rtpmap", NameTest::prefix};
inline constexpr NamePattern kFmtpPrefix{"fmtp", NameTest::prefix};

AttributeKind kindOf(const a_line::entry& line);

/// The kinds of a block's attribute lines.
class AttributeIndex {
 public:
  /// Undefined until a block is read: there are many, and few are used.
  AttributeIndex() = default;
  explicit AttributeIndex(const a_line* block) { read(block); }

  /// @param block null, or what the index looks into from now on
  void read(const a_line* block);

  std::span<const a_line::entry> lines() const { return {entries_, size_}; }
  KindSet kinds() const { return present_; }
  bool has(AttributeKind kind) const { return present_.has(kind); }
  bool hasAnyOf(KindSet kinds) const { return present_.hasAnyOf(kinds); }

  /// The eConnectionMode of the last direction line, 0 when there is none.
  unsigned char mode() const { return mode_; }

  /// Calls `work` with each line of the kinds, and its kind, in their order until it returns false.
  template <typename Work>
  void forEach(KindSet kinds, Work work) const {
    for (std::size_t word = 0; word < kWords; ++word) {
      for (Word rest = linesAskedFor(kinds, word); rest != 0; rest &= rest - 1) {
        const std::size_t index = word * kWordSize + static_cast<std::size_t>(std::countr_zero(rest));
        const bool isMeant = asksForWholeTopics(kinds) || kinds.has(kinds_[index]);
        if (isMeant && !work(entries_[index], kinds_[index])) return;
      }
    }
  }

 private:
  /// A bit for each of as many lines, the lowest one for the first.
  using Word = std::uint64_t;
  static constexpr std::size_t kWordSize = 64;
  static constexpr std::size_t kWords = (SDP_ATTRIBUTE_CAPACITY + kWordSize - 1) / kWordSize;

  /// Whether no kind of a topic is missing; known while compiling.
  static constexpr bool asksForWholeTopics(KindSet kinds) {
    for (const KindSet topic : kKindsOfTopics) {
      if (kinds.hasAnyOf(topic) && !kinds.hasAllOf(topic)) return false;
    }
    return true;
  }

  /// Those of the topics that the kinds belong to.
  Word linesAskedFor(KindSet kinds, std::size_t word) const {
    Word lines = 0;
    for (std::size_t topic = 0; topic < kAttributeTopics; ++topic) {
      if (kinds.hasAnyOf(kKindsOfTopics[topic])) lines |= topics_[word][topic];
    }
    return lines;
  }

  const a_line::entry* entries_;
  std::size_t size_;
  KindSet present_;
  unsigned char mode_;
  AttributeKind kinds_[SDP_ATTRIBUTE_CAPACITY];
  Word topics_[kWords][kAttributeTopics];
};

}  // namespace sdpneg

#endif
