#include <gtest/gtest.h>

#include "parserParseSupport.h"

// The trace of a summary.

namespace {

TEST(ParserDump, TracesEveryField) {
  sSdpParsedData data = emptySummary();
  data.address.setIPAddress("2001:db8::1");
  data.port = 5004;
  data.audioCodec[0] = 3;
  data.audioCodec[1] = 29;
  data.packetizationPeriod[0] = 20;
  data.h264Profile = H264_LEVEL_3_1;
  data.mediaType = MEDIA_AUDIO | MEDIA_VIDEO;
  data.bandwidth = 4294967295U;
  data.sdpAttributes = 0x841;
  data.gainControl = -1;
  data.echoCancellation = 1;
  data.silenceSuppression = 2;
  data.resourceReserve = 3;
  data.sessionMode = 4;
  data.videoBandwidth = 384;
  data.videoMode = 2;
  const TraceCapture capture;
  sdpParserMessage::sdpDumpMediaInfo(data);
  EXPECT_EQ(
      capture.lines(),
      (TraceLines{
          {8, 4, "address:2001:db8::1,   addressType:10,   port:5004"},
          {8, 4, "audioCodec:[3],   packetizationPeriod:[20]"},
          {8, 4, "audioCodec:[29],   packetizationPeriod:[255]"},
          {8, 4, "sessionMode:4,   videoMode:2"},
          {8, 4, "bandwidth:4294967295,   videoBandwidth:384,   echoCancellation:1,   silenceSuppression:2"},
          {8, 4, "resourceReserve:3,   gainControl:-1,   mediaType:3"},
          {8, 4, "sdpAttributes:0x841"},
          {8, 4, "The h264 profile is:[9]"},
      }));
}

TEST(ParserDump, TracesAnEmptySummary) {
  const sSdpParsedData data = emptySummary();
  const TraceCapture capture;
  sdpParserMessage::sdpDumpMediaInfo(data);
  EXPECT_EQ(capture.lines(),
            (TraceLines{
                {8, 4, "address:0.0.0.0,   addressType:0,   port:-1"},
                {8, 4, "No audio codecs found."},
                {8, 4, "sessionMode:3,   videoMode:0"},
                {8, 4, "bandwidth:0,   videoBandwidth:0,   echoCancellation:0,   silenceSuppression:0"},
                {8, 4, "resourceReserve:0,   gainControl:0,   mediaType:0"},
                {8, 4, "sdpAttributes:0x0"},
                {8, 4, "The h264 profile is:[-2]"},
            }));
}

TEST(ParserDump, EndsAt20Codecs) {
  sSdpParsedData data = emptySummary();
  std::fill(std::begin(data.audioCodec), std::end(data.audioCodec), std::uint8_t{38});
  const TraceCapture capture;
  sdpParserMessage::sdpDumpMediaInfo(data);
  EXPECT_EQ(capture.count(8, 4, "audioCodec:[38],   packetizationPeriod:[255]"), 20);
}

// A record from elsewhere may have unused entries between used ones.
TEST(ParserDump, LeavesUnusedEntriesOut) {
  sSdpParsedData data = emptySummary();
  data.audioCodec[0] = 3;
  data.audioCodec[19] = 29;
  data.packetizationPeriod[19] = 20;
  const TraceCapture capture;
  sdpParserMessage::sdpDumpMediaInfo(data);
  EXPECT_EQ(capture.count(8, 4, "audioCodec:[3],   packetizationPeriod:[255]"), 1);
  EXPECT_EQ(capture.count(8, 4, "audioCodec:[29],   packetizationPeriod:[20]"), 1);
  EXPECT_EQ(capture.lines().size(), 8U);
}

}  // namespace
