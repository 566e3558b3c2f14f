#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "parserParseSupport.h"

// The choice of the audio m-line and what is taken from it.

namespace {

using Codecs = std::vector<int>;
using Periods = std::vector<int>;

/// What findFirstAudio leaves; the periods start as not given.
struct Audio {
  int status = 0;
  sSdpParsedData data = emptySummary();
  unsigned int count = 0;
  std::vector<unsigned char> periods = std::vector<unsigned char>(20, SDP_PACKETIZATION_NOT_SET);
  unsigned int kinds = 0;
  TraceLines traces;
};

Audio audioOf(const std::vector<std::string>& lines, unsigned int count = 0) {
  const auto description = decoded(bodyOf(lines));
  const TraceCapture capture;
  Audio result;
  result.count = count;
  result.status = sdpParserMessage::findFirstAudio(result.data, *description, result.count,
                                                   sdp_getNoOfMDs(description.get()), result.periods.data());
  result.kinds = description->mediaKinds;
  result.traces = capture.lines();
  return result;
}

/// An audio m-line of PCMU with attribute lines.
Audio withAttributes(std::vector<std::string> lines, const std::string& formats = "0") {
  lines.insert(lines.begin(), "m=audio 5004 RTP/AVP " + formats);
  return audioOf(lines);
}

TEST(ParserAudioChoice, TakesTheFirstInUse) {
  const Audio result = audioOf({"m=video 5000 RTP/AVP 31", "m=audio 0 RTP/AVP 0", "m=audio 5002 RTP/AVP 8",
                                "m=audio 5004 RTP/AVP 18"});
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.data.port, 5002U);
  EXPECT_EQ(codecsOf(result.data), (Codecs{1}));
  EXPECT_EQ(result.count, 1U);
  EXPECT_EQ(result.data.mediaType, static_cast<unsigned>(MEDIA_AUDIO));
  EXPECT_EQ(result.kinds, static_cast<unsigned>(MEDIA_AUDIO));
}

TEST(ParserAudioChoice, TakesAZeroPortOnlyFromTheLastMediaLine) {
  const Audio alone = audioOf({"m=audio 0 RTP/AVP 0 8"});
  EXPECT_EQ(alone.data.port, 0U);
  EXPECT_EQ(codecsOf(alone.data), (Codecs{3, 1}));
  EXPECT_EQ(alone.data.mediaType, static_cast<unsigned>(MEDIA_AUDIO));  // deliberate
  const Audio last = audioOf({"m=audio 0 RTP/AVP 0", "m=video 5000 RTP/AVP 31", "m=audio 0 RTP/AVP 8"});
  EXPECT_EQ(codecsOf(last.data), (Codecs{1}));
  const Audio followed = audioOf({"m=audio 0 RTP/AVP 0", "m=video 5000 RTP/AVP 31"});
  EXPECT_EQ(followed.status, 0);
  EXPECT_TRUE(followed.data.isInitialized());
  EXPECT_EQ(followed.kinds, static_cast<unsigned>(MEDIA_AUDIO));
}

TEST(ParserAudioChoice, SetsNothingWithoutAudio) {
  const Audio result = audioOf({"m=video 5000 RTP/AVP 31", "m=Audio 5002 RTP/AVP 0"});
  EXPECT_EQ(result.status, 0);
  EXPECT_TRUE(result.data.isInitialized());
  EXPECT_EQ(result.count, 0U);
  EXPECT_EQ(result.kinds, 0U);
}

struct PortCase {
  std::string field;
  int status;
  std::string traced;
};

TEST(ParserAudioChoice, RefusesPortsOutsideTheirRange) {
  const std::vector<PortCase> cases = {{"1024", 0, ""},
                                       {"65535", 0, ""},
                                       {"5004/2", 0, ""},
                                       {"005004", 0, ""},
                                       {"1", 1, "1"},
                                       {"80", 1, "80"},
                                       {"1023", 1, "1023"},
                                       {"65536", 1, "65536"},
                                       {"70000", 1, "70000"},
                                       {"4294967296", 1, "2147483647"},  // saturates, wraps nowhere
                                       {"4294972300", 1, "2147483647"},
                                       {std::string(1000, '9'), 1, "2147483647"}};
  for (const PortCase& each : cases) {
    const Audio result = audioOf({"m=audio " + each.field + " RTP/AVP 0"});
    EXPECT_EQ(result.status, each.status) << each.field;
    const TraceLines traces =
        each.status == 0 ? TraceLines{}
                         : TraceLines{{4, 3, "Invalid port number found in m=audio: " + each.traced}};
    EXPECT_EQ(result.traces, traces) << each.field;
  }
}

TEST(ParserAudioChoice, DoesNotLookAtPortsBehindTheChosenOne) {
  EXPECT_EQ(audioOf({"m=audio 5004 RTP/AVP 0", "m=audio 80 RTP/AVP 0"}).status, 0);
  EXPECT_EQ(audioOf({"m=audio 0 RTP/AVP 0", "m=audio 80 RTP/AVP 0"}).status, 1);
}

TEST(ParserAudioChoice, RefusesAnInvalidAddress) {
  const Audio result = audioOf({"m=audio 5004 RTP/AVP 0", "c=IN IP4 192.0.2.300"});
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.traces, (TraceLines{{4, 3, "Invalid ip address (192.0.2.300) found in c-line"}}));
  EXPECT_EQ(result.data.mediaType, 0U);  // nothing behind the address was set
  EXPECT_EQ(result.data.port, SDP_PORT_NOT_SET);
}

TEST(ParserAudioChoice, TakesTheFirstOfItsAddresses) {
  const Audio result = audioOf({"m=audio 5004 RTP/AVP 0", "c=IN IP4 192.0.2.7/127", "c=IN IP4 x"});
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(addressOf(result.data), "192.0.2.7");
  // The session's is inherited by the parse, not here.
  EXPECT_TRUE(audioOf({"m=audio 5004 RTP/AVP 0"}).data.address.isZero());
}

TEST(ParserAudioChoice, StopsAtTheGivenNumberOfMediaDescriptions) {
  const auto description = decoded(bodyOf({"m=video 5000 RTP/AVP 31", "m=audio 5002 RTP/AVP 0"}));
  for (const int number : {-1, 0, 1}) {
    Audio result;
    EXPECT_EQ(sdpParserMessage::findFirstAudio(result.data, *description, result.count, number,
                                               result.periods.data()),
              0);
    EXPECT_EQ(result.data.port, SDP_PORT_NOT_SET);
  }
  Audio result;
  EXPECT_EQ(
      sdpParserMessage::findFirstAudio(result.data, *description, result.count, 1000, result.periods.data()),
      0);
  EXPECT_EQ(result.data.port, 5002U);
}

TEST(ParserAudioCodecList, LeavesUnknownFormatsOut) {
  const Audio result = withAttributes({"a=rtpmap:97 iLBC/8000", "a=rtpmap:98 X/8000"}, "5 0 97 98 99 x 18");
  EXPECT_EQ(codecsOf(result.data), (Codecs{3, 26, 10}));
  EXPECT_EQ(result.count, 3U);
}

TEST(ParserAudioCodecList, EndsAt20Codecs) {
  for (const int number : {20, 21, 64, 1000}) {
    std::string formats = "0";
    for (int i = 1; i < number; ++i) formats += " 8";
    const Audio result = withAttributes({}, formats);
    EXPECT_EQ(result.count, 20U);
    EXPECT_EQ(result.data.packetizationPeriod[0], SDP_PACKETIZATION_NOT_SET);  // the list's neighbour
  }
}

TEST(ParserAudioCodecList, AppendsBehindTheCount) {
  const Audio appended = audioOf({"m=audio 5004 RTP/AVP 0 8"}, 19);
  EXPECT_EQ(appended.count, 20U);
  EXPECT_EQ(appended.data.audioCodec[19], 3);
  for (const unsigned int full : {20U, 21U, 0xFFFFFFFFU}) {
    const Audio result = audioOf({"m=audio 5004 RTP/AVP 0 8"}, full);
    EXPECT_EQ(result.count, full);
    EXPECT_EQ(codecsOf(result.data), Codecs{});
  }
}

TEST(ParserAudioCodecList, SurvivesNumbersBeyondItsTypes) {
  const Audio result = withAttributes({"a=rtpmap:4294967296 iLBC/8000"},
                                      "4294967296 4294967304 99999999999999999999 18446744073709551624 8");
  EXPECT_EQ(codecsOf(result.data), (Codecs{1}));
}

TEST(ParserAudioDirection, TakesItsOwnBeforeWhatIsThere) {
  EXPECT_EQ(withAttributes({"a=sendonly", "a=recvonly"}).data.sessionMode, CONNECTION_MODE_RECVONLY);
  EXPECT_EQ(withAttributes({"a=sendonly:"}).data.sessionMode, CONNECTION_MODE_SENDONLY);
  EXPECT_EQ(withAttributes({"a=Sendonly", "a=sendonlyx"}).data.sessionMode, CONNECTION_MODE_SENDRECV);
}

struct PeriodCase {
  std::vector<std::string> lines;
  Periods local;   ///< of the list for the parse
  Periods record;  ///< of the summary
};

// Three formats. Both attributes write the list's first entry, so the later line decides.
TEST(ParserAudioAttributes, LetsTheLaterOfPtimeAndMptimeDecide) {
  const std::vector<PeriodCase> cases = {
      {{"a=ptime:20"}, {20, 255, 255}, {20, 255, 255}},
      {{"a=ptime:20-30"}, {20, 255, 255}, {20, 30, 255}},
      {{"a=mptime:10 20 -"}, {10, 20, 20}, {255, 255, 255}},
      {{"a=ptime:40", "a=mptime:10 20 -"}, {10, 20, 20}, {40, 255, 255}},
      {{"a=mptime:10 20 -", "a=ptime:40"}, {40, 20, 20}, {40, 255, 255}},
      {{"a=mptime:10 20 -", "a=ptime"}, {255, 20, 20}, {255, 255, 255}},    // no value: nothing is set
      {{"a=mptime:10 20 -", "a=ptime:"}, {0, 20, 20}, {0, 255, 255}},       // an empty one sets 0
      {{"a=mptime:10 20 -", "a=ptime:x"}, {255, 20, 20}, {255, 255, 255}},  // it fails, but is copied
      {{"a=Ptime:20", "a=ptimes:20"}, {255, 255, 255}, {255, 255, 255}},
      {{"a=ptime:4294967295"}, {255, 255, 255}, {255, 255, 255}},  // saturates
  };
  for (const PeriodCase& each : cases) {
    const Audio result = withAttributes(each.lines, "0 8 18");
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(Periods(result.periods.begin(), result.periods.begin() + 3), each.local) << joined(each.lines);
    EXPECT_EQ(periodsOf(result.data, 3), each.record) << joined(each.lines);
  }
}

TEST(ParserAudioAttributes, ReadPeriodsWithoutAListForThem) {
  const auto description = decoded(bodyOf({"m=audio 5004 RTP/AVP 0", "a=mptime:10", "a=ptime:20"}));
  sSdpParsedData data = emptySummary();
  unsigned int count = 0;
  EXPECT_EQ(sdpParserMessage::findFirstAudio(data, *description, count, 1, nullptr), 0);
  EXPECT_EQ(periodsOf(data, 1), Periods{20});
}

TEST(ParserAudioAttributes, StopAtAFailureWithoutFailing) {
  for (const std::string failing :
       {"a=mptime:11", "a=mptime:10 10", "a=ptime:x", "a=silenceSupp:x", "a=silenceSupp:"}) {
    const Audio result = withAttributes({"a=ecan:on", failing, "a=ecan:off", "a=silenceSupp:on"});
    EXPECT_EQ(result.status, 0) << failing;
    EXPECT_EQ(result.data.echoCancellation, FEATURE_STATE_ON) << failing;
    EXPECT_EQ(result.data.silenceSuppression, FEATURE_STATE_NOT_SPECIFIED) << failing;
    EXPECT_EQ(result.traces.size(), 1U) << failing;
  }
}

TEST(ParserAudioAttributes, GoOnBehindABadEcan) {
  const Audio result = withAttributes({"a=ecan:x", "a=silenceSupp:on"});
  EXPECT_EQ(result.data.silenceSuppression, FEATURE_STATE_ON);
  EXPECT_EQ(result.traces, (TraceLines{{2, 2, "Unrecognized ecan value"}}));
}

TEST(ParserAudioAttributes, PutUpWithoutValues) {
  const Audio result =
      withAttributes({"a=mptime", "a=ptime", "a=silenceSupp", "a=ecan", "a=gpmd", "a=fmtp",
                      "a=gpmd:", "a=fmtp:", "a=rtpmap", "a=rtpmap:", "a=", "a=:", "a=silenceSupp:off"},
                     "0 97");
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(codecsOf(result.data), (Codecs{3}));
  EXPECT_EQ(result.data.silenceSuppression, FEATURE_STATE_OFF);
  EXPECT_EQ(result.traces, TraceLines{});
}

TEST(ParserAudioAttributes, AreReadFromTheFirst40Lines) {
  std::vector<std::string> lines(SDP_ATTRIBUTE_CAPACITY - 1, "a=x");
  lines.push_back("a=ecan:on");
  EXPECT_EQ(withAttributes(lines).data.echoCancellation, FEATURE_STATE_ON);
  lines.insert(lines.begin(), 1000, "a=x");
  EXPECT_EQ(withAttributes(lines).data.echoCancellation, FEATURE_STATE_NOT_SPECIFIED);
}

struct VoiceBandCase {
  std::vector<std::string> lines;
  int gain;
  int silence;
  int echo;
};

TEST(ParserVoiceBandData, CancelsWhenLinesOfOnePayloadContradict) {
  const std::string yes0 = "a=gpmd:0 vbd=yes";
  const std::string no0 = "a=gpmd:0 vbd=no";
  const std::string neutral0 = "a=gpmd:0 x=y";
  const std::string yes8 = "a=gpmd:8 vbd=yes";
  const std::string no8 = "a=gpmd:8 vbd=no";
  const std::vector<VoiceBandCase> cases = {
      {{yes0}, 44, 2, 2},
      {{yes8}, 44, 2, 2},
      {{no0}, 0, 0, 0},
      {{neutral0}, 0, 0, 0},
      {{no0, yes0}, 44, 2, 2},
      {{yes0, no0}, -1, 0, 0},
      {{neutral0, no0}, -1, 0, 0},
      {{yes8, no8}, -1, 0, 0},
      {{yes0, no8}, 44, 2, 2},
      {{no8, yes0}, 44, 2, 2},
      {{yes0, no0, yes0}, 44, 2, 2},
      {{yes0, no0, yes0, no0}, -1, 0, 0},
      {{"a=gpmd:101 vbd=yes"}, 0, 0, 0},
      {{"a=gpmd: 0 vbd=yes"}, 0, 0, 0},
      {{"a=gpmd:80 vbd=yes"}, 44, 2, 2},  // only the first character counts
      {{"a=ecan:on", neutral0, no0}, -1, 0, 0},
      {{neutral0, no0, "a=ecan:on"}, -1, 0, 1},
  };
  for (const VoiceBandCase& each : cases) {
    const Audio result = withAttributes(each.lines);
    EXPECT_EQ(result.data.gainControl, each.gain) << joined(each.lines);
    EXPECT_EQ(result.data.silenceSuppression, each.silence) << joined(each.lines);
    EXPECT_EQ(result.data.echoCancellation, each.echo) << joined(each.lines);
    EXPECT_EQ(result.traces, TraceLines{}) << joined(each.lines);
  }
}

TEST(ParserAnnexB, ReadsTheFormWithAColon) {
  const auto codecs = [](const std::vector<std::string>& lines) {
    return codecsOf(withAttributes(lines, "18 0 18").data);
  };
  EXPECT_EQ(codecs({"a=fmtp:18 annexb:no"}), (Codecs{11, 3, 11}));
  EXPECT_EQ(codecs({"a=fmtp:18 annexb:yes"}), (Codecs{15, 3, 15}));
  EXPECT_EQ(codecs({"a=fmtp: 1 8 annexb : no; x"}), (Codecs{11, 3, 11}));
  EXPECT_EQ(codecs({"a=fmtp:18 annexb:no", "a=fmtp:18 annexb:yes"}), (Codecs{11, 3, 11}));  // 10 is gone
  EXPECT_EQ(codecs({"a=fmtp:18 annexb=no"}), (Codecs{10, 3, 10}));  // deliberate: not this form
  EXPECT_EQ(codecs({"a=fmtp:18 annexb:n"}), (Codecs{10, 3, 10}));
  EXPECT_EQ(codecs({"a=fmtp:180 annexb:no"}), (Codecs{10, 3, 10}));
  EXPECT_EQ(codecs({"a=fmtp:" + std::string(5000, ' ') + "18annexb:no"}), (Codecs{10, 3, 10}));
}

}  // namespace
