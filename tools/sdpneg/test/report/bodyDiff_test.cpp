// What a hop changed of a body, section by section.

#include "report/bodyDiff.h"

#include <gtest/gtest.h>

namespace {

using tool::bodyDiff;

/// "section:" and its lines, one diff after the other.
std::string shown(std::string_view before, std::string_view after) {
  std::string text;
  for (const tool::SectionDiff& diff : bodyDiff(before, after)) text += diff.section + ":\n" + diff.lines;
  return text;
}

constexpr std::string_view kBefore =
    "v=0\r\no=a 1 1 IN IP4 192.0.2.1\r\ns=-\r\nm=audio 4000 RTP/AVP 8 0\r\na=ptime:20\r\nm=video 4002 RTP/AVP 34\r\n";

TEST(BodyDiff, HasNothingForTheSameBody) {
  EXPECT_TRUE(bodyDiff(kBefore, kBefore).empty());
  EXPECT_TRUE(bodyDiff("", "").empty());
}

TEST(BodyDiff, HasOnlyTheSectionsThatDifferWithAllTheirLines) {
  EXPECT_EQ(
      shown(
          kBefore,
          "v=0\r\no=a 1 1 IN IP4 198.51.100.2\r\ns=-\r\nm=audio 7000 RTP/AVP 8 0\r\na=ptime:20\r\na=rtcp-mux\r\n"
          "m=video 4002 RTP/AVP 34\r\n"),
      "session:\n v=0\n-o=a 1 1 IN IP4 192.0.2.1\n+o=a 1 1 IN IP4 198.51.100.2\n s=-\n"
      "1 audio:\n-m=audio 4000 RTP/AVP 8 0\n+m=audio 7000 RTP/AVP 8 0\n a=ptime:20\n+a=rtcp-mux\n");
}

TEST(BodyDiff, HasSectionsThatOneBodyLacksAsAWhole) {
  const std::string_view shorter = kBefore.substr(0, kBefore.find("m=video"));
  EXPECT_EQ(shown(kBefore, shorter), "2 video:\n-m=video 4002 RTP/AVP 34\n");
  EXPECT_EQ(shown(shorter, kBefore), "2 video:\n+m=video 4002 RTP/AVP 34\n");
  EXPECT_EQ(shown("", "v=0\n"), "session:\n+v=0\n");
}

TEST(BodyDiff, MatchesSectionsByTheirPlace) {
  EXPECT_EQ(shown("m=audio 1 RTP/AVP 0\n", "m=video 1 RTP/AVP 31\n"),
            "1 audio -> video:\n-m=audio 1 RTP/AVP 0\n+m=video 1 RTP/AVP 31\n");
  EXPECT_EQ(shown("m=audio 1 RTP/AVP 0\n", "m=audio\n"),
            "1 audio -> unreadable:\n-m=audio 1 RTP/AVP 0\n+m=audio\n");
}

TEST(BodyDiff, ShowsLineEndsWhereTheyDiffer) {
  EXPECT_EQ(shown("v=0\r\ns=-\r\n", "v=0\ns=-\r\n"), "session:\n-v=0\r\n+v=0\n s=-\r\n");
  EXPECT_EQ(shown("v=0\ns=-", "v=0\ns=-\n"), "session:\n v=0\n-s=-\n+s=-\n");
}

TEST(BodyDiff, TellsVeryLongSectionsApartAsAWhole) {
  std::string before = "v=0\n";
  std::string after = "v=0\n";
  for (int i = 0; i < 1100; ++i) {
    before += "a=x" + std::to_string(i) + "\na=same\n";
    after += "a=y" + std::to_string(i) + "\na=same\n";
  }
  const auto diffs = bodyDiff(before, after);
  ASSERT_EQ(diffs.size(), 1U);
  EXPECT_TRUE(diffs[0].lines.starts_with(" v=0\n-a=x0\n-a=same\n-a=x1\n")) << diffs[0].lines.substr(0, 60);
  EXPECT_TRUE(diffs[0].lines.ends_with("+a=y1098\n+a=same\n+a=y1099\n a=same\n"));
}

}  // namespace
