#include "scenarioSupport.h"

// Whole calls as an engine drives them: offers and answers, hold, later offers, fax, and bodies that stand in for
// others.

namespace {

using namespace scenario;

constexpr unsigned char kPcma = 1;
constexpr unsigned char kPcmu = 3;
constexpr unsigned char kG729 = 10;
constexpr unsigned char kT38 = 28;
constexpr unsigned char kEvents = 29;

const std::string eventLines = "a=rtpmap:101 telephone-event/8000\r\na=fmtp:101 0-15\r\n";

TEST(CallScenario, AnEngineRestrictsCodecsInOfferAndAnswer) {
  // The offer goes on with the codecs that the engine allows, in the caller's order.
  cSdpNegotiator offer =
      parsedObject(alice() +
                   "m=audio 49170 RTP/AVP 8 0 18 101\r\na=rtpmap:8 PCMA/8000\r\na=rtpmap:0 PCMU/8000\r\n"
                   "a=rtpmap:18 G729/8000\r\na=fmtp:18 annexb=no\r\n" +
                   eventLines + "a=ptime:20\r\na=sendrecv\r\n");
  const unsigned char allowed[] = {kPcmu, kPcma};
  EXPECT_EQ(offer.sdpRestrictAudioCodecsTo(allowed, 2, false), 1);
  expectBody(offer, alice() +
                        "m=audio 49170 RTP/AVP 8 0 101\r\na=rtpmap:8 PCMA/8000\r\na=rtpmap:0 PCMU/8000\r\n" +
                        eventLines + "a=ptime:20\r\na=sendrecv\r\n");
  EXPECT_EQ(codecsOf(offer), (Codecs{kPcma, kPcmu, kEvents}));

  // The answer goes back with one codec, and with the address of a relay.
  cSdpNegotiator answer =
      parsedObject(bob() + "m=audio 6000 RTP/AVP 0 8 101\r\na=ptime:20\r\na=rtpmap:0 PCMU/8000\r\n" +
                   eventLines + "a=rtpmap:8 PCMA/8000\r\n");
  EXPECT_EQ(answer.sdpRestrictAudioCodecsTo(codecsOf(offer).data(), 1, true), 1);
  const std::string section =
      "m=audio 6000 RTP/AVP 8 101\r\na=rtpmap:8 PCMA/8000\r\n" + eventLines + "a=ptime:20\r\n";
  expectBody(answer, bob() + section);
  EXPECT_EQ(codecsOf(answer), (Codecs{kPcma, kEvents}));
  EXPECT_EQ(answer.sdpReplaceCxIP("203.0.113.5"), 0);
  expectBody(answer,
             "v=0\r\no=bob 200 1 IN IP4 192.0.2.20\r\ns=-\r\nc=IN IP4 203.0.113.5\r\nt=0 0\r\n" + section);

  // With a caller that has none of the codecs nothing is restricted.
  const cSdpNegotiator before = answer;
  const unsigned char others[] = {kG729};
  EXPECT_EQ(answer.sdpRestrictAudioCodecsTo(others, 1, false), 0);
  EXPECT_TRUE(sameBytes(answer, before));
}

TEST(CallScenario, ACallIsHeldAndResumed) {
  const std::string media = "m=audio 5004 RTP/AVP 0\r\na=sendrecv\r\nm=video 5006 RTP/AVP 34\r\n";
  const cSdpNegotiator original = parsedObject(alice("9") + media);
  EXPECT_FALSE(original.isHoldState());

  cSdpNegotiator held = original;
  EXPECT_EQ(held.sdpReplaceMode(CONNECTION_MODE_SENDONLY, 64), 0);
  const std::string heldMedia =
      "a=sendonly\r\nm=audio 5004 RTP/AVP 0\r\na=sendonly\r\nm=video 5006 RTP/AVP 34\r\na=sendonly\r\n";
  expectBody(held, alice("9") + heldMedia);
  EXPECT_EQ(held.getParsedData().sessionMode, CONNECTION_MODE_SENDONLY);
  EXPECT_EQ(held.sdpIncVersion(), 0);
  EXPECT_EQ(textOf(held), alice("10") + heldMedia);
  EXPECT_TRUE(held.isHoldState());
  EXPECT_EQ(held.isSdpVersionIncreased(&original), 1);
  EXPECT_EQ(held.compareSdpByBody(&original), 1);

  // The other side holds as well: what both have in common is inactive.
  cSdpNegotiator both = held;
  EXPECT_EQ(both.sdpReplaceMode(CONNECTION_MODE_RECVONLY, 64), 0);
  expectBody(both, alice("10") +
                       "a=inactive\r\nm=audio 5004 RTP/AVP 0\r\na=inactive\r\nm=video 5006 RTP/AVP 34\r\n"
                       "a=inactive\r\n");

  // The first body comes back as the session's next version.
  cSdpNegotiator resumed = original;
  EXPECT_EQ(resumed.copyOLine(&held), 0);
  EXPECT_EQ(resumed.sdpIncVersion(), 0);
  expectBody(resumed, alice("11") + media);
  EXPECT_FALSE(resumed.isHoldState());
  EXPECT_EQ(resumed.isSdpVersionIncreased(&held), 1);
  EXPECT_EQ(resumed.isSdpVersionIncreased(&original), 0);
  EXPECT_EQ(resumed.compareSdpByBody(&original), 0);
}

TEST(CallScenario, ALaterOfferMayHaveOneMoreMLine) {
  const std::string audioLine = "m=audio 5004 RTP/AVP 0\r\n";
  const std::string both = audioLine + "m=video 5006 RTP/AVP 34\r\nb=AS:384\r\n";
  const cSdpNegotiator first = parsedObject(alice("1") + audioLine);
  cSdpNegotiator second = parsedObject(alice("2") + both);
  EXPECT_EQ(second.isSdpVersionIncreased(&first), 1);
  EXPECT_EQ(first.isSdpVersionIncreased(&second), 0);

  // A body of the engine's own becomes the next version; the video that it lacks is added without its lines.
  cSdpNegotiator own = parsedObject(
      "v=0\r\no=own 7 70 IN IP4 192.0.2.50\r\ns=call\r\nc=IN IP4 192.0.2.50\r\n"
      "t=0 0\r\nm=audio 6000 RTP/AVP 8\r\n");
  const cSdpNegotiator previous = second;
  EXPECT_EQ(own.sdpModifyVersionAndMlines(&second, false), 0);
  expectBody(own,
             "v=0\r\no=alice 100 3 IN IP4 192.0.2.10\r\ns=call\r\nc=IN IP4 192.0.2.50\r\nt=0 0\r\n"
             "m=audio 6000 RTP/AVP 8\r\nm=video 5006 RTP/AVP 34\r\n");
  expectBody(second, alice("3") + both);
  EXPECT_EQ(own.isSdpVersionIncreased(&previous), 1);

  // One with more m-lines than the earlier one only takes the o-line over.
  cSdpNegotiator earlier = first;
  cSdpNegotiator more = parsedObject(bob() + both);
  EXPECT_EQ(more.sdpModifyVersionAndMlines(&earlier, false), 1);
  expectBody(more,
             "v=0\r\no=alice 100 2 IN IP4 192.0.2.10\r\ns=-\r\nc=IN IP4 192.0.2.20\r\nt=0 0\r\n" + both);
  EXPECT_EQ(more.isSdpVersionIncreased(&first), 1);
}

TEST(CallScenario, AFaxTakesTheCallOverAndGivesItBack) {
  const std::string audioLine = "m=audio 5004 RTP/AVP 0 8\r\na=sendrecv\r\n";
  const std::string faxLines = " udptl t38\r\na=T38FaxVersion:0\r\na=T38MaxBitRate:14400\r\n";
  const cSdpNegotiator call = parsedObject(alice("1") + audioLine);
  cSdpNegotiator fax = parsedObject(alice("2") + "m=audio 0 RTP/AVP 0 8\r\nm=image 4000" + faxLines);
  EXPECT_EQ(fax.isSdpVersionIncreased(&call), 1);
  EXPECT_EQ(fax.getParsedData().mediaType, static_cast<unsigned int>(MEDIA_IMAGE));
  EXPECT_EQ(codecsOf(fax), (Codecs{kT38}));
  // Where there is an audio m-line, the port is that of audio, of which there is none.
  EXPECT_EQ(fax.getParsedData().port, SDP_PORT_NOT_SET);
  EXPECT_EQ(parsedObject(alice("2") + "m=image 4000" + faxLines).getParsedData().port, 4000U);
  EXPECT_EQ(fax.getParsedData().T38MaxBitRate, 14400U);

  // A relay takes the fax.
  EXPECT_EQ(fax.sdpReplaceCxIP("203.0.113.5"), 0);
  const std::string relayed = alice("2", "203.0.113.5") + "m=audio 0 RTP/AVP 0 8\r\nm=image ";
  expectBody(fax, relayed + "4000" + faxLines);

  // A side without fax refuses the m-line, and the call goes on as it was.
  EXPECT_EQ(fax.sdpDisablePort(MEDIA_IMAGE), 0);
  expectBody(fax, relayed + "0" + faxLines);
  cSdpNegotiator again = call;
  EXPECT_EQ(again.copyOLine(&fax), 0);
  EXPECT_EQ(again.sdpIncVersion(), 0);
  expectBody(again, alice("3") + audioLine);
  EXPECT_EQ(again.compareSdpByBody(&call), 0);
}

TEST(CallScenario, ADummyOfferGivesWayToTheRealOne) {
  cSdpNegotiator dummy;
  EXPECT_EQ(dummy.sdpCreateRmDummyOffer(5, 6, false), 0);
  expectBody(dummy,
             "v=0\r\no=IRM 5 6 IN IP4 127.0.0.1\r\ns=IRM\r\nc=IN IP4 127.0.0.1\r\nt=0 0\r\n"
             "m=audio 5004 RTP/SAVP 0 8 9 4 18\r\n");
  EXPECT_TRUE(dummy.isRmDummySdp());
  EXPECT_TRUE(dummy.isSingleLineSDP());

  const std::string media = "m=audio 5004 RTP/AVP 0\r\n";
  cSdpNegotiator real = parsedObject(alice() + media);
  EXPECT_EQ(real.compareSdpByBody(&dummy), 1);
  // The session id stays, the user name does not: it would tell a dummy.
  EXPECT_EQ(real.sdpModifyOLine("5", "7", "192.0.2.99"), 0);
  expectBody(real, "v=0\r\no=ZEV 5 7 IN IP4 192.0.2.99\r\ns=-\r\nc=IN IP4 192.0.2.10\r\nt=0 0\r\n" + media);
  EXPECT_FALSE(real.isRmDummySdp());
  EXPECT_EQ(real.isSdpVersionIncreased(&dummy), 0);
}

TEST(CallScenario, ADummyAnswerKeepsTheCallerWaiting) {
  cSdpNegotiator object =
      parsedObject(alice() +
                   "a=key-mgmt:mikey AQAF\r\nm=audio 49170 RTP/AVP 0 8\r\na=ice-ufrag:abcd\r\na=sendrecv\r\n"
                   "m=video 49172 RTP/AVP 34\r\n");
  EXPECT_EQ(object.createDummyAnswer(true, "192.0.2.99", 5004), 0);
  expectTimedBody(object,
                  alice("1", "192.0.2.99") +
                      "a=inactive\r\nm=audio 49170 RTP/AVP 0 8\r\na=inactive\r\nm=video 0 RTP/AVP 34\r\n"
                      "a=inactive\r\n",
                  "IP4 192.0.2.99");
  EXPECT_TRUE(object.isHoldState());
  EXPECT_FALSE(object.isMikeyPresent() || object.isFullIcePresent());

  // Without an address nothing happens.
  const cSdpNegotiator before = object;
  EXPECT_EQ(object.createDummyAnswer(true, nullptr, 5004), 1);
  EXPECT_TRUE(sameBytes(object, before));
}

TEST(CallScenario, AnAnswerFollowsANewOffer) {
  const std::string map0 = "a=rtpmap:0 PCMU/8000\r\n";
  const std::string map18 = "a=rtpmap:18 G729/8000\r\na=fmtp:18 annexb=no\r\n";
  const cSdpNegotiator offer = parsedObject(alice("1") + "m=audio 5004 RTP/AVP 0 8 18\r\n");
  cSdpNegotiator answer =
      parsedObject(bob() + "m=audio 6000 RTP/AVP 0 18\r\n" + map18 + map0 + "a=ptime:20\r\n");

  // An offer of the answer's own codecs: nothing to do, and the o-line stays.
  const cSdpNegotiator same = parsedObject(alice("2") + "m=audio 5004 RTP/AVP 18 0\r\n");
  const cSdpNegotiator before = answer;
  EXPECT_EQ(answer.sdpUpdateAnswer(&offer, &same), 0);
  EXPECT_TRUE(sameBytes(answer, before));

  // A codec less and video in addition, which is answered with port 0.
  const cSdpNegotiator next =
      parsedObject(alice("3") + "m=audio 5004 RTP/AVP 0 8\r\nm=video 5006 RTP/AVP 34 31\r\n");
  EXPECT_EQ(answer.sdpUpdateAnswer(&same, &next), 0);
  expectTimedBody(answer,
                  bob() + "m=audio 6000 RTP/AVP 0\r\n" + map0 + "a=ptime:20\r\nm=video 0 RTP/AVP 34\r\n");
  EXPECT_EQ(codecsOf(answer), (Codecs{kPcmu}));

  // An offer from another address is a new call: the answer stays.
  const cSdpNegotiator moved = parsedObject(alice("4", "192.0.2.11") + "m=audio 5004 RTP/AVP 0\r\n");
  const cSdpNegotiator updated = answer;
  EXPECT_EQ(answer.sdpUpdateAnswer(&next, &moved), 1);
  EXPECT_TRUE(sameBytes(answer, updated));
}

}  // namespace
