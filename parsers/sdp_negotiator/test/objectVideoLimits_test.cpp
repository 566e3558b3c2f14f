#include "requestTestSupport.h"

// The limit of a body's video: the bandwidth of its b-lines and the level of its H.264 formats.

namespace {

using M = sdpModifications;

/// A body with a video bandwidth and an H.264 level. The session's b-line is not one of video.
std::string body(const std::string& bandwidth, const std::string& level) {
  return session + "m=audio 5004 RTP/AVP 0\r\nb=AS:1000\r\n" +
         "m=video 5006 RTP/AVP 96\r\nb=AS:" + bandwidth +
         "\r\na=rtpmap:96 H264/90000\r\na=fmtp:96 profile-level-id=42e0" + level +
         ";packetization-mode=1\r\n";
}

/// Level 3.1, which is 9.
const std::string before = body("1000", "1f");

eH264_profile_id levelOf(int value) { return static_cast<eH264_profile_id>(value); }

const TraceLine bandwidthRefused{
    4, 3, "The given bandwidth is larger than the current value. b-lines will not be modified."};
const TraceLine noH264{4, 3,
                       "Request to update the profile level id while H264 codec is not present. Ignoring."};
const TraceLine wrongLevel{4, 3, "Wrong profile level id input."};
const TraceLine levelRefused{4, 3,
                             "The given H264 profile level is larger than the current value. Nothing to do."};

Traces entry(unsigned int bandwidth, int level, unsigned int currentBandwidth, int currentLevel) {
  return {{1, 1,
           "Request to limit video bandwidth to " + std::to_string(bandwidth) + " and H264 profile to " +
               std::to_string(level)},
          {1, 1,
           "Max b-line bandwidth in video media is " + std::to_string(currentBandwidth) +
               " and max H264 profile is " + std::to_string(currentLevel)}};
}

cSdpNegotiator withLimits(const cSdpNegotiator& object, unsigned int bandwidth, int level) {
  Record record(object);
  record.data.videoBandwidth = bandwidth;
  record.data.h264Profile = level;
  return record.object();
}

struct Limit {
  const char* name;
  unsigned int bandwidth;
  int level;
  bool limitsBandwidth;
  bool limitsLevel;
  std::string after;
  Traces refusals;
};

const Limit limits[] = {
    {"both", 999, 8, true, true, body("999", "1E"), {}},
    {"both to the lowest", 0, 0, true, true, body("0", "0A"), {}},
    {"the same bandwidth", 1000, 8, false, true, body("1000", "1E"), {bandwidthRefused}},
    {"a larger bandwidth", 4294967295U, 5, false, true, body("1000", "14"), {bandwidthRefused}},
    {"the same level", 384, 9, true, false, body("384", "1f"), {levelRefused}},
    {"a higher level", 384, 15, true, false, body("384", "1f"), {levelRefused}},
    {"a level above all", 384, 16, true, false, body("384", "1f"), {wrongLevel}},
    {"a level below all", 384, -1, true, false, body("384", "1f"), {wrongLevel}},
    {"no level", 384, -2, true, false, body("384", "1f"), {wrongLevel}},
};

TEST(VideoLimit, LowersWhatIsAboveItInTextAndSummary) {
  for (const Limit& each : limits) {
    for (const bool deflated : {false, true}) {
      const std::string text = deflated ? padded(before) : before;
      cSdpNegotiator object = parsedObject(text);
      ASSERT_EQ(object.getParsedData().videoBandwidth, 1000U);
      ASSERT_EQ(object.getParsedData().h264Profile, 9);
      object.setBandwidth(64);  // stays: the text is not parsed
      cSdpNegotiator expected = object;
      ASSERT_EQ(expected.setRawSDP((deflated ? padded(each.after) : each.after).c_str()), 0);
      expected = withLimits(expected, each.limitsBandwidth ? each.bandwidth : 1000,
                            each.limitsLevel ? each.level : 9);
      const auto edit = [&](char* sdp) -> unsigned short {
        if (each.limitsBandwidth) M::sdpApplyBLine(sdp, each.bandwidth);
        return each.limitsLevel ? M::sdpModifyProfileId(sdp, levelOf(each.level)) : 0;
      };
      EXPECT_EQ(tracesOf([&] {
                  EXPECT_EQ(object.sdpLimitVideoMediaBandwidth(each.bandwidth, levelOf(each.level)), 0);
                }),
                entry(each.bandwidth, each.level, 1000, 9) + each.refusals + Traces{buildingText} +
                    tracesOfEdit(edit, text))
          << each.name;
      EXPECT_TRUE(sameBytes(object, expected)) << each.name;
    }
  }
}

TEST(VideoLimit, WithoutH264LimitsTheBandwidthOnly) {
  const auto plain = [](const std::string& bandwidth) {
    return session + "m=video 5006 RTP/AVP 31\r\nb=AS:" + bandwidth + "\r\n";
  };
  cSdpNegotiator object = parsedObject(plain("1000"));
  const Traces traces = tracesOf([&] { EXPECT_EQ(object.sdpLimitVideoMediaBandwidth(64, H264_LEVEL_1), 0); });
  EXPECT_EQ(traces[2], noH264);
  EXPECT_TRUE(sameBytes(object, parsedObject(plain("64"))));
}

// The result is that of a trace call, 0 while tracing is off.
TEST(VideoLimit, WithNothingToLowerLeavesTheObject) {
  struct Refused {
    std::string text;
    unsigned int bandwidth;
    int level;
    unsigned int currentBandwidth;
    int currentLevel;
    TraceLine second;
  };
  const Refused cases[] = {
      {before, 1000, 9, 1000, 9, levelRefused},
      {before, 1001, 16, 1000, 9, wrongLevel},
      {before, 2000, -2147483647 - 1, 1000, 9, wrongLevel},
      {audioBody(), 0, 0, 0, -2, noH264},
      {audioBody(), 384, 16, 0, -2, noH264},
  };
  for (const Refused& each : cases) {
    cSdpNegotiator object = parsedObject(each.text);
    const cSdpNegotiator unchanged = object;
    EXPECT_EQ(object.sdpLimitVideoMediaBandwidth(each.bandwidth, levelOf(each.level)), 0);
    EXPECT_EQ(tracesOf([&] { object.sdpLimitVideoMediaBandwidth(each.bandwidth, levelOf(each.level)); }),
              (entry(each.bandwidth, each.level, each.currentBandwidth, each.currentLevel) +
               Traces{bandwidthRefused, each.second}));
    EXPECT_TRUE(sameBytes(object, unchanged));
  }
}

TEST(VideoLimit, FailsWithoutATextThatCanBeRead) {
  std::vector<cSdpNegotiator> objects = unreadableObjects();
  objects.push_back(emptyObject());
  for (const cSdpNegotiator& each : objects) {
    const cSdpNegotiator unchanged = withLimits(each, 1000, 9);
    cSdpNegotiator object = unchanged;
    const Traces failure = each.isSdpPresent() ? Traces{} : Traces{textIsEmpty};
    EXPECT_EQ(tracesOf([&] { EXPECT_EQ(object.sdpLimitVideoMediaBandwidth(64, H264_LEVEL_3), 1); }),
              entry(64, 8, 1000, 9) + Traces{buildingText} + failure);
    EXPECT_TRUE(sameBytes(object, unchanged));
  }
}

TEST(VideoLimit, LeavesAnObjectThatCannotStoreTheTextAsItWas) {
  const cSdpNegotiator unchanged = objectHardToStore(before);
  cSdpNegotiator object = unchanged;
  const Traces traces = tracesOf([&] { EXPECT_EQ(object.sdpLimitVideoMediaBandwidth(64, H264_LEVEL_3), 2); });
  EXPECT_EQ(traces.back(), staysUnstored);
  EXPECT_TRUE(sameBytes(object, unchanged));
}

// What the summary tells decides, also where the text has nothing to lower.
TEST(VideoLimit, IsRecordedAlsoWhenTheTextHasNothingToLower) {
  cSdpNegotiator object = withLimits(parsedObject(audioBody()), 1000, 9);
  EXPECT_EQ(object.sdpLimitVideoMediaBandwidth(384, H264_LEVEL_3), 0);
  EXPECT_TRUE(sameBytes(object, withLimits(parsedObject(audioBody()), 384, 8)));
}

}  // namespace
