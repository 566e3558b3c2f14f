#include <gtest/gtest.h>

#include <string>

#include "../src/pieces.h"

// Where characters stand in a piece of sixteen.

namespace {

using sdpcodec::WordPiece;

constexpr unsigned kAll = 0xFFFF;

template <typename Piece>
class PieceOf : public testing::Test {};

#ifdef __SSE2__
using Pieces = testing::Types<WordPiece, sdpcodec::RegisterPiece>;
#else
using Pieces = testing::Types<WordPiece>;
#endif
TYPED_TEST_SUITE(PieceOf, Pieces, );

TYPED_TEST(PieceOf, TellsEachPlaceOfACharacter) {
  const TypeParam piece("a=rtpmap:0 PC:\r\n");
  EXPECT_EQ(piece.where('a'), 1U << 0 | 1U << 6);
  EXPECT_EQ(piece.where(':'), 1U << 8 | 1U << 13);
  EXPECT_EQ(piece.where('\n'), 1U << 15);
  EXPECT_EQ(piece.where('x'), 0U);
  EXPECT_EQ(piece.where(' ', '='), 1U << 10 | 1U << 1);
  EXPECT_EQ(piece.whereUpTo('\r'), 1U << 14 | 1U << 15);
  EXPECT_EQ(piece.whereUpTo('0'), 1U << 9 | 1U << 10 | 1U << 14 | 1U << 15);
}

// Neighbours of every value, so that nothing carries from one character into the next.
TYPED_TEST(PieceOf, TellsEveryValueAtEveryPlace) {
  for (int filler = 0; filler < 256; ++filler) {
    for (int value = 0; value < 256; ++value) {
      const unsigned place = static_cast<unsigned>(value * 7 + filler) % 16;
      std::string text(16, static_cast<char>(filler));
      text[place] = static_cast<char>(value);
      const TypeParam piece(text.data());
      const unsigned there = 1U << place;
      const unsigned elsewhere = kAll & ~there;
      ASSERT_EQ(piece.where(static_cast<char>(value)), value == filler ? kAll : there);
      ASSERT_EQ(piece.where(static_cast<char>(filler)), value == filler ? kAll : elsewhere);
      ASSERT_EQ(piece.whereUpTo('\r'), (value <= 13 ? there : 0) | (filler <= 13 ? elsewhere : 0));
    }
  }
}

TYPED_TEST(PieceOf, IsStoredAsItWasRead) {
  const std::string text = "0123456789abcdef";
  char stored[18] = "#################";
  TypeParam(text.data()).store(stored + 1);
  EXPECT_STREQ(stored, "#0123456789abcdef");
}

}  // namespace
