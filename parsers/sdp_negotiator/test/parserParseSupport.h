#ifndef PARSER_PARSE_SUPPORT_H
#define PARSER_PARSE_SUPPORT_H

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "parserTestSupport.h"
#include "sdpNegotiatorParser.h"
#include "traceCapture.h"

// Whole bodies for the tests of the analysis.

using TraceLines = std::vector<TraceLine>;

/// The lines as a body, each with the given line end.
inline std::string joined(const std::vector<std::string>& lines, const std::string& lineEnd = "\r\n") {
  std::string text;
  for (const std::string& line : lines) text += line + lineEnd;
  return text;
}

/// A body of a session part and the given lines.
inline std::string bodyOf(const std::vector<std::string>& lines,
                          const std::string& connection = "c=IN IP4 192.0.2.1") {
  std::vector<std::string> all = {"v=0", "o=- 1 2 IN IP4 192.0.2.9", "s=-"};
  if (!connection.empty()) all.push_back(connection);
  all.push_back("t=0 0");
  all.insert(all.end(), lines.begin(), lines.end());
  return joined(all);
}

struct Parsed {
  int status;
  sSdpParsedData data;
  TraceLines traces;

  bool has(int flag, int level, std::string_view text) const {
    return std::find(traces.begin(), traces.end(), TraceLine{flag, level, std::string(text)}) != traces.end();
  }
  bool attribute(eSdpAttribute bit) const { return (data.sdpAttributes & static_cast<unsigned>(bit)) != 0; }
};

/// Parses a body from a buffer of exactly its size.
inline Parsed parsed(std::string_view body) {
  const TraceCapture capture;
  Parsed result{0, emptySummary(), {}};
  result.status = sdpParserMessage::sdpParse(ExactText(body), SDP_TYPE_OFFER, result.data);
  result.traces = capture.lines();
  return result;
}

/// A body's description, decoded into a record that was in use before.
inline std::unique_ptr<sDescription> decoded(std::string_view body) {
  auto description = usedRecord<sDescription>();
  char error[SDP_ERROR_TEXT_SIZE];
  unsigned short start = 0;
  unsigned short end = 0;
  EXPECT_EQ(sdp_decodeOpt_r(description.get(), ExactText(body), SDP_TYPE_OFFER, error, false, start, end), 0)
      << error;
  return description;
}

/// The audio codecs of a summary up to the first 0.
inline std::vector<int> codecsOf(const sSdpParsedData& data) {
  const auto* end = std::find(std::begin(data.audioCodec), std::end(data.audioCodec), SDP_NO_CODEC);
  return {std::begin(data.audioCodec), end};
}

/// The first packetization periods of a summary.
inline std::vector<int> periodsOf(const sSdpParsedData& data, std::size_t count) {
  return {data.packetizationPeriod, data.packetizationPeriod + count};
}

inline std::string addressOf(const sSdpParsedData& data) {
  char text[50];
  data.address.getIPAddressText(text, sizeof text);
  return text;
}

#endif
