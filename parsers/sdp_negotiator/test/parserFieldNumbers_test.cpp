#include <gtest/gtest.h>

#include <cstddef>
#include <cstring>
#include <string>
#include <vector>

#include "sdpNegotiatorParser/fieldNumbers.h"

// Numbers of few digits in the fields of a description.

using namespace sdpneg;

namespace {

struct NumberCase {
  std::string text;
  int value;
  std::size_t length;  ///< 0 where it is no number of few digits
};

/// @param leftOver what an earlier use left behind the text
Leading<int> readWith(const std::string& text, char leftOver) {
  char field[16];
  std::memset(field, leftOver, sizeof field);
  field[text.copy(field, sizeof field - 1)] = '\0';
  return shortNumberOf<3>(field);
}

TEST(FieldNumbers, HaveAsManyDigitsAsAreAskedForAtMost) {
  const std::vector<NumberCase> cases = {
      {"0", 0, 1},       {"8 PCMA", 8, 1}, {"18", 18, 2},  {"97 x", 97, 2}, {"101", 101, 3},
      {"999 1", 999, 3}, {"007", 7, 3},    {"0097", 0, 0}, {"1000", 0, 0},  {"", 0, 0},
      {" 97", 0, 0},     {"+97", 0, 0},    {"-1", 0, 0},   {"x97", 0, 0},   {"9x7", 9, 1},
      {"97:", 97, 2},    {"97/1", 97, 2},  {"1 2", 1, 1},  {"12 3", 12, 2}, {"\xB1", 0, 0},
  };
  for (const NumberCase& one : cases) {
    for (const char leftOver : {'\0', '7', '\xFF'}) {
      const Leading<int> number = readWith(one.text, leftOver);
      EXPECT_EQ(number.length, one.length) << one.text;
      EXPECT_EQ(number.value, one.value) << one.text;
    }
  }
}

TEST(FieldNumbers, AreReadUpToTheEndOfASmallField) {
  const char field[6] = "65535";
  EXPECT_EQ(shortNumberOf<5>(field).value, 65535);
  EXPECT_EQ(shortNumberOf<5>(field).length, 5U);
  EXPECT_EQ(shortNumberOf<4>(field).length, 0U);
}

}  // namespace
