#include "requestTestSupport.h"

// Requests that change directions in the text of an object.

namespace {

using Lines = std::vector<TraceLine>;

const TraceLine building{8, 4, "Building raw SDP buffer."};
const TraceLine empty{4, 3, "The raw SDP buffer is empty."};

const std::string twoMedia = audioBody() + "m=video 5006 RTP/AVP 31\r\n";

TEST(DirectionRequest, ChangesTheTextAndParsesItAgain) {
  cSdpNegotiator object = parsedObject(twoMedia);
  object.setBandwidth(64);  // lost: the summary is that of the new text
  TraceCapture trace;
  EXPECT_EQ(object.sdpReplaceMode(CONNECTION_MODE_SENDONLY, 1), 0);
  const std::string expected = sessionLines() +
                               "a=sendonly\r\nm=audio 5004 RTP/AVP 0 8\r\na=sendonly\r\n"
                               "m=video 5006 RTP/AVP 31\r\n";
  EXPECT_TRUE(sameBytes(object, parsedObject(expected)));
  EXPECT_EQ(textOf(object), expected);
  ASSERT_GE(trace.lines().size(), 3U);
  EXPECT_EQ(trace.lines()[0], (TraceLine{8, 4, "Request to set the connection mode to:1."}));
  EXPECT_EQ(trace.lines()[1], building);
  EXPECT_EQ(trace.lines()[2],
            (TraceLine{8, 4, "Entering sdpReplaceMode(): request to set mode to sendonly"}));
}

TEST(DirectionRequest, WithoutMediaIsForAudioAndVideo) {
  cSdpNegotiator object = parsedObject(twoMedia);
  TraceCapture trace;
  object.sdpReplaceMode(CONNECTION_MODE_RECVONLY);
  EXPECT_EQ(textOf(object), audioBody() + "a=recvonly\r\nm=video 5006 RTP/AVP 31\r\na=recvonly\r\n");
  EXPECT_EQ(trace.lines().front(), (TraceLine{8, 4, "Request to set the connection mode to:2."}));
  EXPECT_TRUE(
      trace.has(8, 4, "Request to set the connection mode to:2 to all types of media (AUDIO and VIDEO)"));
}

// Deliberate: the result is that of a trace call, 0 while tracing is off.
TEST(DirectionRequest, WithoutMediaDoesNotTellItsStatus) {
  cSdpNegotiator object = emptyObject();
  EXPECT_EQ(object.sdpReplaceMode(CONNECTION_MODE_SENDONLY), 0);
  EXPECT_EQ(object.sdpReplaceMode(9), 0);
}

TEST(DirectionRequest, OfAnEmptyObjectFailsBeforeTheEdit) {
  cSdpNegotiator object = emptyObject();
  TraceCapture trace;
  EXPECT_EQ(object.sdpReplaceMode(9, 1), 1);
  EXPECT_EQ(trace.takeLines(), (Lines{{8, 4, "Request to set the connection mode to:9."}, building, empty}));
  object.sdpReplaceMode(9);
  EXPECT_EQ(
      trace.takeLines(),
      (Lines{{8, 4, "Request to set the connection mode to:9."},
             building,
             empty,
             {8, 4, "Request to set the connection mode to:9 to all types of media (AUDIO and VIDEO)"}}));
  EXPECT_TRUE(sameBytes(object, emptyObject()));
}

TEST(DirectionRequest, AFailedEditLeavesTextAndSummary) {
  cSdpNegotiator object = parsedObject(audioBody());
  object.setBandwidth(64);
  const cSdpNegotiator before = object;
  TraceCapture trace;
  EXPECT_EQ(object.sdpReplaceMode(9, 1), 1);
  EXPECT_TRUE(sameBytes(object, before));
  EXPECT_EQ(trace.lines().back(),
            (TraceLine{4, 3, "sdpReplaceMode(): Unsupported mode (9) found. Exiting."}));
}

TEST(DirectionRequest, ATextWithoutRoomStaysAsItIs) {
  cSdpNegotiator object = parsedObject(paddedTo(20479));
  const cSdpNegotiator before = object;
  EXPECT_EQ(object.sdpReplaceMode(CONNECTION_MODE_SENDONLY, 1), 1);
  EXPECT_TRUE(sameBytes(object, before));
  EXPECT_EQ(object.sdpInsertSilenceSuppression(FEATURE_STATE_ON), 1);
  EXPECT_TRUE(sameBytes(object, before));
}

// The longest body has no room for its NUL in the buffer of an edit.
TEST(DirectionRequest, TheLongestBodyCannotBeEdited) {
  cSdpNegotiator object = parsedObject(paddedTo(20480));
  const cSdpNegotiator before = object;
  EXPECT_EQ(object.sdpReplaceMode(CONNECTION_MODE_SENDONLY, 1), 1);
  EXPECT_EQ(object.sdpInsertSilenceSuppression(FEATURE_STATE_ON), 1);
  EXPECT_TRUE(sameBytes(object, before));
}

// Deliberate: also when the edit changed nothing, the text is parsed again.
TEST(DirectionRequest, ARequestThatChangesNothingRebuildsTheSummary) {
  cSdpNegotiator object = parsedObject(audioBody());
  object.setBandwidth(64);
  EXPECT_EQ(object.sdpReplaceMode(CONNECTION_MODE_SENDRECV, 1), 0);
  EXPECT_TRUE(sameBytes(object, parsedObject(audioBody())));
}

TEST(DirectionRequest, ATextThatDoesNotParseLeavesTheObjectEmpty) {
  cSdpNegotiator object = objectWithText("no body\r\nm=audio 5004 RTP/AVP 0\r\n");
  EXPECT_NE(object.sdpReplaceMode(CONNECTION_MODE_RECVONLY, 1), 0);
  EXPECT_TRUE(sameBytes(object, emptyObject()));
}

TEST(DirectionRequest, OfATextThatCannotBeReadOrStoredFails) {
  const Request requests[] = {
      [](cSdpNegotiator& o) { return o.sdpReplaceMode(CONNECTION_MODE_SENDONLY, 1); },
      [](cSdpNegotiator& o) { return o.sdpInsertSilenceSuppression(FEATURE_STATE_ON); },
  };
  for (const Request& request : requests) {
    for (const cSdpNegotiator& before : unreadableObjects()) {
      cSdpNegotiator object = before;
      EXPECT_EQ(request(object), 1);
      EXPECT_TRUE(sameBytes(object, before));
    }
    cSdpNegotiator object = objectHardToStore(audioBody());
    EXPECT_EQ(request(object), 2);
    EXPECT_TRUE(sameBytes(object, emptyObject()));
  }
}

}  // namespace
