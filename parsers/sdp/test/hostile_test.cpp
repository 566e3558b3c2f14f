#include "codecTestSupport.h"
#include "testFiles.h"

// Bodies as they have crashed parsers: each gives a clean refusal or the right answer.

namespace {

TEST(HostileBodies, EveryPrefixOfABodyIsRefusedOrAFixedPoint) {
  const std::string body = readBytes(SDP_TEST_SOURCE_DIR "/parsers/sdp/test/bodies/allLineKinds.sdp");
  ASSERT_GT(body.size(), 500U);
  int accepted = 0;
  for (std::size_t length = 0; length <= body.size(); ++length) {
    const Decoded d(body.substr(0, length));
    if (d.status != 0) {
      EXPECT_EQ(d.error.compare(0, 5, "line "), 0) << length;
      continue;
    }
    ++accepted;
    const std::string written = encoded(*d);
    EXPECT_EQ(encoded(*Decoded(written)), written) << length;
  }
  EXPECT_GT(accepted, 400);
}

TEST(HostileBodies, ANulEndsTheTextInEveryKindOfLine) {
  for (const std::string line : {"o=- 1 1 IN IP4 192.0.2.1", "c=IN IP4 192.0.2.1", "m=audio 5004 RTP/AVP 0",
                                 "a=fmtp:101 0-15", "b=AS:64"}) {
    for (std::size_t at = 0; at < line.size(); ++at) {
      std::string text = "v=0\r\n" + line + "\r\na=behind\r\n";
      text[5 + at] = '\0';
      const Decoded d(text);
      EXPECT_EQ(d.status, Decoded(text.c_str()).status);
      EXPECT_EQ(d->aLine.count, d.status == 0 && line[0] == 'a' && at > 1 ? 1 : 0) << line << at;
      EXPECT_EQ(sdp_AfindAttribute(&d->aLine, "behind"), nullptr);
    }
  }
}

TEST(HostileBodies, FormatsBeyondAnyNumberAreKeptAsText) {
  const Decoded d(kHead + "m=audio 17000 RTP/AVP 4294967296 18446744073709551616 -1\r\n");
  ASSERT_EQ(d.status, 0);
  EXPECT_STREQ(sdp_MgetFormat(&d->media[0].mLine, 0), "4294967296");
  EXPECT_STREQ(sdp_MgetFormat(&d->media[0].mLine, 1), "18446744073709551616");
  EXPECT_STREQ(sdp_MgetFormat(&d->media[0].mLine, 2), "-1");
}

TEST(HostileBodies, ALineThatHoldsAnotherLinesPrefixIsOneLine) {
  const std::string body =
      "v=0\r\ns=m=audio 0 RTP/AVP 0\r\ni=(o=IN IP4 192.168.1.100)\r\nk=base64:AAAAm==\r\n"
      "m=audio 5004 RTP/AVP 0\r\na=crypto:1 X inline:QQm==\r\n";
  const Decoded d(body);
  ASSERT_EQ(d.status, 0);
  EXPECT_EQ(d->noOfMDs, 1);
  EXPECT_EQ(sdp_OgetUserName(&d->oLine), nullptr);
  EXPECT_EQ(encoded(*d), body);
}

TEST(HostileBodies, ALineOfSixtyThousandCharactersOfEveryKind) {
  for (const std::string start : {"v=",
                                  "o=",
                                  "s=",
                                  "i=",
                                  "u=",
                                  "e=",
                                  "p=",
                                  "c=",
                                  "b=",
                                  "t=",
                                  "r=",
                                  "z=",
                                  "k=",
                                  "a=",
                                  "m=",
                                  "q=",
                                  "o=- 1 1 IN IP4 ",
                                  "c=IN IP4 ",
                                  "b=AS:1",
                                  "b=",
                                  "a=x:",
                                  "m=audio 1 RTP/AVP "}) {
    for (const char fill : {'x', '9', ' ', ':', '/'}) {
      const Decoded d((start == "v=" ? "" : "v=0\r\n") + start + std::string(60000, fill) + "\r\n");
      if (d.status == 0) {
        const std::string written = encoded(*d);
        EXPECT_LT(written.size(), 3000U);
        EXPECT_EQ(encoded(*Decoded(written)), written) << start << fill;
      } else {
        EXPECT_LT(d.error.size(), static_cast<std::size_t>(SDP_ERROR_TEXT_SIZE));
      }
    }
  }
}

TEST(HostileBodies, AnAddressOfAnotherTypeIsKeptForTheAnalysisToJudge) {
  const Decoded d(kHead + "c=IN IP4 2001:db8::1\r\n");
  ASSERT_EQ(d.status, 0);
  EXPECT_STREQ(sdp_CgetAddressType(&d->cLine, 0), "IP4");
  EXPECT_STREQ(sdp_CgetAddress(&d->cLine, 0), "2001:db8::1");
}

TEST(HostileBodies, EightBitBytesInEveryFieldComeBack) {
  std::string high;
  for (int byte = 0x80; byte < 0x8A; ++byte) high += static_cast<char>(byte);
  const std::string body = "v=" + high + "\r\no=" + high + " " + high + " " + high + " " + high + " " + high +
                           " " + high + "\r\ns=" + high + "\r\nc=" + high + " " + high + " " + high +
                           "\r\nb=" + high + ":1\r\nm=" + high + " 1" + high + " " + high + " " + high +
                           "\r\na=" + high + ":" + high + "\r\n";
  const Decoded d(body);
  ASSERT_EQ(d.status, 0) << d.error;
  EXPECT_TRUE(d.complete());
  EXPECT_EQ(encoded(*d), body);
  for (int byte = 0x80; byte < 0x100; ++byte) {
    EXPECT_EQ(Decoded("v=0\r\n" + std::string(1, static_cast<char>(byte)) + "=1\r\n").status, 1);
  }
}

}  // namespace
