#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include "parserTestSupport.h"
#include "sdpNegotiatorParser/attributeKinds.h"

// Which kind an attribute line is of, and what a block's lines are together.

using namespace sdpneg;

namespace {

/// An entry of that name whose other bytes are what an earlier use left there.
a_line::entry entryOf(std::string_view name, char leftOver = '\xA5') {
  a_line::entry entry;
  std::memset(&entry, leftOver, sizeof entry);
  entry.name[name.copy(entry.name, sizeof entry.name - 1)] = '\0';
  entry.value[0] = '\0';
  return entry;
}

struct KindCase {
  std::string name;
  AttributeKind kind;
};

TEST(AttributeKinds, AreToldByTheName) {
  using enum AttributeKind;
  const std::vector<KindCase> cases = {
      {"rtpmap", rtpmap},
      {"rtpmap2", longerRtpmap},
      {"rtpma", other},
      {"rtpmAp", other},
      {"fmtp", fmtp},
      {"fmtpx", longerFmtp},
      {"fmt", other},
      {"key-mgmt", keyMgmt},
      {"key-mgmt2", longerKeyMgmt},
      {"key-mgm", other},
      {"Key-mgmt", other},
      {"crypto", crypto},
      {"cryptos", other},
      {"setup", setup},
      {"Setup", other},
      {"fingerprint", fingerprint},
      {"fingerprints", other},
      {"fingerprinT", other},
      {"sendrecv", direction},
      {"sendonly", direction},
      {"recvonly", direction},
      {"inactive", direction},
      {"confrnce", direction},
      {"sendrecvx", other},
      {"sendonl", other},
      {"INACTIVE", other},
      {"mptime", mptime},
      {"ptime", ptime},
      {"maxptime", other},
      {"silenceSupp", silenceSupp},
      {"silencesupp", other},
      {"ecan", ecan},
      {"gpmd", gpmd},
      {"label", label},
      {"labels", other},
      {"T38MaxBitRate", t38MaxBitRate},
      {"t38MaxBitRate", other},
      {"T38MaxBitRates", other},
      {"candidate", candidate},
      {"CandiDATE", candidate},
      {"candidates", other},
      {"ice-lite", remoteOrIce},
      {"ICE-x", remoteOrIce},
      {"ice-mismatch", remoteOrIce},
      {"ice-ufrag", iceWithValue},
      {"Ice-Pwd", iceWithValue},
      {"ice-options", iceWithValue},
      {"ice-pwds", remoteOrIce},
      {"ice-pw", remoteOrIce},
      {"ic", other},
      {"ice\rlite", other},  // differs from "-" in the bit that tells the cases of letters apart
      {"ice", other},
      {"remote-candidates", remoteOrIce},
      {"Remote-", remoteOrIce},
      {"remote", other},
      {"", other},
      {"r", other},
      {std::string(63, 'r'), other},
      {"rtpmap" + std::string(57, 'x'), longerRtpmap},
      {"\xF2tpmap", other},
  };
  for (const KindCase& one : cases) EXPECT_EQ(kindOf(entryOf(one.name)), one.kind) << one.name;
}

TEST(AttributeKinds, DoNotDependOnWhatStandsBehindTheName) {
  a_line::entry entry = entryOf("");
  std::memcpy(entry.name + 1, "tpmap", 6);
  EXPECT_EQ(kindOf(entry), AttributeKind::other);
  for (const char leftOver : {'\0', 'x', '\xFF'}) {
    EXPECT_EQ(kindOf(entryOf("fmtp", leftOver)), AttributeKind::fmtp);
    EXPECT_EQ(kindOf(entryOf("fmt", leftOver)), AttributeKind::other);
    EXPECT_EQ(kindOf(entryOf("sendrecv", leftOver)), AttributeKind::direction);
    EXPECT_EQ(kindOf(entryOf("T38MaxBitRate", leftOver)), AttributeKind::t38MaxBitRate);
  }
}

std::vector<std::string> namesOf(const AttributeIndex& index, KindSet kinds) {
  std::vector<std::string> names;
  index.forEach(kinds, [&](const a_line::entry& line, AttributeKind kind) {
    EXPECT_EQ(kindOf(line), kind);
    names.emplace_back(line.name);
    return names.size() < 3;
  });
  return names;
}

TEST(AttributeIndex, GivesLinesOfSomeKindsInTheirOrder) {
  const Attributes block(
      {"fmtp:1", "x", "rtpmap:1", "ptime:20", "fmtp:2", "rtpmapx:2", "ptime:30", "ecan:on"});
  const AttributeIndex index(block);
  EXPECT_EQ(index.lines().size(), 8U);
  EXPECT_TRUE(index.has(AttributeKind::rtpmap));
  EXPECT_FALSE(index.has(AttributeKind::label));
  EXPECT_TRUE(index.hasAnyOf(KindSet(AttributeKind::label, AttributeKind::ecan)));
  EXPECT_FALSE(index.hasAnyOf(KindSet(AttributeKind::label, AttributeKind::gpmd)));
  using Names = std::vector<std::string>;
  EXPECT_EQ(namesOf(index, KindSet(AttributeKind::rtpmap)), Names{"rtpmap"});
  EXPECT_EQ(namesOf(index, KindSet(AttributeKind::label)), Names{});
  // The third one ends the walk.
  EXPECT_EQ(namesOf(index, KindSet(AttributeKind::fmtp, AttributeKind::ptime)),
            (Names{"fmtp", "ptime", "fmtp"}));
}

struct ModeCase {
  std::vector<std::string> lines;
  int mode;
};

TEST(AttributeIndex, HasTheModeOfTheLastDirection) {
  const std::vector<ModeCase> cases = {
      {{}, 0},           {{"x"}, 0},        {{"sendonly"}, 1}, {{"recvonly"}, 2},
      {{"sendrecv"}, 3}, {{"inactive"}, 4}, {{"confrnce"}, 5}, {{"sendonly", "inactive:x", "ptime:20"}, 4},
  };
  for (const ModeCase& one : cases) {
    const Attributes block(one.lines);
    EXPECT_EQ(AttributeIndex(block).mode(), one.mode);
  }
}

TEST(AttributeIndex, HoldsFullBlocksAndThoseThatClaimMore) {
  const std::vector<std::string> lines(SDP_ATTRIBUTE_CAPACITY, "ptime:20");
  Attributes block(lines);
  for (const int count : {SDP_ATTRIBUTE_CAPACITY, SDP_ATTRIBUTE_CAPACITY + 1, 1 << 30}) {
    block->count = count;
    const AttributeIndex index(block);
    EXPECT_EQ(index.lines().size(), static_cast<std::size_t>(SDP_ATTRIBUTE_CAPACITY));
    int seen = 0;
    index.forEach(KindSet(AttributeKind::ptime),
                  [&](const a_line::entry&, AttributeKind) { return ++seen != 0; });
    EXPECT_EQ(seen, SDP_ATTRIBUTE_CAPACITY);
  }
  block->count = -1;
  EXPECT_TRUE(AttributeIndex(block).lines().empty());
  EXPECT_TRUE(AttributeIndex(nullptr).lines().empty());
  EXPECT_EQ(AttributeIndex(nullptr).mode(), 0);
}

}  // namespace
