#include "requestTestSupport.h"

// Requests that add silence suppression and echo cancellation to the text of an object.

namespace {

using M = sdpModifications;
using Lines = std::vector<TraceLine>;

const TraceLine building{8, 4, "Building raw SDP buffer."};
const TraceLine empty{4, 3, "The raw SDP buffer is empty."};

const std::string video = "m=video 5006 RTP/AVP 31\r\n";
const std::string twoMedia = audioBody() + video;

TEST(SuppressionRequest, ChangesTheTextAndParsesItAgain) {
  cSdpNegotiator object = parsedObject(audioBody());
  TraceCapture trace;
  EXPECT_EQ(object.sdpInsertSilenceSuppression(FEATURE_STATE_ON), 0);
  EXPECT_EQ(textOf(object), audioBody() + "a=silenceSupp:on - - - -\r\n");
  EXPECT_EQ(object.getParsedData().silenceSuppression, FEATURE_STATE_ON);
  ASSERT_GE(trace.lines().size(), 3U);
  EXPECT_EQ(trace.lines()[0],
            (TraceLine{1, 1, "Request to insert  silence suppression: silence_suppression=1"}));
  EXPECT_EQ(trace.lines()[1], building);
  EXPECT_EQ(trace.lines()[2], (TraceLine{8, 4, "Entering sdpInsertSilenceSuppression() method."}));
}

TEST(SuppressionRequest, IsMadeWithTheObjectsOwnSummary) {
  cSdpNegotiator object = parsedObject(audioBody());
  object.addAudioCodec(1, 0);  // PCMA, set and not parsed
  EXPECT_EQ(object.sdpInsertSilenceSuppression(FEATURE_STATE_OFF), 0);
  EXPECT_EQ(textOf(object), audioBody() + "a=silenceSupp:off - - - -\r\na=gpmd:8 vbd=yes\r\n");
  EXPECT_EQ(object.getParsedData().gainControl, 44);
}

// Deliberate: the line goes to the end of the text, whosever section that is.
TEST(SuppressionRequest, BehindAVideoSectionIsNotFoundByTheParse) {
  cSdpNegotiator object = parsedObject(twoMedia);
  EXPECT_EQ(object.sdpInsertSilenceSuppression(FEATURE_STATE_ON), 0);
  EXPECT_EQ(textOf(object), twoMedia + "a=silenceSupp:on - - - -\r\n");
  EXPECT_EQ(object.getParsedData().silenceSuppression, FEATURE_STATE_NOT_SPECIFIED);
}

TEST(SuppressionRequest, FailsWithoutTextOrWithAnotherValue) {
  TraceCapture trace;
  cSdpNegotiator none = emptyObject();
  EXPECT_EQ(none.sdpInsertSilenceSuppression(7), 1);
  EXPECT_EQ(
      trace.takeLines(),
      (Lines{{1, 1, "Request to insert  silence suppression: silence_suppression=7"}, building, empty}));
  cSdpNegotiator object = parsedObject(audioBody());
  const cSdpNegotiator before = object;
  EXPECT_EQ(object.sdpInsertSilenceSuppression(7), 1);
  EXPECT_EQ(trace.lines().back(), (TraceLine{4, 3, "Invalid silence suppression entry. Exiting."}));
  EXPECT_TRUE(sameBytes(object, before));
}

RequestCase echoCancellation(unsigned char state, unsigned char side, const std::string& line) {
  const std::string states = std::to_string(state);
  const std::string sides = std::to_string(side);
  return {
      "EchoCancellation" + states + "And" + sides,
      [=](cSdpNegotiator& o) { return o.sdpInsertEchoCancellation(state, side); },
      [=](char* text) { return M::sdpInsertEchoCancellation(text, state, side); },
      audioBody() + video,
      audioBody() + line + video,
      {{1, 1, "Request to insert  echo cancellation: echo_cancellation=" + states + ", direction=" + sides}}};
}

class EchoRequest : public testing::TestWithParam<RequestCase> {};

TEST_P(EchoRequest, EditsTheTextAndParsesItAgain) { expectEditedAndParsed(GetParam()); }
TEST_P(EchoRequest, FailsWithoutATextThatCanBeRead) { expectFailsWithoutText(GetParam()); }
TEST_P(EchoRequest, LeavesTheObjectEmptyWhenTheTextCannotBeStored) { expectEmptiedWhenNotStored(GetParam()); }

INSTANTIATE_TEST_SUITE_P(Requests, EchoRequest,
                         testing::Values(echoCancellation(1, 1, "a=ecan:f on -\r\n"),
                                         echoCancellation(2, 2, "a=ecan:b off -\r\n"),
                                         echoCancellation(1, 3, "a=ecan:fb on -\r\n")),
                         caseName);

TEST(EchoRequest, IsRefusedForOtherValuesASecondLineAndWithoutAudioOrRoom) {
  expectFailedEdit(echoCancellation(1, 0, ""));
  expectFailedEdit(echoCancellation(1, 4, ""));
  expectFailedEdit(echoCancellation(0, 1, ""));
  expectFailedEdit(echoCancellation(255, 255, ""));
  RequestCase fine = echoCancellation(1, 1, "");
  fine.before = audioBody() + "a=ecan:f off -\r\n";
  expectFailedEdit(fine);
  fine.before = sessionLines() + video;
  expectFailedEdit(fine);
  fine.before = paddedTo(20479);
  expectFailedEdit(fine);
}

}  // namespace
