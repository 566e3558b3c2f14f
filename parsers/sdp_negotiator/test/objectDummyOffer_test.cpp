#include "requestTestSupport.h"

// Offers that stand for one to come.

namespace {

const TraceLine creating{8, 4, "Creating a RM dummy SDP."};

struct DummyOffer {
  unsigned int sessionId;
  unsigned int version;
  bool ipv6;
  std::string text;
};

const DummyOffer offers[] = {
    {5, 6, false,
     "v=0\r\no=IRM 5 6 IN IP4 127.0.0.1\r\ns=IRM\r\nc=IN IP4 127.0.0.1\r\nt=0 0\r\n"
     "m=audio 5004 RTP/SAVP 0 8 9 4 18\r\n"},
    {0, 4294967295U, true,
     "v=0\r\no=IRM 0 4294967295 IN IP6 FD00:127::1\r\ns=IRM\r\nc=IN IP6 FD00:127::1\r\nt=0 0\r\n"
     "m=audio 5004 RTP/SAVP 0 8 9 4 18\r\n"},
};

TEST(DummyOffer, ReplacesWhateverTheObjectHeld) {
  for (const DummyOffer& each : offers) {
    for (const cSdpNegotiator& before :
         {emptyObject(), parsedObject(paddedTo(4000)), unreadableObjects().front()}) {
      cSdpNegotiator object = before;
      EXPECT_EQ(tracesOf([&] {
                  EXPECT_EQ(object.sdpCreateRmDummyOffer(each.sessionId, each.version, each.ipv6), 0);
                }),
                Traces{creating} + tracesOfParse(each.text));
      EXPECT_EQ(textOf(object), each.text);
      EXPECT_TRUE(sameBytes(object, parsedObject(each.text)));
    }
  }
}

TEST(DummyOffer, IsRecognisedLater) {
  cSdpNegotiator object = parsedObject(audioBody());
  EXPECT_FALSE(object.isRmDummySdp());
  object.sdpCreateRmDummyOffer(1, 1, false);
  EXPECT_TRUE(object.isRmDummySdp());
  EXPECT_EQ(object.getSdpSecurityType(), SECURITY_SRTP_ONLY);
  EXPECT_EQ(object.getParsedData().port, 5004U);
}

}  // namespace
