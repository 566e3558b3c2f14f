#include <gtest/gtest.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <stdexcept>
#include <string>
#include <string_view>

#include "cMsgIPAddress.h"

// Which texts are addresses, and of which version.

namespace {

const char* const ipv4Texts[] = {
    "0.0.0.0",   "0.0.0.1",   "1.2.3.4",    "9.10.99.100", "10.0.0.1",        "127.0.0.1",
    "192.0.2.1", "224.2.1.1", "239.0.0.99", "255.0.0.255", "255.255.255.255", "198.51.100.249",
};

const char* const ipv6Texts[] = {
    "::",
    "0::0",
    "::1",
    "1::",
    "fe80::1",
    "FE80::1",
    "FF15::101",
    "2001:db8::1",
    "2001:DB8::aBcD",
    "2001:db8:0:0:0:0:2:1",
    "2001:0db8:0000:0000:0000:0000:0002:0001",
    "1:2:3:4:5:6:7:8",
    "1:2:3:4:5:6:7::",
    "::2:3:4:5:6:7:8",
    "1:2:3::5:6:7:8",
    "::1.2.3.4",
    "::ffff:1.2.3.4",
    "::FFFF:255.255.255.255",
    "64:ff9b::192.0.2.33",
    "1:2:3:4:5:6:1.2.3.4",
    "ffff:ffff:ffff:ffff:ffff:ffff:ffff:ffff",
    "ffff:ffff:ffff:ffff:ffff:ffff:255.255.255.255",  // 45 characters: the longest there is
};

const char* const otherTexts[] = {
    "",
    " ",
    "0",
    "IP4",
    "localhost",
    "example.org",
    // IPv4 with too few, too many, too large or empty numbers
    "1",
    "1.2",
    "1.2.3",
    "1.2.3.",
    "1.2.3.4.",
    "1.2.3.4.5",
    ".1.2.3.4",
    "1..2.3",
    "1...4",
    "...",
    "256.1.1.1",
    "1.256.1.1",
    "1.1.1.256",
    "1.1.1.999",
    "1.1.1.1000",
    "4294967295",
    "4294967296.1.1.1",
    "1.2.3.18446744073709551617",
    // leading zeros could be octal
    "01.2.3.4",
    "1.2.3.04",
    "00.0.0.0",
    "001.002.003.004",
    // signs, other bases, other characters
    "-1.2.3.4",
    "+1.2.3.4",
    "1.2.3.-4",
    "0x1.2.3.4",
    "0x01020304",
    "1.2.3.a",
    "1,2,3,4",
    "1.2.3:4",
    // something before or behind
    " 1.2.3.4",
    "1.2.3.4 ",
    "1.2.3.4\t",
    "1.2.3.4\r",
    "1.2.3.4\r\n",
    "1.2.3.4\n",
    "\n1.2.3.4",
    "1.2 .3.4",
    "1.2.\0013.4",
    "1.2.3.4\x7f",
    "1.2.3.4:5060",
    "1.2.3.4/24",
    "224.2.1.1/127",
    "224.2.1.1/127/3",
    "[1.2.3.4]",
    // bytes from 0x80 on, UTF-8 digits and blanks among them
    "\x80",
    "\xff\xff\xff\xff",
    "1.2.3.\xb4",
    "1.2.3.4\xa0",
    "1.2.3.4\xc2\xa0",
    "\xef\xbc\x91.2.3.4",
    // IPv6 with too few, too many, too large or empty groups
    ":",
    ":::",
    "1:",
    ":1",
    "1:2",
    "1:2:3:4:5:6:7",
    "1:2:3:4:5:6:7:",
    ":2:3:4:5:6:7:8",
    "1:2:3:4:5:6:7:8:",
    "1:2:3:4:5:6:7:8:9",
    "1:2:3:4:5:6:7:8::",
    "::1:2:3:4:5:6:7:8",
    "1::2::3",
    "1:::2",
    "::12345",
    "::00001",
    "::g",
    "::-1",
    "::0x1",
    // IPv4 inside IPv6
    "::ffff:1.2.3",
    "::ffff:1.2.3.4.5",
    "::ffff:256.2.3.4",
    "::ffff:01.2.3.4",
    "::1.2.3.4:5",
    "1.2.3.4::",
    "1:2:3:4:5:6:7:1.2.3.4",
    "1:2:3:4:5:1.2.3.4",
    // something before or behind
    " ::1",
    "::1 ",
    "::1\r\n",
    "::\x01",
    "::\xb9",
    "::1\x80",
    "[::1]",
    "fe80::1%eth0",
    "fe80::1%2",
    "fe80::1%",
    "2001:db8::/32",
    "FF15::101/3",
    "::1/",
};

void expectVersion(const char* text, eIPAddressVersion version) {
  SCOPED_TRACE(text);
  EXPECT_EQ(cMsgIPAddress::getIPAddressVersion(text), version);
  EXPECT_EQ(cMsgIPAddress::isIPv4(text), version == IP_VERSION_4);
  EXPECT_EQ(cMsgIPAddress::isIPv6(text), version == IP_VERSION_6);
  EXPECT_EQ(cMsgIPAddress::isValid(text), version != IP_VERSION_UNKNOWN);
  cIPAddress held;
  held.setIPAddress(text);
  EXPECT_EQ(held.getIPAddressVersion(), version);
  EXPECT_EQ(held.isIPv6(), version == IP_VERSION_6);
  EXPECT_EQ(held.isZero(), version == IP_VERSION_UNKNOWN);
}

TEST(AddressTexts, VersionsHaveTheValuesOfTheSocketFamilies) {
  EXPECT_EQ(static_cast<int>(IP_VERSION_UNKNOWN), 0);
  EXPECT_EQ(static_cast<int>(IP_VERSION_4), 2);
  EXPECT_EQ(static_cast<int>(IP_VERSION_6), 10);
}

TEST(AddressTexts, OfVersion4) {
  for (const char* text : ipv4Texts) expectVersion(text, IP_VERSION_4);
}

TEST(AddressTexts, OfVersion6) {
  for (const char* text : ipv6Texts) expectVersion(text, IP_VERSION_6);
}

TEST(AddressTexts, OthersAreNone) {
  for (const char* text : otherTexts) expectVersion(text, IP_VERSION_UNKNOWN);
}

TEST(AddressTexts, NullIsNone) {
  EXPECT_EQ(cMsgIPAddress::getIPAddressVersion(nullptr), IP_VERSION_UNKNOWN);
  EXPECT_FALSE(cMsgIPAddress::isIPv4(nullptr));
  EXPECT_FALSE(cMsgIPAddress::isIPv6(nullptr));
  EXPECT_FALSE(cMsgIPAddress::isValid(nullptr));
}

TEST(AddressTexts, EveryStrayByteBehindAnAddressIsRefused) {
  for (int byte = 1; byte < 256; ++byte) {
    SCOPED_TRACE(byte);
    const char stray = static_cast<char>(byte);
    const bool digit = byte >= '0' && byte <= '9';
    const bool hexDigit = digit || (byte >= 'a' && byte <= 'f') || (byte >= 'A' && byte <= 'F');
    EXPECT_EQ(cMsgIPAddress::isValid((std::string("192.0.2.1") + stray).c_str()), digit);
    EXPECT_EQ(cMsgIPAddress::isValid((std::string("2001:db8::1") + stray).c_str()), hexDigit);
  }
}

TEST(AddressTexts, AreReadUpToTheirNulOnly) {
  EXPECT_TRUE(cMsgIPAddress::isIPv4("192.0.2.1\0trailing"));
  EXPECT_FALSE(cMsgIPAddress::isValid("192.0\0.2.1"));
  EXPECT_TRUE(cMsgIPAddress::isIPv6("::1\0trailing"));
}

/// Two pages of which the second must not be touched: reading behind a text that ends with the first
/// one stops the test.
class GuardedPage {
 public:
  GuardedPage() : size(static_cast<std::size_t>(sysconf(_SC_PAGESIZE))) {
    void* pages = mmap(nullptr, 2 * size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (pages == MAP_FAILED) throw std::runtime_error("no pages");
    begin = static_cast<char*>(pages);
    if (mprotect(begin + size, size, PROT_NONE) != 0) throw std::runtime_error("no guard");
  }
  ~GuardedPage() { munmap(begin, 2 * size); }
  GuardedPage(const GuardedPage&) = delete;
  GuardedPage& operator=(const GuardedPage&) = delete;

  /// Puts bytes, of which none needs to be a NUL, right before the guarded page.
  const char* endWith(std::string_view bytes) {
    char* const place = begin + size - bytes.size();
    std::copy(bytes.begin(), bytes.end(), place);
    return place;
  }

 private:
  std::size_t size;
  char* begin = nullptr;
};

TEST(AddressTexts, NothingIsReadBehindTheNul) {
  GuardedPage page;
  for (const char* text : ipv4Texts) {
    expectVersion(page.endWith(std::string_view(text, std::string_view(text).size() + 1)), IP_VERSION_4);
  }
  for (const char* text : ipv6Texts) {
    expectVersion(page.endWith(std::string_view(text, std::string_view(text).size() + 1)), IP_VERSION_6);
  }
}

TEST(AddressTexts, OverlongOnesAreRefusedAfter46Characters) {
  GuardedPage page;
  const std::string beginnings[] = {"", "1.2.3.4", "::", "2001:db8::1", "1:2:3:4:5:6:7:8", "1.2.3.4 "};
  for (const std::string& beginning : beginnings) {
    for (const char fill : {'0', '1', ':', '.', ' ', 'a', '%', '\xff'}) {
      std::string text = beginning;
      text.resize(46, fill);
      SCOPED_TRACE(text);
      const char* unterminated = page.endWith(text);
      EXPECT_EQ(cMsgIPAddress::getIPAddressVersion(unterminated), IP_VERSION_UNKNOWN);
      cIPAddress held;
      held.setIPAddress(unterminated);
      EXPECT_TRUE(held.isZero());
    }
  }
}

TEST(AddressTexts, OverlongTextsOfManyLengthsAreRefused) {
  for (const std::size_t length : {46U, 47U, 50U, 64U, 1000U, 10000U}) {
    SCOPED_TRACE(length);
    EXPECT_FALSE(cMsgIPAddress::isValid(std::string(length, '1').c_str()));
    EXPECT_FALSE(cMsgIPAddress::isValid(("::" + std::string(length - 2, '0')).c_str()));
    EXPECT_FALSE(cMsgIPAddress::isValid(("192.0.2.1" + std::string(length - 9, ' ')).c_str()));
  }
}

}  // namespace
