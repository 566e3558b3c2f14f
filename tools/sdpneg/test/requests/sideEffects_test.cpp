#include "requests/sideEffects.h"

#include <gtest/gtest.h>

#include <ostream>

#include "bodies.h"
#include "process.h"

namespace {

using tool::sideEffects;
using tool::Takes;
using Effects = std::vector<std::string>;

const std::string session = "v=0\no=ann 17 18 IN IP4 192.0.2.10\ns=-\nc=IN IP4 192.0.2.10\nt=0 0\n";
const std::string audio = "m=audio 49170 RTP/AVP 0 8\na=mid:a\n";
const std::string video = "m=video 49172 RTP/AVP 31\na=mid:v\n";
const std::string bundle = "a=group:BUNDLE a v\n";

struct Case {
  const char* name;
  std::string before;
  std::string after;
  Takes takes;
  Effects effects;
};

std::ostream& operator<<(std::ostream& out, const Case& each) { return out << each.name; }

class SideEffects : public testing::TestWithParam<Case> {};

TEST_P(SideEffects, AreTold) {
  const Case& each = GetParam();
  EXPECT_EQ(sideEffects(each.before, each.after, each.takes), each.effects);
  EXPECT_EQ(sideEffects(withCrLf(each.before), withCrLf(each.after), each.takes), each.effects);
}

const Case cases[] = {
    {"noneOfAnUnchangedBody",
     session + bundle + audio + video,
     session + bundle + audio + video,
     Takes::nothing,
     {}},
    {"noneOfADirection", session + audio, session + audio + "a=inactive\n", Takes::nothing, {}},
    {"aFormatLess", session + audio, session + "m=audio 49170 RTP/AVP 8\n", Takes::nothing, {}},
    {"noFormat",
     session + audio,
     session + "m=audio 49170 RTP/AVP\n",
     Takes::nothing,
     {"leaves an m-line without a format, line 6"}},
    {"noFormatBehindABlank",
     session + audio,
     session + "m=audio 49170 RTP/AVP \n",
     Takes::nothing,
     {"leaves an m-line without a format, line 6"}},
    {"noFormatBefore",
     session + "m=audio 49170 RTP/AVP\n",
     session + "m=audio 0 RTP/AVP\n",
     Takes::nothing,
     {}},
    {"noFormatInANewMLine",
     session + audio,
     session + audio + "m=image 0 udptl\n",
     Takes::nothing,
     {"leaves an m-line without a format, line 8"}},
    {"noFormatInTheSecondOfTwo",
     session + audio + audio,
     session + audio + "m=audio 49170 RTP/AVP\n",
     Takes::nothing,
     {"leaves an m-line without a format, line 8"}},
    {"aFormatTwice",
     session + audio,
     session + "m=audio 49170 RTP/AVP 0 8 0\n",
     Takes::nothing,
     {"leaves the format 0 more than once in the m-line, line 6"}},
    {"twoFormatsRepeated",
     session + audio,
     session + "m=audio 49170 RTP/AVP 8 8 8 0 0\n",
     Takes::nothing,
     {"leaves the format 8 more than once in the m-line, line 6",
      "leaves the format 0 more than once in the m-line, line 6"}},
    {"aFormatTwiceBefore",
     session + "m=audio 49170 RTP/AVP 0 0\n",
     session + "m=audio 0 RTP/AVP 0 0\n",
     Takes::nothing,
     {}},
    {"aFormatTwiceInANewMLine",
     session + audio,
     session + audio + "m=video 49172 RTP/AVP 31 31\n",
     Takes::nothing,
     {}},
    {"anEmptyLine",
     session + audio + video,
     session + "\n" + audio,
     Takes::video,
     {"leaves an empty line, line 6"}},
    {"anEmptyLineBehindOne",
     session + "\n" + audio + video,
     session + "\n" + audio + "\n",
     Takes::video,
     {"leaves an empty line, line 9"}},
    {"anEmptyLineBefore", session + "\n" + audio, session + audio + "\n", Takes::nothing, {}},
    {"aLostSection", session + audio + video, session + video, Takes::video, {"loses 1 of 1 audio section"}},
    {"twoOfThreeSections",
     session + audio + audio + audio,
     session + audio,
     Takes::nothing,
     {"loses 2 of 3 audio sections"}},
    {"sectionsThatAreMeantToGo", session + audio + video, session + audio, Takes::video, {}},
    {"anyMeantToGo", session + audio + video, session, Takes::any, {}},
    {"videoThatIsNotMeantToGo",
     session + audio + video,
     session + audio,
     Takes::nothing,
     {"loses 1 of 1 video section"}},
    {"aGroupOfAGoneSection",
     session + bundle + audio + video,
     session + bundle + audio,
     Takes::video,
     {"leaves a BUNDLE group that names v, a section that is gone"}},
    {"aGroupThatNamedNoSection", session + bundle + audio, session + bundle + audio, Takes::nothing, {}},
    {"aGroupThatFollowed",
     session + bundle + audio + video,
     session + "a=group:BUNDLE a\n" + audio,
     Takes::video,
     {}}};

INSTANTIATE_TEST_SUITE_P(Bodies, SideEffects, testing::ValuesIn(cases),
                         [](const auto& each) { return std::string(each.param.name); });

TEST(SideEffectsOfTexts, WithoutALineEndAreTold) {
  EXPECT_EQ(sideEffects("", "", Takes::nothing), Effects{});
  EXPECT_EQ(sideEffects("m=audio 1 RTP/AVP 0", "m=audio 1 RTP/AVP", Takes::nothing),
            Effects{"leaves an m-line without a format, line 1"});
  EXPECT_EQ(sideEffects("m=", "", Takes::nothing), Effects{"loses 1 of 1  section"});
}

}  // namespace
