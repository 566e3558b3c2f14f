#include "text/find.h"

#include <gtest/gtest.h>

#include <memory>
#include <random>
#include <string>
#include <vector>

// All places of a character in a text.

using namespace sdpneg;

namespace {

using Places = std::vector<std::size_t>;

/// The text lies in a heap buffer of exactly its size, so that whatever looks beyond is seen.
Places placesOf(const std::string& text, char c) {
  const auto bytes = std::make_unique<char[]>(text.size());
  text.copy(bytes.get(), text.size());
  Places places;
  forEachPlace({bytes.get(), text.size()}, c, [&](std::size_t at) { places.push_back(at); });
  return places;
}

TEST(Places, AreVisitedFromTheFirstToTheLast) {
  EXPECT_EQ(placesOf("", '='), Places());
  EXPECT_EQ(placesOf("v", '='), Places());
  EXPECT_EQ(placesOf("=", '='), Places({0}));
  EXPECT_EQ(placesOf("v=0\r\na==b", '='), Places({1, 6, 7}));
}

TEST(Places, AreFoundOnBothSidesOfAWindowsEnd) {
  for (const std::size_t size :
       {blocks::kWindow - 1, blocks::kWindow, blocks::kWindow + 1, 2 * blocks::kWindow}) {
    std::string text(size, 'x');
    text.front() = text.back() = '=';
    EXPECT_EQ(placesOf(text, '='), Places({0, size - 1})) << size;
  }
  std::string text(3 * blocks::kWindow, 'x');
  text[blocks::kWindow - 1] = text[blocks::kWindow] = '=';
  EXPECT_EQ(placesOf(text, '='), Places({blocks::kWindow - 1, blocks::kWindow}));
}

TEST(Places, OfACharacterThatStandsEverywhere) {
  const std::string text(blocks::kWindow + 3, '=');
  const Places places = placesOf(text, '=');
  ASSERT_EQ(places.size(), text.size());
  for (std::size_t i = 0; i < places.size(); ++i) EXPECT_EQ(places[i], i);
}

TEST(Places, BehindTheTextAreNone) {
  EXPECT_EQ(placesOf("abc", '\0'), Places());
  EXPECT_EQ(placesOf(std::string("a\0c", 3), '\0'), Places({1}));
  EXPECT_EQ(placesOf("abc", '\x01'), Places());
}

TEST(Places, OfAnyCharacterAreThoseThatALoopFinds) {
  std::mt19937 random(7);
  for (int round = 0; round < 2000; ++round) {
    std::string text(random() % 200, '\0');
    for (char& c : text) c = static_cast<char>(random() % 3 == 0 ? 0xBD : random() % 256);
    const char wanted = static_cast<char>(round % 2 == 0 ? 0xBD : random() % 256);
    Places expected;
    for (std::size_t i = 0; i < text.size(); ++i) {
      if (text[i] == wanted) expected.push_back(i);
    }
    ASSERT_EQ(placesOf(text, wanted), expected) << round;
  }
}

}  // namespace
