#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "parserParseSupport.h"

// Directions of attribute blocks, the list of video and application media, and the copies of m-lines.

namespace {

using P = sdpParserMessage;

TEST(ParserDirection, TakesTheLastOfABlock) {
  EXPECT_EQ(P::getConnectionMode(Attributes({})), 0);
  EXPECT_EQ(P::getConnectionMode(nullptr), 0);
  EXPECT_EQ(P::getConnectionMode(Attributes({"sendonly"})), 1);
  EXPECT_EQ(P::getConnectionMode(Attributes({"recvonly"})), 2);
  EXPECT_EQ(P::getConnectionMode(Attributes({"sendrecv"})), 3);
  EXPECT_EQ(P::getConnectionMode(Attributes({"inactive"})), 4);
  EXPECT_EQ(P::getConnectionMode(Attributes({"confrnce"})), 5);
  EXPECT_EQ(P::getConnectionMode(Attributes({"inactive", "sendonly:x", "x"})), 1);
  EXPECT_EQ(P::getConnectionMode(Attributes(
                {"Sendonly", "sendonl", "sendonly ", "s", "", ":sendonly", "setup:x", "\xFFnactive"})),
            0);
}

std::vector<mediaStruct> listOf(const std::string& body, bool inherit = true) {
  const auto description = decoded(body);
  if (inherit) P::sdpPreProcessDescription(*description);
  std::vector<mediaStruct> list(3);  // to be replaced
  EXPECT_EQ(P::getMedia(*description, list), 0);
  return list;
}

TEST(ParserMediaList, HoldsActiveVideosAndApplications) {
  const auto list = listOf(bodyOf({"m=audio 5000 RTP/AVP 0", "m=video 5002 RTP/AVP 31", "b=AS:384",
                                   "b=TIAS:9", "m=video 0 RTP/AVP 31", "m=image 5004 udptl t38",
                                   "m=application 5006 RTP/SAVP 99", "a=rtpmap:99 H224/4800", "a=sendonly"}));
  ASSERT_EQ(list.size(), 2U);
  EXPECT_EQ(list[0].mediaType, static_cast<unsigned>(MEDIA_VIDEO));
  EXPECT_EQ(list[0].spare, 0U);
  EXPECT_EQ(list[0].label, "");
  EXPECT_EQ(list[0].flags, 0x180U);
  EXPECT_EQ(list[0].mode, static_cast<unsigned>(CONNECTION_MODE_SENDRECV));
  EXPECT_EQ(list[0].bandwidth, 384U);
  ASSERT_EQ(list[0].codecs.size(), 1U);
  EXPECT_EQ(list[0].codecs[0].kind, CODEC_DETAIL_VIDEO);
  EXPECT_EQ(list[0].codecs[0].codec, 7);
  EXPECT_EQ(list[0].codecs[0].profile, H264_PROFILE_NOT_PRESENT);
  EXPECT_EQ(list[1].mediaType, static_cast<unsigned>(MEDIA_APPLICATION));
  EXPECT_EQ(list[1].flags, 0x280U);
  EXPECT_EQ(list[1].mode, static_cast<unsigned>(CONNECTION_MODE_SENDONLY));
  EXPECT_EQ(list[1].bandwidth, 0U);
  ASSERT_EQ(list[1].codecs.size(), 1U);
  EXPECT_EQ(list[1].codecs[0].kind, CODEC_DETAIL_APPLICATION);
  EXPECT_EQ(list[1].codecs[0].codec, 13);
}

TEST(ParserMediaList, IsEmptiedWhenThereAreNone) {
  EXPECT_TRUE(listOf(bodyOf({"m=audio 5000 RTP/AVP 0"})).empty());
  EXPECT_TRUE(listOf(bodyOf({})).empty());
}

TEST(ParserMediaList, NamesTheTransportAndAddressTypeInItsFlags) {
  const auto flags = [](const std::string& transport, const std::string& session, const std::string& media) {
    std::vector<std::string> lines = {"m=video 5002 " + transport + " 31"};
    if (!media.empty()) lines.push_back(media);
    const auto list = listOf(bodyOf(lines, session), false);
    return list.size() == 1 ? list[0].flags : 0U;
  };
  const std::string four = "c=IN IP4 192.0.2.1";
  const std::string six = "c=IN IP6 ::1";
  EXPECT_EQ(flags("RTP/AVP", four, ""), 0x180U);
  EXPECT_EQ(flags("RTP/AVP", four, six), 0x120U);
  EXPECT_EQ(flags("RTP/AVP", six, four), 0x180U);
  EXPECT_EQ(flags("RTP/AVP", "", ""), 0x100U);
  EXPECT_EQ(flags("RTP/AVP", "c=IN ip4 192.0.2.1", ""), 0x120U);  // compared exactly here
  EXPECT_EQ(flags("RTP/SAVPF", four, ""), 0x280U);
  EXPECT_EQ(flags("UDP/TLS/RTP/SAVPF", "", ""), 0x200U);
  EXPECT_EQ(flags("xSAVPx", "", ""), 0x200U);
  EXPECT_EQ(flags("RTP/savp", "", ""), 0x100U);
}

TEST(ParserMediaList, SharesAnEntryAmongMediaOfOneLabel) {
  const auto list = listOf(bodyOf({"m=video 5002 RTP/AVP 31", "b=AS:1", "a=label:1", "a=sendonly",
                                   "m=application 5004 RTP/SAVP 34", "c=IN IP6 ::1", "b=AS:2", "a=label:1",
                                   "m=video 5006 RTP/AVP 34", "a=label:2"}));
  ASSERT_EQ(list.size(), 2U);
  EXPECT_EQ(list[0].label, "1");
  EXPECT_EQ(list[0].flags, 0x3A0U);  // the bits of both
  EXPECT_EQ(list[0].mediaType, static_cast<unsigned>(MEDIA_VIDEO));
  EXPECT_EQ(list[0].mode, static_cast<unsigned>(CONNECTION_MODE_SENDONLY));
  EXPECT_EQ(list[0].bandwidth, 1U);
  ASSERT_EQ(list[0].codecs.size(), 1U);
  EXPECT_EQ(list[0].codecs[0].codec, 7);
  EXPECT_EQ(list[1].label, "2");
}

TEST(ParserMediaList, ComparesLabelsExactly) {
  EXPECT_EQ(listOf(bodyOf({"m=video 5002 RTP/AVP 31", "a=label:a", "m=video 5004 RTP/AVP 31", "a=label:A",
                           "m=video 5006 RTP/AVP 31", "a=label:a "}))
                .size(),
            3U);
  // Media without a label or with an empty one have an entry each.
  const auto list = listOf(bodyOf({"m=video 5002 RTP/AVP 31", "m=video 5004 RTP/AVP 31",
                                   "a=label:", "m=video 5006 RTP/AVP 31", "a=label"}));
  EXPECT_EQ(list.size(), 3U);
  const std::string longLabel(SDP_ATTRIBUTE_VALUE_SIZE - 1, 'l');
  const auto cut = listOf(bodyOf({"m=video 5002 RTP/AVP 31", "a=label:" + longLabel + "1",
                                  "m=video 5004 RTP/AVP 31", "a=label:" + longLabel + "2"}));
  ASSERT_EQ(cut.size(), 1U);  // equal as far as a value goes
  EXPECT_EQ(cut[0].label, longLabel);
}

TEST(ParserMediaList, FallsBackToTheSessionsDirection) {
  const auto list = listOf(bodyOf({"a=inactive", "m=video 5002 RTP/AVP 31", "m=video 5004 RTP/AVP 31",
                                   "a=recvonly", "m=video 5006 RTP/AVP 31", "a=x"}));
  ASSERT_EQ(list.size(), 3U);
  EXPECT_EQ(list[0].mode, static_cast<unsigned>(CONNECTION_MODE_INACTIVE));
  EXPECT_EQ(list[1].mode, static_cast<unsigned>(CONNECTION_MODE_RECVONLY));
  EXPECT_EQ(list[2].mode, static_cast<unsigned>(CONNECTION_MODE_INACTIVE));
}

TEST(ParserMediaList, RecognisesFormatsByNameOrStaticType) {
  const auto list =
      listOf(bodyOf({"m=video 5002 RTP/AVP 31 96 97 99 34 0 h264", "a=rtpmap:96 VP8/90000",
                     "a=rtpmap:97 H264/90000", "a=fmtp:97 profile-level-id=42e01f", "a=rtpmap:34 X/90000"}));
  ASSERT_EQ(list.size(), 1U);
  // 99 has no name and 0 is no video; 34 is told by its number even under another name.
  std::vector<int> codecs;
  std::vector<int> profiles;
  for (const codecDetailStruct& detail : list[0].codecs) {
    codecs.push_back(detail.codec);
    profiles.push_back(detail.profile);
  }
  EXPECT_EQ(codecs, (std::vector<int>{7, 12, 2, 1}));
  EXPECT_EQ(profiles, (std::vector<int>{-2, -2, H264_LEVEL_3_1, -2}));
}

TEST(ParserMediaList, EndsAt25MediaDescriptions) {
  for (const std::size_t count : {25U, 26U, 300U}) {
    EXPECT_EQ(listOf(bodyOf(std::vector<std::string>(count, "m=video 5002 RTP/AVP 31"))).size(), 25U);
  }
}

TEST(ParserMediaLineCopies, HoldWhatIsInUse) {
  const auto description = decoded(bodyOf({"a=x", "m=audio 5000 RTP/AVP 0 8", "a=ptime:20", "a=y",
                                           "m=video 0 RTP/AVP 31", "c=IN IP4 192.0.2.8", "b=AS:7"}));
  std::vector<mDescription> copies(7);
  EXPECT_EQ(P::getMLines(*description, copies), 0);
  ASSERT_EQ(copies.size(), 2U);
  EXPECT_STREQ(sdp_MgetPort(&copies[0].mLine), "5000");
  EXPECT_EQ(sdp_MgetNoOfFormats(&copies[0].mLine), 2);
  EXPECT_STREQ(sdp_AgetAttributeValue(&copies[0].aLine, 0), "20");
  EXPECT_EQ(sdp_AgetNoOfAs(&copies[0].aLine), 2);
  EXPECT_EQ(copies[1].mLine.mediaType, static_cast<unsigned>(MEDIA_VIDEO));
  EXPECT_STREQ(sdp_CgetAddress(&copies[1].cLine, 0), "192.0.2.8");
  EXPECT_EQ(sdp_BgetBandwidthValue(&copies[1].bLine), 7U);
  EXPECT_EQ(copies[1].linePresence, static_cast<unsigned>(SDP_HAS_C_LINE | SDP_HAS_B_LINE));
}

TEST(ParserMediaLineCopies, EndAt25) {
  std::vector<mDescription> copies(2);
  EXPECT_EQ(P::getMLines(*decoded(bodyOf(std::vector<std::string>(60, "m=audio 1 x"))), copies), 0);
  EXPECT_EQ(copies.size(), 25U);
  EXPECT_EQ(P::getMLines(*decoded(bodyOf({})), copies), 0);
  EXPECT_TRUE(copies.empty());
}

}  // namespace
