#include "plainText.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

using namespace sdp::exchange;

namespace {

TEST(PlainText, HasNoCharacterAtWhichAReaderEndsALine) {
  EXPECT_TRUE(isPlain(""));
  EXPECT_TRUE(isPlain("0 a\t\x01\x0b\x85\xff"));
  for (const char end : {'\0', '\r', '\n'}) {
    EXPECT_FALSE(isPlain(std::string_view(&end, 1)));
    const std::string text = std::string("a").append(1, end).append("b");
    EXPECT_FALSE(isPlain(text));
    EXPECT_EQ(plainOrEmpty(text), "");
  }
  EXPECT_EQ(plainOrEmpty("ab"), "ab");
}

}  // namespace
