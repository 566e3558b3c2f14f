#include "calls/callKeys.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <string>

namespace {

using tool::NumberedKeys;
using tool::WordKeys;

TEST(NumberedKeys, NumbersFewAndManyInTheOrderInWhichTheyCome) {
  NumberedKeys<std::string> keys;
  EXPECT_EQ(keys.find("none"), 0U);
  for (std::size_t i = 0; i < 100; ++i) {
    const std::string key = "key " + std::to_string(100 - i);
    EXPECT_EQ(keys.find(key), i) << "before it came";
    EXPECT_EQ(keys.add(key), i);
    EXPECT_EQ(keys.add(key), i) << "again";
    EXPECT_EQ(keys.add("key 100"), 0U) << "the first one with " << i;
  }
  EXPECT_EQ(keys.size(), 100U);
  EXPECT_EQ(keys[99], "key 1");
  EXPECT_EQ(keys.find("key 51"), 49U);
}

TEST(WordKeys, NumbersMoreThanWereExpected) {
  WordKeys keys(1);
  for (std::size_t i = 0; i < 1000; ++i) {
    EXPECT_EQ(keys.find({i, 0}), i) << "before it came";
    EXPECT_EQ(keys.add({i, 0}), i);
  }
  for (std::size_t i = 0; i < 1000; ++i) EXPECT_EQ(keys.find({i, 0}), i);
  EXPECT_EQ(keys.find({0, 1}), keys.size());
  EXPECT_EQ(keys.add({0, 1}), 1000U);
}

}  // namespace
