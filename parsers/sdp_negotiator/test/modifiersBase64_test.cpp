#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "base64_encoding.h"

// Base64 (RFC 4648 4).

namespace {

struct Encoding {
  int result;
  std::string out;
};

/// Encodes into exactly `capacity` characters, all of them '#' before.
Encoding encode(const std::string& bytes, std::size_t capacity) {
  const std::vector<unsigned char> in(bytes.begin(), bytes.end());
  const auto out = std::make_unique<char[]>(capacity);
  std::fill_n(out.get(), capacity, '#');
  const int result = base64_encode(in.data(), in.size(), out.get(), capacity);
  return {result, {out.get(), capacity}};
}

const std::string nul(1, '\0');

TEST(Base64, HasTheStandardAlphabet) {
  EXPECT_EQ(std::string(base64_alphabet), "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/");
}

TEST(Base64, WritesABlockOfFourCharactersAndNothingBehind) {
  struct Block {
    std::vector<unsigned char> in;
    unsigned long length;
    const char* wanted;
  };
  // The byte behind a shorter group is read as it is given, and none further.
  const Block blocks[] = {
      {{0, 0}, 1, "AA=="},           {{255, 0}, 1, "/w=="},           {{'f', 0}, 1, "Zg=="},
      {{0, 255}, 1, "AP=="},         {{255, 0x10}, 1, "/x=="},        {{0, 0, 0}, 2, "AAA="},
      {{255, 255, 0}, 2, "//8="},    {{'f', 'o', 0}, 2, "Zm8="},      {{0, 0, 255}, 2, "AAD="},
      {{'f', 'o', 0x40}, 2, "Zm9="}, {{0, 0, 0}, 3, "AAAA"},          {{255, 255, 255}, 3, "////"},
      {{'f', 'o', 'o'}, 3, "Zm9v"},  {{0xFB, 0xEF, 0xBE}, 3, "++++"}, {{0x14, 0xFB, 0x9C}, 3, "FPuc"},
  };
  for (const Block& each : blocks) {
    char out[5] = {'#', '#', '#', '#', '#'};
    base64_encodeblock(each.in.data(), out, each.length);
    EXPECT_EQ(std::string(out, sizeof out), std::string(each.wanted) + "#");
  }
}

TEST(Base64, WritesOneLineThatNeedsFourCharactersForThreeBytesAndANul) {
  struct Text {
    std::string bytes;
    std::string wanted;
  };
  const Text texts[] = {
      {"", ""},
      {"f", "Zg=="},
      {"fo", "Zm8="},
      {"foo", "Zm9v"},
      {"foob", "Zm9vYg=="},
      {"fooba", "Zm9vYmE="},
      {"foobar", "Zm9vYmFy"},
      {std::string(30, '\xFF'), std::string(40, '/')},
      {std::string(300, '\0'), std::string(400, 'A')},
  };
  for (const Text& each : texts) {
    const std::size_t needed = each.wanted.size() + 1;
    const Encoding exact = encode(each.bytes, needed);
    EXPECT_EQ(exact.result, 1) << each.bytes;
    EXPECT_EQ(exact.out, each.wanted + nul);
    const Encoding roomy = encode(each.bytes, needed + 2);
    EXPECT_EQ(roomy.result, 1) << each.bytes;
    EXPECT_EQ(roomy.out, each.wanted + nul + "##");
    EXPECT_EQ(encode(each.bytes, needed - 1).result, 0) << each.bytes;
  }
}

TEST(Base64, LeavesTheGroupsThatFittedWithoutANulWhenTheCapacityIsTooSmall) {
  EXPECT_EQ(encode("foobar", 8).out, "Zm9vYmFy");
  EXPECT_EQ(encode("foobar", 7).out, "Zm9v###");
  EXPECT_EQ(encode("foob", 8).out, "Zm9vYg==");
  EXPECT_EQ(encode("foob", 4).out, "Zm9v");
  EXPECT_EQ(encode("foob", 3).out, "###");
  EXPECT_EQ(encode("f", 4).out, "Zg==");
  for (const std::size_t capacity : {3U, 4U, 7U}) EXPECT_EQ(encode("foobar", capacity).result, 0);
}

TEST(Base64, RefusesNullArguments) {
  char out[8] = "#######";
  const unsigned char in[] = {1};
  EXPECT_EQ(base64_encode(nullptr, 1, out, sizeof out), 0);
  EXPECT_EQ(base64_encode(in, 1, nullptr, 8), 0);
  EXPECT_STREQ(out, "#######");
  EXPECT_EQ(base64_encode(nullptr, 0, out, sizeof out), 1);
  EXPECT_STREQ(out, "");
}

}  // namespace
