#include <algorithm>
#include <array>

#include "objectTestSupport.h"
#include "traceCapture.h"

// What an object tells of its video and application media.

namespace {

/// The codec list of a body with guard bytes behind it.
struct VideoCodecs {
  static constexpr unsigned char guard = 0x5b;

  std::array<unsigned char, 16> codecs;
  unsigned int attributes = 0xABCD;
  int profile = 99;
  unsigned short status;

  explicit VideoCodecs(const cSdpNegotiator& object) {
    codecs.fill(guard);
    status = object.getVideoCodecs(codecs.data(), attributes, profile);
    EXPECT_TRUE(std::all_of(codecs.begin() + 8, codecs.end(), [](unsigned char c) { return c == guard; }));
  }
  std::vector<int> list() const { return {codecs.begin(), codecs.begin() + 8}; }
};

using List = std::vector<int>;

std::string h264(int format, const std::string& profileLevelId) {
  const std::string number = std::to_string(format);
  std::string lines = "a=rtpmap:" + number + " H264/90000\r\n";
  if (!profileLevelId.empty()) lines += "a=fmtp:" + number + " profile-level-id=" + profileLevelId + "\r\n";
  return lines;
}

struct VideoCase {
  const char* name;
  std::string media;
  List codecs;
  int profile;  // 99 when it is not touched
};

const VideoCase videoCases[] = {
    {"codecs in their order",
     "m=video 5006 RTP/AVP 96 97 34\r\na=rtpmap:96 VP8/90000\r\na=rtpmap:97 H263-1998/90000\r\n",
     {12, 10, 1, 0, 0, 0, 0, 0},
     99},
    {"unknown codecs and formats without a name are left out",
     "m=video 5006 RTP/AVP 96 97 98 31\r\na=rtpmap:96 rtx/90000\r\na=rtpmap:98 H224/4800\r\n",
     {13, 7, 0, 0, 0, 0, 0, 0},
     99},
    {"eight codecs and no more",
     "m=video 5006 RTP/AVP 34 31 32 33 26 28 25 34 31 32\r\n",
     {1, 7, 8, 9, 5, 6, 4, 1},
     99},
    {"a left-out format takes no place",
     "m=video 5006 RTP/AVP 34 31 96 32 33 26 28 25 34\r\na=rtpmap:96 rtx/90000\r\n",
     {1, 7, 8, 9, 5, 6, 4, 1},
     99},
    {"the level of H.264",
     "m=video 5006 RTP/AVP 96\r\n" + h264(96, "42e01f"),
     {2, 0, 0, 0, 0, 0, 0, 0},
     H264_LEVEL_3_1},
    {"the level of the last H.264 format",
     "m=video 5006 RTP/AVP 96 97\r\n" + h264(96, "42e028") + h264(97, "42e01e"),
     {2, 2, 0, 0, 0, 0, 0, 0},
     H264_LEVEL_3},
    {"H.264 without fmtp line",
     "m=video 5006 RTP/AVP 96\r\n" + h264(96, ""),
     {2, 0, 0, 0, 0, 0, 0, 0},
     H264_LEVEL_1},
    {"an H.264 format that is not listed any more has no say",
     "m=video 5006 RTP/AVP 34 31 32 33 26 28 25 34 96\r\n" + h264(96, "42e028"),
     {1, 7, 8, 9, 5, 6, 4, 1},
     99},
    {"a video m-line with port 0 is passed over",
     "m=video 0 RTP/AVP 34\r\nm=video 5006 RTP/AVP 31\r\n",
     {7, 0, 0, 0, 0, 0, 0, 0},
     99},
    {"an inactive video m-line is passed over",
     "m=video 5004 RTP/AVP 34\r\na=inactive\r\nm=video 5006 RTP/AVP 31\r\n",
     {7, 0, 0, 0, 0, 0, 0, 0},
     99},
    {"in any case",
     "m=video 5004 RTP/AVP 34\r\na=InActive\r\nm=video 5006 RTP/AVP 31\r\n",
     {7, 0, 0, 0, 0, 0, 0, 0},
     99},
    {"any inactive attribute, not the last direction, decides",
     "m=video 5004 RTP/AVP 34\r\na=inactive\r\na=sendrecv\r\nm=video 5006 RTP/AVP 31\r\n",
     {7, 0, 0, 0, 0, 0, 0, 0},
     99},
    {"an attribute that only begins so does not",
     "m=video 5004 RTP/AVP 34\r\na=inactivex\r\nm=video 5006 RTP/AVP 31\r\n",
     {1, 0, 0, 0, 0, 0, 0, 0},
     99},
    {"the first of two active ones",
     "m=video 5004 RTP/AVP 34\r\nm=video 5006 RTP/AVP 31\r\n",
     {1, 0, 0, 0, 0, 0, 0, 0},
     99},
    {"other media are no video",
     "m=audio 5004 RTP/AVP 0\r\nm=application 5008 RTP/AVP 34\r\n",
     {0, 0, 0, 0, 0, 0, 0, 0},
     99},
    {"no active video at all",
     "m=video 0 RTP/AVP 34\r\nm=video 5006 RTP/AVP 31\r\na=inactive\r\n",
     {0, 0, 0, 0, 0, 0, 0, 0},
     99},
};

TEST(VideoCodecList, IsThatOfTheFirstActiveVideo) {
  for (const VideoCase& each : videoCases) {
    for (const std::size_t behind : {0U, 3000U}) {  // plain and deflated
      Record record(objectWithText(sessionLines() + each.media + "a=x:" + std::string(behind, 'x') + "\r\n"));
      record.data.sdpAttributes = 0x12;
      const VideoCodecs result(record.object());
      EXPECT_EQ(result.status, 0) << each.name;
      EXPECT_EQ(result.list(), each.codecs) << each.name;
      EXPECT_EQ(result.profile, each.profile) << each.name;
      EXPECT_EQ(result.attributes, 0x12U) << each.name;
    }
  }
}

// Deliberate: only the m-line's own attributes are asked.
TEST(VideoCodecList, ASessionThatIsInactiveDoesNotHideItsVideo) {
  const VideoCodecs result(objectWithText(sessionLines() + "a=inactive\r\nm=video 5006 RTP/AVP 31\r\n"));
  EXPECT_EQ(result.list(), (List{7, 0, 0, 0, 0, 0, 0, 0}));
}

TEST(VideoCodecList, MayBeAskedForWithoutTheProfile) {
  const cSdpNegotiator object =
      parsedObject(sessionLines() + "a=ice-lite\r\nm=video 5006 RTP/AVP 96\r\n" + h264(96, "42e01f"));
  unsigned char codecs[8];
  unsigned int attributes = 0;
  EXPECT_EQ(object.getVideoCodecs(codecs, attributes), 0);
  EXPECT_EQ(codecs[0], 2);
  EXPECT_EQ(attributes, unsigned{SDP_ATTR_ICE_LITE});
}

TEST(VideoCodecList, AFailureEmptiesTheListAndLeavesTheRest) {
  Record tooLong(objectWithText(paddedTo(20480)));  // has no room for its NUL
  Record damaged(objectWithText(paddedTo(3000)));
  damaged.data.storedSdpLength = 20;
  for (const cSdpNegotiator& object :
       {emptyObject(), objectWithText("no SDP body"), tooLong.object(), damaged.object()}) {
    const VideoCodecs result(object);
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.list(), List(8, 0));
    EXPECT_EQ(result.attributes, 0xABCDU);
    EXPECT_EQ(result.profile, 99);
  }
}

TEST(VideoCodecList, NeedsAList) {
  const cSdpNegotiator object = parsedObject(sessionLines() + "m=video 5006 RTP/AVP 31\r\n");
  unsigned int attributes = 7;
  int profile = 7;
  EXPECT_EQ(object.getVideoCodecs(nullptr, attributes, profile), 1);
  EXPECT_EQ(attributes, 7U);
}

TEST(VideoCodecList, IsNotTraced) {
  const cSdpNegotiator object = parsedObject(sessionLines() + "m=video 5006 RTP/AVP 31\r\n");
  const TraceCapture trace;
  EXPECT_EQ(VideoCodecs(object).status, 0);
  EXPECT_FALSE(trace.has(8, 4, "Building raw SDP buffer."));
}

TEST(MediaList, HoldsTheActiveVideoAndApplicationMedia) {
  const std::string body =
      audioBody() + "m=video 5006 RTP/SAVP 96\r\nb=AS:384\r\na=label:main\r\na=recvonly\r\n" +
      h264(96, "42e01f") +
      "m=video 0 RTP/AVP 34\r\nm=application 5010 RTP/AVP 97\r\na=rtpmap:97 H224/4800\r\n";
  for (const std::string& text : {body, paddedTo(3000, body)}) {
    std::vector<mediaStruct> media(3);  // replaced
    TraceCapture trace;
    EXPECT_EQ(objectWithText(text).getMedia(media), 0);
    EXPECT_TRUE(trace.has(8, 4, "Building raw SDP buffer."));
    ASSERT_EQ(media.size(), 2U);
    EXPECT_EQ(media[0].mediaType, unsigned{MEDIA_VIDEO});
    EXPECT_EQ(media[0].label, "main");
    EXPECT_EQ(media[0].flags, 0x280U);
    EXPECT_EQ(media[0].mode, unsigned{CONNECTION_MODE_RECVONLY});
    EXPECT_EQ(media[0].bandwidth, 384U);
    ASSERT_EQ(media[0].codecs.size(), 1U);
    EXPECT_EQ(media[0].codecs[0].profile, H264_LEVEL_3_1);
    EXPECT_EQ(media[1].mediaType, unsigned{MEDIA_APPLICATION});
    ASSERT_EQ(media[1].codecs.size(), 1U);
    EXPECT_EQ(media[1].codecs[0].codec, 13);
  }
}

TEST(MediaList, FailsWithoutATextThatCanBeDecoded) {
  std::vector<mediaStruct> media(3);
  TraceCapture trace;
  EXPECT_EQ(emptyObject().getMedia(media), 1);
  EXPECT_EQ(trace.takeLines(), (std::vector<TraceLine>{{8, 4, "Building raw SDP buffer."},
                                                       {4, 3, "The raw SDP buffer is empty."}}));
  EXPECT_EQ(objectWithText("no SDP body").getMedia(media), 1);
  EXPECT_EQ(objectWithText(paddedTo(20480)).getMedia(media), 1);  // has no room for its NUL
  EXPECT_EQ(media.size(), 3U);
}

TEST(MediaList, IsEmptyForABodyWithoutSuchMedia) {
  std::vector<mediaStruct> media(3);
  EXPECT_EQ(parsedObject(audioBody()).getMedia(media), 0);
  EXPECT_TRUE(media.empty());
}

}  // namespace
