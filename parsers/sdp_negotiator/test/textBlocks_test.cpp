#include "text/blocks.h"

#include <gtest/gtest.h>

#include <string>

// Where characters stand in a block of sixteen, also as machines without registers for them tell it.

using namespace sdpneg::blocks;

namespace {

constexpr unsigned int kAll = 0xFFFF;

unsigned int expectBits(Block places) {
  EXPECT_EQ(bitsOf(places), bitsOnAnyMachine(places));
  return bitsOf(places);
}

TEST(Blocks, TellEachPlaceOfACharacter) {
  const Block block = at("a=rtpmap:0 PC:\r\n");
  EXPECT_EQ(expectBits(where(block, 'a')), 1U << 0 | 1U << 6);
  EXPECT_EQ(expectBits(where(block, ':')), 1U << 8 | 1U << 13);
  EXPECT_EQ(expectBits(where(block, '\n')), 1U << 15);
  EXPECT_EQ(expectBits(where(block, 'x')), 0U);
  EXPECT_EQ(expectBits(where(block, ' ') | where(block, '=')), 1U << 10 | 1U << 1);
  EXPECT_EQ(expectBits(whereUpTo(block, '\r')), 1U << 14 | 1U << 15);
  EXPECT_EQ(expectBits(whereUpTo(block, '0')), 1U << 9 | 1U << 10 | 1U << 14 | 1U << 15);
}

// Neighbours of every value, so that nothing carries from one character into the next.
TEST(Blocks, TellEveryValueAtEveryPlace) {
  for (int filler = 0; filler < 256; ++filler) {
    for (int value = 0; value < 256; ++value) {
      const unsigned int place = static_cast<unsigned int>(value * 7 + filler) % kSize;
      std::string text(kSize, static_cast<char>(filler));
      text[place] = static_cast<char>(value);
      const Block block = at(text.data());
      const unsigned int there = 1U << place;
      const unsigned int elsewhere = kAll & ~there;
      ASSERT_EQ(expectBits(where(block, static_cast<char>(value))), value == filler ? kAll : there);
      ASSERT_EQ(expectBits(where(block, static_cast<char>(filler))), value == filler ? kAll : elsewhere);
      ASSERT_EQ(expectBits(whereUpTo(block, '\r')),
                (value <= 13 ? there : 0) | (filler <= 13 ? elsewhere : 0));
    }
  }
}

TEST(Blocks, AreStoredAsTheyWereRead) {
  const std::string text = "0123456789abcdef";
  char stored[18] = "#################";
  store(at(text.data()), stored + 1);
  EXPECT_STREQ(stored, "#0123456789abcdef");
}

TEST(Blocks, SumWhatTheyCount) {
  EXPECT_EQ(sumOf(of('\xFF')), 16U * 255);
  EXPECT_EQ(sumOnAnyMachine(of('\xFF')), 16U * 255);
  // 48 to 57, and 97 to 102
  const Block block = at("0123456789abcdef");
  EXPECT_EQ(sumOf(block), 525U + 597U);
  EXPECT_EQ(sumOnAnyMachine(block), 525U + 597U);
}

TEST(Blocks, HaveLastPlaces) {
  EXPECT_EQ(bitsOf(lastPlaces(0)), 0U);
  EXPECT_EQ(bitsOf(lastPlaces(1)), 0x8000U);
  EXPECT_EQ(bitsOf(lastPlaces(5)), 0xF800U);
  EXPECT_EQ(bitsOf(lastPlaces(16)), kAll);
}

TEST(Blocks, MakeAWindowOfFour) {
  std::string text(kWindow, '.');
  for (const std::size_t place : {0U, 15U, 16U, 33U, 63U}) text[place] = 'x';
  const std::uint64_t bits = bitsOfWindow(text.data(), [](Block block) { return where(block, 'x'); });
  EXPECT_EQ(bits, 1ULL << 0 | 1ULL << 15 | 1ULL << 16 | 1ULL << 33 | 1ULL << 63);
  EXPECT_EQ(firstOf(bits), 0U);
  EXPECT_EQ(firstOf(bits & ~1ULL), 15U);
  EXPECT_EQ(firstOf(1ULL << 63), 63U);
}

}  // namespace
