#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <climits>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <type_traits>

#include "cMsgIPAddress.h"

// The held address: its text form, its zero state, its comparison and its bytes.

static_assert(sizeof(cMsgIPAddress) == 20 && alignof(cMsgIPAddress) == 4);
static_assert(std::is_trivially_copyable_v<cMsgIPAddress> && std::is_standard_layout_v<cMsgIPAddress>);
static_assert(std::is_trivially_default_constructible_v<cMsgIPAddress>);
static_assert(std::is_trivially_destructible_v<cMsgIPAddress>);
static_assert(std::is_base_of_v<cMsgIPAddress, cIPAddress> && sizeof(cIPAddress) == sizeof(cMsgIPAddress));
static_assert(!std::is_polymorphic_v<cIPAddress> && std::is_trivially_copyable_v<cIPAddress>);
static_assert(std::is_same_v<std::underlying_type_t<eIPAddressVersion>, int>);

namespace {

using Bytes = std::array<unsigned char, sizeof(cMsgIPAddress)>;

Bytes bytesOf(const cMsgIPAddress& address) {
  Bytes bytes;
  std::memcpy(bytes.data(), &address, bytes.size());
  return bytes;
}

cMsgIPAddress addressOf(const Bytes& bytes) {
  cMsgIPAddress address;
  std::memcpy(&address, bytes.data(), bytes.size());
  return address;
}

cIPAddress addressOf(const char* text) {
  cIPAddress address;
  address.setIPAddress(text);
  return address;
}

std::string textOf(const cMsgIPAddress& address) {
  char text[50];
  address.getIPAddressText(text, sizeof text);
  return text;
}

TEST(AddressText, IsTheCanonicalForm) {
  const struct {
    const char* set;
    const char* written;
  } cases[] = {
      {"0.0.0.0", "0.0.0.0"},
      {"192.0.2.1", "192.0.2.1"},
      {"255.255.255.255", "255.255.255.255"},
      {"::", "::"},
      {"0::0", "::"},
      {"0:0:0:0:0:0:0:1", "::1"},
      {"FE80::ABCD", "fe80::abcd"},
      {"2001:0db8:0000:0000:0000:0000:0002:0001", "2001:db8::2:1"},
      {"2001:db8:0:0:1:0:0:0", "2001:db8:0:0:1::"},
      {"1:2:3:4:5:6:7:8", "1:2:3:4:5:6:7:8"},
      {"::ffff:1.2.3.4", "::ffff:1.2.3.4"},
      {"::FFFF:102:304", "::ffff:1.2.3.4"},
      {"ffff:ffff:ffff:ffff:ffff:ffff:255.255.255.255", "ffff:ffff:ffff:ffff:ffff:ffff:ffff:ffff"},
  };
  for (const auto& each : cases) {
    SCOPED_TRACE(each.set);
    EXPECT_EQ(textOf(addressOf(each.set)), each.written);
    EXPECT_EQ(addressOf(each.written), addressOf(each.set));
  }
}

TEST(AddressText, IsCutToEverySizeAndEndsInNul) {
  for (const std::string whole :
       {"0.0.0.0", "192.0.2.1", "::", "2001:db8::2:1", "ffff:ffff:ffff:ffff:ffff:ffff:ffff:ffff"}) {
    const cIPAddress address = addressOf(whole.c_str());
    for (std::size_t size = 1; size <= 50; ++size) {
      SCOPED_TRACE(whole + " in " + std::to_string(size));
      std::array<char, 60> buffer;
      buffer.fill('#');
      address.getIPAddressText(buffer.data() + 4, static_cast<int>(size));
      const std::string expected = whole.substr(0, size - 1);
      EXPECT_STREQ(buffer.data() + 4, expected.c_str());
      const auto isGuard = [](char c) { return c == '#'; };
      EXPECT_TRUE(std::all_of(buffer.begin(), buffer.begin() + 4, isGuard));
      EXPECT_TRUE(std::all_of(buffer.data() + 4 + size, buffer.data() + buffer.size(), isGuard));
    }
  }
}

TEST(AddressText, IsNotWrittenWithoutRoom) {
  const cIPAddress address = addressOf("192.0.2.1");
  for (const int size : {0, -1, -50, INT_MIN}) {
    char text[] = "###";
    address.getIPAddressText(text, size);
    EXPECT_STREQ(text, "###");
  }
  address.getIPAddressText(nullptr, 50);
  address.getIPAddressText(nullptr, 0);
}

TEST(AddressText, OfTheLargestSizeClaimIsWritten) {
  char text[50];
  addressOf("2001:db8::1").getIPAddressText(text, INT_MAX);
  EXPECT_STREQ(text, "2001:db8::1");
}

TEST(ZeroAddress, IsWhatConstructionInitAndValueInitialisationGive) {
  const cIPAddress constructed;
  EXPECT_TRUE(constructed.isZero());

  cIPAddress reset = addressOf("2001:db8::1");
  reset.init();
  EXPECT_TRUE(reset.isZero());

  const cMsgIPAddress value{};
  EXPECT_TRUE(value.isZero());
  EXPECT_EQ(constructed, reset);
  EXPECT_EQ(constructed, value);
  EXPECT_EQ(bytesOf(reset), Bytes{});
}

TEST(ZeroAddress, ReplacesTheHeldOneWhenATextIsNoAddress) {
  for (const char* text : {"", "1.2.3", "192.0.2.1/127", "fe80::1%eth0", "192.0.2.1 "}) {
    SCOPED_TRACE(text);
    for (const char* before : {"192.0.2.1", "2001:db8::1"}) {
      cIPAddress address = addressOf(before);
      address.setIPAddress(text);
      EXPECT_TRUE(address.isZero());
      EXPECT_EQ(bytesOf(address), Bytes{});
    }
  }
  cIPAddress address = addressOf("192.0.2.1");
  address.setIPAddress(nullptr);
  EXPECT_TRUE(address.isZero());
}

TEST(ZeroAddress, HasNoVersionAndTheUnspecifiedText) {
  const cIPAddress zero;
  EXPECT_EQ(zero.getIPAddressVersion(), IP_VERSION_UNKNOWN);
  EXPECT_FALSE(zero.isIPv6());
  EXPECT_EQ(textOf(zero), "0.0.0.0");
}

// A call on hold has an address, and the two can be told apart.
TEST(ZeroAddress, IsNoneOfTheUnspecifiedAddresses) {
  for (const char* text : {"0.0.0.0", "::", "0::0"}) {
    SCOPED_TRACE(text);
    EXPECT_FALSE(addressOf(text).isZero());
    EXPECT_FALSE(addressOf(text) == cIPAddress());
  }
  EXPECT_EQ(addressOf("0.0.0.0").getIPAddressVersion(), IP_VERSION_4);
  EXPECT_EQ(addressOf("::").getIPAddressVersion(), IP_VERSION_6);
}

TEST(AddressComparison, ComparesTheAddressAndItsVersion) {
  const struct {
    const char* one;
    const char* other;
    bool same;
  } cases[] = {
      {"192.0.2.1", "192.0.2.1", true},
      {"192.0.2.1", "192.0.2.2", false},
      {"192.0.2.1", "191.0.2.1", false},
      {"2001:db8::1", "2001:DB8:0::0001", true},
      {"2001:db8::1", "2001:db8::2", false},
      {"2001:db8::1", "3001:db8::1", false},
      {"0::0", "::", true},
      {"0.0.0.0", "::", false},
      {"192.0.2.1", "::ffff:192.0.2.1", false},
      {"192.0.2.1", "::192.0.2.1", false},
      {"192.0.2.1", "c000:201::", false},  // the same leading bytes
  };
  for (const auto& each : cases) {
    SCOPED_TRACE(std::string(each.one) + " and " + each.other);
    EXPECT_EQ(addressOf(each.one) == addressOf(each.other), each.same);
    EXPECT_EQ(addressOf(each.other) == addressOf(each.one), each.same);
    EXPECT_EQ(addressOf(each.one) != addressOf(each.other), !each.same);
  }
}

TEST(AddressBytes, KeepNothingOfAnEarlierAddress) {
  cMsgIPAddress address;
  std::memset(static_cast<void*>(&address), 0xAA, sizeof address);
  address.setIPAddress("ffff:ffff:ffff:ffff:ffff:ffff:ffff:ffff");
  address.setIPAddress("192.0.2.1");
  EXPECT_EQ(bytesOf(address), bytesOf(addressOf("192.0.2.1")));
  EXPECT_EQ(address, addressOf("192.0.2.1"));
}

TEST(AddressBytes, HoldTheVersionAndTheAddressInNetworkOrder) {
  Bytes expected{};
  std::int32_t version = 2;
  std::memcpy(expected.data(), &version, sizeof version);
  expected[4] = 192;
  expected[5] = 0;
  expected[6] = 2;
  expected[7] = 33;
  EXPECT_EQ(bytesOf(addressOf("192.0.2.33")), expected);

  version = 10;
  std::memcpy(expected.data(), &version, sizeof version);
  for (unsigned char i = 0; i < 16; ++i) expected[4U + i] = i;
  EXPECT_EQ(bytesOf(addressOf("1:203:405:607:809:a0b:c0d:e0f")), expected);
}

TEST(AddressBytes, MakeTheSameAddressWhenCopied) {
  for (const char* text : {"192.0.2.1", "2001:db8::1", "0.0.0.0", "no address"}) {
    const cIPAddress original = addressOf(text);
    const cMsgIPAddress copy = addressOf(bytesOf(original));
    EXPECT_EQ(copy, original);
    EXPECT_EQ(textOf(copy), textOf(original));
    EXPECT_EQ(copy.getIPAddressVersion(), original.getIPAddressVersion());
  }
}

TEST(AddressBytes, OfAnUnknownVersionAreNotUsed) {
  for (const std::int32_t version : {0, 1, 3, 9, 11, 77, -2, INT32_MAX, INT32_MIN}) {
    SCOPED_TRACE(version);
    Bytes bytes;
    bytes.fill(0x41);
    std::memcpy(bytes.data(), &version, sizeof version);
    const cMsgIPAddress address = addressOf(bytes);
    EXPECT_EQ(address.getIPAddressVersion(), IP_VERSION_UNKNOWN);
    EXPECT_FALSE(address.isIPv6());
    EXPECT_FALSE(address.isZero());
    EXPECT_EQ(textOf(address), "0.0.0.0");
  }
}

}  // namespace
