// What a line is about: attribute names and the kinds behind them.

#include <algorithm>
#include <array>
#include <cstring>

#include "lines.h"
#include "text/search.h"

namespace sdp::core {
namespace {

struct Name {
  std::string_view text;
  Kind kind;
};

constexpr Name kNames[] = {
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
constexpr std::size_t kShortest = 3;
constexpr std::size_t kLongest = 17;

/// No two of the names share a slot, which the table's making checks.
constexpr std::size_t kSlots = 128;
constexpr std::size_t slotOf(const char* name, std::size_t length) {
  const auto at = [name](std::size_t i) { return static_cast<unsigned char>(name[i]); };
  return (length * 101U + at(0) * 85U + at(length - 1) * 105U + at(length / 2) * 51U) % kSlots;
}

constexpr std::array<std::uint8_t, kSlots> makeSlots() {
  std::array<std::uint8_t, kSlots> slots{};
  for (std::size_t i = 0; i < std::size(kNames); ++i) {
    std::uint8_t& slot = slots[slotOf(kNames[i].text.data(), kNames[i].text.size())];
    if (slot != 0) throw "two names share a slot";
    slot = static_cast<std::uint8_t>(i + 1);
  }
  return slots;
}
constexpr std::array<std::uint8_t, kSlots> kSlotTable = makeSlots();

std::uint64_t load(const char* text, std::size_t length) {
  std::uint64_t value = 0;
  std::memcpy(&value, text, length);
  return value;
}

/// Of texts of kShortest to kLongest characters, with two comparisons for most.
bool isSame(const char* a, const char* b, std::size_t length) {
  if (length >= 8)
    return load(a, 8) == load(b, 8) && load(a + length - 8, 8) == load(b + length - 8, 8) &&
           a[length / 2] == b[length / 2];
  if (length >= 4) return load(a, 4) == load(b, 4) && load(a + length - 4, 4) == load(b + length - 4, 4);
  return std::memcmp(a, b, length) == 0;
}

}  // namespace

Kind attributeKind(std::string_view name) {
  if (name.size() < kShortest || name.size() > kLongest) return Kind::attribute;
  const std::uint8_t slot = kSlotTable[slotOf(name.data(), name.size())];
  if (slot == 0) return Kind::attribute;
  const Name& known = kNames[slot - 1];
  if (known.text.size() != name.size()) return Kind::attribute;
  if (!isSame(known.text.data(), name.data(), name.size())) return Kind::attribute;
  return known.kind;
}

Kind attributeKindNoCase(std::string_view name) {
  if (name.size() < kShortest || name.size() > kLongest) return Kind::attribute;
  char lower[kLongest];
  std::transform(name.begin(), name.end(), lower, sdpneg::lower);
  return attributeKind({lower, name.size()});
}

std::string_view nameOf(Kind kind) {
  const auto* const name = std::find_if(std::begin(kNames), std::end(kNames),
                                        [kind](const Name& known) { return known.kind == kind; });
  return name == std::end(kNames) ? std::string_view() : name->text;
}

void classify(std::string_view content, Line& line) {
  line.nameLength = 0;
  line.kind = content.empty() ? Kind::empty : Kind::other;
  if (content.size() < 2 || content[1] != '=') return;
  switch (content[0]) {
    case 'a': {
      const std::size_t colon = std::min(content.find(':', 2), content.size());
      line.nameLength = static_cast<std::uint16_t>(std::min<std::size_t>(colon - 2, kLongName));
      line.kind = attributeKind(content.substr(2, colon - 2));
      return;
    }
    case 'v':
      line.kind = Kind::version;
      return;
    case 'm':
      line.kind = Kind::media;
      return;
    case 'c':
      line.kind = Kind::connection;
      return;
    case 'b':
      line.kind = Kind::bandwidth;
      return;
    case 'i':
      line.kind = Kind::information;
      return;
    default:
      return;
  }
}

}  // namespace sdp::core
