#include "requestTestSupport.h"

// Best-effort SRTP of an object's body: its form, and the change from one form to another.

namespace {

using M = sdpModifications;

constexpr std::size_t cleared = 32;

const std::string crypto =
    "a=crypto:1 AES_CM_128_HMAC_SHA1_80 inline:WVNfX19zZW1jdGwgKCkgewkyMjA7fQp9CnVubGVz\r\n";
/// Keys that only a reader of attribute names without regard to case finds.
const std::string capitalCrypto = "a=CRYPTO" + crypto.substr(8);
const std::string plainAudio = "m=audio 5004 RTP/AVP 0\r\n";
const std::string secureAudio = "m=audio 5004 RTP/SAVP 0\r\n" + crypto;
const std::string otherSecureAudio = "m=audio 5006 RTP/SAVP 0\r\n" + crypto;
const std::string plainVideo = "m=video 5008 RTP/AVP 31\r\n";
const std::string secureVideo = "m=video 5008 RTP/SAVP 31\r\n" + crypto;

const TraceLine entering{2, 2, "Entering getSdpBestEffortSrtpType()"};

struct Form {
  const char* name;
  std::string media;
  eSecurityType type;
};

const Form forms[] = {
    {"plain", plainAudio, SECURITY_RTP_ONLY},
    {"plain, two media", plainAudio + plainVideo, SECURITY_RTP_ONLY},
    {"plain, one medium twice", plainAudio + plainAudio, SECURITY_RTP_ONLY},
    {"one m-line with keys", plainAudio + capitalCrypto, BE_SRTP_1m_LINE},
    {"one m-line with keys per medium", plainAudio + capitalCrypto + plainVideo + capitalCrypto,
     BE_SRTP_1m_LINE},
    {"one m-line with keys and another attribute behind", plainAudio + capitalCrypto + "a=ptime:20\r\n",
     SECURITY_RTP_ONLY},
    // Deliberate: "a=crypto" makes a plain body one with both, which is then tried for two m-lines only.
    {"one m-line with keys as they are written", plainAudio + crypto, SRTP_UKNOWN},
    {"one m-line with such keys per medium", plainAudio + crypto + plainVideo + crypto, SRTP_UKNOWN},
    {"secure with keys", secureAudio, SECURITY_SRTP_ONLY},
    {"secure without keys", "m=audio 5004 RTP/SAVP 0\r\n", SRTP_UKNOWN},
    {"secure with keys in capitals", "m=audio 5004 RTP/SAVP 0\r\n" + capitalCrypto, SRTP_UKNOWN},
    {"a plain and a secure m-line", plainAudio + secureAudio, BE_SRTP_2m_LINE},
    {"a secure and a plain m-line", secureAudio + plainAudio, BE_SRTP_2m_LINE},
    {"two m-lines per medium", plainAudio + secureAudio + plainVideo + secureVideo, BE_SRTP_2m_LINE},
    {"three m-lines", plainAudio + secureAudio + plainVideo, SRTP_UKNOWN},
    {"two media", plainAudio + secureVideo, SRTP_UKNOWN},
    {"two m-lines without keys", plainAudio + "m=audio 5006 RTP/SAVP 0\r\n", SRTP_UKNOWN},
    {"neither", "m=image 5004 udptl t38\r\n", SRTP_UKNOWN},
    {"no media", "", SRTP_UKNOWN},
};

TEST(BestEffortType, IsToldBySecurityAndMLines) {
  for (const Form& each : forms) {
    for (const std::string& text : {session + each.media, padded(session + each.media)}) {
      const cSdpNegotiator before = objectWithText(text);
      cSdpNegotiator object = before;
      EXPECT_EQ(object.getSdpBestEffortSrtpType(), each.type) << each.name;
      const Traces traces = tracesOf([&] { object.getSdpBestEffortSrtpType(); });
      ASSERT_GE(traces.size(), 2U);
      EXPECT_EQ(traces[0], entering);
      EXPECT_EQ(traces[1], buildingText);
      EXPECT_TRUE(sameBytes(object, before));
    }
  }
}

TEST(BestEffortType, IsTracedByTheClassifiers) {
  const auto lastTrace = [](const std::string& media) {
    const cSdpNegotiator object = objectWithText(session + media);
    return tracesOf([&] { object.getSdpBestEffortSrtpType(); }).back();
  };
  EXPECT_EQ(lastTrace(plainAudio + capitalCrypto),
            (TraceLine{2, 2, "TestTrace SRTP type is BE_SRTP_1m_LINE"}));
  EXPECT_EQ(lastTrace(plainAudio), (TraceLine{2, 2, "TestTrace SRTP type is SRTP_UKNOWN"}));
  EXPECT_EQ(lastTrace(plainAudio + secureAudio), (TraceLine{2, 2, "Return Best Effort SRTP type = 5"}));
  EXPECT_EQ(lastTrace(plainAudio + crypto),
            (TraceLine{2, 2, "The Best Effort SRTP type is SRTP_UKNOWN due to non odd number of m-lines"}));
  EXPECT_EQ(lastTrace(secureAudio), buildingText);
}

TEST(BestEffortType, OfAnEmptyObjectIsUnknown) {
  const cSdpNegotiator object = emptyObject();
  EXPECT_EQ(tracesOf([&] { EXPECT_EQ(object.getSdpBestEffortSrtpType(), SRTP_UKNOWN); }),
            (Traces{entering, buildingText, textIsEmpty}));
}

TEST(BestEffortType, OfATextThatTheCodecRefusesIsUnknown) {
  for (const char* text : {"RTP/AVP", "RTP/SAVP a=crypto"}) {
    EXPECT_EQ(objectWithText(text).getSdpBestEffortSrtpType(), SRTP_UKNOWN) << text;
  }
}

// A text that cannot be expanded counts as one without m-lines.
TEST(BestEffortType, OfATextThatCannotBeReadIsToldByItsSecurityAlone) {
  const std::pair<std::string, eSecurityType> cases[] = {{plainAudio + capitalCrypto, SECURITY_RTP_ONLY},
                                                         {secureAudio, SECURITY_SRTP_ONLY},
                                                         {plainAudio + secureAudio, SRTP_UKNOWN}};
  for (const auto& [media, type] : cases) {
    const cSdpNegotiator object = objectWithText(paddedTo(20480, session + media));
    EXPECT_EQ(object.getSdpBestEffortSrtpType(), type) << media;
  }
}

RequestCase change(const std::string& name, eSecurityType from, eSecurityType to, const std::string& before,
                   const std::string& after) {
  return {name,
          [=](cSdpNegotiator& o) {
            RemovedRecord removed;
            return o.sdpChangeSdpType(from, to, removed.data());
          },
          [=](char* text) {
            char removed[cleared] = {};
            unsigned short oLineEnd = 0;
            return M::sdpChangeSdpType(text, from, to, removed, oLineEnd);
          },
          before,
          after,
          {{2, 2, "Entering sdpChangeSrtpType()"}}};
}

const std::string twoMLines = session + plainAudio + secureAudio + plainVideo + secureVideo;
const std::string otherPorts = session + plainAudio + otherSecureAudio;

std::vector<RequestCase> changes() {
  return {
      change("ToOneMLine", BE_SRTP_2m_LINE, BE_SRTP_1m_LINE, twoMLines,
             session + plainAudio + crypto + plainVideo + crypto),
      change("ToOneMLineWithOtherPorts", BE_SRTP_2m_LINE, BE_SRTP_1m_LINE, otherPorts,
             session + otherSecureAudio),
      change("ToSecure", BE_SRTP_2m_LINE, SECURITY_SRTP_ONLY, twoMLines, session + secureAudio + secureVideo),
      change("ToPlain", BE_SRTP_2m_LINE, SECURITY_RTP_ONLY, twoMLines, twoMLines),
      change("FromBoth", SECURITY_BOTH, BE_SRTP_1m_LINE, twoMLines, twoMLines),
      change("FromOneMLine", BE_SRTP_1m_LINE, SECURITY_SRTP_ONLY, twoMLines, twoMLines),
      change("FromAnotherValue", static_cast<eSecurityType>(77), static_cast<eSecurityType>(-1), twoMLines,
             twoMLines),
  };
}

class TypeChange : public testing::TestWithParam<RequestCase> {};

TEST_P(TypeChange, EditsTheTextAndParsesItAgain) { expectEditedAndParsed(GetParam()); }
TEST_P(TypeChange, FailsWithoutATextThatCanBeRead) { expectFailsWithoutText(GetParam()); }
// Deliberate: the status is the edit's, whatever the parse says.
TEST_P(TypeChange, LeavesTheObjectEmptyWhenTheTextCannotBeStored) {
  expectEmptiedWhenNotStored(GetParam(), 0);
}

INSTANTIATE_TEST_SUITE_P(Changes, TypeChange, testing::ValuesIn(changes()), caseName);

TEST(TypeChange, RecordsTheMLinesThatWent) {
  struct Case {
    eSecurityType to;
    std::string text;
    std::vector<int> codes;
  };
  const Case cases[] = {{BE_SRTP_1m_LINE, twoMLines, {1, 25 + 3}},
                        {SECURITY_SRTP_ONLY, twoMLines, {1, 25 + 3}},
                        {BE_SRTP_1m_LINE, otherPorts, {1}},
                        {SECURITY_RTP_ONLY, twoMLines, {}}};
  for (const Case& each : cases) {
    cSdpNegotiator object = parsedObject(each.text);
    RemovedRecord removed;
    EXPECT_EQ(object.sdpChangeSdpType(BE_SRTP_2m_LINE, each.to, removed.data()), 0);
    removed.expect(each.codes, cleared);
  }
  cSdpNegotiator empty = emptyObject();
  RemovedRecord removed;
  EXPECT_EQ(empty.sdpChangeSdpType(BE_SRTP_2m_LINE, BE_SRTP_1m_LINE, removed.data()), 1);
  removed.expect({}, cleared);
}

TEST(TypeChange, WithoutARecordChangesAllTheSame) {
  cSdpNegotiator object = parsedObject(twoMLines);
  EXPECT_EQ(object.sdpChangeSdpType(BE_SRTP_2m_LINE, BE_SRTP_1m_LINE, nullptr), 0);
  EXPECT_TRUE(sameBytes(object, parsedObject(session + plainAudio + crypto + plainVideo + crypto)));
}

// Deliberate: after a failure too the text is parsed, which a text of this kind does not survive.
TEST(TypeChange, ThatFailsParsesTheTextAllTheSame) {
  cSdpNegotiator object = objectWithText("no body\r\n");
  EXPECT_EQ(object.sdpChangeSdpType(BE_SRTP_2m_LINE, BE_SRTP_1m_LINE, RemovedRecord().data()), 1);
  EXPECT_TRUE(sameBytes(object, emptyObject()));
}

TEST(SingleMLine, IsAskedOfTheDecodedText) {
  const std::pair<std::string, bool> cases[] = {{session, false},
                                                {session + plainAudio, true},
                                                {session + secureAudio, true},
                                                {session + "m=audio 0 RTP/AVP 0\r\n", true},
                                                {padded(session + plainAudio), true},
                                                {session + plainAudio + secureAudio, false},
                                                {padded(session + plainAudio + plainVideo), false},
                                                {"m=audio", false}};
  const TraceLine asked{4, 3, "Entering isSingleLineSDP."};  // Deliberate: an error by its level
  for (const auto& each : cases) {
    const cSdpNegotiator before = objectWithText(each.first);
    cSdpNegotiator object = before;
    const Traces traces = tracesOf([&] { EXPECT_EQ(object.isSingleLineSDP(), each.second) << each.first; });
    ASSERT_GE(traces.size(), 2U);
    EXPECT_EQ(traces[0], asked);
    EXPECT_EQ(traces[1], buildingText);
    EXPECT_TRUE(sameBytes(object, before));
  }
  EXPECT_EQ(tracesOf([&] { EXPECT_FALSE(emptyObject().isSingleLineSDP()); }),
            (Traces{asked, buildingText, textIsEmpty}));
  for (const cSdpNegotiator& object : unreadableObjects()) EXPECT_FALSE(object.isSingleLineSDP());
}

}  // namespace
