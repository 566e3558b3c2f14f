#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "text/anyLines.h"

namespace {

using Pieces = std::vector<std::pair<std::string, std::string>>;

Pieces linesOf(std::string_view text) {
  Pieces lines;
  for (sdpneg::AnyLines rest(text); !rest.atEnd();) {
    const sdpneg::AnyLine line = rest.next();
    EXPECT_EQ(std::string(line.content) + std::string(line.end()), line.whole);
    lines.emplace_back(line.content, line.end());
  }
  return lines;
}

TEST(AnyLines, EndAtCrLfAtLfAndAtTheTextsEnd) {
  const struct {
    std::string text;
    Pieces lines;
  } cases[] = {{"", {}},
               {"a", {{"a", ""}}},
               {"\n", {{"", "\n"}}},
               {"\r", {{"", "\r"}}},
               {"\r\n", {{"", "\r\n"}}},
               {"\n\r", {{"", "\n"}, {"", "\r"}}},
               {"a\r\nb\nc\rd", {{"a", "\r\n"}, {"b", "\n"}, {"c\rd", ""}}},
               {"a\r\r\nb", {{"a\r", "\r\n"}, {"b", ""}}},
               {"\r\r", {{"\r", "\r"}}},
               {"a\r", {{"a", "\r"}}},
               {"a\n\nb\n", {{"a", "\n"}, {"", "\n"}, {"b", "\n"}}}};
  for (const auto& each : cases)
    EXPECT_EQ(linesOf(each.text), each.lines) << testing::PrintToString(each.text);
}

TEST(AnyLines, KnowTheEndThatTheyNeedInFrontOfOthers) {
  const std::pair<std::string, std::string> cases[] = {
      {"a\r\n", "\r\n"}, {"a\n", "\n"}, {"\n", "\n"}, {"a\r", "\r\n"}, {"a", "\r\n"}};
  for (const auto& [text, end] : cases)
    EXPECT_EQ(sdpneg::AnyLines(text).next().endForMore(), end) << testing::PrintToString(text);
}

TEST(AnyLines, TellWhatIsLeft) {
  sdpneg::AnyLines lines("ab\r\ncd\nef");
  EXPECT_EQ(lines.rest(), "ab\r\ncd\nef");
  lines.next();
  EXPECT_EQ(lines.rest(), "cd\nef");
  lines.next();
  lines.next();
  EXPECT_EQ(lines.rest(), "");
  EXPECT_TRUE(lines.atEnd());
}

}  // namespace
