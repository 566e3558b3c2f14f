#include "requestTestSupport.h"

// How a body secures its media.

namespace {

const std::string plainAudio = "m=audio 5004 RTP/AVP 0\r\n";
const std::string secureAudio = "m=audio 5006 RTP/SAVP 0\r\n";
const std::string crypto =
    "a=crypto:1 AES_CM_128_HMAC_SHA1_80 inline:WVNfX19zZW1jdGwgKCkgewkyMjA7fQp9CnVubGVz\r\n";

struct Security {
  const char* name;
  std::string media;
  eSecurityType type;
};

const Security bodies[] = {
    {"no m-line", "", SECURITY_NONE},
    {"another transport", "m=image 5004 udptl t38\r\n" + crypto, SECURITY_NONE},
    {"plain", plainAudio, SECURITY_RTP_ONLY},
    {"plain with feedback", "m=audio 5004 RTP/AVPF 0\r\n", SECURITY_RTP_ONLY},
    {"secure", secureAudio, SECURITY_SRTP_ONLY},
    {"secure with keys", secureAudio + crypto, SECURITY_SRTP_ONLY},
    {"secure with feedback", "m=audio 5004 UDP/TLS/RTP/SAVPF 0\r\na=setup:actpass\r\n", SECURITY_SRTP_ONLY},
    {"secure with keys and plain", secureAudio + crypto + plainAudio, SECURITY_BOTH},
    {"plain and secure", plainAudio + secureAudio, SECURITY_BOTH},
    {"plain with SDES", plainAudio + crypto, SECURITY_BOTH},
    {"plain with a DTLS role", plainAudio + "a=setup:actpass\r\n", SECURITY_BOTH},
    {"plain with a fingerprint", plainAudio + "a=fingerprint:sha-256 4A:AD\r\n", SECURITY_BOTH},
    {"plain with MIKEY", plainAudio + "a=key-mgmt:mikey AQAF\r\n", SECURITY_BOTH},
    // Deliberate: the text is searched as it is, wherever and in whatever line.
    {"plain with keys in capitals", plainAudio + "a=CRYPTO:1 AES_CM_128_HMAC_SHA1_80 inline:WV\r\n",
     SECURITY_RTP_ONLY},
    {"profiles in capitals only", "m=audio 5004 rtp/avp 0\r\n", SECURITY_NONE},
    {"a profile within a value", "a=note:RTP/AVP\r\n", SECURITY_RTP_ONLY},
    {"keys within a value", plainAudio + "a=note:a=crypto\r\n", SECURITY_BOTH},
};

TEST(SecurityType, IsToldByProfilesAndAttributes) {
  for (const Security& each : bodies) {
    for (const std::string& text : {session + each.media, padded(session + each.media)}) {
      const cSdpNegotiator object = objectWithText(text);
      EXPECT_EQ(tracesOf([&] { EXPECT_EQ(object.getSdpSecurityType(), each.type) << each.name; }), Traces{});
    }
  }
}

TEST(SecurityType, OfAnEmptyObjectIsNone) { EXPECT_EQ(emptyObject().getSdpSecurityType(), SECURITY_NONE); }

TEST(SecurityType, OfADamagedTextIsToldByWhatCanBeExpanded) {
  Record none(objectWithText(padded(session + plainAudio)));
  none.raw[0] = '\0';
  EXPECT_EQ(none.object().getSdpSecurityType(), SECURITY_NONE);
  EXPECT_EQ(parsedObject(paddedTo(20480)).getSdpSecurityType(), SECURITY_RTP_ONLY);
}

struct Presence {
  const char* line;
  bool dtls;
  bool preconditions;
};

const Presence lines[] = {
    {"", false, false},
    {"a=setup:active\r\n", true, false},
    {"a=setup\r\n", true, false},
    {"a=fingerprint:sha-1 4A\r\n", true, false},
    {"a=note:a=fingerprint\r\n", true, false},
    {"a=tls-id:abc\r\n", false, false},
    {"a=SETUP:active\r\n", false, false},
    {"a=curr:qos local none\r\n", false, true},
    {"a=des:qos mandatory local sendrecv\r\n", false, true},
    {"a=conf:qos remote sendrecv\r\n", false, true},
    {"a=note:a=des:\r\n", false, true},
    {"a=curr\r\na=des\r\na=conf\r\n", false, false},
    {"a=Curr:qos local none\r\n", false, false},
};

TEST(SecurityQueries, SearchTheText) {
  for (const Presence& each : lines) {
    for (const std::string& text : {audioBody() + each.line, padded(audioBody() + each.line)}) {
      const cSdpNegotiator object = objectWithText(text);
      EXPECT_EQ(object.isDTLSPresent(), each.dtls) << each.line;
      EXPECT_EQ(object.sdpPreconditionsExist(), each.preconditions) << each.line;
    }
  }
  EXPECT_FALSE(emptyObject().isDTLSPresent());
  EXPECT_FALSE(emptyObject().sdpPreconditionsExist());
}

const TraceLine dtlsRequest{1, 1, "Request to remove DTLS secure attributes."};
const TraceLine dtlsPresent{8, 4, "DTLS media attributes are present and will be removed from the SDP."};
const TraceLine dtlsAbsent{8, 4, "No DTLS security in SDP. There is nothing to remove."};

const std::string dtls = "a=setup:actpass\r\na=fingerprint:sha-256 4A:AD:B9\r\n";

const RequestCase removeDtls = {
    "RemoveDtls",
    [](cSdpNegotiator& o) { return o.sdpRemoveDTLSAttributes(); },
    sdpModifications::sdpRemoveDTLSAttributes,
    session + dtls + plainAudio + dtls + "a=ptime:20\r\n",
    session + plainAudio + "a=ptime:20\r\n",
    {dtlsRequest, dtlsPresent},
};

TEST(DtlsRemoval, EditsTheTextAndParsesItAgain) { expectEditedAndParsed(removeDtls); }

TEST(DtlsRemoval, WithoutSuchAttributesFails) {
  for (const cSdpNegotiator& before : {emptyObject(), parsedObject(audioBody())}) {
    cSdpNegotiator object = before;
    EXPECT_EQ(tracesOf([&] { EXPECT_EQ(object.sdpRemoveDTLSAttributes(), 1); }),
              (Traces{dtlsRequest, dtlsAbsent}));
    EXPECT_TRUE(sameBytes(object, before));
  }
}

TEST(DtlsRemoval, OfATextThatCannotBeReadFails) {
  const cSdpNegotiator before = parsedObject(paddedTo(20480, audioBody() + dtls));
  cSdpNegotiator object = before;
  EXPECT_EQ(tracesOf([&] { EXPECT_EQ(object.sdpRemoveDTLSAttributes(), 1); }),
            (Traces{dtlsRequest, dtlsPresent, buildingText}));
  EXPECT_TRUE(sameBytes(object, before));
}

// Deliberate: what the parse makes of the rest does not count.
TEST(DtlsRemoval, SucceedsAlsoWhenTheTextDoesNotParseOrCannotBeStored) {
  for (cSdpNegotiator object :
       {objectWithText("no body\r\na=setup:active\r\n"), objectHardToStore(removeDtls.before)}) {
    EXPECT_EQ(object.sdpRemoveDTLSAttributes(), 0);
    EXPECT_TRUE(sameBytes(object, emptyObject()));
  }
}

// Deliberate: the query finds an attribute without a value, which the removal leaves.
TEST(DtlsRemoval, LeavesAnAttributeWithoutValue) {
  const std::string text = audioBody() + "a=setup\r\n";
  cSdpNegotiator object = parsedObject(text);
  EXPECT_EQ(object.sdpRemoveDTLSAttributes(), 0);
  EXPECT_TRUE(sameBytes(object, parsedObject(text)));
}

}  // namespace
