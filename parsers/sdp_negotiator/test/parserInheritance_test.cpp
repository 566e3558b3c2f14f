#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "parserParseSupport.h"

// What media descriptions inherit from the session.

namespace {

std::unique_ptr<sDescription> inherited(const std::vector<std::string>& lines,
                                        const std::string& connection = "c=IN IP4 192.0.2.1") {
  auto description = decoded(bodyOf(lines, connection));
  sdpParserMessage::sdpPreProcessDescription(*description);
  return description;
}

TEST(ParserInheritance, GivesTheSessionsFirstConnection) {
  const auto description = inherited({"m=audio 1 x", "m=video 1 x", "c=IN IP6 ::1", "m=text 1 x"},
                                     "c=IN IP4 224.2.1.1/127\r\nc=IN IP4 192.0.2.2");
  for (const int index : {0, 2}) {
    const c_line& line = description->media[index].cLine;
    EXPECT_EQ(sdp_CgetNoOfCs(&line), 1);
    EXPECT_STREQ(sdp_CgetAddress(&line, 0), "224.2.1.1");
    EXPECT_STREQ(sdp_CgetAddressType(&line, 0), "IP4");
    EXPECT_STREQ(line.entries[0].networkType, "IN");
    EXPECT_STREQ(line.entries[0].suffix, "/127");
  }
  EXPECT_STREQ(sdp_CgetAddress(&description->media[1].cLine, 0), "::1");
}

TEST(ParserInheritance, GivesAllOfTheSessionsAttributes) {
  const auto description =
      inherited({"a=ptime:30", "a=recvonly", "m=audio 1 x", "m=video 1 x", "a=y", "m=text 1 x"});
  for (const int index : {0, 2}) {
    const a_line& line = description->media[index].aLine;
    ASSERT_EQ(sdp_AgetNoOfAs(&line), 2);
    EXPECT_STREQ(sdp_AgetAttributeField(&line, 0), "ptime");
    EXPECT_STREQ(sdp_AgetAttributeValue(&line, 0), "30");
    EXPECT_STREQ(sdp_AgetAttributeField(&line, 1), "recvonly");
    EXPECT_EQ(sdp_AgetAttributeValue(&line, 1), nullptr);
  }
  EXPECT_EQ(sdp_AgetNoOfAs(&description->media[1].aLine), 1);
}

TEST(ParserInheritance, GivesNothingThatTheSessionLacks) {
  const auto description = inherited({"m=audio 1 x"}, "");
  EXPECT_EQ(sdp_CgetNoOfCs(&description->media[0].cLine), 0);
  EXPECT_EQ(sdp_AgetNoOfAs(&description->media[0].aLine), 0);
}

TEST(ParserInheritance, KeepsWithinTheCapacities) {
  const std::string longName(200, 'n');
  const std::string longValue(1000, 'v');
  std::vector<std::string> lines = {"a=" + longName + ":" + longValue};
  lines.resize(1000, "a=x");
  lines.insert(lines.end(), 30, "m=audio 1 x");
  const auto description = inherited(lines, "c=INtoolongtype IPtoolongtype " + std::string(3000, '1'));
  for (const mDescription& media : description->media) {
    EXPECT_EQ(sdp_AgetNoOfAs(&media.aLine), SDP_ATTRIBUTE_CAPACITY);
    EXPECT_EQ(sdp_AgetAttributeField(&media.aLine, 0), longName.substr(0, 63));
    EXPECT_EQ(sdp_AgetAttributeValue(&media.aLine, 0), longValue.substr(0, 349));
    EXPECT_STREQ(sdp_CgetAddressType(&media.cLine, 0), "IPtoolongt");
    EXPECT_EQ(std::string(sdp_CgetAddress(&media.cLine, 0)).size(), 126U);
  }
}

TEST(ParserInheritance, CanBeRepeated) {
  const auto description = inherited({"a=ptime:30", "m=audio 1 x"});
  sdpParserMessage::sdpPreProcessDescription(*description);
  EXPECT_EQ(sdp_AgetNoOfAs(&description->media[0].aLine), 1);
  EXPECT_EQ(sdp_CgetNoOfCs(&description->media[0].cLine), 1);
}

// Kept: one attribute line of its own is enough for a media description to inherit none.
TEST(ParserInheritance, ReachesTheSummary) {
  const Parsed result = parsed(bodyOf({"a=ptime:30", "a=ecan:on", "m=audio 5004 RTP/AVP 0"}));
  EXPECT_EQ(periodsOf(result.data, 1), std::vector<int>{30});
  EXPECT_EQ(result.data.echoCancellation, FEATURE_STATE_ON);
  const Parsed own = parsed(bodyOf({"a=ptime:30", "a=ecan:on", "m=audio 5004 RTP/AVP 0", "a=x"}));
  EXPECT_EQ(periodsOf(own.data, 1), std::vector<int>{255});
  EXPECT_EQ(own.data.echoCancellation, FEATURE_STATE_NOT_SPECIFIED);
}

}  // namespace
