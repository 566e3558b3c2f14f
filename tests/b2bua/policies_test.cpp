#include "calls.h"

// Each rule of the policy: the body that the target got and the one that came back.

namespace {

const std::string kAudioOffer =
    "v=0\n"
    "o=alice 2890844526 7 IN IP4 192.0.2.10\n"
    "s=-\n"
    "c=IN IP4 192.0.2.10\n"
    "t=0 0\n"
    "m=audio 49170 RTP/AVP 0 8 18 101\n"
    "a=rtpmap:0 PCMU/8000\n"
    "a=rtpmap:8 PCMA/8000\n"
    "a=rtpmap:18 G729/8000\n"
    "a=fmtp:18 annexb=no\n"
    "a=rtpmap:101 telephone-event/8000\n"
    "a=fmtp:101 0-15\n"
    "a=ptime:20\n"
    "a=sendrecv\n";

const std::string kAudioAnswer =
    "v=0\n"
    "o=bob 3 3 IN IP4 192.0.2.20\n"
    "s=-\n"
    "c=IN IP4 192.0.2.20\n"
    "t=0 0\n"
    "m=audio 30000 RTP/AVP 8 101\n"
    "a=rtpmap:8 PCMA/8000\n"
    "a=rtpmap:101 telephone-event/8000\n"
    "a=fmtp:101 0-15\n"
    "a=ptime:20\n"
    "a=sendrecv\n";

using Bodies = std::vector<std::string>;

Plan plan(const std::string& policy, const std::string& offer, const std::string& answer) {
  Plan made;
  made.policy = policy;
  made.bodies = {{"offer", offer}, {"answer", answer}};
  return made;
}

class Policies : public Calls {
 protected:
  /// @param atTarget  what becomes of the offer
  /// @param atCaller  what becomes of the answer
  void expectBodies(const Plan& made, const std::string& atTarget, const std::string& atCaller) {
    const Played played = play(made);
    EXPECT_EQ(played.atTarget, Bodies{atTarget});
    EXPECT_EQ(played.atCaller, Bodies{atCaller});
    EXPECT_EQ(raised(played.counters), (Counters{{"calls", 1}, {"established", 1}, {"ended", 1}}));
  }
};

}  // namespace

TEST_F(Policies, WithoutAnyBodiesPassAsTheyAre) {
  expectBodies(plan("", kAudioOffer, kAudioAnswer), kAudioOffer, kAudioAnswer);
}

TEST_F(Policies, AudioCodecsAreRestrictedAndPutInOrder) {
  const std::string offered =
      "v=0\n"
      "o=alice 2890844526 7 IN IP4 192.0.2.10\n"
      "s=-\n"
      "c=IN IP4 192.0.2.10\n"
      "t=0 0\n"
      "m=audio 49170 RTP/AVP 18 8 101\n"
      "a=rtpmap:18 G729/8000\n"
      "a=fmtp:18 annexb=no\n"
      "a=rtpmap:8 PCMA/8000\n"
      "a=rtpmap:101 telephone-event/8000\n"
      "a=fmtp:101 0-15\n"
      "a=ptime:20\n"
      "a=sendrecv\n";
  const std::string answer =
      "v=0\n"
      "o=bob 3 3 IN IP4 192.0.2.20\n"
      "s=-\n"
      "c=IN IP4 192.0.2.20\n"
      "t=0 0\n"
      "m=audio 30000 RTP/AVP 8 101 18\n"
      "a=sendrecv\n"
      "a=rtpmap:8 PCMA/8000\n"
      "a=rtpmap:101 telephone-event/8000\n"
      "a=fmtp:101 0-15\n"
      "a=rtpmap:18 G729/8000\n";
  const std::string answered =
      "v=0\n"
      "o=bob 3 3 IN IP4 192.0.2.20\n"
      "s=-\n"
      "c=IN IP4 192.0.2.20\n"
      "t=0 0\n"
      "m=audio 30000 RTP/AVP 18 8 101\n"
      "a=rtpmap:18 G729/8000\n"
      "a=rtpmap:8 PCMA/8000\n"
      "a=rtpmap:101 telephone-event/8000\n"
      "a=fmtp:101 0-15\n"
      "a=sendrecv\n";
  expectBodies(plan("audio-codecs = G729, PCMA, telephone-event\n", kAudioOffer, answer), offered, answered);
}

TEST_F(Policies, AnOfferWithoutAnAllowedCodecIsRefused) {
  Plan made = plan("audio-codecs = G722\n", kAudioOffer, kAudioAnswer);
  made.callerScenario = "unusable-caller";
  made.targetScenario = "";
  const Played played = play(made);
  EXPECT_EQ(played.atCaller, Bodies{});
  EXPECT_EQ(played.counters.at("calls"), 1);
  EXPECT_EQ(played.counters.at("failed"), 1);
  EXPECT_EQ(played.counters.at("refused_bodies"), 1);
  EXPECT_EQ(played.counters.at("active"), 0);
  EXPECT_NE(played.log.find(" body refused: "), std::string::npos) << played.log;
}

namespace {

const std::string kVideoOffer =
    "v=0\n"
    "o=alice 5 5 IN IP4 192.0.2.10\n"
    "s=-\n"
    "c=IN IP4 192.0.2.10\n"
    "t=0 0\n"
    "m=audio 49170 RTP/AVP 8\n"
    "a=rtpmap:8 PCMA/8000\n"
    "m=video 51372 RTP/AVP 97\n"
    "b=AS:768\n"
    "a=rtpmap:97 H264/90000\n"
    "a=fmtp:97 profile-level-id=42801f;packetization-mode=1\n";

const std::string kVideoAnswer =
    "v=0\n"
    "o=bob 6 6 IN IP4 192.0.2.20\n"
    "s=-\n"
    "c=IN IP4 192.0.2.20\n"
    "t=0 0\n"
    "m=audio 30000 RTP/AVP 8\n"
    "a=rtpmap:8 PCMA/8000\n"
    "m=video 30002 RTP/AVP 97\n"
    "b=AS:1024\n"
    "a=rtpmap:97 H264/90000\n"
    "a=fmtp:97 profile-level-id=42800d;packetization-mode=1\n";

}  // namespace

TEST_F(Policies, VideoOffIsOfferedWithPortZero) {
  const std::string refused = replaced(kVideoAnswer, "m=video 30002 ", "m=video 0 ");
  expectBodies(plan("video = off\n", kVideoOffer, refused),
               replaced(kVideoOffer, "m=video 51372 ", "m=video 0 "), refused);
}

TEST_F(Policies, VideoIsCappedInBandwidthAndLevel) {
  // The answer's level is below the cap already.
  expectBodies(plan("video = cap 384 3\n", kVideoOffer, kVideoAnswer),
               replaced(replaced(kVideoOffer, "b=AS:768", "b=AS:384"), "=42801f", "=42801E"),
               replaced(kVideoAnswer, "b=AS:1024", "b=AS:384"));
}

namespace {

const std::string kIceOffer =
    "v=0\n"
    "o=alice 8 8 IN IP4 192.0.2.10\n"
    "s=-\n"
    "c=IN IP4 192.0.2.10\n"
    "t=0 0\n"
    "a=ice-options:trickle\n"
    "m=audio 49170 RTP/AVP 8\n"
    "a=ice-ufrag:8hhY\n"
    "a=ice-pwd:asd88fgpdd777uzjYhagZg\n"
    "a=candidate:1 1 UDP 2130706431 192.0.2.10 49170 typ host\n"
    "a=candidate:1 2 UDP 2130706430 192.0.2.10 49171 typ host\n"
    "a=rtcp-mux\n"
    "a=rtpmap:8 PCMA/8000\n";

const std::string kIceAnswer =
    "v=0\n"
    "o=bob 9 9 IN IP4 192.0.2.20\n"
    "s=-\n"
    "c=IN IP4 192.0.2.20\n"
    "t=0 0\n"
    "m=audio 30000 RTP/AVP 8\n"
    "a=rtpmap:8 PCMA/8000\n"
    "a=ice-ufrag:9uB6\n"
    "a=ice-pwd:YH75Fviy6338Vbrhrlp8Yh\n"
    "a=candidate:1 1 UDP 2130706431 192.0.2.20 30000 typ host\n"
    "a=rtcp-mux\n";

}  // namespace

TEST_F(Policies, IceIsRemovedFromBoth) {
  const std::string offered =
      "v=0\n"
      "o=alice 8 8 IN IP4 192.0.2.10\n"
      "s=-\n"
      "c=IN IP4 192.0.2.10\n"
      "t=0 0\n"
      "m=audio 49170 RTP/AVP 8\n"
      "a=rtcp-mux\n"
      "a=rtpmap:8 PCMA/8000\n";
  const std::string answered =
      "v=0\n"
      "o=bob 9 9 IN IP4 192.0.2.20\n"
      "s=-\n"
      "c=IN IP4 192.0.2.20\n"
      "t=0 0\n"
      "m=audio 30000 RTP/AVP 8\n"
      "a=rtpmap:8 PCMA/8000\n"
      "a=rtcp-mux\n";
  expectBodies(plan("ice = remove\n", kIceOffer, kIceAnswer), offered, answered);
}

TEST_F(Policies, IceIsKept) {
  expectBodies(plan("ice = keep\n", kIceOffer, kIceAnswer), kIceOffer, kIceAnswer);
}

TEST_F(Policies, TheConnectionAddressIsPutIntoBoth) {
  expectBodies(plan("connection-address = 198.51.100.1\n", kAudioOffer, kAudioAnswer),
               replaced(kAudioOffer, "c=IN IP4 192.0.2.10", "c=IN IP4 198.51.100.1"),
               replaced(kAudioAnswer, "c=IN IP4 192.0.2.20", "c=IN IP4 198.51.100.1"));
}

namespace {

const std::string kDualOffer =
    "v=0\n"
    "o=alice 4 4 IN IP4 192.0.2.10\n"
    "s=-\n"
    "t=0 0\n"
    "a=group:ANAT 1 2\n"
    "m=audio 49170 RTP/AVP 8\n"
    "c=IN IP4 192.0.2.10\n"
    "a=rtpmap:8 PCMA/8000\n"
    "a=mid:1\n"
    "m=audio 49172 RTP/AVP 8\n"
    "c=IN IP6 2001:db8::10\n"
    "a=rtpmap:8 PCMA/8000\n"
    "a=mid:2\n";

}  // namespace

TEST_F(Policies, OneAddressFamilyOfAnAnatOfferStaysAndTheAnswerHasBothMLines) {
  const std::string offered =
      "v=0\n"
      "o=alice 4 4 IN IP4 192.0.2.10\n"
      "s=-\n"
      "t=0 0\n"
      "m=audio 49170 RTP/AVP 8\n"
      "c=IN IP4 192.0.2.10\n"
      "a=rtpmap:8 PCMA/8000\n"
      "a=mid:1\n";
  const std::string answer =
      "v=0\n"
      "o=bob 3 3 IN IP4 192.0.2.20\n"
      "s=-\n"
      "c=IN IP4 192.0.2.20\n"
      "t=0 0\n"
      "m=audio 30000 RTP/AVP 8\n"
      "a=rtpmap:8 PCMA/8000\n";
  const std::string answered =
      "v=0\n"
      "o=bob 3 3 IN IP4 192.0.2.20\n"
      "s=-\n"
      "c=IN IP4 192.0.2.20\n"
      "t=0 0\n"
      "a=group:ANAT 1\n"
      "m=audio 30000 RTP/AVP 8\n"
      "a=rtpmap:8 PCMA/8000\n"
      "a=mid:1\n"
      "m=audio 0 RTP/AVP 0\n"
      "a=mid:2\n";
  expectBodies(plan("address-family = ipv4\n", kDualOffer, answer), offered, answered);
}

TEST_F(Policies, TheOtherAddressFamilyOfAnAnatOfferMayStayInstead) {
  const std::string offered =
      "v=0\n"
      "o=alice 4 4 IN IP4 192.0.2.10\n"
      "s=-\n"
      "t=0 0\n"
      "m=audio 49172 RTP/AVP 8\n"
      "c=IN IP6 2001:db8::10\n"
      "a=rtpmap:8 PCMA/8000\n"
      "a=mid:2\n";
  const std::string answer =
      "v=0\n"
      "o=bob 3 3 IN IP6 2001:db8::20\n"
      "s=-\n"
      "c=IN IP6 2001:db8::20\n"
      "t=0 0\n"
      "m=audio 30000 RTP/AVP 8\n"
      "a=rtpmap:8 PCMA/8000\n";
  const std::string answered =
      "v=0\n"
      "o=bob 3 3 IN IP6 2001:db8::20\n"
      "s=-\n"
      "c=IN IP6 2001:db8::20\n"
      "t=0 0\n"
      "a=group:ANAT 2\n"
      "m=audio 0 RTP/AVP 0\n"
      "a=mid:1\n"
      "m=audio 30000 RTP/AVP 8\n"
      "a=rtpmap:8 PCMA/8000\n"
      "a=mid:2\n";
  expectBodies(plan("address-family = ipv6\n", kDualOffer, answer), offered, answered);
}

TEST_F(Policies, CallsGoOverIPv6) {
  Plan made = plan("audio-codecs = PCMA\n",
                   "v=0\n"
                   "o=alice 1 1 IN IP6 2001:db8::10\n"
                   "s=-\n"
                   "c=IN IP6 2001:db8::10\n"
                   "t=0 0\n"
                   "m=audio 49170 RTP/AVP 0 8\n",
                   "v=0\n"
                   "o=bob 1 1 IN IP6 2001:db8::20\n"
                   "s=-\n"
                   "c=IN IP6 2001:db8::20\n"
                   "t=0 0\n"
                   "m=audio 30000 RTP/AVP 8\n");
  made.host = "[::1]";
  expectBodies(made, replaced(made.bodies[0].second, " RTP/AVP 0 8", " RTP/AVP 8"), made.bodies[1].second);
}
