#include "captures/fragments.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "captures/packets.h"

namespace {

using packets::Collected;
using packets::fragments4;
using packets::fragments6;
using packets::ip4;
using tool::CaptureTime;
using tool::IpPacket;
using tool::parseIpPacket;

/// What was put together, and whether it is cut.
class Joined {
 public:
  void take(const std::string& packet, CaptureTime time = 0) {
    fragments.take(parseIpPacket(packet).value(), time);
  }

  Collected collected;
  std::vector<std::string> payloads;
  tool::Fragments fragments{
      collected.output, [this](const IpPacket& packet, CaptureTime) {
        payloads.push_back(std::string(packet.payload) + (packet.isCut() ? " (cut)" : ""));
      }};
};

TEST(Fragments, JoinInAnyOrder) {
  const std::string payload = "aaaaaaaabbbbbbbbccccccccddd";
  for (const auto& fragments : {fragments4(payload, 8), fragments6(payload, 8)}) {
    std::vector<std::size_t> order{0, 1, 2, 3};
    do {
      Joined joined;
      for (const std::size_t i : order) joined.take(fragments[i]);
      EXPECT_EQ(joined.payloads, std::vector<std::string>{payload});
      EXPECT_EQ(joined.fragments.count(), 0U);
      EXPECT_EQ(joined.fragments.size(), 0U);
    } while (std::next_permutation(order.begin(), order.end()));
  }
}

TEST(Fragments, AreToldApartByIdAddressesAndProtocol) {
  Joined joined;
  const auto one = fragments4("aaaaaaaab", 8, {.id = 1});
  const auto two = fragments4("ccccccccd", 8, {.id = 2});
  const auto three = fragments4("eeeeeeeef", 8, {.addresses = packets::kBack, .id = 1});
  const auto four = fragments4("gggggggg3", 8, {.protocol = 6, .id = 1});
  for (const auto* fragments : {&one, &two, &three, &four}) joined.take((*fragments)[0]);
  EXPECT_EQ(joined.fragments.count(), 4U);
  for (const auto* fragments : {&one, &two, &three, &four}) joined.take((*fragments)[1]);
  EXPECT_EQ(joined.payloads, (std::vector<std::string>{"aaaaaaaab", "ccccccccd", "eeeeeeeef", "gggggggg3"}));
}

TEST(Fragments, KeepWhatCameFirst) {
  Joined joined;
  joined.take(ip4("aaaaaaaa", {.flagsAndOffset = 0x2000}));
  joined.take(ip4("AAAAAAAABBBBBBBB", {.flagsAndOffset = 0x2000}));
  joined.take(ip4("C", {.flagsAndOffset = 2}));
  EXPECT_EQ(joined.payloads, std::vector<std::string>{"aaaaaaaaBBBBBBBBC"});
}

TEST(Fragments, EndWhereTheFirstLastOneSays) {
  Joined joined;
  joined.take(ip4("bbbb", {.flagsAndOffset = 1}));
  joined.take(ip4("cccc", {.flagsAndOffset = 2}));
  joined.take(ip4("aaaaaaaa", {.flagsAndOffset = 0x2000}));
  EXPECT_EQ(joined.payloads, std::vector<std::string>{"aaaaaaaabbbb"});
}

TEST(Fragments, AreGivenUpWithTheFrontThatIsThere) {
  Joined joined;
  const auto fragments = fragments4("aaaaaaaabbbbbbbbccccccccddd", 8);
  joined.take(fragments[0]);
  joined.take(fragments[1]);
  joined.take(fragments[3]);
  joined.fragments.flush();
  EXPECT_EQ(joined.payloads, std::vector<std::string>{"aaaaaaaabbbbbbbb (cut)"});
  EXPECT_EQ(joined.collected.troubles(),
            std::vector<std::string>{"1 packets of which fragments are missing"});
}

TEST(Fragments, WaitForHalfAMinuteOfTheCapture) {
  const auto fragments = fragments4("aaaaaaaab", 8);
  for (const std::int64_t wait : {tool::kFragmentPatience, tool::kFragmentPatience + 1}) {
    Joined joined;
    joined.take(fragments[0], 1000);
    joined.take(fragments[1], 1000 + wait);
    EXPECT_EQ(joined.payloads[0], wait == tool::kFragmentPatience ? "aaaaaaaab" : "aaaaaaaa (cut)");
  }
}

TEST(Fragments, AreKeptOfSoManyPackets) {
  Joined joined;
  for (unsigned int id = 0; id <= tool::kMaxFragmentedPackets; ++id) {
    joined.take(ip4("aaaaaaaa", {.id = id, .flagsAndOffset = 0x2000}));
  }
  EXPECT_EQ(joined.fragments.count(), tool::kMaxFragmentedPackets);
  EXPECT_EQ(joined.payloads, std::vector<std::string>{"aaaaaaaa (cut)"});
  EXPECT_EQ(joined.collected.output.count(tool::CaptureTrouble::fragmentsDropped), 1U);
}

TEST(Fragments, AreKeptInSoManyBytes) {
  Joined joined;
  const std::string large(64000, 'x');
  for (unsigned int id = 0; id < 400; ++id) {
    joined.take(ip4(large, {.id = id, .flagsAndOffset = 0x2000}));
    ASSERT_LE(joined.fragments.size(), tool::kMaxFragmentBytes);
  }
  EXPECT_GT(joined.collected.output.count(tool::CaptureTrouble::fragmentsDropped), 0U);
  EXPECT_GT(joined.fragments.count(), 250U);
}

TEST(Fragments, AreKeptInSoManyPieces) {
  Joined joined;
  for (unsigned int i = 1; i <= tool::kMaxFragmentsOfPacket; ++i) {
    joined.take(ip4("aaaaaaaa", {.flagsAndOffset = 0x2000 | (2 * i)}));
  }
  EXPECT_EQ(joined.fragments.count(), 1U);
  joined.take(ip4("aaaaaaaa", {.flagsAndOffset = 0x2000}));
  EXPECT_EQ(joined.fragments.count(), 0U);
  EXPECT_EQ(joined.payloads, std::vector<std::string>{"aaaaaaaa (cut)"});
}

TEST(Fragments, DoNotReachBeyondTheLargestPacket) {
  Joined joined;
  joined.take(ip4("12345678", {.flagsAndOffset = 0x1FFF}));
  joined.take(ip4("", {.flagsAndOffset = 0x2000}));
  EXPECT_EQ(joined.fragments.count(), 0U);
  EXPECT_EQ(joined.collected.output.count(tool::CaptureTrouble::badPacket), 2U);
  joined.take(ip4("1234567", {.flagsAndOffset = 0x1FFF}));  // up to 65535
  EXPECT_EQ(joined.fragments.count(), 1U);
}

}  // namespace
