#include "objectTestSupport.h"
#include "traceCapture.h"

// Taking a summary over: what is taken, what is requested of the text, and in which order.

namespace {

using Lines = std::vector<TraceLine>;

/// The lines of the requests and of refused values, in their order; those of parses and edits are left out.
Lines requestsIn(const Lines& lines) {
  Lines requests;
  std::copy_if(lines.begin(), lines.end(), std::back_inserter(requests), [](const TraceLine& line) {
    return line.text.starts_with("Request to") || line.text.starts_with("Invalid");
  });
  return requests;
}

TraceLine modeRequest(int mode) {
  return {8, 4, "Request to set the connection mode to:" + std::to_string(mode) + "."};
}

TraceLine modeRequested(int mode) {
  return {8, 4,
          "Request to set the connection mode to:" + std::to_string(mode) +
              " to all types of media (AUDIO and VIDEO)"};
}

TraceLine suppressionRequest(int value) {
  return {1, 1, "Request to insert  silence suppression: silence_suppression=" + std::to_string(value)};
}

/// A summary of which every value differs from those of `audioBody`, the direction and the suppression aside.
sSdpParsedData otherSummary() {
  sSdpParsedData data;
  data.init();
  data.storedSdpLength = 99;
  data.address.setIPAddress("2001:db8::1");
  data.port = 80;
  std::fill(std::begin(data.audioCodec), std::end(data.audioCodec), 10);
  std::fill(std::begin(data.packetizationPeriod), std::end(data.packetizationPeriod), 40);
  data.T38MaxBitRate = 9600;
  data.h264Profile = 9;
  data.mediaType = 63;
  data.bandwidth = 64;
  data.sdpAttributes = 0x851;
  data.oLineStart = 1;
  data.oLineEnd = 2;
  data.gainControl = -3;
  data.state = 77;
  data.echoCancellation = 1;
  data.echoCancelDirection = 3;
  data.resourceReserve = 3;
  data.videoBandwidth = 384;
  data.videoMode = CONNECTION_MODE_RECVONLY;
  data.reserved[0] = 5;
  return data;
}

TEST(Summary, IsTakenWithoutTouchingTheTextWhenDirectionAndSuppressionStay) {
  for (const std::string& body : {audioBody(), paddedTo(4000)}) {
    cSdpNegotiator object = parsedObject(body);
    const sSdpParsedData data = otherSummary();
    Record expected(object);
    expected.data.address = data.address;
    expected.data.port = data.port;
    std::copy(std::begin(data.audioCodec), std::end(data.audioCodec), expected.data.audioCodec);
    std::copy(std::begin(data.packetizationPeriod), std::end(data.packetizationPeriod),
              expected.data.packetizationPeriod);
    expected.data.T38MaxBitRate = 9600;
    expected.data.mediaType = 63;
    expected.data.bandwidth = 64;
    expected.data.sdpAttributes = 0x851;
    expected.data.gainControl = -3;
    expected.data.echoCancellation = 1;
    expected.data.echoCancelDirection = 3;
    expected.data.resourceReserve = 3;
    expected.data.videoBandwidth = 384;
    expected.data.videoMode = CONNECTION_MODE_RECVONLY;
    TraceCapture trace;
    object.setParsedData(data);
    // The stored length, the profile, the o-line and the state are the object's own as before.
    EXPECT_TRUE(sameBytes(object, expected.object()));
    EXPECT_TRUE(trace.lines().empty());
  }
}

TEST(Summary, RefusedValuesAreTracedInTheOrderOfTheSettersAndLeftOut) {
  cSdpNegotiator object = parsedObject(audioBody());
  sSdpParsedData data = object.getParsedData();
  data.audioCodec[2] = 39;
  data.resourceReserve = 4;
  data.mediaType = 64;
  data.port = 1023;  // not checked here
  TraceCapture trace;
  object.setParsedData(data);
  // The media type is set twice.
  EXPECT_EQ(trace.takeLines(), (Lines{{4, 3, "Invalid audio codec (39) entry"},
                                      {4, 3, "Invalid eResourceReserve entry (4)"},
                                      {4, 3, "Invalid mediaType entry (64)"},
                                      {4, 3, "Invalid mediaType entry (64)"}}));
  Record expected(parsedObject(audioBody()));
  std::fill(std::begin(expected.data.audioCodec), std::end(expected.data.audioCodec), 0);
  expected.data.port = 1023;
  EXPECT_TRUE(sameBytes(object, expected.object()));
}

// Deliberate: the comparison is with the direction that the object had at first, so the change is requested
// a second time, which here adds a second line to the session.
TEST(Summary, AChangedDirectionIsRequestedTwice) {
  cSdpNegotiator object = parsedObject(audioBody());
  sSdpParsedData data = object.getParsedData();
  data.sessionMode = CONNECTION_MODE_INACTIVE;
  TraceCapture trace;
  object.setParsedData(data);
  EXPECT_EQ(requestsIn(trace.takeLines()),
            (Lines{modeRequest(4), modeRequested(4), modeRequest(4), modeRequested(4)}));
  EXPECT_EQ(textOf(object),
            sessionLines() + "a=inactive\r\na=inactive\r\nm=audio 5004 RTP/AVP 0 8\r\na=inactive\r\n");
  EXPECT_EQ(object.getParsedData().sessionMode, CONNECTION_MODE_INACTIVE);
}

TEST(Summary, AChangedDirectionIsRequestedOfADeflatedTextToo) {
  cSdpNegotiator object = parsedObject(paddedTo(3000));
  sSdpParsedData data = object.getParsedData();
  data.sessionMode = CONNECTION_MODE_RECVONLY;
  object.setParsedData(data);
  EXPECT_EQ(textOf(object), paddedTo(3000) + "a=recvonly\r\n");  // once: the second request finds it there
  EXPECT_EQ(object.getParsedData().sessionMode, CONNECTION_MODE_RECVONLY);
}

// Deliberate: requesting a direction parses the text again, also behind the last of the values.
TEST(Summary, AChangedDirectionOverwritesWhatTheParseFindsExceptForTheVideoDirection) {
  cSdpNegotiator object = parsedObject(audioBody());
  sSdpParsedData data = otherSummary();
  data.sessionMode = CONNECTION_MODE_RECVONLY;
  object.setParsedData(data);
  Record expected(parsedObject(audioBody() + "a=recvonly\r\n"));
  expected.data.videoMode = CONNECTION_MODE_RECVONLY;
  EXPECT_TRUE(sameBytes(object, expected.object()));
}

TEST(Summary, ADirectionThatCannotBeRequestedLeavesTheText) {
  struct Case {
    std::uint8_t given;
    std::string line;  ///< of the body
  };
  for (const Case& each : {Case{CONNECTION_MODE_SENDRECV, "a=inactive\r\n"}, Case{CONNECTION_MODE_NONE, ""},
                           Case{CONNECTION_MODE_CONFRNCE, ""}, Case{255, "a=sendonly\r\n"}}) {
    const std::string body = audioBody() + each.line;
    cSdpNegotiator object = parsedObject(body);
    const std::uint8_t mode = object.getParsedData().sessionMode;
    sSdpParsedData data = object.getParsedData();
    data.sessionMode = each.given;
    TraceCapture trace;
    object.setParsedData(data);
    EXPECT_EQ(requestsIn(trace.takeLines()), (Lines{modeRequest(each.given), modeRequested(each.given),
                                                    modeRequest(each.given), modeRequested(each.given)}));
    EXPECT_EQ(textOf(object), body);
    EXPECT_EQ(object.getParsedData().sessionMode, mode);
  }
}

struct SuppressionCase {
  const char* name;
  int eventSlot;  ///< of telephone-event in the list given; -1 for none
  std::uint8_t current;
  std::uint8_t given;
  bool requested;
  const char* added;  ///< to the text
};

class SuppressionOfSummary : public testing::TestWithParam<SuppressionCase> {};

std::string suppressionLine(std::uint8_t value) {
  return value == 0 ? "" : value == 1 ? "a=silenceSupp:on - - - -\r\n" : "a=silenceSupp:off - - - -\r\n";
}

TEST_P(SuppressionOfSummary, IsRequestedByTheListAndTheValues) {
  const SuppressionCase& each = GetParam();
  const std::string body = audioBody() + suppressionLine(each.current);
  cSdpNegotiator object = parsedObject(body);
  ASSERT_EQ(object.getParsedData().silenceSuppression, each.current);
  sSdpParsedData data = object.getParsedData();
  data.silenceSuppression = each.given;
  if (each.eventSlot >= 0) data.audioCodec[each.eventSlot] = 29;
  TraceCapture trace;
  object.setParsedData(data);
  Lines expected;
  if (each.requested) expected.push_back(suppressionRequest(each.given));
  if (each.requested && each.given == 0)
    expected.push_back({4, 3, "Invalid silence suppression entry. Exiting."});
  EXPECT_EQ(requestsIn(trace.takeLines()), expected);
  EXPECT_EQ(textOf(object), body + each.added);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, SuppressionOfSummary,
    testing::Values(
        SuppressionCase{"same", -1, 0, 0, false, ""}, SuppressionCase{"sameOn", -1, 1, 1, false, ""},
        SuppressionCase{"sameOff", -1, 2, 2, false, ""},
        SuppressionCase{"on", -1, 0, 1, true, "a=silenceSupp:on - - - -\r\n"},
        SuppressionCase{"off", -1, 0, 2, true, "a=silenceSupp:off - - - -\r\na=gpmd:0 vbd=yes\r\n"},
        SuppressionCase{"offInPlaceOfOn", -1, 1, 2, true, "a=gpmd:0 vbd=yes\r\n"},
        SuppressionCase{"onInPlaceOfOff", -1, 2, 1, true, ""}, SuppressionCase{"none", -1, 1, 0, true, ""},
        SuppressionCase{"eventsOn", 1, 0, 1, true, "a=silenceSupp:on - - - -\r\n"},
        SuppressionCase{"eventsOff", 1, 0, 2, false, ""},
        SuppressionCase{"eventsOffInTheFirstSlot", 0, 0, 2, false, ""},
        SuppressionCase{"eventsOffInTheLastSlot", 19, 0, 2, false, ""},
        SuppressionCase{"eventsOffInPlaceOfOn", 1, 1, 2, false, ""},
        SuppressionCase{"eventsNone", 1, 1, 0, true, ""},
        SuppressionCase{"eventsNoneInPlaceOfOff", 19, 2, 0, true, ""},
        SuppressionCase{"eventsSame", 1, 1, 1, false, ""}),
    [](const auto& tested) { return tested.param.name; });

// The list given is what counts, not the one that the object has.
TEST(Summary, EventsOfTheObjectsFormerListHaveNoSay) {
  const std::string body =
      sessionLines() + "m=audio 5004 RTP/AVP 0 101\r\na=rtpmap:101 telephone-event/8000\r\n";
  cSdpNegotiator object = parsedObject(body);
  ASSERT_EQ(object.getParsedData().audioCodec[1], 29);
  sSdpParsedData data = object.getParsedData();
  data.audioCodec[1] = 0;
  data.silenceSuppression = FEATURE_STATE_OFF;
  object.setParsedData(data);
  EXPECT_EQ(textOf(object), body + "a=silenceSupp:off - - - -\r\na=gpmd:0 vbd=yes\r\n");
}

TEST(Summary, SuppressionIsRequestedWithTheCodecsGiven) {
  cSdpNegotiator object = parsedObject(audioBody());
  sSdpParsedData data = object.getParsedData();
  data.audioCodec[0] = 1;  // PCMA
  data.silenceSuppression = FEATURE_STATE_OFF;
  object.setParsedData(data);
  EXPECT_EQ(textOf(object), audioBody() + "a=silenceSupp:off - - - -\r\na=gpmd:8 vbd=yes\r\n");
}

// Deliberate: the requested direction has the text parsed, so the codecs are the text's again.
TEST(Summary, SuppressionBehindAChangedDirectionIsRequestedWithTheCodecsOfTheText) {
  cSdpNegotiator object = parsedObject(audioBody());
  sSdpParsedData data = object.getParsedData();
  data.audioCodec[0] = 1;  // PCMA
  data.silenceSuppression = FEATURE_STATE_OFF;
  data.sessionMode = CONNECTION_MODE_RECVONLY;
  TraceCapture trace;
  object.setParsedData(data);
  EXPECT_EQ(requestsIn(trace.takeLines()), (Lines{modeRequest(2), modeRequested(2), suppressionRequest(2),
                                                  modeRequest(2), modeRequested(2)}));
  EXPECT_EQ(textOf(object), audioBody() + "a=recvonly\r\na=silenceSupp:off - - - -\r\na=gpmd:0 vbd=yes\r\n");
}

TEST(Summary, ValuesThatSuppressionOverwritesAreSetAgain) {
  cSdpNegotiator object = parsedObject(audioBody());
  sSdpParsedData data = otherSummary();
  data.audioCodec[0] = 3;
  data.silenceSuppression = FEATURE_STATE_OFF;
  object.setParsedData(data);
  Record expected(parsedObject(audioBody() + "a=silenceSupp:off - - - -\r\na=gpmd:0 vbd=yes\r\n"));
  ASSERT_EQ(expected.data.gainControl, 44);
  expected.data.gainControl = -3;
  expected.data.mediaType = 63;
  expected.data.sdpAttributes = 0x851;
  expected.data.T38MaxBitRate = 9600;
  expected.data.videoBandwidth = 384;
  expected.data.videoMode = CONNECTION_MODE_RECVONLY;
  EXPECT_TRUE(sameBytes(object, expected.object()));
}

TEST(Summary, MayBeTheObjectsOwn) {
  for (const std::string& body :
       {audioBody() + "a=inactive\r\na=silenceSupp:on - - - -\r\n", paddedTo(4000)}) {
    cSdpNegotiator object = parsedObject(body);
    object.setBandwidth(64);
    const cSdpNegotiator before = object;
    TraceCapture trace;
    object.setParsedData(object.getParsedData());
    EXPECT_TRUE(sameBytes(object, before));
    EXPECT_TRUE(trace.lines().empty());
  }
}

TEST(Summary, OfAnEmptyObjectIsTakenAndNothingCanBeRequested) {
  cSdpNegotiator object = emptyObject();
  sSdpParsedData data = otherSummary();
  data.sessionMode = CONNECTION_MODE_SENDONLY;
  data.silenceSuppression = FEATURE_STATE_ON;
  TraceCapture trace;
  object.setParsedData(data);
  const TraceLine building{8, 4, "Building raw SDP buffer."};
  const TraceLine empty{4, 3, "The raw SDP buffer is empty."};
  EXPECT_EQ(trace.takeLines(),
            (Lines{modeRequest(1), building, empty, modeRequested(1), suppressionRequest(1), building, empty,
                   modeRequest(1), building, empty, modeRequested(1)}));
  Record expected;
  expected.data = data;
  expected.data.storedSdpLength = 0;
  expected.data.h264Profile = H264_PROFILE_NOT_PRESENT;
  expected.data.oLineStart = 0;
  expected.data.oLineEnd = 0;
  expected.data.state = 1;
  expected.data.silenceSuppression = 0;
  expected.data.sessionMode = CONNECTION_MODE_SENDRECV;
  expected.data.reserved[0] = 0;
  EXPECT_TRUE(sameBytes(object, expected.object()));
}

}  // namespace
