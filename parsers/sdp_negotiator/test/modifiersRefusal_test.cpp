#include <gtest/gtest.h>

#include <string>

#include "refusalTestSupport.h"
#include "sdpModifiers.h"
#include "sdpNegotiatorParser.h"
#include "sdpRefusal.h"

// Why an edit of lines, ports, addresses, directions, transports, video or attributes was refused.

namespace {

using M = sdpModifications;

const std::string full = filledTo(kLongestBody, session + audio);
const std::string noPort = "v=0\r\nm=audio\r\n";

unsigned short oLineEnd = 0;

TextEdit modifyOLine(const char* id, const char* ip) {
  return [=](char* sdp) { return M::sdpModifyOLine(sdp, id, "2", ip, oLineEnd); };
}

TextEdit setPort(int media, unsigned int port) {
  return [=](char* sdp) {
    return M::sdpSetMediaPort(sdp, media, static_cast<eIPAddressVersion>(0), M::MEDIA_SECURITY_ANY, port);
  };
}

TextEdit replaceAddress(const char* ip) {
  return [=](char* sdp) { return M::sdpReplaceCxIP(sdp, ip); };
}

TextEdit modifyAddresses(const char* ip) {
  return [=](char* sdp) { return M::sdpModifyCLines(sdp, ip); };
}

TextEdit replaceMode(unsigned char mode) {
  return [=](char* sdp) { return M::sdpReplaceMode(sdp, mode, 64); };
}

/// In a text that begins with `audio`.
TextEdit replaceTransport(const char* expected, const char* transport) {
  return [=](char* sdp) {
    return M::sdpReplaceMLineTransportProtocol(sdp, sdp + audio.size() - 1, expected, transport);
  };
}

TextEdit setTransport(const char* transport) {
  return [=](char* sdp) { return M::sdpSetMediaTransportType(sdp, "RTP/AVP", transport, {"audio"}); };
}

TextEdit insertPrecondition(sSdpPrecondions one, unsigned int size = MAX_SDP_PROTOCOL_DATA_SIZE) {
  return [=](char* sdp) { return M::sdpInsertPrecondions(sdp, size, 1, 1, &one); };
}

sSdpPrecondions precondition() {
  sSdpPrecondions one{};
  one.status = SDP_PRECONDITION_DESIRED;
  return one;
}

sSdpPrecondions wrongStrength() {
  sSdpPrecondions one = precondition();
  one.strength = static_cast<decltype(one.strength)>(5);
  return one;
}

TextEdit insertSilence(unsigned char mode) {
  return [=](char* sdp) {
    sSdpParsedData data;
    data.init();
    return M::sdpInsertSilenceSuppression(sdp, mode, data);
  };
}

TextEdit insertEcho(unsigned char state, unsigned char side) {
  return [=](char* sdp) { return M::sdpInsertEchoCancellation(sdp, state, side); };
}

TextEdit takeVideo(unsigned int size) {
  return [=](char* sdp) {
    char out[128];
    return M::getVideoDescriptions(sdp, out, size, false);
  };
}

class RefusedEdit : public testing::TestWithParam<Refused> {};

TEST_P(RefusedEdit, KeepsItsReasonAsItIsTraced) { expectTracedReason(GetParam()); }

TEST_P(RefusedEdit, KeepsItsReasonWithoutTracing) { expectReason(GetParam()); }

INSTANTIATE_TEST_SUITE_P(
    OfOriginLines, RefusedEdit,
    testing::Values(Refused{"nullBuffer", "",
                            [](char*) { return M::sdpModifyOLine(nullptr, "1", "2", nullptr, oLineEnd); },
                            SDP_REFUSED_NO_ORIGIN_BUFFER, SDP_REFUSAL_KIND_ARGUMENT, kInfo,
                            "The raw sdp buffer is empty. Exiting..."},
                    Refused{"unendedBuffer", withoutNul(session), modifyOLine("1", nullptr),
                            SDP_REFUSED_UNUSABLE_BUFFER, SDP_REFUSAL_KIND_ARGUMENT, kError,
                            "sdpModifyOLine(): The SDP buffer is null or holds no end of text. Exiting."},
                    Refused{"noOLine", "v=0\r\ns=-\r\n", modifyOLine("1", nullptr),
                            SDP_REFUSED_ORIGIN_WITHOUT_O_LINE, SDP_REFUSAL_KIND_BODY, kInfo,
                            "The o-line is not present within the SDP. Exiting..."},
                    Refused{"noSLine", "v=0\r\no=a 1 1 IN IP4 192.0.2.1\r\n", modifyOLine("1", nullptr),
                            SDP_REFUSED_ORIGIN_WITHOUT_S_LINE, SDP_REFUSAL_KIND_BODY, kInfo,
                            "The s-line is not present within the SDP. Exiting..."},
                    Refused{"noAddress", session, modifyOLine("1", "nowhere"), SDP_REFUSED_ORIGIN_ADDRESS,
                            SDP_REFUSAL_KIND_ARGUMENT, kInvalidArgument,
                            "sdpModifyOLine(): The provided IP is not valid, exiting"},
                    Refused{"lineEndInTheId", session, modifyOLine("1\n", nullptr),
                            SDP_REFUSED_CONTROL_CHARACTER, SDP_REFUSAL_KIND_ARGUMENT, kError,
                            "sdpModifyOLine(): An argument holds a control character. Exiting."},
                    Refused{"noRoom", full, modifyOLine("1234567890123456789012345678901234567890", nullptr),
                            SDP_REFUSED_NO_ROOM, SDP_REFUSAL_KIND_CAPACITY, kError,
                            "sdpModifyOLine(): The new o-line does not fit the SDP buffer. Exiting."},
                    Refused{"raisedWithoutOLine", "v=0\r\n", M::sdpIncVersion, SDP_REFUSED_NO_O_LINE,
                            SDP_REFUSAL_KIND_BODY, kError, "No <oline> found. Exiting."},
                    Refused{"raisedUnended", "v=0\r\no=a 1 1 IN IP4 192.0.2.1", M::sdpIncVersion,
                            SDP_REFUSED_UNENDED_O_LINE, SDP_REFUSAL_KIND_BODY, kError,
                            "Bad <oline> termination. Exiting."},
                    Refused{"largestVersion", bodyWith("o=a 1 9223372036854775807 IN IP4 192.0.2.1"),
                            M::sdpIncVersion, SDP_REFUSED_VERSION_TOO_LONG, SDP_REFUSAL_KIND_BODY, kError,
                            "Attempt to increment <oline> version past maximum length. Exiting."},
                    Refused{"replacedWithoutOLine", "v=0\r\n",
                            [](char* sdp) { return M::sdpReplaceVersionNumberLong(sdp, 7, oLineEnd); },
                            SDP_REFUSED_NO_O_LINE, SDP_REFUSAL_KIND_BODY, kError,
                            "No <oline> found. Exiting."}),
    nameOfCase);

INSTANTIATE_TEST_SUITE_P(
    OfAddressesAndPorts, RefusedEdit,
    testing::Values(
        Refused{"malformedAddress", session, replaceAddress("nowhere"), SDP_REFUSED_MALFORMED_ADDRESS,
                SDP_REFUSAL_KIND_ARGUMENT, kError, "The new IP address is malformed. Exiting..."},
        Refused{"noCLine", "v=0\r\n", replaceAddress("192.0.2.9"), SDP_REFUSED_NO_C_LINE,
                SDP_REFUSAL_KIND_BODY, kError, "No <cline> found. Exiting."},
        Refused{"unendedCLine", "v=0\r\nc=IN IP4 192.0.2.1", replaceAddress("192.0.2.9"),
                SDP_REFUSED_UNENDED_C_LINE, SDP_REFUSAL_KIND_BODY, kError,
                "Bad termination of <cline>. Exiting."},
        Refused{"noRoomForTheAddress", full, replaceAddress("192.0.2.100"), SDP_REFUSED_NO_ROOM,
                SDP_REFUSAL_KIND_CAPACITY, kError,
                "sdpReplaceCxIP(): The new c-line does not fit the SDP buffer. Exiting."},
        Refused{"malformedAddressOfAll", session, modifyAddresses("nowhere"), SDP_REFUSED_MALFORMED_ADDRESS,
                SDP_REFUSAL_KIND_ARGUMENT, kError, "The new IP address is malformed. Exiting..."},
        Refused{"sectionWithoutPort", noPort, modifyAddresses("192.0.2.9"), SDP_REFUSED_PORT_NOT_READ,
                SDP_REFUSAL_KIND_BODY, kNotTraced, "The port of an m-line cannot be read."},
        Refused{"secondCharacterAsMLine", session,
                [](char* sdp) { return M::sdpModifyCLinesAllLines(sdp, "192.0.2.9"); },
                SDP_REFUSED_PORT_NOT_READ, SDP_REFUSAL_KIND_BODY, kNotTraced,
                "The port of an m-line cannot be read."},
        Refused{"unknownMedia", session + audio, [](char*) { return M::getMediaName(3, nullptr, 0); },
                SDP_REFUSED_UNKNOWN_MEDIA, SDP_REFUSAL_KIND_ARGUMENT, kError, "mediaType=3 not supported"},
        Refused{"portOfUnknownMedia", session + audio, setPort(0x1f0, 5000), SDP_REFUSED_MEDIA_OF_PORT,
                SDP_REFUSAL_KIND_ARGUMENT, kError, "sdpSetMediaPort(): incorrect mediaType (0x1f0)"},
        Refused{"reservedPort", session + audio, setPort(MEDIA_AUDIO, 1023), SDP_REFUSED_PORT_NOT_SET,
                SDP_REFUSAL_KIND_BODY, kError,
                "sdpSetMediaPort(): error while trying to set media connection port 1023"},
        Refused{"noRoomForThePort", full, setPort(MEDIA_AUDIO, 60000), SDP_REFUSED_PORT_NOT_SET,
                SDP_REFUSAL_KIND_BODY, kError,
                "sdpSetMediaPort(): error while trying to set media connection port 60000"},
        Refused{
            "disablingInAnUnendedBuffer", withoutNul(session),
            [](char* sdp) { return M::sdpDisablePort(sdp, MEDIA_AUDIO, static_cast<eIPAddressVersion>(0)); },
            SDP_REFUSED_UNUSABLE_BUFFER, SDP_REFUSAL_KIND_ARGUMENT, kError,
            "sdpSetMediaPort(): The SDP buffer is null or holds no end of text. Exiting."},
        Refused{"zeroPortsWithoutMLine", "v=0\r\n", M::sdpRemoveMlinesZeroPort, SDP_REFUSED_NO_M_LINE,
                SDP_REFUSAL_KIND_BODY, kNotTraced, "There is no m-line behind the first line."},
        Refused{"zeroPortsWithoutPort", noPort, M::sdpRemoveMlinesZeroPort, SDP_REFUSED_PORT_NOT_READ,
                SDP_REFUSAL_KIND_BODY, kNotTraced, "The port of an m-line cannot be read."}),
    nameOfCase);

INSTANTIATE_TEST_SUITE_P(
    OfDirectionsAndTransports, RefusedEdit,
    testing::Values(
        Refused{"unsupportedMode", session + audio, replaceMode(5), SDP_REFUSED_UNSUPPORTED_MODE,
                SDP_REFUSAL_KIND_ARGUMENT, kError, "sdpReplaceMode(): Unsupported mode (5) found. Exiting."},
        Refused{"noRoomForTheMode", full, replaceMode(4), SDP_REFUSED_NO_ROOM_FOR_MODE,
                SDP_REFUSAL_KIND_CAPACITY, kProgress,
                "sdpReplaceMode(): Not enough room to add a=inactive line at the session level. Exiting."},
        Refused{"mLineOutsideTheText", session + audio,
                [](char* sdp) {
                  return M::setMediaConnectionMode(sdp, nullptr, sdp + session.size() + audio.size() + 1,
                                                   "audio", "inactive");
                },
                SDP_REFUSED_DIRECTION_ARGUMENTS, SDP_REFUSAL_KIND_ARGUMENT, kNotTraced,
                "An argument of a direction is null or lies outside the text."},
        Refused{"lineEndInTheMode", session + audio,
                [](char* sdp) {
                  return M::setMediaConnectionMode(sdp, nullptr, sdp + session.size() - 1, "audio",
                                                   "inact\r\n");
                },
                SDP_REFUSED_CONTROL_CHARACTER, SDP_REFUSAL_KIND_ARGUMENT, kError,
                "setMediaConnectionMode(): An argument holds a control character. Exiting."},
        Refused{"nullTransport", audio, replaceTransport("RTP/AVP", nullptr), SDP_REFUSED_TRANSPORT_OF_LINE,
                SDP_REFUSAL_KIND_ARGUMENT, kError,
                "sdpReplaceMLineTransportProtocol(): A transport is null. Exiting."},
        Refused{
            "transportDoesNotFit", filledTo(kLongestBody, audio), replaceTransport("RTP/AVP", "RTP/SAVP"),
            SDP_REFUSED_TRANSPORT_OF_LINE, SDP_REFUSAL_KIND_ARGUMENT, kError,
            "sdpReplaceMLineTransportProtocol(): The new transport does not fit the SDP buffer. Exiting."},
        Refused{"transportNotNamed", audio, replaceTransport("udptl", "RTP/SAVP"),
                SDP_REFUSED_TRANSPORT_NOT_NAMED, SDP_REFUSAL_KIND_BODY, kNotTraced,
                "The m-line does not name the transport that is to be replaced."},
        Refused{"nullTransportOfMedia", session + audio, setTransport(nullptr), SDP_REFUSED_NO_TRANSPORTS,
                SDP_REFUSAL_KIND_ARGUMENT, kError,
                "sdpSetMediaTransportType(): A transport is null. Exiting.", 0},
        Refused{"transportOfMediaDoesNotFit", full, setTransport("RTP/SAVP"),
                SDP_REFUSED_TRANSPORT_DOES_NOT_FIT, SDP_REFUSAL_KIND_CAPACITY, kError,
                "sdpSetMediaTransportType(): The new transport does not fit the SDP buffer.", 0},
        Refused{"removalInAnUnendedBuffer", withoutNul(session),
                [](char* sdp) { return M::sdpRemoveICE(sdp); }, SDP_REFUSED_UNUSABLE_BUFFER,
                SDP_REFUSAL_KIND_ARGUMENT, kError,
                "sdpRemoveICE(): The SDP buffer is null or holds no end of text. Exiting.", 0}),
    nameOfCase);

INSTANTIATE_TEST_SUITE_P(
    OfVideoAndAttributes, RefusedEdit,
    testing::Values(
        Refused{"noLevel", session + video,
                [](char* sdp) { return M::sdpModifyProfileId(sdp, H264_PROFILE_NOT_PRESENT); },
                SDP_REFUSED_H264_LEVEL, SDP_REFUSAL_KIND_ARGUMENT, kError,
                "Incompatible type of H264 profile (" + std::to_string(H264_PROFILE_NOT_PRESENT) + ")"},
        Refused{"bandwidthInAnUnendedBuffer", withoutNul(session),
                [](char* sdp) { return M::sdpApplyBLine(sdp, 1); }, SDP_REFUSED_UNUSABLE_BUFFER,
                SDP_REFUSAL_KIND_ARGUMENT, kError,
                "sdpApplyBLine(): The SDP buffer is null or holds no end of text. Exiting.", 0},
        Refused{"videoWithoutCLine", "v=0\r\n" + video, takeVideo(128), SDP_REFUSED_NO_C_LINE_FOR_VIDEO,
                SDP_REFUSAL_KIND_BODY, kNotTraced, "There is no c-line for the sections of video."},
        Refused{"videoBufferTooSmall", session + video, takeVideo(10), SDP_REFUSED_VIDEO_BUFFER_TOO_SMALL,
                SDP_REFUSAL_KIND_CAPACITY, kInfo,
                "The size of Video part of SDP is bigger than the videoDescription buffer size", 0},
        Refused{"preconditionsWithoutAudio", session + video, insertPrecondition(precondition()),
                SDP_REFUSED_NO_AUDIO, SDP_REFUSAL_KIND_BODY, kError, "No audio <mline> found."},
        Refused{
            "noListOfPreconditions", session + audio,
            [](char* sdp) { return M::sdpInsertPrecondions(sdp, MAX_SDP_PROTOCOL_DATA_SIZE, 1, 1, nullptr); },
            SDP_REFUSED_NO_PRECONDITIONS, SDP_REFUSAL_KIND_ARGUMENT, kError,
            "sdpInsertPrecondions(): There is no list of preconditions. Exiting."},
        Refused{"preconditionWithoutStatus", session + audio, insertPrecondition({}),
                SDP_REFUSED_PRECONDITION_FIELD, SDP_REFUSAL_KIND_ARGUMENT, kError,
                "Invalid precondition status."},
        Refused{"unknownStrength", session + audio, insertPrecondition(wrongStrength()),
                SDP_REFUSED_PRECONDITION_FIELD, SDP_REFUSAL_KIND_ARGUMENT, kError,
                "Invalid precondition strength tag."},
        Refused{"noRoomForPreconditions", session + audio, insertPrecondition(precondition(), 20),
                SDP_REFUSED_NO_ROOM_FOR_PRECONDITIONS, SDP_REFUSAL_KIND_CAPACITY, kError,
                "The new sdpLength is larger than allowedSdpSize."},
        Refused{"silenceWithoutAudio", session + video, insertSilence(FEATURE_STATE_ON), SDP_REFUSED_NO_AUDIO,
                SDP_REFUSAL_KIND_BODY, kError, "No audio <mline> found."},
        Refused{"unknownSilence", session + audio, insertSilence(9), SDP_REFUSED_INVALID_SILENCE,
                SDP_REFUSAL_KIND_ARGUMENT, kError, "Invalid silence suppression entry. Exiting."},
        Refused{
            "noRoomForSilence", full, insertSilence(FEATURE_STATE_ON), SDP_REFUSED_NO_ROOM_FOR_SILENCE,
            SDP_REFUSAL_KIND_CAPACITY, kInfo,
            "The silence suppression attributes have NOT been added. Possibility to overflow the buffer size. Exiting."},
        Refused{"unknownEchoSide", session + audio, insertEcho(FEATURE_STATE_ON, 4),
                SDP_REFUSED_INVALID_ECHO_SIDE, SDP_REFUSAL_KIND_ARGUMENT, kError,
                "Invalid echo cancellation entry. Exiting."},
        Refused{"unknownEchoState", session + audio, insertEcho(9, 1), SDP_REFUSED_INVALID_ECHO_STATE,
                SDP_REFUSAL_KIND_ARGUMENT, kError, "Invalid echo cancellation direction entry. Exiting."},
        Refused{"echoWithoutAudio", session + video, insertEcho(FEATURE_STATE_ON, 1),
                SDP_REFUSED_NO_AUDIO_FOR_ECHO, SDP_REFUSAL_KIND_BODY, kError,
                "No audio <mline> found. Exiting..."},
        Refused{"echoPresent", session + audio + "a=ecan:fb on -\r\n", insertEcho(FEATURE_STATE_ON, 1),
                SDP_REFUSED_ECHO_EXISTS, SDP_REFUSAL_KIND_BODY, kError,
                "Echo cancellation already exists in SDP. Exiting..."},
        Refused{
            "noRoomForEcho", full, insertEcho(FEATURE_STATE_ON, 1), SDP_REFUSED_NO_ROOM_FOR_ECHO,
            SDP_REFUSAL_KIND_CAPACITY, kInfo,
            "The echo cancellation attributes have NOT been added. Possibility to overflow the buffer size. Exiting."}),
    nameOfCase);

TEST(LastRefusal, IsThatOfAnEditAndStaysThroughOneThatSucceeds) {
  SdpBuffer buffer(session + audio);
  EXPECT_EQ(M::sdpReplaceMode(buffer.data(), 5, 64), 1);
  const sSdpRefusal refused = sdpLastRefusal();
  EXPECT_EQ(M::sdpReplaceMode(buffer.data(), 4, 64), 0);
  EXPECT_EQ(sdpLastRefusal().number, refused.number);
  EXPECT_EQ(sdpLastRefusal().reason, SDP_REFUSED_UNSUPPORTED_MODE);
}

TEST(LastRefusal, CountsWhatLedToAnotherOne) {
  SdpBuffer buffer(session + audio);
  const unsigned int earlier = sdpLastRefusal().number;
  TraceCapture trace;
  EXPECT_EQ(setPort(MEDIA_AUDIO, 80)(buffer.data()), 1);
  // The port first, and then the request.
  EXPECT_EQ(sdpLastRefusal().number, earlier + 2);
  EXPECT_EQ(sdpLastRefusal().reason, SDP_REFUSED_PORT_NOT_SET);
  EXPECT_TRUE(trace.has(4, 3, "setMediaLinePort(): illegal connection port 80"));
}

TEST(LastRefusal, IsNotThatOfAnOLineThatARemovalOfMLinesGoesOnWithout) {
  SdpBuffer buffer("v=0\r\ns=-\r\nt=0 0\r\n" + audio);
  const unsigned int earlier = sdpLastRefusal().number;
  char removed[32] = "";
  TraceCapture trace;
  M::sdpRemoveMline(buffer.data(), removed, oLineEnd, "RTP/AVP", true);
  EXPECT_STREQ(buffer.data(), "v=0\r\ns=-\r\nt=0 0\r\n");
  EXPECT_EQ(sdpLastRefusal().number, earlier);
  EXPECT_TRUE(trace.has(2, 2, "The o-line is not present within the SDP. Exiting..."));
}

TEST(LastRefusal, IsThatOfAPortThatAnMLineIsNotGiven) {
  char line[] = "m=audio 5004 RTP/AVP 0";
  char* end = nullptr;
  EXPECT_EQ(sdpParserMessage::setMediaLinePort(line, end, 1), 1);
  EXPECT_EQ(sdpLastRefusal().reason, SDP_REFUSED_ILLEGAL_PORT);
  EXPECT_STREQ(sdpLastRefusal().text, "setMediaLinePort(): illegal connection port 1");
  EXPECT_EQ(sdpParserMessage::setMediaLinePort(line, end, 5006), 1);
  EXPECT_EQ(sdpLastRefusal().reason, SDP_REFUSED_UNENDED_M_LINE);
  EXPECT_STREQ(sdpLastRefusal().text, "setMediaLinePort(): Bad termination of m-line.");
}

}  // namespace
