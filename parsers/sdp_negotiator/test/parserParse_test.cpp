#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "parserParseSupport.h"

// The parse as a whole: its failures, its values of the session, and the order of its steps, of which later
// ones overwrite what earlier ones left.

namespace {

using Codecs = std::vector<int>;
using Periods = std::vector<int>;

constexpr TraceLine exiting() { return {8, 4, "Exiting sdpParse() method"}; }

std::vector<std::string> repeated(std::size_t count, const std::string& line) {
  return std::vector<std::string>(count, line);
}

TEST(ParserParse, FillsTheSummaryOfACall) {
  const std::string body =
      bodyOf({"m=audio 5004 RTP/AVP 0 8 18 101", "a=rtpmap:101 telephone-event/8000", "a=sendonly"});
  const Parsed result = parsed(body);
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(codecsOf(result.data), (Codecs{3, 1, 10, 29}));
  EXPECT_EQ(result.data.port, 5004U);
  EXPECT_EQ(addressOf(result.data), "192.0.2.1");
  EXPECT_EQ(result.data.mediaType, static_cast<unsigned>(MEDIA_AUDIO));
  EXPECT_EQ(result.data.sessionMode, CONNECTION_MODE_SENDONLY);
  EXPECT_EQ(result.data.oLineStart, body.find("o="));
  EXPECT_EQ(result.data.oLineEnd, body.find("s=-"));
  EXPECT_EQ(result.traces, (TraceLines{exiting()}));
}

TEST(ParserParse, ReadsBareLineFeedsAlike) {
  const std::vector<std::string> lines = {
      "v=0",       "o=- 1 2 IN IP4 192.0.2.9", "s=-",        "c=IN IP4 192.0.2.1",
      "t=0 0",     "m=audio 5004 RTP/AVP 0",   "a=ptime:20", "m=video 5006 RTP/AVP 31",
      "a=inactive"};
  for (const char* lineEnd : {"\r\n", "\n"}) {
    const Parsed result = parsed(joined(lines, lineEnd));
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(codecsOf(result.data), (Codecs{3}));
    EXPECT_EQ(periodsOf(result.data, 2), (Periods{20, 255}));
    EXPECT_EQ(result.data.videoMode, CONNECTION_MODE_INACTIVE);
  }
}

TEST(ParserParse, PassesTheDecodersStatusAndTraceOn) {
  const Parsed result = parsed("v=0\r\nx");
  EXPECT_EQ(result.status, 1);
  ASSERT_EQ(result.traces.size(), 1U);
  EXPECT_EQ(result.traces[0].flag, 4);
  EXPECT_EQ(result.traces[0].level, 3);
  EXPECT_EQ(result.traces[0].text.rfind("line 2, column 2: expected ", 0), 0U) << result.traces[0].text;
  sSdpParsedData data = emptySummary();
  EXPECT_EQ(sdpParserMessage::sdpParse(nullptr, SDP_TYPE_OFFER, data), 1);
  EXPECT_TRUE(data.isInitialized());
}

TEST(ParserParse, SaysWhatItLeftOut) {
  const std::string message = "The SDP was not decoded completely: some of it was left out.";
  std::vector<std::string> lines = {"m=audio 5004 RTP/AVP 0"};
  EXPECT_FALSE(parsed(bodyOf(lines)).has(2, 2, message));
  for (int i = 0; i <= SDP_ATTRIBUTE_CAPACITY; ++i) lines.push_back("a=x:" + std::to_string(i));
  const Parsed result = parsed(bodyOf(lines));
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.traces, (TraceLines{{2, 2, message}, exiting()}));
}

TEST(ParserParse, TakesTheSessionsBandwidthAndDirection) {
  const std::vector<std::string> session = {
      "v=0", "o=- 1 2 IN IP4 192.0.2.9", "s=-", "b=AS:4294967296", "b=CT:7", "t=0 0"};
  const Parsed without = parsed(joined(session));
  EXPECT_EQ(without.data.bandwidth, 4294967295U);
  EXPECT_EQ(without.data.sessionMode, CONNECTION_MODE_SENDRECV);
  std::vector<std::string> inactive = session;
  inactive.insert(inactive.end(), {"a=sendonly", "a=inactive", "a=x"});
  EXPECT_EQ(parsed(joined(inactive)).data.sessionMode, CONNECTION_MODE_INACTIVE);
}

TEST(ParserParse, SetsTheGainOfABodyWithoutMedia) {
  const Parsed result = parsed(bodyOf({"a=ice-ufrag:x"}));
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.data.gainControl, 4);
  EXPECT_EQ(addressOf(result.data), "192.0.2.1");
  EXPECT_EQ(result.data.port, SDP_PORT_NOT_SET);
  EXPECT_EQ(result.traces, (TraceLines{{8, 4, "There is ice attributes in the SDP."},
                                       {8, 4, "The gain control value is set to: 4"}}));
}

TEST(ParserParse, PutsUpWithABadAddressOfABodyWithoutMedia) {
  const Parsed result = parsed(bodyOf({}, "c=IN X host.example"));
  EXPECT_EQ(result.status, 0);
  EXPECT_TRUE(result.data.address.isZero());
  EXPECT_EQ(result.traces, (TraceLines{{4, 3, "Invalid ip address (host.example) found in c-line"},
                                       {8, 4, "The gain control value is set to: 4"}}));
  const Parsed none = parsed(bodyOf({}, ""));
  EXPECT_EQ(none.status, 0);
  EXPECT_EQ(none.traces, (TraceLines{{8, 4, "The gain control value is set to: 4"}}));
}

struct ConnectionCase {
  std::string line;
  bool accepted;
};

TEST(ParserParse, ComparesTheSessionsAddressWithItsType) {
  const std::string message =
      "The c-line is malformed. There is no correspondance between IP address and IP type.";
  const std::vector<ConnectionCase> cases = {
      {"c=IN IP4 192.0.2.1", true},
      {"c=IN ip4 192.0.2.1", true},
      {"c=IN IP6 2001:db8::1", true},
      {"c=IN iP6 2001:db8::1", true},
      {"c=IN IP4 224.2.1.1/127/3", true},  // the suffix is no part of the address
      {"c=IN IP5 anything", true},
      {"c=IN IP4 2001:db8::1", false},
      {"c=IN IP6 192.0.2.1", false},
      {"c=IN ip6 192.0.2.1", false},
      {"c=IN IP4 host.example", false},
      {"c=IN IP4 " + std::string(5000, '1'), false},
      {"c=IN IP6 " + std::string(126, ':'), false},
      {"c=IN IP4 \xFF\x80", false},
      {"c=IN IP4 %s%n%s", false},
  };
  for (const ConnectionCase& each : cases) {
    const Parsed result = parsed(bodyOf({}, each.line));
    EXPECT_EQ(result.status, each.accepted ? 0 : 1) << each.line;
    EXPECT_EQ(result.has(4, 3, message), !each.accepted) << each.line;
  }
  // The first of two lines decides, and an m-line's own one is not compared.
  EXPECT_EQ(parsed(bodyOf({}, "c=IN IP4 192.0.2.1\r\nc=IN IP4 ::1")).status, 0);
  EXPECT_EQ(parsed(bodyOf({"m=audio 5004 RTP/AVP 0", "c=IN IP4 ::1"})).status, 0);
}

// The text is looked at before the c-line is refused.
TEST(ParserParse, KeepsWhatItFoundBeforeARefusal) {
  const Parsed result = parsed(bodyOf({"a=ice-lite", "a=recvonly"}, "c=IN IP4 ::1"));
  EXPECT_EQ(result.status, 1);
  EXPECT_TRUE(result.attribute(SDP_ATTR_ICE_LITE));
  EXPECT_EQ(result.data.sessionMode, CONNECTION_MODE_RECVONLY);
  EXPECT_EQ(result.data.gainControl, 0);
}

TEST(ParserParse, RefusesMoreThan25MediaDescriptions) {
  EXPECT_EQ(parsed(bodyOf(repeated(25, "m=audio 5004 RTP/AVP 0"))).status, 0);
  for (const std::size_t count : {26U, 60U, 300U}) {
    const Parsed result = parsed(bodyOf(repeated(count, "m=audio 5004 RTP/AVP 0")));
    EXPECT_EQ(result.status, 1);
    EXPECT_TRUE(result.has(4, 3, "The noOfMDs > 25; data corrupted!"));
    EXPECT_EQ(result.data.mediaType, 0U);  // before any of them is looked at
  }
}

// The steps in front of the count look at what is held.
TEST(ParserParse, LooksAtNoMoreThan25MediaDescriptionsBeforeTheyAreCounted) {
  std::vector<std::string> lines = repeated(25, "m=audio 5004 RTP/AVP 0");
  lines.insert(lines.end(), {"m=audio 5004 RTP/AVP 0", "a=key-mgmt:mikey AAA"});
  const Parsed beyond = parsed(bodyOf(lines));
  EXPECT_EQ(beyond.status, 1);
  EXPECT_FALSE(beyond.attribute(SDP_ATTR_MIKEY));
  lines.insert(lines.begin() + 25, "a=key-mgmt:mikey AAA");
  const Parsed held = parsed(bodyOf(lines));
  EXPECT_EQ(held.status, 1);
  EXPECT_TRUE(held.attribute(SDP_ATTR_MIKEY));
}

TEST(ParserParse, CountsTelephoneEventsOfAnyMedia) {
  const Parsed video =
      parsed(bodyOf({"m=audio 5004 RTP/AVP 0", "m=video 5006 RTP/AVP 99", "a=fmtp:99 telephone-event"}));
  EXPECT_EQ(codecsOf(video.data), (Codecs{3, 29}));
  const Parsed session = parsed(bodyOf({"a=x-telephone-events", "m=audio 5004 RTP/AVP 8"}));
  EXPECT_EQ(codecsOf(session.data), (Codecs{1, 29}));
  EXPECT_EQ(codecsOf(parsed(bodyOf({"i=Telephone-event", "m=audio 5004 RTP/AVP 0"})).data), (Codecs{3}));
}

TEST(ParserParse, CountsTelephoneEventsWithoutAudio) {
  const Parsed result = parsed(bodyOf({"m=video 5006 RTP/AVP 31", "a=telephone-event"}));
  EXPECT_EQ(codecsOf(result.data), (Codecs{29}));
  EXPECT_EQ(codecsOf(parsed(bodyOf({"a=telephone-event"})).data), Codecs{});  // without any media it does not
}

// What an earlier use left in the record behind the codecs of the body is none of them.
TEST(ParserParse, LooksForTelephoneEventsAmongTheCodecsOfTheBodyAlone) {
  sSdpParsedData data = emptySummary();
  data.audioCodec[2] = 29;
  data.audioCodec[19] = 29;
  const std::string body = bodyOf({"m=audio 5004 RTP/AVP 0", "a=x:telephone-event"});
  ASSERT_EQ(sdpParserMessage::sdpParse(body.c_str(), SDP_TYPE_OFFER, data), 0);
  EXPECT_EQ(data.audioCodec[0], 3);
  EXPECT_EQ(data.audioCodec[1], 29);
}

TEST(ParserParse, DoesNotRepeatTelephoneEvents) {
  const Parsed result = parsed(bodyOf({"m=audio 5004 RTP/AVP 101 0", "a=rtpmap:101 telephone-event/8000"}));
  EXPECT_EQ(codecsOf(result.data), (Codecs{29, 3}));
}

std::string formats(std::size_t count) {
  std::string text;
  for (std::size_t i = 0; i < count; ++i) text += " 8";
  return text;
}

TEST(ParserParse, PutsTelephoneEventsInTheLastPlaceOfAFullList) {
  Codecs expected(20, 1);
  expected[19] = 29;
  for (const std::size_t count : {20U, 21U, 40U}) {
    const Parsed result =
        parsed(bodyOf({"m=audio 5004 RTP/AVP" + formats(count), "a=x:telephone-event", "a=ptime:30"}));
    EXPECT_EQ(codecsOf(result.data), expected);
    EXPECT_EQ(periodsOf(result.data, 20), Periods(20, 30));
  }
  Codecs nineteen(19, 1);
  nineteen.push_back(29);
  EXPECT_EQ(codecsOf(parsed(bodyOf({"m=audio 5004 RTP/AVP" + formats(19), "a=telephone-event"})).data),
            nineteen);
}

// The order: telephone events come before the image's codec, which does not count.
TEST(ParserParse, PutsTheImageCodecBehindTelephoneEvents) {
  const Parsed result =
      parsed(bodyOf({"m=audio 5004 RTP/AVP 0", "a=telephone-event", "a=ptime:20", "m=image 5006 udptl t38"}));
  EXPECT_EQ(codecsOf(result.data), (Codecs{3, 29, 28}));
  EXPECT_EQ(periodsOf(result.data, 4), (Periods{20, 20, 255, 255}));
}

TEST(ParserParse, LeavesAFullListToTelephoneEventsBeforeTheImageCodec) {
  Codecs expected(19, 1);
  expected.push_back(29);
  const Parsed result =
      parsed(bodyOf({"m=audio 5004 RTP/AVP" + formats(19), "a=telephone-event", "m=image 5006 udptl t38"}));
  EXPECT_EQ(codecsOf(result.data), expected);
}

// Deliberate: one period for all codecs, whatever the body lists.
TEST(ParserParse, KeepsTheFirstPeriodOnly) {
  const Parsed list = parsed(bodyOf({"m=audio 5004 RTP/AVP 0 8 18", "a=mptime:20 30 -"}));
  EXPECT_EQ(periodsOf(list.data, 4), (Periods{20, 20, 20, 255}));
  const Parsed range = parsed(bodyOf({"m=audio 5004 RTP/AVP 0 8 18", "a=ptime:20-30"}));
  EXPECT_EQ(periodsOf(range.data, 4), (Periods{20, 20, 20, 255}));
  const Parsed none = parsed(bodyOf({"m=audio 5004 RTP/AVP 0 8 18"}));
  EXPECT_EQ(periodsOf(none.data, 4), (Periods{255, 255, 255, 255}));
}

// Kept: only the entries of codecs are overwritten, so the end of a range shows behind a single codec, and
// without any codec nothing is overwritten.
TEST(ParserParse, LeavesTheEndOfARangeBehindASingleCodec) {
  EXPECT_EQ(periodsOf(parsed(bodyOf({"m=audio 5004 RTP/AVP 0", "a=ptime:20-30"})).data, 3),
            (Periods{20, 30, 255}));
  EXPECT_EQ(periodsOf(parsed(bodyOf({"m=audio 5004 RTP/AVP 99", "a=ptime:20-30"})).data, 3),
            (Periods{20, 30, 255}));
}

// The order: an image's port and address replace the video's, and an audio m-line keeps both of its own.
TEST(ParserParse, LetsLaterMediaReplacePortAndAddress) {
  const std::vector<std::string> videoImage = {"m=image 6002 udptl t38", "c=IN IP4 192.0.2.3",
                                               "m=video 6001 RTP/AVP 31", "c=IN IP4 192.0.2.2"};
  const Parsed image = parsed(bodyOf(videoImage));
  EXPECT_EQ(image.data.port, 6002U);
  EXPECT_EQ(addressOf(image.data), "192.0.2.3");
  EXPECT_EQ(image.data.mediaType, static_cast<unsigned>(MEDIA_VIDEO | MEDIA_IMAGE));
  std::vector<std::string> all = videoImage;
  all.insert(all.end(), {"m=audio 6000 RTP/AVP 0", "c=IN IP4 192.0.2.4"});
  const Parsed audio = parsed(bodyOf(all));
  EXPECT_EQ(audio.data.port, 6000U);
  EXPECT_EQ(addressOf(audio.data), "192.0.2.4");
}

// The order: the audio's direction replaces the session's.
TEST(ParserParse, LetsTheAudiosDirectionReplaceTheSessions) {
  const Parsed result = parsed(bodyOf({"a=recvonly", "m=audio 5004 RTP/AVP 0", "a=sendonly"}));
  EXPECT_EQ(result.data.sessionMode, CONNECTION_MODE_SENDONLY);
  EXPECT_EQ(parsed(bodyOf({"a=recvonly", "m=audio 5004 RTP/AVP 0", "a=x"})).data.sessionMode,
            CONNECTION_MODE_RECVONLY);
}

// The order: secure media are noted before the audio is refused.
TEST(ParserParse, NotesSecureMediaBeforeTheAudio) {
  const Parsed result = parsed(bodyOf({"m=audio 80 RTP/SAVP 0"}));
  EXPECT_EQ(result.status, 1);
  EXPECT_TRUE(result.attribute(SDP_ATTR_SECURE_RTP));
  EXPECT_EQ(result.traces, (TraceLines{{2, 2, "Setting secure RTP call flag"},
                                       {4, 3, "Invalid port number found in m=audio: 80"}}));
}

// The order: video is looked at before the image, and the message is not when the video is refused.
TEST(ParserParse, StopsAtTheFirstMediumThatIsRefused) {
  const std::vector<std::string> lines = {"m=image 80 udptl t38", "m=message 5000 TCP/MSRP *",
                                          "m=video 90 RTP/AVP 31"};
  const Parsed result = parsed(bodyOf(lines));
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.data.mediaType, static_cast<unsigned>(MEDIA_VIDEO));
  EXPECT_EQ(result.traces, (TraceLines{{4, 3, "Invalid port number found in m=video: 90"}}));
  const Parsed image = parsed(bodyOf({"m=application 5000 TCP x", lines[0], lines[1]}));
  EXPECT_EQ(image.status, 1);
  EXPECT_EQ(image.data.mediaType, static_cast<unsigned>(MEDIA_IMAGE | MEDIA_MESSAGE));
}

const std::vector<std::string> h264Levels = {
    "m=video 5006 RTP/AVP 97 98", "b=AS:100",
    "a=rtpmap:97 H264/90000",     "a=fmtp:97 profile-level-id=42e01f",
    "a=rtpmap:98 H264/90000",     "a=fmtp:98 profile-level-id=42e00c",
    "m=video 5008 RTP/AVP 97",    "b=AS:300",
    "a=rtpmap:97 H264/90000",     "a=fmtp:97 profile-level-id=42e015",
    "m=video 5010 RTP/AVP 31",    "b=AS:200"};

TEST(ParserParse, TakesTheLargestLevelAndBandwidthOfTheVideos) {
  const Parsed result = parsed(bodyOf(h264Levels));
  EXPECT_EQ(result.data.h264Profile, H264_LEVEL_3_1);
  EXPECT_EQ(result.data.videoBandwidth, 300U);
  const Parsed none = parsed(bodyOf({"m=video 5006 RTP/AVP 31"}));
  EXPECT_EQ(none.data.h264Profile, H264_PROFILE_NOT_PRESENT);
  EXPECT_EQ(none.data.videoBandwidth, 0U);
  const Parsed undecoded = parsed(bodyOf({"m=video 5006 RTP/AVP 97", "a=rtpmap:97 H264/90000"}));
  EXPECT_EQ(undecoded.data.h264Profile, H264_LEVEL_1);
}

TEST(ParserParse, LeavesApplicationsAndInactivePortsOutOfTheVideoValues) {
  const Parsed result =
      parsed(bodyOf({"m=application 5006 RTP/AVP 97", "b=AS:100", "a=rtpmap:97 H264/90000",
                     "a=fmtp:97 profile-level-id=42e01f", "m=video 0 RTP/AVP 97", "b=AS:200",
                     "a=rtpmap:97 H264/90000", "a=fmtp:97 profile-level-id=42e01f"}));
  EXPECT_EQ(result.data.h264Profile, H264_PROFILE_NOT_PRESENT);
  EXPECT_EQ(result.data.videoBandwidth, 0U);
}

// The order: the video list sets the bit for every video, not only for the chosen one.
TEST(ParserParse, NotesAReceiveOnlyVideoBehindTheChosenOne) {
  const Parsed result =
      parsed(bodyOf({"m=video 5006 RTP/AVP 31", "a=sendrecv", "m=video 5008 RTP/AVP 31", "a=recvonly"}));
  EXPECT_EQ(result.data.videoMode, CONNECTION_MODE_SENDRECV);
  EXPECT_TRUE(result.attribute(SDP_ATTR_RECVONLY_VIDEO));
  EXPECT_FALSE(parsed(bodyOf({"m=video 0 RTP/AVP 31", "a=recvonly"})).attribute(SDP_ATTR_RECVONLY_VIDEO));
  EXPECT_FALSE(parsed(bodyOf({"m=application 5006 x y", "a=recvonly"})).attribute(SDP_ATTR_RECVONLY_VIDEO));
}

struct VersionCase {
  std::string connection;
  std::vector<std::string> media;
  bool isIPv6;
};

TEST(ParserParse, IndicatesIPv6) {
  const std::string six = "c=IN IP6 2001:db8::1";
  const std::string four = "c=IN IP4 192.0.2.1";
  const std::string audio = "m=audio 5004 RTP/AVP 0";
  const std::vector<VersionCase> cases = {
      {six, {audio}, true},
      {four, {audio}, false},
      {four, {audio, six}, true},
      {six, {audio, four}, false},
      {six, {"m=audio 0 RTP/AVP 0"}, true},  // no active media: the session decides
      {four, {"m=audio 0 RTP/AVP 0"}, false},
      {"", {"m=audio 0 RTP/AVP 0"}, false},
      {four, {audio, "a=candidate:2001:db8::1"}, true},
      {six, {audio, "a=candidate:192.0.2.1"}, false},
      {six, {}, false},  // without media it is not looked at
      {"", {audio, six, audio, six}, true},
      {"", {audio, four, audio, four}, false},
      {"", {audio, four, audio, six}, true},  // IPv6 outweighs IPv4, wherever it stands
      {"", {audio, six, audio, four}, true},
      {four, {"m=audio 0 RTP/AVP 0", six, audio}, false},
      {six, {audio, "m=video 0 RTP/AVP 31", four}, true},
      {four, {audio, "m=video 5006 RTP/AVP 31"}, false},
      {four, {"a=candidate:2001:db8::1", audio}, true},          // inherited
      {four, {"a=candidate:2001:db8::1", audio, "a=x"}, false},  // the section has lines of its own
  };
  for (const VersionCase& each : cases) {
    EXPECT_EQ(parsed(bodyOf(each.media, each.connection)).attribute(SDP_ATTR_IPV6), each.isIPv6)
        << each.connection << ' ' << joined(each.media);
  }
}

// Without any ICE attribute the match bit is as it was, and a lite body has it judged as well.
TEST(ParserParse, JudgesCandidatesOfFullAndLiteBodies) {
  const std::vector<std::string> candidate = {"m=audio 5004 RTP/AVP 0",
                                              "a=candidate:1 1 UDP 1 192.0.2.1 5004 typ host"};
  EXPECT_TRUE(parsed(bodyOf(candidate)).attribute(SDP_ATTR_ICE_CANDIDATES_MATCH));
  std::vector<std::string> lite = candidate;
  lite.insert(lite.begin(), "a=ice-lite");
  EXPECT_TRUE(parsed(bodyOf(lite)).attribute(SDP_ATTR_ICE_CANDIDATES_MATCH));
  sSdpParsedData data = emptySummary();
  data.sdpAttributes = SDP_ATTR_ICE_CANDIDATES_MATCH;
  EXPECT_EQ(sdpParserMessage::sdpParse(ExactText(bodyOf({candidate[0]})), SDP_TYPE_OFFER, data), 0);
  EXPECT_EQ(data.sdpAttributes, static_cast<unsigned>(SDP_ATTR_ICE_CANDIDATES_MATCH));
}

// Kept: what other members of a reused summary held is only overwritten where the body says something.
TEST(ParserParse, LeavesWhatTheBodyDoesNotName) {
  sSdpParsedData data = emptySummary();
  data.storedSdpLength = 7;
  data.echoCancelDirection = 1;
  data.resourceReserve = 3;
  EXPECT_EQ(sdpParserMessage::sdpParse(ExactText(bodyOf({"m=audio 5004 RTP/AVP 0"})), SDP_TYPE_ANSWER, data),
            0);
  EXPECT_EQ(data.storedSdpLength, 7);
  EXPECT_EQ(data.echoCancelDirection, 1);
  EXPECT_EQ(data.resourceReserve, 3);
}

}  // namespace
