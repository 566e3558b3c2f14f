#include "objectTestSupport.h"
#include "traceCapture.h"

// The transports of the m-lines of an object's body.

namespace {

using Traces = std::vector<TraceLine>;

const TraceLine modifying{1, 1, "sdpModifyTransportTypes():Request to modify transport type for all m-lines"};
// Deliberate: the request ends with the name of another one.
const TraceLine modified{1, 1, "Exiting sdpRemoveMlinesZeroPort()"};

TraceLine modifyingMedia(const std::string& name) {
  return {1, 1, "sdpModifyTransportTypes():Request to modify transport type for all m = " + name};
}

TEST(ModifyTransportTypes, ChangesTheTransportOfAllMedia) {
  const auto body = [](const std::string& transport) {
    return sessionLines() + "m=audio 5004 " + transport + " 0\r\nm=video 5006 " + transport +
           " 31\r\nm=other 5008 " + transport + " 5\r\nm=audio 0 RTP/AVPF 0\r\n";
  };
  cSdpNegotiator object = parsedObject(body("RTP/SAVP"));
  ASSERT_TRUE(object.isSecureCall());
  TraceCapture trace;
  object.sdpModifyTransportTypes("RTP/SAVP", "RTP/AVP");
  EXPECT_EQ(textOf(object), body("RTP/AVP"));
  EXPECT_FALSE(object.isSecureCall()) << "the text was not parsed again";
  Traces own;
  for (const TraceLine& line : trace.lines()) {
    if (line.flag == 1) own.push_back(line);
  }
  EXPECT_EQ(own, (Traces{modifying, modifyingMedia("audio"), modifyingMedia("video"), modifyingMedia("other"),
                         modifyingMedia("audio"), modified}));
}

TEST(ModifyTransportTypes, ParsesTheTextAgainAlsoWhenItStays) {
  cSdpNegotiator object = parsedObject(audioBody());
  object.setBandwidth(64);
  object.sdpModifyTransportTypes("RTP/SAVP", "RTP/AVP");
  EXPECT_EQ(textOf(object), audioBody());
  EXPECT_EQ(object.getParsedData().bandwidth, 0U);
}

TEST(ModifyTransportTypes, LeavesAnObjectThatCannotBeReadAsItIs) {
  for (const cSdpNegotiator& before : {emptyObject(), damagedObject(), objectWithText("no SDP body")}) {
    cSdpNegotiator object = before;
    TraceCapture trace;
    object.sdpModifyTransportTypes("RTP/SAVP", "RTP/AVP");
    EXPECT_TRUE(sameBytes(object, before));
    ASSERT_GE(trace.lines().size(), 3U);
    EXPECT_EQ(trace.lines().front(), modifying);
    EXPECT_EQ(trace.lines().back(), modified);
  }
}

TEST(ModifyTransportTypes, EmptiesAnObjectWhoseNewTextDoesNotParse) {
  // More than 25 m-lines: the text can be decoded, but the analysis refuses it.
  std::string body = sessionLines();
  for (int i = 0; i < 26; ++i) body += "m=audio 5004 RTP/SAVP 0\r\n";
  cSdpNegotiator object = objectWithText(body);
  TraceCapture trace;
  object.sdpModifyTransportTypes("RTP/SAVP", "RTP/AVP");
  EXPECT_TRUE(sameBytes(object, emptyObject()));
  EXPECT_EQ(trace.lines().back(), modified);
}

TEST(ModifyTransportTypes, TakesNullForNothingToDo) {
  cSdpNegotiator object = parsedObject(audioBody());
  object.sdpModifyTransportTypes(nullptr, "RTP/SAVP");
  object.sdpModifyTransportTypes("RTP/AVP", nullptr);
  EXPECT_EQ(textOf(object), audioBody());
}

}  // namespace
