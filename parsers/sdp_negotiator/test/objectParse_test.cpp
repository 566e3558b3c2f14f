#include "objectTestSupport.h"
#include "traceCapture.h"

// The object-level parse: what it refuses, what it leaves behind, and in which order it works.

namespace {

const TraceLine exiting{4, 3, "Exiting sdpParse() method. Exiting..."};

TraceLine entering(std::size_t length) {
  return {8, 4, "Entering sdpParse() method: SDP length is " + std::to_string(length)};
}

/// An object in which every byte differs from the reset state.
cSdpNegotiator fullObject() {
  Record record;
  std::memset(static_cast<void*>(&record), 0x55, sizeof record);
  return record.object();
}

TEST(ObjectParse, TakesTextAndSummaryOfABody) {
  const std::string body = audioBody();
  TraceCapture trace;
  const cSdpNegotiator object = parsedObject(body);
  ASSERT_FALSE(trace.lines().empty());
  EXPECT_EQ(trace.lines().front(), entering(body.size()));
  EXPECT_EQ(textOf(object), body);
  const sSdpParsedData& data = object.getParsedData();
  EXPECT_EQ(data.port, 5004U);
  EXPECT_EQ(data.mediaType, unsigned{MEDIA_AUDIO});
  EXPECT_EQ(data.audioCodec[0], 3);
  EXPECT_EQ(data.audioCodec[1], 1);
  EXPECT_EQ(body.substr(data.oLineStart, data.oLineEnd - data.oLineStart),
            "o=alice 1 1 IN IP4 192.0.2.9\r\n");
}

TEST(ObjectParse, DoesNotDependOnWhatTheObjectHeld) {
  for (const std::string& body : {audioBody(), paddedTo(6000)}) {
    cSdpNegotiator object = fullObject();
    ASSERT_EQ(object.sdpParse(body.c_str(), SDP_TYPE_OFFER), 0);
    cSdpNegotiator other = emptyObject();
    ASSERT_EQ(other.sdpParse(body.c_str(), SDP_TYPE_OFFER), 0);
    EXPECT_EQ(std::memcmp(&object.getParsedData(), &other.getParsedData(), sizeof(sSdpParsedData)), 0);
    EXPECT_TRUE(sameBytes(object, other));
  }
}

TEST(ObjectParse, ABodyOf2559CharactersIsPlainAndOneOf2560Deflated) {
  EXPECT_EQ(parsedObject(paddedTo(2559)).getParsedData().storedSdpLength, 0);
  const cSdpNegotiator object = parsedObject(paddedTo(2560));
  EXPECT_GT(object.getParsedData().storedSdpLength, 0);
  EXPECT_EQ(textOf(object), paddedTo(2560));
}

TEST(ObjectParse, AnEmptyTextEmptiesTheObject) {
  TraceCapture trace;
  for (const char* const text : {"", static_cast<const char*>(nullptr)}) {
    cSdpNegotiator object = fullObject();
    EXPECT_EQ(object.sdpParse(text, SDP_TYPE_OFFER), 1);
    EXPECT_TRUE(sameBytes(object, emptyObject()));
    EXPECT_EQ(trace.takeLines(), (std::vector<TraceLine>{{4, 3, "Empty buffer. Nothing to be parsed."}}));
  }
}

TEST(ObjectParse, TheLongestBodyIsTakenAndALongerOneIsRefused) {
  TraceCapture trace;
  cSdpNegotiator object;
  EXPECT_EQ(object.sdpParse(paddedTo(20480).c_str(), SDP_TYPE_OFFER), 0);
  EXPECT_TRUE(object.isSdpPresent());
  EXPECT_EQ(trace.takeLines().front(), entering(20480));
  EXPECT_EQ(object.sdpParse(paddedTo(20481).c_str(), SDP_TYPE_OFFER), 1);
  EXPECT_TRUE(sameBytes(object, emptyObject()));
  EXPECT_EQ(trace.takeLines(),
            (std::vector<TraceLine>{{4, 3, "The SDP size=20481 exceeds MAX_SDP_PROTOCOL_DATA_SIZE=20480"}}));
}

TEST(ObjectParse, ABodyThatCannotBeDecodedEmptiesTheObject) {
  cSdpNegotiator object = parsedObject(paddedTo(3000));
  TraceCapture trace;
  EXPECT_EQ(object.sdpParse("this is no SDP body", SDP_TYPE_OFFER), 1);
  EXPECT_TRUE(sameBytes(object, emptyObject()));
  ASSERT_GE(trace.lines().size(), 3U);  // the codec's message stands between
  EXPECT_EQ(trace.lines().front(), entering(19));
  EXPECT_EQ(trace.lines().back(), exiting);
}

// The edits find lines by their LF: what stood behind a CR alone would be in force and could not be removed.
TEST(ObjectParse, ALineBehindALoneCrIsRefusedWithItsPlace) {
  const struct {
    std::string hidden;
    std::string found;
  } cases[] = {{"i=x\ra=crypto:1 AES_CM_128_HMAC_SHA1_80 inline:abc\r\n",
                "?a=crypto:1 AES_CM_128_HMAC_SHA1_80 inli\"..."},
               {"i=x\rm=video 5006 RTP/AVP 31\r\n", "?m=video 5006 RTP/AVP 31\""},
               {"i=x\rc=IN IP4 203.0.113.1\n", "?c=IN IP4 203.0.113.1\""},
               {"i=x\r\r\n", "?\""}};
  for (const auto& each : cases) {
    cSdpNegotiator object = parsedObject(audioBody());
    TraceCapture trace;
    EXPECT_EQ(object.sdpParse((audioBody() + each.hidden).c_str(), SDP_TYPE_OFFER), 1) << each.found;
    EXPECT_TRUE(sameBytes(object, emptyObject())) << each.found;
    ASSERT_GE(trace.lines().size(), 3U);
    const std::string& reason = trace.lines()[trace.lines().size() - 2].text;
    EXPECT_NE(reason.find("line 7, column 4: expected CR LF or LF at the line's end, found \"" + each.found),
              std::string::npos)
        << reason;
  }
}

TEST(ObjectParse, ACrAtTheTextsEndEndsTheLastLine) {
  const std::string body = sessionLines() + "m=audio 5004 RTP/AVP 0 8\r";
  const cSdpNegotiator object = parsedObject(body);
  EXPECT_EQ(textOf(object), body);
  EXPECT_EQ(object.getParsedData().audioCodec[0], 3);
  EXPECT_EQ(object.getParsedData().audioCodec[1], 1);
}

TEST(ObjectParse, ABodyThatTheAnalysisRefusesLeavesNothingOfItsSummary) {
  TraceCapture trace;
  cSdpNegotiator object = parsedObject(audioBody());
  const std::string body = sessionLines() + "b=AS:64\r\nm=audio 80 RTP/AVP 0\r\n";
  EXPECT_EQ(object.sdpParse(body.c_str(), SDP_TYPE_OFFER), 1);
  EXPECT_TRUE(sameBytes(object, emptyObject()));
  EXPECT_EQ(trace.count(4, 3, exiting.text), 1);
  EXPECT_EQ(trace.lines().back(), exiting);
}

TEST(ObjectParse, ABodyThatDoesNotDeflateEnoughIsParsedAndThenRefusedWithoutATrace) {
  const std::string body = incompressibleBody(5000);
  cSdpNegotiator object = parsedObject(audioBody());
  TraceCapture trace;
  EXPECT_EQ(object.sdpParse(body.c_str(), SDP_TYPE_OFFER), 2);
  EXPECT_TRUE(sameBytes(object, emptyObject()));
  EXPECT_EQ(trace.lines().front(), entering(body.size()));
  EXPECT_EQ(trace.lines().back(), (TraceLine{8, 4, "Exiting sdpParse() method"}));
  EXPECT_FALSE(trace.has(exiting.flag, exiting.level, exiting.text));
}

TEST(ObjectParse, PerCentSignsOfABodyAreTracedAsText) {
  const std::string body = "%s%n%s";
  TraceCapture trace;
  cSdpNegotiator object;
  EXPECT_EQ(object.sdpParse(body.c_str(), SDP_TYPE_OFFER), 1);
  ASSERT_EQ(trace.lines().size(), 3U);  // the codec's message stands between
  EXPECT_EQ(trace.lines().front(), entering(body.size()));
  EXPECT_EQ(trace.lines().back(), exiting);
}

TEST(ObjectParse, TheTypeDoesNotChangeTheSummary) {
  cSdpNegotiator offer;
  cSdpNegotiator answer;
  ASSERT_EQ(offer.sdpParse(audioBody().c_str(), SDP_TYPE_OFFER), 0);
  ASSERT_EQ(answer.sdpParse(audioBody().c_str(), SDP_TYPE_ANSWER), 0);
  EXPECT_TRUE(sameBytes(offer, answer));
}

// Each resets its own members and nothing else.
TEST(ObjectReset, CodecsPeriodsAndDescriptorAreResetOneByOne) {
  Record expected(fullObject());
  cSdpNegotiator object = fullObject();

  object.initAudioCodecs();
  std::fill(std::begin(expected.data.audioCodec), std::end(expected.data.audioCodec), 0);
  EXPECT_TRUE(sameBytes(object, expected.object()));

  object.initPacketizationPeriod();
  std::fill(std::begin(expected.data.packetizationPeriod), std::end(expected.data.packetizationPeriod), 255);
  EXPECT_TRUE(sameBytes(object, expected.object()));

  object.initSdpDescriptor();
  expected.data.port = 0xFFFFFFFF;
  expected.data.address.init();
  EXPECT_TRUE(sameBytes(object, expected.object()));
}

}  // namespace
