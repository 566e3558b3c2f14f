#include "captures/pieces.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using tool::Pieces;

std::string all(const Pieces& pieces) { return pieces.empty() ? "" : pieces.joined(pieces.begin()); }

TEST(Pieces, JoinInAnyOrder) {
  Pieces pieces;
  pieces.add(6, "ghi", 3);
  pieces.add(0, "abc", 1);
  EXPECT_EQ(pieces.joined(0), "abc");
  EXPECT_EQ(pieces.joined(3), "");
  pieces.add(3, "def", 2);
  EXPECT_EQ(all(pieces), "abcdefghi");
  EXPECT_EQ(pieces.size(), 9U);
  EXPECT_EQ(pieces.count(), 3U);
}

TEST(Pieces, KeepWhatCameFirstWhereTheyOverlap) {
  Pieces pieces;
  pieces.add(2, "cd", 1);
  pieces.add(6, "gh", 1);
  pieces.add(0, "ABCDEFGHIJ", 2);
  EXPECT_EQ(all(pieces), "ABcdEFghIJ");
  EXPECT_EQ(pieces.size(), 10U);
  pieces.add(0, "##########", 3);
  EXPECT_EQ(all(pieces), "ABcdEFghIJ");
  EXPECT_EQ(pieces.count(), 5U);
  pieces.add(9, "#k", 3);
  EXPECT_EQ(all(pieces), "ABcdEFghIJk");
}

TEST(Pieces, AreCutInFrontAndBehind) {
  Pieces pieces;
  pieces.add(-1, "abc", 1);
  pieces.add(0, "B", 1);
  pieces.add(1, "Cd", 1);
  EXPECT_EQ(all(pieces), "abcd");
  EXPECT_EQ(pieces.begin(), -1);
}

TEST(Pieces, AreTakenOutFromTheFront) {
  Pieces pieces;
  pieces.add(5, "b", 2);
  pieces.add(1, "a", 1);
  EXPECT_EQ(pieces.takeFirst().bytes, "a");
  EXPECT_EQ(pieces.size(), 1U);
  const Pieces::Piece second = pieces.takeFirst();
  EXPECT_EQ(second.bytes, "b");
  EXPECT_EQ(second.time, 2);
  EXPECT_TRUE(pieces.empty());
  EXPECT_EQ(pieces.memory(), 0U);
}

}  // namespace
