#include "scenarioSupport.h"

// Calls whose media are offered twice, for the other side to choose from: plain and secure (best effort), or for
// either IP version (ANAT, RFC 4091).

namespace {

using namespace scenario;

const std::string key = "inline:WVNfX19zZW1jdGwgKCkgewkyMjA7fQp9CnVubGVz";
const std::string crypto = "a=crypto:1 AES_CM_128_HMAC_SHA1_80 " + key + "\r\n";

const std::string plainAudio = "m=audio 5004 RTP/AVP 0\r\n";
const std::string secureAudio = "m=audio 5004 RTP/SAVP 0\r\n" + crypto;
const std::string plainVideo = "m=video 5006 RTP/AVP 34\r\n";
const std::string secureVideo = "m=video 5006 RTP/SAVP 34\r\n" + crypto;
const std::string twoMLines = alice() + plainAudio + secureAudio + plainVideo + secureVideo;

TEST(BestEffortScenario, TwoMLinesBecomeOneAndTwoAgain) {
  cSdpNegotiator offer = parsedObject(twoMLines);
  EXPECT_EQ(offer.getSdpSecurityType(), SECURITY_BOTH);
  EXPECT_EQ(offer.getSdpBestEffortSrtpType(), BE_SRTP_2m_LINE);

  RemovedRecord removed;
  EXPECT_EQ(offer.sdpChangeSdpType(BE_SRTP_2m_LINE, BE_SRTP_1m_LINE, removed.data()), 0);
  expectBody(offer, alice() + plainAudio + crypto + plainVideo + crypto);
  removed.expect({1, 25 + 3}, 32);
  // Its keys make the body count as both, and only a plain one is tried for the form with one m-line.
  EXPECT_EQ(offer.getSdpSecurityType(), SECURITY_BOTH);
  EXPECT_EQ(offer.getSdpBestEffortSrtpType(), SRTP_UKNOWN);

  EXPECT_EQ(offer.sdpBuild2mLineSDP(), 0);
  expectBody(offer, twoMLines);
  EXPECT_EQ(offer.getSdpBestEffortSrtpType(), BE_SRTP_2m_LINE);
}

TEST(BestEffortScenario, TwoMLinesBecomeSecureOnesAndTheAnswerGetsThePlainOnesBack) {
  cSdpNegotiator offer = parsedObject(twoMLines);
  RemovedRecord removed;
  EXPECT_EQ(offer.sdpChangeSdpType(BE_SRTP_2m_LINE, SECURITY_SRTP_ONLY, removed.data()), 0);
  expectBody(offer, alice() + secureAudio + secureVideo);
  removed.expect({1, 25 + 3}, 32);
  EXPECT_EQ(offer.getSdpBestEffortSrtpType(), SECURITY_SRTP_ONLY);
  EXPECT_TRUE(offer.isSecureCall());

  // The m-lines that come back are secure ones, whatever those were that went.
  const std::string answeredAudio = "m=audio 7000 RTP/SAVP 0\r\n" + crypto;
  const std::string answeredVideo = "m=video 7002 RTP/SAVP 34\r\n" + crypto;
  cSdpNegotiator answer = parsedObject(bob() + answeredAudio + answeredVideo);
  EXPECT_EQ(answer.sdpReplaceTransportProtocol(removed.data(), false), 0);
  expectBody(answer, bob() + "m=audio 0 RTP/SAVP 0\r\n" + answeredAudio + "m=video 0 RTP/SAVP 31\r\n" +
                         answeredVideo);
  removed.expect({1, 25 + 3}, 32);
}

TEST(BestEffortScenario, ASideWithoutSecurityGetsThePlainMediaOnly) {
  cSdpNegotiator offer = parsedObject(twoMLines);
  RemovedRecord removed;
  EXPECT_EQ(offer.sdpDisableSRTPMedia(removed.data(), NON_SUPPORTED_ALL_SECURE), 0);
  expectTimedBody(offer, alice() + plainAudio + plainVideo);
  removed.expect({2, 25 + 4}, 28);
  EXPECT_EQ(offer.getSdpBestEffortSrtpType(), SECURITY_RTP_ONLY);
  EXPECT_FALSE(offer.isSecureCall());

  cSdpNegotiator answer = parsedObject(bob() + "m=audio 7000 RTP/AVP 0\r\nm=video 7002 RTP/AVP 34\r\n");
  EXPECT_EQ(answer.sdpReplaceTransportProtocol(removed.data(), true), 0);
  expectTimedBody(answer, bob() +
                              "m=audio 7000 RTP/AVP 0\r\nm=audio 0 RTP/SAVP 0\r\n"
                              "m=video 7002 RTP/AVP 34\r\nm=video 0 RTP/SAVP 31\r\n");

  // Of an answer what was refused may go again.
  answer.sdpRemoveMlinesZeroPort();
  expectTimedBody(answer, bob() + "m=audio 7000 RTP/AVP 0\r\nm=video 7002 RTP/AVP 34\r\n");
}

TEST(BestEffortScenario, KeysOfOneKindGoAndTheOthersStay) {
  const std::string mikey = "a=key-mgmt:mikey AQAFgM0XflABAAAAAAAAAAAAAAsAyO\r\n";
  cSdpNegotiator offer = parsedObject(alice() + secureAudio + mikey);
  RemovedRecord removed;
  EXPECT_EQ(offer.sdpDisableSRTPMedia(removed.data(), NON_SUPPORTED_SDES), 0);
  expectBody(offer, alice() + "m=audio 5004 RTP/SAVP 0\r\n" + mikey);
  removed.expect({}, 28);
  EXPECT_TRUE(offer.isMikeyPresent());
  EXPECT_FALSE(offer.isSDESPresent());
  // Without the other kind the m-line itself goes; what is left has no media.
  EXPECT_EQ(offer.sdpDisableSRTPMedia(removed.data(), NON_SUPPORTED_MIKEY), 0);
  removed.expect({1}, 28);
  EXPECT_EQ(textOf(offer).find("m="), std::string::npos);
}

struct AnatCase {
  const char* name;
  eIPAddressVersion version;
  std::string offered4;  ///< transport of the IPv4 m-line
  std::string offered6;
  int code;           ///< of the m-line that goes
  std::string left;   ///< of the offer
  std::string group;  ///< of the answer that gets an m-line back
  std::string media;  ///< with a mid line each
};

TEST(AnatScenario, MediaOfOneVersionGoAndComeBackInTheAnswer) {
  const std::string head = "v=0\r\no=alice 100 1 IN IP4 192.0.2.10\r\ns=-\r\nt=0 0\r\n";
  const std::string behind4 = " 0\r\nc=IN IP4 192.0.2.10\r\na=mid:2\r\n";
  const std::string behind6 = " 0\r\nc=IN IP6 2001:db8::10\r\na=mid:1\r\n";
  const AnatCase cases[] = {
      {"the first goes", IP_VERSION_6, "RTP/AVP", "RTP/AVP", 1, "m=audio 5006 RTP/AVP" + behind4,
       "a=group:ANAT 2\r\n", "m=audio 0 RTP/AVP 0\r\na=mid:1\r\nm=audio 6000 RTP/AVP 0\r\na=mid:2\r\n"},
      {"the second goes", IP_VERSION_4, "RTP/AVP", "RTP/AVP", 2, "m=audio 5004 RTP/AVP" + behind6,
       "a=group:ANAT 1\r\n", "m=audio 6000 RTP/AVP 0\r\na=mid:1\r\nm=audio 0 RTP/AVP 0\r\na=mid:2\r\n"},
      {"a secure one comes back secure", IP_VERSION_6, "RTP/AVP", "RTP/SAVP", 1 + 128,
       "m=audio 5006 RTP/AVP" + behind4, "a=group:ANAT 2\r\n",
       "m=audio 0 RTP/SAVP 0\r\na=mid:1\r\nm=audio 6000 RTP/AVP 0\r\na=mid:2\r\n"},
  };
  for (const AnatCase& each : cases) {
    SCOPED_TRACE(each.name);
    cSdpNegotiator offer = parsedObject(head + "a=group:ANAT 1 2\r\nm=audio 5004 " + each.offered6 + behind6 +
                                        "m=audio 5006 " + each.offered4 + behind4);
    EXPECT_TRUE(offer.isAnatPresent());
    RemovedRecord removed;
    EXPECT_EQ(offer.sdpRemoveANAT(each.version, removed.data(), false), 0);
    expectBody(offer, head + each.left);
    removed.expect({each.code}, 26);
    EXPECT_FALSE(offer.isAnatPresent());

    cSdpNegotiator answer = parsedObject(bob() + "m=audio 6000 RTP/AVP 0\r\n");
    EXPECT_EQ(answer.sdpReInsertANAT(removed.data(), false), 0);
    expectBody(answer, bob() + each.group + each.media);
    EXPECT_TRUE(answer.isAnatPresent());
  }
}

TEST(AnatScenario, TheOLineIsMadeAnewWhereThatIsWanted) {
  const std::string head = "v=0\r\no=alice 100 1 IN IP4 192.0.2.10\r\ns=-\r\nt=0 0\r\n";
  const std::string media4 = "m=audio 5006 RTP/AVP 0\r\nc=IN IP4 192.0.2.10\r\na=mid:2\r\n";
  const std::string group = "a=group:ANAT 1 2\r\n";
  cSdpNegotiator offer =
      parsedObject(head + group + "m=audio 5004 RTP/AVP 0\r\nc=IN IP6 2001:db8::10\r\na=mid:1\r\n" + media4);
  RemovedRecord removed;
  EXPECT_EQ(offer.sdpRemoveANAT(IP_VERSION_6, removed.data(), true), 0);
  expectTimedBody(offer, head + media4);
  cSdpNegotiator answer = parsedObject(bob() + "m=audio 6000 RTP/AVP 0\r\n");
  EXPECT_EQ(answer.sdpReInsertANAT(removed.data(), true), 0);
  expectTimedBody(answer, bob() +
                              "a=group:ANAT 2\r\nm=audio 0 RTP/AVP 0\r\na=mid:1\r\n"
                              "m=audio 6000 RTP/AVP 0\r\na=mid:2\r\n");
}

}  // namespace
