#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>
#include <string_view>

#include "calls/anonymousAddresses.h"
#include "calls/anonymousNames.h"
#include "calls/anonymousNumbers.h"
#include "calls/protocolWords.h"

namespace {

using tool::HashKey;

constexpr HashKey kKey = {0x0706050403020100, 0x0F0E0D0C0B0A0908};

TEST(KeyedHash, IsThatOfItsAuthors) {
  // The test vectors of SipHash-2-4 with the key 00 01 ... 0f and the texts "", 00, 00 01 ... 07 and 00 01 ... 0e.
  std::string text;
  const auto hash = [&](std::size_t size) {
    text.clear();
    for (std::size_t i = 0; i < size; ++i) text += static_cast<char>(i);
    return tool::keyedHash(kKey, text);
  };
  EXPECT_EQ(hash(0), 0x726FDB47DD0E0E31U);
  EXPECT_EQ(hash(1), 0x74F839C593DC67FDU);
  EXPECT_EQ(hash(15), 0xA129CA6149BE45E5U);
}

std::string given(tool::AnonymousAddresses& addresses, std::string_view address) {
  return addresses.of(*tool::parseAddress(address)).text();
}

TEST(AnonymousAddresses, KeepTheirKind) {
  struct Case {
    std::string_view before;
    std::string_view after;
  };
  tool::AnonymousAddresses addresses(kKey);
  for (const auto& [before, after] : {
           Case{"81.2.3.4", "192.0.2.1"},
           Case{"192.0.2.1", "192.0.2.2"},
           Case{"10.200.1.1", "10.0.0.1"},
           Case{"172.31.255.255", "172.16.0.1"},
           Case{"172.32.0.0", "192.0.2.3"},
           Case{"192.168.1.1", "192.168.0.1"},
           Case{"100.127.0.9", "100.64.0.1"},
           Case{"169.254.9.9", "169.254.0.1"},
           Case{"224.0.1.75", "233.252.0.1"},
           Case{"239.1.2.3", "233.252.0.2"},
           Case{"127.0.0.1", "127.0.0.1"},
           Case{"0.0.0.0", "0.0.0.0"},
           Case{"255.255.255.255", "255.255.255.255"},
           Case{"2a02:26f0::1", "2001:db8::1"},
           Case{"fd12:3456::1", "fd00::1"},
           Case{"fe80::aaaa:bbbb", "fe80::1"},
           Case{"ff05::1:3", "ff05::1"},
           Case{"::ffff:81.2.3.4", "::ffff:192.0.2.1"},
           Case{"64:ff9b::81.2.3.4", "64:ff9b::c000:201"},
           Case{"::", "::"},
           Case{"::1", "::1"},
           Case{"10.200.1.1", "10.0.0.1"},
       }) {
    EXPECT_EQ(given(addresses, before), after) << before;
  }
}

TEST(AnonymousAddresses, GoOnWhereTheFirstNetsAreUsedUp) {
  tool::AnonymousAddresses addresses(kKey);
  std::set<std::string> all;
  std::string last;
  for (unsigned int i = 0; i < 1000; ++i) {
    last = given(addresses, "81.2." + std::to_string(i / 250) + "." + std::to_string(i % 250));
    all.insert(last);
  }
  EXPECT_EQ(all.size(), 1000U);
  EXPECT_TRUE(all.contains("192.0.2.254") && all.contains("198.51.100.254") && all.contains("203.0.113.254"));
  EXPECT_EQ(last, "198.18.0.238");  // the 238th behind three nets of 254
}

TEST(AnonymousAddresses, AreReadAtTheFrontOfTexts) {
  struct Case {
    std::string_view text;
    std::string_view address;
    std::size_t size;
  };
  for (const auto& [text, address, size] : {
           Case{"2001:db8::1", "2001:db8::1", 11},
           Case{"2001:DB8:0:0:0:0:0:1]:5060", "2001:db8::1", 20},
           Case{"2001:db8::1.", "2001:db8::1", 11},
           Case{"2001:db8::1: x", "2001:db8::1", 11},
           Case{"::bob", "::", 2},
           Case{"fe80::1%eth0", "fe80::1", 7},
           Case{"::ffff:192.0.2.1 x", "::ffff:192.0.2.1", 16},
           Case{"1:2:3:4:5:6:7:8:9:a", "1:2:3:4:5:6:7:8", 15},
       }) {
    const auto found = tool::leadingIp6(text);
    ASSERT_TRUE(found) << text;
    EXPECT_EQ(found->address.text(), address);
    EXPECT_EQ(found->size, size) << text;
  }
  for (const std::string_view text : {"", ":", "12:34:56", "00:11:22:33:44:55", "x::", "abc", "a.b", "1:"}) {
    EXPECT_FALSE(tool::leadingIp6(text)) << text;
  }
  EXPECT_EQ(tool::leadingIp4("192.000.002.07x")->size, 14U);
  EXPECT_EQ(tool::leadingIp4("192-0-2-7", '-')->address.text(), "192.0.2.7");
  for (const std::string_view text : {"", "1.2.3", "1.2.3.", "1.2.3.256", "1.2.3.4444", "1..2.3"}) {
    EXPECT_FALSE(tool::leadingIp4(text)) << text;
  }
}

TEST(AnonymousNumbers, AreOthersForOthersAndNeverTheSame) {
  const tool::AnonymousNumbers numbers(kKey);
  std::set<std::string> all;
  for (unsigned int i = 0; i < 10000; ++i) {
    std::string number = std::to_string(i);
    number.insert(0, 4 - number.size(), '0');
    const std::string other = numbers.of(number);
    ASSERT_EQ(other.size(), 4U);
    ASSERT_TRUE(other != number || i == 0) << number;
    ASSERT_EQ(other.starts_with('0'), number.starts_with('0'));
    all.insert(other);
  }
  EXPECT_EQ(all.size(), 10000U);
}

TEST(AnonymousNumbers, AreKnownInEachWriting) {
  tool::AnonymousNumbers numbers(kKey);
  numbers.learn("00496117770001");
  EXPECT_TRUE(numbers.isKnown("496117770001"));
  EXPECT_TRUE(numbers.isKnown("0496117770001"));
  EXPECT_FALSE(numbers.isKnown("49611777000"));
  numbers.learn("00");
  EXPECT_EQ(numbers.size(), 1U);
}

TEST(AnonymousNames, KeepTheirLetters) {
  tool::AnonymousNames names(kKey);
  EXPECT_EQ(names.word("alice"), "name1");
  EXPECT_EQ(names.word("Alice"), "Name1");
  EXPECT_EQ(names.word("ALICE"), "NAME1");
  EXPECT_EQ(names.word("aLice"), "name2");
  EXPECT_EQ(names.word("bob"), "name3");
}

TEST(AnonymousNames, KeepWhatHostsShare) {
  struct Case {
    std::string_view before;
    std::string_view after;
  };
  tool::AnonymousNames names(kKey);
  for (const auto& [before, after] : {
           Case{"example.org", "domain1.example"},
           Case{"PBX.Example.ORG.", "pbx.domain1.example."},
           Case{"a.b.example.org", "name1.name2.domain1.example"},
           Case{"example.com", "domain2.example"},
           Case{"berlin", "name3"},
           Case{"berlin.local", "name3.local"},
           Case{"localhost", "localhost"},
           Case{"0f9a1b2c-3d4e-5f60-abcd-aabbccddeeff.local", "00000000-0000-4000-8000-000000000001.local"},
           Case{"...", "..."},
           Case{"..x", "domain3.example"},
       }) {
    EXPECT_EQ(names.host(before), after) << before;
  }
  EXPECT_TRUE(names.isKnownHost("example.ORG"));
  EXPECT_TRUE(names.isKnown("Berlin"));
  EXPECT_FALSE(names.isKnown("PBX"));
}

TEST(ProtocolWords, AreFoundInWhicheverCase) {
  for (const std::string_view word : {"INVITE", "opus", "Telephone", "actpass"}) {
    EXPECT_TRUE(tool::isProtocolWord(word)) << word;
  }
  for (const std::string_view word : {"", "alice", "invites", "berlin", "smith"}) {
    EXPECT_FALSE(tool::isProtocolWord(word)) << word;
  }
  EXPECT_FALSE(tool::isProtocolWord(std::string(10000, 'a')));
}

}  // namespace
