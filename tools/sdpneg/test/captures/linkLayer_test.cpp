#include "captures/linkLayer.h"

#include <gtest/gtest.h>

#include <string>

#include "captures/packets.h"

namespace {

using namespace std::string_literals;
using packets::ethernet;
using packets::u16;
using packets::u32;
using packets::u32le;
using tool::linkPayload;

constexpr int kNull = 0, kEthernet = 1, kRaw = 12, kLoop = 108, kCooked = 113, kIp4 = 228, kIp6 = 229,
              kCooked2 = 276;

std::string cooked(unsigned int type, const std::string& payload) {
  return std::string(14, '\1') + u16(type) + payload;
}
std::string cooked2(unsigned int type, const std::string& payload) {
  return u16(type) + std::string(18, '\1') + payload;
}

TEST(LinkLayer, GivesTheIpPacketOfAFrame) {
  const std::string tag = u16(0x8100) + u16(7);
  const std::string qinq = u16(0x88A8) + u16(7) + tag;
  const struct {
    const char* name;
    int type;
    std::string frame;
  } cases[] = {
      {"Ethernet", kEthernet, ethernet("ip")},
      {"Ethernet, IPv6", kEthernet, ethernet("ip", 0x86DD)},
      {"VLAN", kEthernet, ethernet("ip", 0x0800, tag)},
      {"QinQ", kEthernet, ethernet("ip", 0x0800, qinq)},
      {"raw", kRaw, "ip"},
      {"raw IPv4", kIp4, "ip"},
      {"raw IPv6", kIp6, "ip"},
      {"Linux cooked", kCooked, cooked(0x0800, "ip")},
      {"Linux cooked, VLAN", kCooked, cooked(0x8100, u16(7) + u16(0x86DD) + "ip")},
      {"Linux cooked v2", kCooked2, cooked2(0x86DD, "ip")},
      {"Linux cooked v2, VLAN", kCooked2, cooked2(0x8100, u16(7) + u16(0x0800) + "ip")},
      {"loopback, big-endian", kNull, u32(2) + "ip"},
      {"loopback, little-endian", kNull, u32le(2) + "ip"},
      {"loopback, IPv6 of Linux", kNull, u32le(10) + "ip"},
      {"loopback, IPv6 of Darwin", kNull, u32le(30) + "ip"},
      {"OpenBSD's loopback", kLoop, u32(24) + "ip"},
  };
  for (const auto& one : cases) {
    EXPECT_TRUE(tool::isKnownLinkType(one.type)) << one.name;
    const tool::LinkPayload payload = linkPayload(one.type, one.frame);
    EXPECT_TRUE(payload.isReadable) << one.name;
    EXPECT_EQ(payload.ip, "ip") << one.name;
  }
}

TEST(LinkLayer, PassesOverWhatIsNotIp) {
  for (const std::string& frame :
       {ethernet("arp", 0x0806), ethernet("llc", 100), ethernet("x", 0x0806, u16(0x8100) + u16(1))}) {
    EXPECT_TRUE(linkPayload(kEthernet, frame).isReadable);
    EXPECT_EQ(linkPayload(kEthernet, frame).ip, "");
  }
  EXPECT_EQ(linkPayload(kCooked, cooked(4, "x")).ip, "");
  EXPECT_EQ(linkPayload(kCooked2, cooked2(4, "x")).ip, "");
  EXPECT_EQ(linkPayload(kNull, u32(7) + "x").ip, "");
}

TEST(LinkLayer, TellsWhatIsCutInItsHeader) {
  const struct {
    int type;
    std::string frame;
    std::size_t header;
  } cases[] = {
      {kEthernet, ethernet("ip"), 14},
      {kEthernet, ethernet("ip", 0x0800, u16(0x8100) + u16(7)), 18},
      {kCooked, cooked(0x0800, "ip"), 16},
      {kCooked2, cooked2(0x0800, "ip"), 20},
      {kCooked2, cooked2(0x8100, u16(7) + u16(0x0800) + "ip"), 24},
      {kNull, u32(2) + "ip", 4},
      {kLoop, u32(2) + "ip", 4},
  };
  for (const auto& one : cases) {
    for (std::size_t size = 0; size <= one.header; ++size) {
      const tool::LinkPayload payload = linkPayload(one.type, one.frame.substr(0, size));
      EXPECT_EQ(payload.isReadable, size == one.header) << one.type << " " << size;
      EXPECT_EQ(payload.ip, "") << one.type << " " << size;
    }
  }
}

TEST(LinkLayer, KnowsNoOtherTypes) {
  EXPECT_FALSE(tool::isKnownLinkType(105));  // 802.11
  EXPECT_FALSE(linkPayload(105, "ip").isReadable);
}

}  // namespace
