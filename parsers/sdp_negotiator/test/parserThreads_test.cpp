#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <thread>
#include <vector>

#include "parserParseSupport.h"

// Parses on several threads keep out of each other's way.

namespace {

struct Expected {
  std::string body;
  int status;
  sSdpParsedData data;
};

std::vector<Expected> bodies() {
  std::vector<Expected> all;
  for (int i = 0; i < 8; ++i) {
    const std::string port = std::to_string(5000 + i);
    std::vector<std::string> lines = {"m=audio " + port + " RTP/SAVP 0 8 97", "a=rtpmap:97 iLBC/8000",
                                      "a=candidate:1 1 UDP 1 192.0.2.1 " + port + " typ host"};
    for (int more = 0; more < i; ++more) {
      lines.insert(lines.end(), {"m=video 6000 RTP/AVP 97", "a=rtpmap:97 H264/90000",
                                 "a=fmtp:97 profile-level-id=42e01f", "a=label:" + std::to_string(more)});
    }
    if (i == 7) lines.push_back("c=IN IP4");
    const std::string body = bodyOf(lines);
    const Parsed result = parsed(body);
    all.push_back({body, result.status, result.data});
  }
  return all;
}

void parseMany(const std::vector<Expected>& all, std::size_t first, int& different) {
  for (std::size_t round = 0; round < 200; ++round) {
    const Expected& each = all[(first + round) % all.size()];
    sSdpParsedData data = emptySummary();
    const int status = sdpParserMessage::sdpParse(each.body.c_str(), SDP_TYPE_OFFER, data);
    if (status != each.status || std::memcmp(&data, &each.data, sizeof data) != 0) ++different;
  }
}

TEST(ParserThreads, GiveTheResultsOfOneThread) {
  const std::vector<Expected> all = bodies();
  ASSERT_EQ(all[6].data.port, 5006U);
  ASSERT_EQ(all[7].status, 1);
  const TraceCapture capture;  // so that they meet in the trace as well
  std::vector<int> different(4);
  std::vector<std::thread> threads;
  for (std::size_t i = 0; i < different.size(); ++i) {
    threads.emplace_back(parseMany, std::cref(all), i, std::ref(different[i]));
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(different, std::vector<int>(4));
}

}  // namespace
