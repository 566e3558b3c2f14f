#include "attributeKinds.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>
#include <iterator>
#include <limits>
#include <span>
#include <string_view>

#include "attributeLines.h"
#include "readsBehindNul.h"
#include "vocabulary.h"

// The kinds of attribute lines: a table of names, found by their first characters.

namespace sdpneg {
namespace {

struct Row {
  std::string_view name;
  NameTest test;
  AttributeKind kind;
};

/// Of rows that fit one name, the first counts.
constexpr Row kRows[] = {
    {"rtpmap", NameTest::whole, AttributeKind::rtpmap},
    {"rtpmap", NameTest::prefix, AttributeKind::longerRtpmap},
    {"fmtp", NameTest::whole, AttributeKind::fmtp},
    {"fmtp", NameTest::prefix, AttributeKind::longerFmtp},
    {"key-mgmt", NameTest::whole, AttributeKind::keyMgmt},
    {"key-mgmt", NameTest::prefix, AttributeKind::longerKeyMgmt},
    {"crypto", NameTest::whole, AttributeKind::crypto},
    {"setup", NameTest::whole, AttributeKind::setup},
    {"fingerprint", NameTest::whole, AttributeKind::fingerprint},
    {"sendrecv", NameTest::whole, AttributeKind::direction},
    {"sendonly", NameTest::whole, AttributeKind::direction},
    {"recvonly", NameTest::whole, AttributeKind::direction},
    {"inactive", NameTest::whole, AttributeKind::direction},
    {"confrnce", NameTest::whole, AttributeKind::direction},
    {"mptime", NameTest::whole, AttributeKind::mptime},
    {"ptime", NameTest::whole, AttributeKind::ptime},
    {"silenceSupp", NameTest::whole, AttributeKind::silenceSupp},
    {"ecan", NameTest::whole, AttributeKind::ecan},
    {"gpmd", NameTest::whole, AttributeKind::gpmd},
    {"label", NameTest::whole, AttributeKind::label},
    {"T38MaxBitRate", NameTest::whole, AttributeKind::t38MaxBitRate},
    {"candidate", NameTest::wholeAnyCase, AttributeKind::candidate},
    {"remote-", NameTest::prefixAnyCase, AttributeKind::remoteOrIce},
    {"ice-ufrag", NameTest::wholeAnyCase, AttributeKind::iceWithValue},
    {"ice-pwd", NameTest::wholeAnyCase, AttributeKind::iceWithValue},
    {"ice-options", NameTest::wholeAnyCase, AttributeKind::iceWithValue},
    {"ice-", NameTest::prefixAnyCase, AttributeKind::remoteOrIce},
};

constexpr std::size_t kBuckets = 64;

/// The first characters of a name; those that are known have as many at least.
using Beginning = std::uint32_t;

/// The bucket of a name with that beginning, letters in either case. A bucket holds rows in their order.
constexpr std::size_t bucketOf(Beginning beginning) {
  constexpr Beginning lowerCase = 0x20202020;
  // A multiplier that puts the names, and most others that are common, into buckets of their own, but for those that
  // begin alike.
  constexpr Beginning multiplier = 0x5A7EB083;
  constexpr int bits = 6;
  static_assert(std::size_t{1} << bits == kBuckets);
  return (beginning | lowerCase) * multiplier >> (std::numeric_limits<Beginning>::digits - bits);
}

constexpr Beginning beginningOf(std::string_view name) {
  return std::bit_cast<Beginning>(std::array<char, sizeof(Beginning)>{name[0], name[1], name[2], name[3]});
}

constexpr bool isInOneTopic(AttributeKind kind) {
  return std::ranges::count_if(kKindsOfTopics, [kind](KindSet kinds) { return kinds.has(kind); }) == 1;
}

static_assert(std::ranges::all_of(kRows, isInOneTopic, &Row::kind) && isInOneTopic(AttributeKind::other));

/// The place of a kind in kKindsOfTopics.
constexpr std::uint8_t topicOf(AttributeKind kind) {
  std::uint8_t topic = 0;
  while (!kKindsOfTopics[topic].has(kind)) ++topic;
  return topic;
}

struct alignas(64) Entry {
  NamePattern pattern{"", NameTest::prefix};
  KindSet set = KindSet(AttributeKind::other);
  AttributeKind kind = AttributeKind::other;
  std::uint8_t topic = 0;  ///< its place in kKindsOfTopics
  std::uint8_t mode = CONNECTION_MODE_NONE;
  std::uint8_t next = 0;  ///< in the same bucket
};

/// Entry 0 ends each bucket: it fits every name.
struct Table {
  Entry entries[std::size(kRows) + 1];
  std::uint8_t first[kBuckets] = {};
};

constexpr Table makeTable() {
  Table table;
  for (std::size_t i = std::size(kRows); i > 0; --i) {
    const Row& row = kRows[i - 1];
    std::uint8_t& first = table.first[bucketOf(beginningOf(row.name))];
    table.entries[i] = {NamePattern(row.name, row.test),
                        KindSet(row.kind),
                        row.kind,
                        topicOf(row.kind),
                        static_cast<std::uint8_t>(directionOf(row.name)),
                        first};
    first = static_cast<std::uint8_t>(i);
  }
  return table;
}

constexpr Table kTable = makeTable();

/// The entry of a name; entry 0 for one that is not known.
inline const Entry& entryOf(const a_line::entry& line) {
  // A shorter name fits no entry but the last one, whatever stands behind its NUL.
  if constexpr (!kReadsBehindNul) {
    if (line.name[0] == '\0' || line.name[1] == '\0' || line.name[2] == '\0') return kTable.entries[0];
  }
  Beginning beginning = 0;
  std::memcpy(&beginning, line.name, sizeof beginning);
  std::size_t at = kTable.first[bucketOf(beginning)];
  while (!kTable.entries[at].pattern.matches(line.name)) at = kTable.entries[at].next;
  return kTable.entries[at];
}

}  // namespace

AttributeKind kindOf(const a_line::entry& line) { return entryOf(line).kind; }

void AttributeIndex::read(const a_line* block) {
  const std::span<const a_line::entry> lines = entriesOf(block);
  KindSet present = KindSet::none();
  unsigned char mode = CONNECTION_MODE_NONE;
  for (auto& word : topics_) {
    for (Word& topic : word) topic = 0;
  }
  Word bit = 1;
  for (std::size_t i = 0; i < lines.size(); ++i, bit = std::rotl(bit, 1)) {
    const Entry& entry = entryOf(lines.data()[i]);
    kinds_[i] = entry.kind;
    topics_[i / kWordSize][entry.topic] |= bit;
    present.add(entry.set);
    mode = firstGiven(entry.mode, mode);
  }
  entries_ = lines.data();
  size_ = lines.size();
  present_ = present;
  mode_ = mode;
}

}  // namespace sdpneg
