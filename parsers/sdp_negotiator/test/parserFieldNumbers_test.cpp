#include <gtest/gtest.h>

#include <cstddef>
#include <cstdio>
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

TEST(FieldNumbers, AreReadUpToTheEndOfAFieldOfEightCharacters) {
  const char field[8] = "655356";
  EXPECT_EQ(shortNumberOf<6>(field).value, 655356);
  EXPECT_EQ(shortNumberOf<6>(field).length, 6U);
  EXPECT_EQ(shortNumberOf<5>(field).length, 0U);
  const char full[8] = {'1', '2', '3', '4', '5', '6', '7', '8'};
  EXPECT_EQ(shortNumberOf<6>(full).length, 0U);
}

TEST(FieldNumbers, AreReadWhateverTheirDigitsAreAndWhateverFollows) {
  for (int number = 0; number <= 99999; ++number) {
    for (const char* const behind : {"", "/", ":", " 1"}) {
      char field[16];
      std::snprintf(field, sizeof field, "%d%s", number, behind);
      const Leading<int> read = shortNumberOf<5>(field);
      ASSERT_EQ(read.value, number) << field;
      ASSERT_EQ(read.length, std::to_string(number).size()) << field;
    }
  }
}

TEST(FieldNumbers, EndAtEveryOtherCharacter) {
  for (int c = 1; c <= 255; ++c) {
    const char other = static_cast<char>(c);
    const char field[8] = {'4', '2', other, '7', '\0'};
    const bool isDigit = c >= '0' && c <= '9';
    EXPECT_EQ(shortNumberOf<3>(field).length, isDigit ? 0U : 2U) << c;
    EXPECT_EQ(shortNumberOf<3>(field).value, isDigit ? 0 : 42) << c;
  }
}

}  // namespace
