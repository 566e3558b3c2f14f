#include <bencode.h>
#include <gtest/gtest.h>

// What the media relay says comes from outside: it is read strictly, and none of it costs more than its length.

namespace {

using Texts = std::map<std::string, std::string>;

std::string nested(const std::string& opening, std::size_t times, const std::string& closing) {
  std::string text;
  for (std::size_t i = 0; i < times; ++i) text += opening;
  for (std::size_t i = 0; i < times; ++i) text += closing;
  return text;
}

}  // namespace

TEST(Bencode, IsWrittenWithSortedKeysAndLengthsInBytes) {
  EXPECT_EQ(b2bua::bencodeText(""), "0:");
  EXPECT_EQ(b2bua::bencodeText("v=0\r\n"), "5:v=0\r\n");
  EXPECT_EQ(b2bua::bencodeList({"off", "demux"}), "l3:off5:demuxe");
  EXPECT_EQ(b2bua::bencodeDictionary({{"sdp", "1:v"}, {"ICE", "6:remove"}, {"delete-delay", "i0e"}}),
            "d3:ICE6:remove12:delete-delayi0e3:sdp1:ve");
}

TEST(Bencode, TextsOfADictionaryAreReadAndOtherMembersLeftOut) {
  EXPECT_EQ(b2bua::textsOfBencode("de"), Texts{});
  EXPECT_EQ(b2bua::textsOfBencode("d6:result2:ok3:sdp5:v=0\r\ne"),
            (Texts{{"result", "ok"}, {"sdp", "v=0\r\n"}}));
  EXPECT_EQ(b2bua::textsOfBencode("d1:ai-9223372036854775808e1:bl1:xi0edee1:cd1:d1:ee1:f0:e"),
            (Texts{{"f", ""}}));
  EXPECT_EQ(b2bua::textsOfBencode(std::string_view("d1:a3:e\0ee", 10)), (Texts{{"a", {'e', '\0', 'e'}}}));
}

TEST(Bencode, WhatIsNoDictionaryIsNone) {
  for (const char* text : {"",
                           "e",
                           "le",
                           "i1e",
                           "1:a",
                           "d",
                           "dd",
                           "de ",
                           "dee",
                           "dede",
                           "d1:ae",
                           "d1:a",
                           "d1:a1:",
                           "d1:a1:be1",
                           "di1e1:ae",
                           "dle1:ae",
                           "dde1:ae",
                           "d1:ai1",
                           "d1:aie",
                           "d1:ai-e",
                           "d1:ai1.5e",
                           "d1:ai9223372036854775808e",
                           "d1:ai+1e",
                           "d1:a-1:be",
                           "d-1:a1:be",
                           "d1:a+1:be",
                           "d1:a 1:be",
                           "d1:a2:be",
                           "d1:a1be",
                           "d1:ale",
                           "d1:a99999999999999999999:be",
                           "d1:a18446744073709551615:be",
                           "d1:axe",
                           "dxe",
                           "d1:alxee",
                           "x"}) {
    EXPECT_EQ(b2bua::textsOfBencode(text), std::nullopt) << text;
  }
}

TEST(Bencode, IsReadAsDeepAsItSaysAndNoDeeper) {
  constexpr std::size_t kRoom = b2bua::kDeepestBencode - 1;
  EXPECT_EQ(b2bua::textsOfBencode("d1:a" + nested("l", kRoom, "e") + "e"), Texts{});
  EXPECT_EQ(b2bua::textsOfBencode("d1:a" + nested("l", kRoom + 1, "e") + "e"), std::nullopt);
  EXPECT_EQ(b2bua::textsOfBencode(nested("d1:a", 10'000'000, "e")), std::nullopt);
}

TEST(Bencode, AHugeTextIsReadWhenItIsThere) {
  const std::string huge(65'000, 'x');
  EXPECT_EQ(b2bua::textsOfBencode("d1:a65000:" + huge + "e"), (Texts{{"a", huge}}));
  EXPECT_EQ(b2bua::textsOfBencode("d1:a65002:" + huge + "e"), std::nullopt);
}
