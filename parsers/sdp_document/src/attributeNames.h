#ifndef SDP_DOCUMENT_ATTRIBUTE_NAMES_H
#define SDP_DOCUMENT_ATTRIBUTE_NAMES_H

// The attributes that the library knows, found by their name with one look into a table.

#include <array>
#include <bit>
#include <cstring>
#include <iterator>
#include <string_view>

#include "lines.h"

namespace sdp::core {

struct KnownName {
  std::string_view text;
  Kind kind;
};

inline constexpr KnownName kKnownNames[] = {
    {"rtpmap", Kind::rtpmap},
    {"fmtp", Kind::fmtp},
    {"rtcp-fb", Kind::rtcpFb},
    {"imageattr", Kind::imageattr},
    {"framesize", Kind::framesize},
    {"gpmd", Kind::gpmd},
    {"candidate", Kind::candidate},
    {"remote-candidates", Kind::remoteCandidates},
    {"end-of-candidates", Kind::endOfCandidates},
    {"ice-ufrag", Kind::iceUfrag},
    {"ice-pwd", Kind::icePwd},
    {"ice-options", Kind::iceOptions},
    {"ice-lite", Kind::iceLite},
    {"ice-mismatch", Kind::iceMismatch},
    {"ice-pacing", Kind::icePacing},
    {"altc", Kind::altc},
    {"alt", Kind::alt},
    {"ccap", Kind::ccap},
    {"source-filter", Kind::sourceFilter},
    {"group", Kind::group},
    {"mid", Kind::mid},
    {"bundle-only", Kind::bundleOnly},
    {"sendrecv", Kind::sendrecv},
    {"sendonly", Kind::sendonly},
    {"recvonly", Kind::recvonly},
    {"inactive", Kind::inactive},
    {"crypto", Kind::crypto},
    {"key-mgmt", Kind::keyMgmt},
    {"fingerprint", Kind::fingerprint},
    {"setup", Kind::setup},
    {"tls-id", Kind::tlsId},
    {"rtcp", Kind::rtcp},
    {"rtcp-mux", Kind::rtcpMux},
    {"rtcp-rsize", Kind::rtcpRsize},
    {"path", Kind::path},
    {"label", Kind::label},
};
inline constexpr std::size_t kLongestKnownName = 17;

/// A name of at most kLongestKnownName characters as numbers: its first eight characters, the next eight, and the last
/// with the length.
struct NameKey {
  std::uint64_t head = 0;
  std::uint64_t tail = 0;
  std::uint32_t end = 0;

  bool operator==(const NameKey&) const = default;
};

/// How many characters must be readable from the beginning of a name on.
inline constexpr std::size_t kNameRoom = 16;

constexpr std::uint64_t frontOf(std::uint64_t characters, std::size_t count) {
  return count >= 8 ? characters : characters & ((std::uint64_t{1} << (8 * count)) - 1);
}

inline std::uint64_t load(const char* characters) {
  std::uint64_t value = 0;
  std::memcpy(&value, characters, sizeof value);
  if constexpr (std::endian::native == std::endian::big) value = __builtin_bswap64(value);
  return value;
}

inline NameKey keyOf(const char* name, std::size_t length) {
  return {frontOf(load(name), length), length > 8 ? frontOf(load(name + 8), length - 8) : 0,
          static_cast<std::uint32_t>(static_cast<unsigned char>(name[length - 1]) + (length << 8U))};
}

/// keyOf for names that are known when this is compiled.
constexpr NameKey keyOf(std::string_view name) {
  NameKey key;
  for (std::size_t i = 0; i < name.size() && i < kNameRoom; ++i) {
    (i < 8 ? key.head : key.tail) |= std::uint64_t{static_cast<unsigned char>(name[i])} << (8 * (i % 8));
  }
  key.end = static_cast<std::uint32_t>(static_cast<unsigned char>(name.back()) + (name.size() << 8U));
  return key;
}

/// Known names have slots of their own, which the making of the table checks.
inline constexpr unsigned kSlotBits = 6;
constexpr std::size_t slotOf(const NameKey& key) {
  return ((key.head + 3 * key.tail) * 0xEFE890B4BB693AE9U) >> (64U - kSlotBits);
}

struct NameSlot {
  NameKey key;
  Kind kind = Kind::attribute;
};

constexpr std::array<NameSlot, std::size_t{1} << kSlotBits> makeNameSlots() {
  std::array<NameSlot, std::size_t{1} << kSlotBits> slots{};
  for (const KnownName& name : kKnownNames) {
    const NameKey key = keyOf(name.text);
    NameSlot& slot = slots[slotOf(key)];
    if (slot.kind != Kind::attribute || name.text.size() > kLongestKnownName) throw "two names share a slot";
    slot = {key, name.kind};
  }
  return slots;
}
inline constexpr auto kNameSlots = makeNameSlots();

/// The known attribute of a name, Kind::attribute for others.
/// @param name has kNameRoom readable characters
inline Kind knownAttribute(const char* name, std::size_t length) {
  if (length == 0 || length > kLongestKnownName) return Kind::attribute;
  const NameKey key = keyOf(name, length);
  const NameSlot& slot = kNameSlots[slotOf(key)];
  const bool same = ((slot.key.head ^ key.head) | (slot.key.tail ^ key.tail) | (slot.key.end ^ key.end)) == 0;
  return same ? slot.kind : Kind::attribute;
}

constexpr std::array<std::uint8_t, kKinds> makeNameLengths() {
  std::array<std::uint8_t, kKinds> lengths{};
  for (const KnownName& name : kKnownNames) {
    lengths[static_cast<std::size_t>(name.kind)] = static_cast<std::uint8_t>(name.text.size());
  }
  return lengths;
}
/// The lengths of known names, by kind.
inline constexpr std::array<std::uint8_t, kKinds> kNameLengths = makeNameLengths();

/// What stands behind the colon of an attribute of a known name; empty where there is none.
inline std::string_view textBehindColon(const Line& line) {
  const std::size_t colon = std::size_t{2} + kNameLengths[static_cast<std::size_t>(line.kind)];
  return colon < line.length ? line.content().substr(colon + 1) : std::string_view();
}

}  // namespace sdp::core

#endif
