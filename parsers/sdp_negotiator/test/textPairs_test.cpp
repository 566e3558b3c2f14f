#include <gtest/gtest.h>

#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "text/find.h"
#include "text/occurrences.h"
#include "text/pairs.h"

// Searches for pairs of characters, and for pieces in a time that does not grow with them.

using namespace sdpneg;

namespace {

constexpr Pair kAnyCase = {'a', '=', true};
constexpr Pair kExact = {'-', 'e'};

TEST(TextPairs, AreCountedWhereverTheyStand) {
  EXPECT_EQ(countPairs("", kAnyCase, kExact).one, 0U);
  EXPECT_EQ(countPairs("a", kAnyCase, kExact).one, 0U);
  EXPECT_EQ(countPairs("a=A=-e-E", kAnyCase, kExact).one, 2U);
  EXPECT_EQ(countPairs("a=A=-e-E", kAnyCase, kExact).other, 1U);
  // Characters that differ from an "a" in one bit, and one that is beyond ASCII.
  EXPECT_EQ(countPairs("\x01=!=q=\xE1=\xC1=", kAnyCase, kExact).one, 0U);
  // At every place of texts of every length, also across the steps of the search.
  for (std::size_t size = 2; size < 70; ++size) {
    for (std::size_t at = 0; at + 1 < size; ++at) {
      std::string text(size, 'a');
      text[at + 1] = '=';
      EXPECT_EQ(countPairs(text, kAnyCase, kExact).one, 1U) << size << ' ' << at;
      EXPECT_EQ(countPairs(text, kExact, kAnyCase).other, 1U) << size << ' ' << at;
    }
  }
}

TEST(TextPairs, AreCountedBeyondWhatAByteCounts) {
  std::string text;
  for (int i = 0; i < 10000; ++i) text += "a=";
  EXPECT_EQ(countPairs(text, kAnyCase, kExact).one, 10000U);
  EXPECT_EQ(countPairs(text.substr(1), kAnyCase, kExact).one, 9999U);
  EXPECT_EQ(countPairs(text.substr(0, text.size() - 1), kAnyCase, kExact).one, 9999U);
}

TEST(TextPairs, AreFoundAtOrBehindABeginning) {
  EXPECT_EQ(findPair("", kAnyCase), npos);
  EXPECT_EQ(findPair("a", kAnyCase), npos);
  EXPECT_EQ(findPair("aA=a=", kAnyCase), 1U);
  EXPECT_EQ(findPair("aA=a=", kAnyCase, 2), 3U);
  EXPECT_EQ(findPair("aA=a=", kAnyCase, 4), npos);
  EXPECT_EQ(findPair("aA=a=", kAnyCase, 100), npos);
  EXPECT_EQ(findPair("-E-e", kExact), 2U);
  for (std::size_t size = 2; size < 70; ++size) {
    for (std::size_t at = 0; at + 1 < size; ++at) {
      std::string text(size, 'a');
      text[at + 1] = '=';
      EXPECT_EQ(findPair(text, kAnyCase), at) << size;
      EXPECT_EQ(findPair(text, kAnyCase, at), at) << size;
      EXPECT_EQ(findPair(text, kAnyCase, at + 1), npos) << size;
    }
  }
}

TEST(TextPairs, LeadToAPieceAtEveryPlace) {
  constexpr std::string_view piece = "xx-exx";
  for (std::size_t size = piece.size(); size < 60; ++size) {
    for (std::size_t at = 0; at + piece.size() <= size; ++at) {
      // The pair stands everywhere else as well.
      std::string text;
      while (text.size() < size) text += "-e";
      text.resize(size);
      text.replace(at, piece.size(), piece);
      EXPECT_EQ(findByPair(text, piece, 2), at) << size;
      EXPECT_EQ(findByPair(text, piece, 2, at), at) << size;
      EXPECT_EQ(findByPair(text, piece, 2, at + 1), npos) << size;
    }
  }
  EXPECT_EQ(findByPair("", piece, 2), npos);
  EXPECT_EQ(findByPair("xx-ex", piece, 2), npos);
  EXPECT_EQ(findByPair("xx-exx", piece, 2, 100), npos);
}

/// All places of a piece, found one after the other.
std::vector<std::size_t> placesOf(std::string_view text, std::string_view piece) {
  OccurrencesNoCase occurrences(text, piece);
  std::vector<std::size_t> places;
  for (std::size_t at = occurrences.from(0); at != npos; at = occurrences.from(at + 1)) places.push_back(at);
  return places;
}

using Places = std::vector<std::size_t>;

TEST(TextOccurrences, AreFoundInOrderAndMayOverlap) {
  EXPECT_EQ(placesOf("aAaAa", "aaa"), (Places{0, 1, 2}));
  EXPECT_EQ(placesOf("abcabcabc", "ABCab"), (Places{0, 3}));
  EXPECT_EQ(placesOf("aabaaabaab", "aabaab"), (Places{4}));
  EXPECT_EQ(placesOf("x", "xy"), Places{});
  EXPECT_EQ(placesOf("", "x"), Places{});
  EXPECT_EQ(placesOf("10.0.0.1 10.0.0.10", "10.0.0.1"), (Places{0, 9}));
}

TEST(TextOccurrences, AreThoseAtOrBehindABeginning) {
  OccurrencesNoCase occurrences("ab ab ab", "AB");
  EXPECT_EQ(occurrences.from(0), 0U);
  EXPECT_EQ(occurrences.from(0), 0U);
  EXPECT_EQ(occurrences.from(1), 3U);
  EXPECT_EQ(occurrences.from(3), 3U);
  EXPECT_EQ(occurrences.from(4), 6U);
  EXPECT_EQ(occurrences.from(7), npos);
  EXPECT_EQ(occurrences.from(8), npos);
  // A beginning inside a place, far behind what has been looked at.
  EXPECT_EQ(OccurrencesNoCase("aaaaaaab", "aab").from(5), 5U);
  EXPECT_EQ(OccurrencesNoCase("aaaaaaab", "aab").from(6), npos);
}

TEST(TextOccurrences, AreThoseOfASearchPlaceByPlace) {
  std::mt19937 random(17);
  for (int round = 0; round < 3000; ++round) {
    std::string text;
    while (text.size() < 40) text += "abAB"[random() % 4];
    const std::string piece = text.substr(random() % 30, 1 + random() % 9);
    OccurrencesNoCase occurrences(text, piece);
    for (std::size_t begin = random() % 5; begin < text.size(); begin += 1 + random() % 6) {
      ASSERT_EQ(occurrences.from(begin), findNoCase(text, piece, begin)) << text << ' ' << piece;
    }
  }
}

TEST(TextOccurrences, AreFoundBehindAnyOtherText) {
  for (std::size_t length = 0; length < 70; ++length) {
    for (const std::string piece : {"Ab", "aB", "1b", "b1", "[", "\xC1z"}) {
      // Characters that differ from the first ones in a single bit.
      std::string other;
      while (other.size() < length) other += "!q\x11\x02{\xE1";
      other.resize(length);
      std::string text = other;
      text.append(piece).append(other);
      EXPECT_EQ(placesOf(text, piece), Places{length}) << piece;
      EXPECT_EQ(placesOf(other, piece), Places{}) << piece;
    }
  }
}

TEST(TextOccurrences, OfLongPiecesAreFoundToo) {
  for (const std::size_t length : {254U, 255U, 256U, 1000U}) {
    const std::string piece = std::string(length - 1, 'x') + 'y';
    EXPECT_EQ(placesOf("x" + piece + "x" + piece, piece), (Places{1, length + 2})) << length;
  }
}

}  // namespace
