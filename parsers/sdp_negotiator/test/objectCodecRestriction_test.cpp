#include <string>

#include "objectTestSupport.h"

// What a restriction to audio codecs leaves in the summary beside the codecs.

namespace {

constexpr unsigned char kPcmaAlone[] = {1};

TEST(RestrictedBody, HasTheSessionsAttributesInAMediumThatIsLeftWithoutAny) {
  const std::string session = sessionLines() + "a=ptime:30\r\na=sendonly\r\n";
  const std::string opus = "a=rtpmap:97 opus/48000/2\r\na=fmtp:97 useinbandfec=1\r\n";
  for (const bool reorder : {false, true}) {
    cSdpNegotiator object = parsedObject(session + "m=audio 5004 RTP/AVP 97 8\r\n" + opus);
    EXPECT_EQ(object.getParsedData().packetizationPeriod[0], SDP_PACKETIZATION_NOT_SET);
    EXPECT_EQ(object.sdpRestrictAudioCodecsTo(kPcmaAlone, 1, reorder), 1);
    EXPECT_EQ(textOf(object), session + "m=audio 5004 RTP/AVP 8\r\n");
    EXPECT_EQ(object.getParsedData().packetizationPeriod[0], 30);
    EXPECT_EQ(object.getParsedData().packetizationPeriod[1], SDP_PACKETIZATION_NOT_SET);
    EXPECT_EQ(object.getParsedData().sessionMode, CONNECTION_MODE_SENDONLY);
    EXPECT_EQ(object.getParsedData().audioCodec[0], 1);
    EXPECT_EQ(object.getParsedData().audioCodec[1], SDP_NO_CODEC);
  }
}

TEST(RestrictedBody, HasItsOLineWhereTheNewTextHasIt) {
  const std::string origin = "o=alice 1 1 IN IP4 192.0.2.9\r\n";
  const std::string media = "m=audio 5004 RTP/AVP 0 8\r\n";
  // The codec writes the o-line behind the v-line, wherever it stood.
  cSdpNegotiator object =
      parsedObject("v=0\r\ns=a name\r\n" + origin + "c=IN IP4 192.0.2.1\r\nt=0 0\r\n" + media);
  EXPECT_EQ(object.getParsedData().oLineStart, 15);
  EXPECT_EQ(object.sdpRestrictAudioCodecsTo(kPcmaAlone, 1, false), 1);
  EXPECT_EQ(textOf(object),
            "v=0\r\n" + origin + "s=a name\r\nc=IN IP4 192.0.2.1\r\nt=0 0\r\nm=audio 5004 RTP/AVP 8\r\n");
  EXPECT_EQ(object.getParsedData().oLineStart, 5);
  EXPECT_EQ(object.getParsedData().oLineEnd, 5 + origin.size());
  // A body without one has no place for it.
  object = parsedObject("v=0\r\ns=o=b\r\nc=IN IP4 192.0.2.1\r\nt=0 0\r\n" + media);
  EXPECT_EQ(object.sdpRestrictAudioCodecsTo(kPcmaAlone, 1, false), 1);
  EXPECT_EQ(object.getParsedData().oLineStart, 0);
  EXPECT_EQ(object.getParsedData().oLineEnd, 0);
}

}  // namespace
