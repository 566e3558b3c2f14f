#include "captures/ipPacket.h"

#include <gtest/gtest.h>

#include <string>

#include "captures/packets.h"

namespace {

using packets::ip4;
using packets::ip6;
using packets::u16;
using packets::u32;
using packets::u8;
using tool::parseIpPacket;

TEST(IpPacket, ReadsIp4) {
  const std::string bytes = ip4("payload", {.protocol = 6}) + "padding";
  const auto packet = parseIpPacket(bytes);
  ASSERT_TRUE(packet);
  EXPECT_EQ(packet->source.text(), "192.0.2.1");
  EXPECT_EQ(packet->destination.text(), "192.0.2.2");
  EXPECT_EQ(packet->protocol, 6);
  EXPECT_EQ(packet->payload, "payload");
  EXPECT_FALSE(packet->isCut());
  EXPECT_FALSE(packet->fragment);
}

TEST(IpPacket, PassesOverOptions) {
  const std::string bytes = ip4("payload", {.options = std::string(40, '\1')});
  EXPECT_EQ(parseIpPacket(bytes)->payload, "payload");
  EXPECT_FALSE(parseIpPacket(std::string_view(bytes).substr(0, 59)));
  EXPECT_EQ(parseIpPacket(std::string_view(bytes).substr(0, 60))->payload, "");
  EXPECT_TRUE(parseIpPacket(std::string_view(bytes).substr(0, 60))->isCut());
}

TEST(IpPacket, TellsFragmentsOfIp4) {
  const std::string first = ip4("12345678", {.id = 9, .flagsAndOffset = 0x2000});
  EXPECT_EQ(parseIpPacket(first)->fragment->offset, 0U);
  EXPECT_FALSE(parseIpPacket(first)->fragment->isLast);
  const std::string last = ip4("12345678", {.id = 9, .flagsAndOffset = 0x1FFF});
  EXPECT_EQ(parseIpPacket(last)->fragment->offset, 65528U);
  EXPECT_EQ(parseIpPacket(last)->fragment->id, 9U);
  EXPECT_TRUE(parseIpPacket(last)->fragment->isLast);
  const std::string whole = ip4("12345678", {.flagsAndOffset = 0x4000});  // may not be fragmented
  EXPECT_FALSE(parseIpPacket(whole)->fragment);
}

TEST(IpPacket, TakesALengthOfZeroAsAllThereIs) {
  const std::string four = ip4("payload", {.totalSize = 0});
  EXPECT_EQ(parseIpPacket(four)->payload, "payload");
  std::string six = ip6("payload");
  six[4] = six[5] = '\0';
  EXPECT_EQ(parseIpPacket(six)->payload, "payload");
}

TEST(IpPacket, TakesAHeaderAloneAsSuch) {
  const std::string four = ip4("padding", {.totalSize = 20});
  EXPECT_EQ(parseIpPacket(four)->payload, "");
  EXPECT_FALSE(parseIpPacket(four)->isCut());
}

TEST(IpPacket, RefusesHeadersThatAreNotWhole) {
  const std::string four = ip4("payload");
  for (std::size_t size = 0; size < 20; ++size) {
    EXPECT_FALSE(parseIpPacket(std::string_view(four).substr(0, size))) << size;
  }
  const std::string six = ip6("payload");
  for (std::size_t size = 0; size < 40; ++size) {
    EXPECT_FALSE(parseIpPacket(std::string_view(six).substr(0, size))) << size;
  }
  const std::string shorter = ip4("payload", {.totalSize = 19});
  EXPECT_FALSE(parseIpPacket(shorter));
  std::string words = four;
  words[0] = '\x44';  // four words of header
  EXPECT_FALSE(parseIpPacket(words));
  words[0] = '\x55';
  EXPECT_FALSE(parseIpPacket(words));
}

TEST(IpPacket, PassesOverExtensionHeaders) {
  const std::string options = u8(43) + u8(1) + std::string(14, '\0');  // 16 bytes, routing follows
  const std::string routing = u8(51) + u8(0) + std::string(6, '\0');   // 8 bytes, authentication follows
  const std::string authentication = u8(60) + u8(4) + std::string(22, '\0');  // 6 words, options follow
  const std::string destination = u8(17) + u8(0) + std::string(6, '\0');
  const std::string chain = options + routing + authentication + destination;
  const std::string bytes = ip6(chain + "payload", 0) + "padding";
  const auto packet = parseIpPacket(bytes);
  ASSERT_TRUE(packet);
  EXPECT_EQ(packet->source.text(), "2001:db8::1");
  EXPECT_EQ(packet->destination.text(), "2001:db8::2");
  EXPECT_EQ(packet->protocol, 17);
  EXPECT_EQ(packet->payload, "payload");
  for (std::size_t size = 40; size < 40 + chain.size(); ++size) {
    EXPECT_FALSE(parseIpPacket(std::string_view(bytes).substr(0, size))) << size;
  }
}

TEST(IpPacket, RefusesExtensionHeadersBeyondTheLength) {
  std::string bytes = ip6(u8(17) + u8(1) + std::string(14, '\0') + "payload", 0);
  bytes[5] = 15;
  EXPECT_FALSE(parseIpPacket(bytes));
  bytes[5] = 16;
  EXPECT_EQ(parseIpPacket(bytes)->payload, "");
}

TEST(IpPacket, TellsFragmentsOfIp6) {
  const std::string header = u8(17) + u8(0) + u16(0x0010 | 1) + u32(0xABCDEF01);
  const std::string bytes = ip6(header + "payload", 44);
  const auto packet = parseIpPacket(bytes);
  EXPECT_EQ(packet->protocol, 17);
  EXPECT_EQ(packet->fragment->id, 0xABCDEF01U);
  EXPECT_EQ(packet->fragment->offset, 16U);
  EXPECT_FALSE(packet->fragment->isLast);
  EXPECT_EQ(packet->payload, "payload");
  // One that is all of its packet is none.
  const std::string atomic = ip6(u8(17) + u8(0) + u16(0) + u32(1) + "payload", 44);
  EXPECT_FALSE(parseIpPacket(atomic)->fragment);
}

TEST(IpPacket, TellsWhatWasNotCaptured) {
  const std::string bytes = ip4("payload");
  const auto packet = parseIpPacket(std::string_view(bytes).substr(0, 23));
  EXPECT_EQ(packet->payload, "pay");
  EXPECT_EQ(packet->payloadSize, 7U);
  EXPECT_TRUE(packet->isCut());
}

}  // namespace
