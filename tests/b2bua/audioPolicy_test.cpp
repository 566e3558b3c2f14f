#include <videoRule.h>

#include "calls.h"

// The rules about audio codecs and video with the offers of phones, browsers and soft clients.

namespace {

using Bodies = std::vector<std::string>;

const std::string kFromAlice =
    "v=0\n"
    "o=alice 21 4 IN IP4 192.0.2.10\n"
    "s=-\n"
    "c=IN IP4 192.0.2.10\n"
    "t=0 0\n";
const std::string kFromBob = "v=0\no=bob 33 9 IN IP4 192.0.2.20\ns=-\nc=IN IP4 192.0.2.20\nt=0 0\n";

const std::string kMobile = kFromAlice +
                            "m=audio 49170 RTP/AVP 96 97 101\n"
                            "a=rtpmap:96 AMR/8000\n"
                            "a=rtpmap:97 AMR-WB/16000\n"
                            "a=rtpmap:101 telephone-event/8000\n"
                            "a=fmtp:101 0-15\n";

// Events for each of its clocks, those of the first codec first.
const std::string kBrowser = kFromAlice +
                             "m=audio 49170 RTP/AVP 111 63 9 0 8 13 110 126\n"
                             "a=rtpmap:111 opus/48000/2\n"
                             "a=fmtp:111 minptime=10;useinbandfec=1\n"
                             "a=rtpmap:63 red/48000/2\n"
                             "a=fmtp:63 111/111\n"
                             "a=rtpmap:9 G722/8000\n"
                             "a=rtpmap:0 PCMU/8000\n"
                             "a=rtpmap:8 PCMA/8000\n"
                             "a=rtpmap:13 CN/8000\n"
                             "a=rtpmap:110 telephone-event/48000\n"
                             "a=rtpmap:126 telephone-event/8000\n";

const std::string kSoftClient = kFromAlice +
                                "m=audio 49170 RTP/AVP 96 97 9 0 8 101\n"
                                "a=rtpmap:96 opus/48000/2\n"
                                "a=rtpmap:97 opus/48000/1\n"
                                "a=rtpmap:9 G722/8000\n"
                                "a=rtpmap:0 PCMU/8000\n"
                                "a=rtpmap:8 PCMA/8000\n"
                                "a=rtpmap:101 telephone-event/8000\n"
                                "a=fmtp:101 0-15\n";

class AudioPolicy : public Calls {
 protected:
  /// @param answer  which comes back as it is
  void expectOffer(const std::string& policy, const std::string& offer, const std::string& atTarget,
                   const std::string& answer) {
    Plan plan;
    plan.policy = policy;
    plan.bodies = {{"offer", offer}, {"answer", answer}};
    const Played played = play(plan);
    EXPECT_EQ(played.atTarget, Bodies{atTarget});
    EXPECT_EQ(played.atCaller, Bodies{answer});
    EXPECT_EQ(raised(played.counters), (Counters{{"calls", 1}, {"established", 1}, {"ended", 1}}));
  }

  void expectRefusal(const std::string& policy, const std::string& offer, const std::string& reason) {
    Plan plan;
    plan.callerScenario = "unusable-caller";
    plan.targetScenario = "";
    plan.policy = policy;
    plan.bodies = {{"offer", offer}};
    const Played played = play(plan);
    EXPECT_EQ(raised(played.counters), (Counters{{"calls", 1}, {"failed", 1}, {"refused_bodies", 1}}));
    EXPECT_NE(played.log.find(" body refused: " + reason), std::string::npos) << played.log;
  }
};

}  // namespace

TEST_F(AudioPolicy, TelephoneEventsAreNoCommonCodec) {
  expectRefusal("audio-codecs = PCMA, telephone-event\n", kMobile, "no allowed audio codec");
}

TEST_F(AudioPolicy, APolicyOfEventsAllowsNoCodec) {
  expectRefusal("audio-codecs = telephone-event\n", kSoftClient, "no allowed audio codec");
}

TEST_F(AudioPolicy, ComfortNoiseIsNoCommonCodec) {
  expectRefusal("audio-codecs = PCMA, COMFORT_NOISE\n",
                kFromAlice + "m=audio 49170 RTP/AVP 96 13\na=rtpmap:96 AMR/8000\n", "no allowed audio codec");
}

TEST_F(AudioPolicy, EventsOfTheClockThatStaysAreKept) {
  const std::string answer = kFromBob +
                             "m=audio 30000 RTP/AVP 8 126\n"
                             "a=rtpmap:8 PCMA/8000\n"
                             "a=rtpmap:126 telephone-event/8000\n";
  expectOffer("audio-codecs = PCMA, telephone-event\n", kBrowser,
              kFromAlice +
                  "m=audio 49170 RTP/AVP 8 126 13\n"
                  "a=rtpmap:8 PCMA/8000\n"
                  "a=rtpmap:126 telephone-event/8000\n"
                  "a=rtpmap:13 CN/8000\n",
              answer);
}

TEST_F(AudioPolicy, EventsOfTheClockThatGoesGoToo) {
  const std::string answer = kFromBob +
                             "m=audio 30000 RTP/AVP 111 110\n"
                             "a=rtpmap:111 opus/48000/2\n"
                             "a=rtpmap:110 telephone-event/48000\n";
  expectOffer("audio-codecs = OPUS, telephone-event\n", kBrowser,
              kFromAlice +
                  "m=audio 49170 RTP/AVP 111 110\n"
                  "a=rtpmap:111 opus/48000/2\n"
                  "a=fmtp:111 minptime=10;useinbandfec=1\n"
                  "a=rtpmap:110 telephone-event/48000\n",
              answer);
}

TEST_F(AudioPolicy, EachClockThatStaysKeepsItsEvents) {
  const std::string answer = kFromBob +
                             "m=audio 30000 RTP/AVP 0 126\n"
                             "a=rtpmap:0 PCMU/8000\n"
                             "a=rtpmap:126 telephone-event/8000\n";
  expectOffer("audio-codecs = PCMU, OPUS\n", replaced(kBrowser, " 13 110", " 110"),
              kFromAlice +
                  "m=audio 49170 RTP/AVP 0 111 110 126\n"
                  "a=rtpmap:0 PCMU/8000\n"
                  "a=rtpmap:111 opus/48000/2\n"
                  "a=fmtp:111 minptime=10;useinbandfec=1\n"
                  "a=rtpmap:110 telephone-event/48000\n"
                  "a=rtpmap:126 telephone-event/8000\n",
              answer);
}

TEST_F(AudioPolicy, ASoftClientKeepsItsEvents) {
  const std::string answer = kFromBob +
                             "m=audio 30000 RTP/AVP 8 101\n"
                             "a=rtpmap:8 PCMA/8000\n"
                             "a=rtpmap:101 telephone-event/8000\n"
                             "a=fmtp:101 0-15\n";
  expectOffer("audio-codecs = PCMA, PCMU, telephone-event\n", kSoftClient,
              kFromAlice +
                  "m=audio 49170 RTP/AVP 8 0 101\n"
                  "a=rtpmap:8 PCMA/8000\n"
                  "a=rtpmap:0 PCMU/8000\n"
                  "a=rtpmap:101 telephone-event/8000\n"
                  "a=fmtp:101 0-15\n",
              answer);
}

TEST_F(AudioPolicy, ASoftClientsEventsDoNotFitWidebandAlone) {
  const std::string answer = kFromBob + "m=audio 30000 RTP/AVP 96\na=rtpmap:96 opus/48000/2\n";
  expectOffer("audio-codecs = OPUS, telephone-event\n",
              replaced(kSoftClient, "a=rtpmap:97 opus/48000/1\n", ""),
              kFromAlice + "m=audio 49170 RTP/AVP 96\na=rtpmap:96 opus/48000/2\n", answer);
}

// It has its place in the body, and an m-line needs a format.
TEST_F(AudioPolicy, ARefusedSectionKeepsItsFormats) {
  const std::string refused = "m=audio 0 RTP/AVP 9\n";
  const std::string answer = kFromBob + "m=audio 30000 RTP/AVP 8\na=rtpmap:8 PCMA/8000\n" + refused;
  const std::string audio = "m=audio 49170 RTP/AVP 8\na=rtpmap:8 PCMA/8000\n";
  expectOffer("audio-codecs = PCMA\n", kFromAlice + audio + refused, kFromAlice + audio + refused, answer);
}

// Sections behind the video, with c-lines of their own, stay whole.
TEST_F(AudioPolicy, VideoGoesWithoutWhatStandsBehindIt) {
  const std::string offer =
      "v=0\n"
      "o=alice 21 4 IN IP4 192.0.2.10\n"
      "s=-\n"
      "t=0 0\n"
      "m=video 49172 RTP/AVP 97\n"
      "b=AS:768\n"
      "a=rtpmap:97 H264/90000\n"
      "m=audio 49170 RTP/AVP 8\n"
      "c=IN IP4 192.0.2.10\n"
      "a=rtpmap:8 PCMA/8000\n";
  const std::string answer =
      kFromBob + "m=video 0 RTP/AVP 97\nm=audio 30000 RTP/AVP 8\na=rtpmap:8 PCMA/8000\n";
  expectOffer("video = off\n", offer, replaced(offer, "m=video 49172 ", "m=video 0 "), answer);
}

// A refused section is in no group (RFC 8843).
TEST_F(AudioPolicy, VideoThatGoesLeavesItsGroup) {
  const std::string offer = kFromAlice +
                            "a=group:BUNDLE 0 1\n"
                            "m=audio 49170 RTP/AVP 8\n"
                            "a=mid:0\n"
                            "m=video 49170 RTP/AVP 97\n"
                            "a=rtpmap:97 H264/90000\n"
                            "a=mid:1\n";
  const std::string answer = kFromBob +
                             "a=group:BUNDLE 0\n"
                             "m=audio 30000 RTP/AVP 8\n"
                             "a=mid:0\n"
                             "m=video 0 RTP/AVP 97\n"
                             "a=mid:1\n";
  expectOffer("video = off\n", offer,
              replaced(replaced(offer, "BUNDLE 0 1", "BUNDLE 0"), "m=video 49170", "m=video 0"), answer);
}

// The port of the group was that of the video.
TEST_F(AudioPolicy, VideoThatGoesLeavesItsPortToItsGroup) {
  const std::string offer = kFromAlice +
                            "a=group:BUNDLE 0 1\n"
                            "m=video 49170 RTP/AVP 97\n"
                            "a=rtpmap:97 H264/90000\n"
                            "a=mid:0\n"
                            "m=audio 0 RTP/AVP 8\n"
                            "a=mid:1\n"
                            "a=bundle-only\n";
  const std::string answer = kFromBob +
                             "a=group:BUNDLE 1\n"
                             "m=video 0 RTP/AVP 97\n"
                             "m=audio 30000 RTP/AVP 8\n"
                             "a=mid:1\n";
  expectOffer("video = off\n", offer,
              kFromAlice +
                  "a=group:BUNDLE 1\n"
                  "m=video 0 RTP/AVP 97\n"
                  "a=rtpmap:97 H264/90000\n"
                  "a=mid:0\n"
                  "m=audio 49170 RTP/AVP 8\n"
                  "a=mid:1\n",
              answer);
}

TEST_F(AudioPolicy, LevelsOfHighProfilesOfVideoAreLowered) {
  const std::string video = "m=video 49172 RTP/AVP 97\na=rtpmap:97 H264/90000\n";
  const std::string offer = kFromAlice + "m=audio 49170 RTP/AVP 8\n" + video +
                            "a=fmtp:97 profile-level-id=640c28;packetization-mode=1\n";
  expectOffer("video = cap 512 3.1\n", offer, replaced(offer, "640c28", "640c1F"),
              kFromBob + "m=audio 30000 RTP/AVP 8\n" + replaced(video, "49172", "30002"));
}

// Level 1b is a number of its own in the High profiles, and a bit beside that of 1.1 in the others.
TEST(LevelsOfVideo, AreLoweredInTheirProfile) {
  const struct {
    eH264_profile_id cap;
    const char* offered;
    const char* lowered;
  } cases[] = {
      {H264_LEVEL_3_1, "640c1f", "640c1f"}, {H264_LEVEL_3_1, "42e033", "42e01F"},
      {H264_LEVEL_4, "7a1029", "7a1028"},   {H264_LEVEL_4, "58001F", "58001F"},
      {H264_LEVEL_1B, "640c1f", "640c09"},  {H264_LEVEL_1B, "42e01f", "42F00B"},
      {H264_LEVEL_1B, "64100b", "641009"},  {H264_LEVEL_1B, "42f00b", "42f00b"},
      {H264_LEVEL_1, "4d100b", "4d100A"},   {H264_LEVEL_1, "640009", "64000A"},
      {H264_LEVEL_1, "245", "245"},         {H264_LEVEL_1, "42e0", "42e0"},
  };
  for (const auto& each : cases) {
    const auto bodyWith = [](const std::string& level) {
      const std::string id = " Profile-Level-Id = " + level;
      return "v=0\r\nm=audio 1 RTP/AVP 8\r\na=fmtp:8" + id + "\r\nm=video 2 RTP/AVP 97\r\na=fmtp:97" + id +
             ";" + id + "\r\n";
    };
    b2bua::Policy policy;
    policy.videoBandwidth = 512;
    policy.videoLevel = each.cap;
    const std::string body = bodyWith(each.offered);
    const std::string lowered =
        body.substr(0, body.find("m=video")) + bodyWith(each.lowered).substr(body.find("m=video"));
    EXPECT_EQ(b2bua::withVideoCapped(policy, body), lowered);
  }
}

// TIAS counts bits; the session's bandwidth is not that of the video alone.
TEST_F(AudioPolicy, BandwidthsOfVideoAreCappedInTheirUnits) {
  const std::string offer = replaced(kFromAlice, "t=0 0\n", "b=AS:900\nt=0 0\n") +
                            "m=audio 49170 RTP/AVP 8\n"
                            "b=AS:600\n"
                            "m=video 49172 RTP/AVP 97\n"
                            "b=AS:768\n"
                            "b=TIAS:512001\n"
                            "b=RS:9600\n"
                            "a=rtpmap:97 H264/90000\n";
  const std::string answer = kFromBob + "m=audio 30000 RTP/AVP 8\nm=video 30002 RTP/AVP 97\nb=TIAS:512000\n";
  expectOffer("video = cap 512 3.1\n", offer,
              replaced(replaced(offer, "b=AS:768", "b=AS:512"), "TIAS:512001", "TIAS:512000"), answer);
}

TEST_F(AudioPolicy, TheBandwidthOfASessionWithVideoAloneIsCapped) {
  const std::string offer = replaced(kFromAlice, "t=0 0\n", "b=AS:900\nb=TIAS:900000\nt=0 0\n") +
                            "m=audio 0 RTP/AVP 8\n"
                            "m=video 49172 RTP/AVP 97\n"
                            "a=rtpmap:97 H264/90000\n";
  const std::string answer = kFromBob + "m=audio 0 RTP/AVP 8\nm=video 30002 RTP/AVP 97\n";
  expectOffer("video = cap 512 3.1\n", offer,
              replaced(replaced(offer, "b=AS:900", "b=AS:512"), "TIAS:900000", "TIAS:512000"), answer);
}

TEST_F(AudioPolicy, AnOfferOfVideoAloneIsRefusedWithoutVideo) {
  expectRefusal("video = off\n", kFromAlice + "m=video 49172 RTP/AVP 97\na=rtpmap:97 H264/90000\n",
                "no media but video");
}
