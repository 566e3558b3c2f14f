#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

#include "text/find.h"
#include "text/lines.h"
#include "text/occurrences.h"
#include "text/sections.h"

// Finding pieces sixteen characters at a time gives what the standard library finds.

using namespace sdpneg;

namespace {

/// Finds a piece from every offset of a text, whole and in two parts.
void expectFound(std::string_view text, std::string_view piece) {
  for (std::size_t from = 0; from <= text.size() + 1; ++from) {
    const std::size_t wanted = text.find(piece, from);
    ASSERT_EQ(findPiece(text, piece, from), wanted) << piece << " from " << from << " in " << text;
    for (std::size_t first = 1; first <= piece.size(); ++first) {
      const Sought sought{piece.substr(0, first), piece.substr(first)};
      ASSERT_EQ(findSought(text, sought, from), wanted) << piece << " from " << from << " in " << text;
    }
    for (std::size_t pair = 0; pair + 1 < piece.size(); ++pair) {
      ASSERT_EQ(findByPair(text, piece, pair, from), wanted) << piece << " from " << from << " in " << text;
    }
  }
}

TEST(FindPiece, AtEveryPlaceOfTextsOfEveryLength) {
  for (const std::string_view piece : {"m", "m=", "\nm=", "m=video", "a=remote-candidates:"}) {
    for (std::size_t length = 0; length < 70; ++length) {
      expectFound(std::string(length, '.'), piece);
      for (std::size_t at = 0; at + piece.size() <= length; ++at) {
        std::string text(length, '.');
        text.replace(at, piece.size(), piece);
        expectFound(text, piece);
      }
    }
  }
}

TEST(FindPiece, InTextsThatNearlyMatchEverywhere) {
  for (const std::string_view unit : {"m=vide", "m=m=vid", "mo", "m=video", "o", "m", "m=vidEo"}) {
    std::string text;
    while (text.size() < 80) text += unit;
    expectFound(text, "m=video");
    expectFound(text + "m=video", "m=video");
  }
}

TEST(FindPiece, CharactersAboveAscii) {
  const std::string text = std::string(20, '\xC3') + "\xC3\xA4" + std::string(20, '\xA4');
  expectFound(text, "\xC3\xA4");
  expectFound(text, "\xA4\xA4");
}

TEST(FindPiece, AnEmptyPieceIsEverywhere) { expectFound("abc", ""); }

TEST(FindLf, NearAndFar) {
  for (std::size_t length = 0; length < 40; ++length) {
    const std::string text = std::string(length, 'x') + "\n" + std::string(3, 'y');
    for (std::size_t from = 0; from < text.size() + 2; ++from) {
      EXPECT_EQ(findLf(text, from), text.find('\n', from)) << length << " from " << from;
      EXPECT_EQ(findLf(text.substr(0, length), from), npos) << length << " from " << from;
    }
  }
}

TEST(NextPlace, IsLookedForFromEachOffsetOn) {
  NextPlace place("m=1 m=2 m=3", {"m", "="});
  EXPECT_EQ(place.from(0), 0U);
  EXPECT_EQ(place.from(0), 0U);
  EXPECT_EQ(place.from(1), 4U);
  EXPECT_EQ(place.from(4), 4U);
  EXPECT_EQ(place.from(7), 8U);
  EXPECT_EQ(place.from(9), npos);
  EXPECT_EQ(place.from(11), npos);
}

TEST(NextMLineOf, IsTheNextOneOfItsMediumBehindTheFirstLine) {
  const std::string_view text = "m=video 1\nm=audio 2\nm=videoconf 3\nxm=video 4\n";
  EXPECT_EQ(nextMLineOf(text, "video"), text.find("m=videoconf"));
  EXPECT_EQ(nextMLineOf(text, "audio"), text.find("m=audio"));
  EXPECT_EQ(nextMLineOf(text, "video", text.find("m=videoconf")), npos);
  EXPECT_EQ(nextMAnywhereOf(text, "video", text.find("m=videoconf") + 1), text.find("m=video 4"));
  EXPECT_EQ(nextMLineOf(text, ""), text.find("m=audio"));
}

}  // namespace
