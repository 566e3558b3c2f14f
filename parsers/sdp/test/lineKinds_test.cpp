#include <cstdio>

#include "codecTestSupport.h"

// What each line kind gives.

namespace {

TEST(LineKinds, SessionLinesAreHeld) {
  const Decoded d(
      "v=0\r\no=jdoe 2890844526 2890842807 IN IP6 2001:db8::1\r\ns=A name\r\ni=Some words\r\nu=http://x.example/\r\n"
      "e=a@x.example\r\ne=b@x.example\r\np=+44 1\r\nc=IN IP4 192.0.2.9\r\nb=AS:128\r\nt=1 2\r\nr=7d 1h 0\r\nt=3 4\r\n"
      "z=5 -1h\r\nk=clear:x\r\na=recvonly\r\n");
  ASSERT_EQ(d.status, 0) << d.error;
  EXPECT_STREQ(d->vLine.text, "0");
  EXPECT_STREQ(d->sLine.text, "A name");
  EXPECT_STREQ(d->iLine.text, "Some words");
  EXPECT_STREQ(d->uLine.text, "http://x.example/");
  EXPECT_EQ(d->eLine.count, 2);
  EXPECT_STREQ(d->eLine.entries[1].text, "b@x.example");
  EXPECT_STREQ(d->pLine.entries[0].text, "+44 1");
  EXPECT_EQ(d->tLine.count, 2);
  EXPECT_STREQ(d->tLine.entries[1].text, "3 4");
  EXPECT_STREQ(d->rLine.entries[0].text, "7d 1h 0");
  EXPECT_EQ(d->rLine.entries[0].time, 0);
  EXPECT_STREQ(d->zLine.text, "5 -1h");
  EXPECT_STREQ(d->kLine.text, "clear:x");
  EXPECT_EQ(d->noOfMDs, 0);
  EXPECT_EQ(d->mediaKinds, 0U);
  EXPECT_TRUE(d.complete());
  EXPECT_EQ(d->linePresence, SDP_HAS_I_LINE | SDP_HAS_C_LINE | SDP_HAS_B_LINE | SDP_HAS_K_LINE |
                                 SDP_HAS_A_LINE | SDP_HAS_V_LINE | SDP_HAS_O_LINE | SDP_HAS_S_LINE |
                                 SDP_HAS_U_LINE | SDP_HAS_E_LINE | SDP_HAS_P_LINE | SDP_HAS_T_LINE |
                                 SDP_HAS_R_LINE | SDP_HAS_Z_LINE);
}

TEST(LineKinds, PresenceSetsUseTwoForConnectionsAndSixteenForAttributes) {
  const Decoded d(kHead +
                  "c=IN IP4 192.0.2.9\r\nm=audio 5004 RTP/AVP 0\r\na=x\r\nm=audio 5006 RTP/AVP 0\r\n");
  ASSERT_EQ(d.status, 0);
  EXPECT_EQ(d->linePresence & 2U, 2U);
  EXPECT_EQ(d->linePresence & 16U, 0U);
  EXPECT_EQ(d->media[0].linePresence, 16U);
  EXPECT_EQ(d->media[1].linePresence, 0U);
}

TEST(LineKinds, OriginFieldsAreTexts) {
  Decoded d("v=0\r\no=jdoe 28908445260000000000 -7 IN IP6 2001:db8::1\r\n");
  ASSERT_EQ(d.status, 0);
  o_line* o = &d.get()->oLine;
  EXPECT_STREQ(sdp_OgetUserName(o), "jdoe");
  EXPECT_STREQ(sdp_OgetSessionId(o), "28908445260000000000");
  EXPECT_STREQ(sdp_OgetSessionVersion(o), "-7");
  EXPECT_STREQ(sdp_OgetNetworkType(o), "IN");
  EXPECT_STREQ(sdp_OgetAddressType(o), "IP6");
  EXPECT_STREQ(sdp_OgetAddress(o), "2001:db8::1");
}

TEST(LineKinds, OriginAddressIsAllBehindTheFifthBlank) {
  Decoded d("v=0\r\no=- 1 2 IN IP4 192.0.2.1 and more  words \r\n");
  ASSERT_EQ(d.status, 0);
  EXPECT_STREQ(sdp_OgetAddress(&d.get()->oLine), "192.0.2.1 and more  words");
  EXPECT_EQ(encoded(*d), "v=0\r\no=- 1 2 IN IP4 192.0.2.1 and more  words\r\n");
}

TEST(LineKinds, OriginGettersGiveNullWithoutOrigin) {
  Decoded d("v=0\r\ns=-\r\n");
  ASSERT_EQ(d.status, 0);
  const o_line* o = &d->oLine;
  for (const auto get : {sdp_OgetUserName, sdp_OgetSessionId, sdp_OgetSessionVersion, sdp_OgetNetworkType,
                         sdp_OgetAddressType, sdp_OgetAddress}) {
    EXPECT_EQ(get(o), nullptr);
    EXPECT_EQ(get(nullptr), nullptr);
  }
}

TEST(LineKinds, MediaLineFields) {
  Decoded d(kHead + "m=audio 49170/2 RTP/SAVP 0 8 telephone\r\n");
  ASSERT_EQ(d.status, 0);
  const m_line* m = &d->media[0].mLine;
  EXPECT_EQ(m->mediaType, MEDIA_AUDIO);
  EXPECT_STREQ(m->media, "audio");
  EXPECT_STREQ(sdp_MgetPort(m), "49170");
  EXPECT_STREQ(m->portSuffix, "/2");
  EXPECT_STREQ(sdp_MgetTransport(m), "RTP/SAVP");
  ASSERT_EQ(sdp_MgetNoOfFormats(m), 3);
  EXPECT_STREQ(sdp_MgetFormat(m, 2), "telephone");
  EXPECT_EQ(sdp_MgetFormat(m, 3), nullptr);
  EXPECT_EQ(sdp_MgetFormat(m, -1), nullptr);
}

TEST(LineKinds, MediaKindsByName) {
  const struct {
    const char* name;
    unsigned int type;
  } cases[] = {{"audio", 1}, {"video", 2}, {"message", 4}, {"image", 8},  {"application", 16},
               {"text", 32}, {"Audio", 0}, {"audi", 0},    {"audio2", 0}, {"x-data", 0}};
  for (const auto& one : cases) {
    const Decoded d(kHead + "m=" + one.name + " 5004 RTP/AVP 0\r\n");
    ASSERT_EQ(d.status, 0) << one.name;
    EXPECT_EQ(d->media[0].mLine.mediaType, one.type) << one.name;
    EXPECT_STREQ(d->media[0].mLine.media, one.name);
  }
}

TEST(LineKinds, PortsAreKeptAsText) {
  for (const char* port :
       {"0", "9", "80", "65535", "65536", "70000", "4294967296", "99999999999999999999", "5004x"}) {
    const Decoded d(kHead + "m=audio " + port + " RTP/AVP 0\r\n");
    ASSERT_EQ(d.status, 0) << port;
    EXPECT_STREQ(d->media[0].mLine.port, port);
    EXPECT_STREQ(d->media[0].mLine.portSuffix, "");
  }
  for (const char* suffix : {"/", "/2", "/99999999999", "/a/b"}) {
    const Decoded d(kHead + "m=audio 5004" + suffix + " RTP/AVP 0\r\n");
    ASSERT_EQ(d.status, 0) << suffix;
    EXPECT_STREQ(d->media[0].mLine.port, "5004");
    EXPECT_STREQ(d->media[0].mLine.portSuffix, suffix);
  }
}

TEST(LineKinds, RejectedMediaMayHaveNoFormats) {
  const Decoded d(kHead + "m=video 0 RTP/AVP\r\n");
  ASSERT_EQ(d.status, 0);
  EXPECT_EQ(sdp_MgetNoOfFormats(&d->media[0].mLine), 0);
  EXPECT_EQ(encoded(*d), kHead + "m=video 0 RTP/AVP\r\n");
}

TEST(LineKinds, FieldsMayBeSeparatedBySeveralBlanksAndTabs) {
  const Decoded d(
      "v=0\r\no= -  1\t2 IN  IP4 192.0.2.1 \r\nc=IN\tIP4  192.0.2.1  \r\nm= audio  5004 \tRTP/AVP 0  8 \r\n");
  ASSERT_EQ(d.status, 0) << d.error;
  EXPECT_EQ(encoded(*d),
            "v=0\r\no=- 1 2 IN IP4 192.0.2.1\r\nc=IN IP4 192.0.2.1\r\nm=audio 5004 RTP/AVP 0 8\r\n");
}

TEST(LineKinds, ConnectionLinesKeepAMulticastSuffixBesideTheAddress) {
  const Decoded d(kHead +
                  "c=IN IP4 224.2.1.1/127\r\nc=IN IP6 FF15::101/3\r\nc=TN RFC2543 +1-201-406-4090\r\n");
  ASSERT_EQ(d.status, 0);
  const c_line* c = &d->cLine;
  ASSERT_EQ(sdp_CgetNoOfCs(c), 3);
  EXPECT_STREQ(sdp_CgetAddress(c, 0), "224.2.1.1");
  EXPECT_STREQ(c->entries[0].suffix, "/127");
  EXPECT_STREQ(sdp_CgetAddressType(c, 1), "IP6");
  EXPECT_STREQ(sdp_CgetAddress(c, 1), "FF15::101");
  EXPECT_STREQ(c->entries[1].suffix, "/3");
  EXPECT_STREQ(c->entries[2].networkType, "TN");
  EXPECT_EQ(sdp_CgetAddress(c, 3), nullptr);
  EXPECT_EQ(sdp_CgetAddress(c, -1), nullptr);
  EXPECT_EQ(sdp_CgetAddressType(c, 3), nullptr);
  EXPECT_EQ(encoded(*d),
            kHead + "c=IN IP4 224.2.1.1/127\r\nc=IN IP6 FF15::101/3\r\nc=TN RFC2543 +1-201-406-4090\r\n");
}

TEST(LineKinds, BandwidthIsTheFirstLinesAndSaturates) {
  const struct {
    const char* lines;
    unsigned int value;
  } cases[] = {{"", 0},
               {"b=AS:64\r\n", 64},
               {"b=AS:64\r\nb=TIAS:64000\r\n", 64},
               {"b=AS:0\r\n", 0},
               {"b=AS:4294967295\r\n", 4294967295U},
               {"b=AS:4294967296\r\n", 4294967295U},
               {"b=AS:99999999999999999999999999\r\n", 4294967295U},
               {"b=X-other:007\r\n", 7}};
  for (const auto& one : cases) {
    const Decoded d(kHead + "m=audio 5004 RTP/AVP 0\r\n" + one.lines);
    ASSERT_EQ(d.status, 0) << d.error;
    EXPECT_EQ(sdp_BgetBandwidthValue(&d->media[0].bLine), one.value) << one.lines;
    EXPECT_EQ(encoded(*d), kHead + "m=audio 5004 RTP/AVP 0\r\n" + one.lines);
  }
}

TEST(LineKinds, BlanksAroundABandwidthNumberAreNotKept) {
  const Decoded d(kHead + "b=AS: 64 \r\n");
  ASSERT_EQ(d.status, 0);
  EXPECT_EQ(sdp_BgetBandwidthValue(&d->bLine), 64U);
  EXPECT_EQ(encoded(*d), kHead + "b=AS:64\r\n");
}

TEST(LineKinds, AttributesWithAndWithoutValues) {
  const Decoded d(kHead + "a=flag\r\na=empty:\r\na=rtpmap:0 PCMU/8000:x\r\na=\r\na=:v\r\n");
  ASSERT_EQ(d.status, 0);
  const a_line* a = &d->aLine;
  ASSERT_EQ(sdp_AgetNoOfAs(a), 5);
  EXPECT_STREQ(sdp_AgetAttributeField(a, 0), "flag");
  EXPECT_EQ(sdp_AgetAttributeValue(a, 0), nullptr);
  EXPECT_STREQ(sdp_AgetAttributeValue(a, 1), "");
  EXPECT_STREQ(sdp_AgetAttributeField(a, 2), "rtpmap");
  EXPECT_STREQ(sdp_AgetAttributeValue(a, 2), "0 PCMU/8000:x");
  EXPECT_STREQ(sdp_AgetAttributeField(a, 3), "");
  EXPECT_EQ(sdp_AgetAttributeField(a, 5), nullptr);
  EXPECT_EQ(sdp_AgetAttributeField(a, -1), nullptr);
  EXPECT_EQ(sdp_AgetAttributeValue(a, 5), nullptr);
  EXPECT_STREQ(sdp_AfindAttribute(a, "flag"), "");
  EXPECT_STREQ(sdp_AfindAttribute(a, "rtpmap"), "0 PCMU/8000:x");
  EXPECT_EQ(sdp_AfindAttribute(a, "rtpma"), nullptr);
  EXPECT_EQ(sdp_AfindAttribute(a, nullptr), nullptr);
  EXPECT_EQ(encoded(*d), kHead + "a=flag\r\na=empty:\r\na=rtpmap:0 PCMU/8000:x\r\na=\r\na=:v\r\n");
}

TEST(LineKinds, AnAttributeWrittenByHandKeepsItsValue) {
  Decoded d(kHead + "a=flag\r\n");
  a_line& a = d.get()->aLine;
  std::snprintf(a.entries[0].value, sizeof a.entries[0].value, "now");
  EXPECT_STREQ(sdp_AgetAttributeValue(&a, 0), "now");
  EXPECT_EQ(encoded(*d), kHead + "a=flag:now\r\n");
}

TEST(LineKinds, AChangedBandwidthIsWrittenWithItsNewValue) {
  Decoded d(kHead + "b=AS:0064\r\n");
  d.get()->bLine.entries[0].value = 4294967295U;
  EXPECT_EQ(encoded(*d), kHead + "b=AS:4294967295\r\n");
}

TEST(LineKinds, SessionLinesMayStandInAnyOrder) {
  const Decoded d("v=0\r\ns=x\r\nt=0 0\r\no=- 1 1 IN IP4 192.0.2.1\r\nc=IN IP4 192.0.2.1\r\n");
  ASSERT_EQ(d.status, 0);
  EXPECT_EQ(encoded(*d), "v=0\r\no=- 1 1 IN IP4 192.0.2.1\r\ns=x\r\nc=IN IP4 192.0.2.1\r\nt=0 0\r\n");
}

TEST(LineKinds, SessionLinesBehindMediaStayTheSessions) {
  const Decoded d("v=0\r\nm=audio 5004 RTP/AVP 0\r\na=x\r\no=- 1 1 IN IP4 192.0.2.1\r\nt=0 0\r\na=y\r\n");
  ASSERT_EQ(d.status, 0);
  EXPECT_TRUE(d.complete());
  EXPECT_EQ(encoded(*d),
            "v=0\r\no=- 1 1 IN IP4 192.0.2.1\r\nt=0 0\r\nm=audio 5004 RTP/AVP 0\r\na=x\r\na=y\r\n");
}

TEST(LineKinds, RepeatsKeepTheirTimeLine) {
  const std::string body = "v=0\r\nr=before\r\nt=1 2\r\nr=a\r\nr=b\r\nt=3 4\r\nt=5 6\r\nr=c\r\n";
  EXPECT_EQ(encoded(*Decoded(body)), body);
}

TEST(LineKinds, UnknownLettersAndRepeatedSingleLinesAreLeftOut) {
  for (const char* extra : {"q=1\r\n", "Y=3\r\n", "s=again\r\n", "v=1\r\n", "o=- 9 9 IN IP4 192.0.2.9\r\n"}) {
    const Decoded d(kHead + extra);
    ASSERT_EQ(d.status, 0) << extra << d.error;
    EXPECT_FALSE(d.complete()) << extra;
    EXPECT_EQ(encoded(*d), kHead) << extra;
    EXPECT_EQ(d.oLineStart, 5);
  }
}

TEST(LineKinds, LinesOfAMediaDescriptionStayInIt) {
  const std::string body =
      kHead +
      "m=audio 5004 RTP/AVP 0\r\ni=words\r\nc=IN IP4 192.0.2.2\r\nb=AS:1\r\nk=prompt\r\na=x\r\n"
      "m=video 5006 RTP/AVP 96\r\na=y:1\r\n";
  const Decoded d(body);
  ASSERT_EQ(d.status, 0);
  EXPECT_EQ(sdp_getNoOfMDs(d.get()), 2);
  EXPECT_EQ(d->cLine.count, 0);
  EXPECT_STREQ(d->media[0].iLine.text, "words");
  EXPECT_STREQ(d->media[0].kLine.text, "prompt");
  EXPECT_EQ(d->media[1].cLine.count, 0);
  EXPECT_EQ(encoded(*d), body);
}

}  // namespace
