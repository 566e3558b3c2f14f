#include <cstdio>

#include "objectTestSupport.h"
#include "requestProperty.h"
#include "testFiles.h"

// Every request on every body at hand, with a handful of values: behind it the object is empty, as before, or as a
// fresh parse of its text; of a request that only stores the text, the summary is as the table of requests says.

namespace {

using requestProperty::complaint;
using requestProperty::isOrdinary;

/// A caller's room for video sections.
char videoSections[8192];

RequestValues inSomeOtherWay() {
  RequestValues values;
  const unsigned char codecs[] = {38, 31, 5, 29};
  std::copy(std::begin(codecs), std::end(codecs), values.codecs);
  values.codecNames = "OPUS,,G729,unknown";
  values.videoCodecs[0] = 12;
  values.videoCodecCount = 1;
  values.ip = "2001:db8::99";
  values.ipVersion = IP_VERSION_4;
  values.version = 4294967295U;
  values.longVersion = -1;
  values.sessionVersion = "18446744073709551615";
  values.mode = CONNECTION_MODE_INACTIVE;
  values.mediaSelect = 1;
  values.mediaMask = MEDIA_AUDIO;
  values.state = FEATURE_STATE_OFF;
  values.side = 1;
  values.unsupported = NON_SUPPORTED_RTP;
  values.to = SECURITY_SRTP_ONLY;
  values.fromTransport = "RTP/AVP";
  values.toTransport = "RTP/SAVPF";
  values.bandwidth = 1;
  values.profile = H264_LEVEL_1B;
  values.flag = values.hold = values.answer = false;
  values.third = true;
  values.videoOut = videoSections;
  values.videoOutSize = sizeof videoSections;
  values.sections = "m=video 5008 RTP/SAVP 96\r\na=rtpmap:96 H264/90000\r\na=recvonly\r\n";
  std::fill_n(values.removed, 25, static_cast<char>(27));
  return values;
}

RequestValues forTheOtherKeys() {
  RequestValues values = inSomeOtherWay();
  values.unsupported = NON_SUPPORTED_SDES;
  values.mode = CONNECTION_MODE_RECVONLY;
  values.mediaMask = MEDIA_IMAGE | MEDIA_APPLICATION;
  values.mediaSelect = 2;
  values.fromTransport = "UDP/TLS/RTP/SAVPF";
  values.hold = true;
  values.codecs[0] = 29;
  values.flag = true;
  return values;
}

std::vector<RequestValues> handful() {
  RequestValues mikey;
  mikey.unsupported = NON_SUPPORTED_MIKEY;
  mikey.codecCount = 20;
  mikey.hold = false;
  return {RequestValues(), inSomeOtherWay(), forTheOtherKeys(), mikey};
}

/// Bodies by file name, as objects.
struct Body {
  std::string name;
  bool ordinary;
  cSdpNegotiator object;
};

std::vector<Body> bodiesBelow(const std::string& folder) {
  std::vector<Body> bodies;
  for (const auto& file : sdpFilesBelow(folder)) {
    const std::string text = readBytes(file).c_str();
    Body body{file.string(), isOrdinary(text), {}};
    if (text.size() < MAX_SDP_PROTOCOL_DATA_SIZE && body.object.sdpParse(text.c_str(), SDP_TYPE_UNKNOWN) == 0)
      bodies.push_back(body);
  }
  return bodies;
}

/// @return in how many cases the object was changed
int expectProperties(const Body& body, const Body& other, const std::vector<RequestValues>& sets) {
  int changed = 0;
  for (const RequestRow& request : allRequests()) {
    for (std::size_t i = 0; i < sets.size(); ++i) {
      RequestValues values = sets[i];
      values.other = other.object;
      if (i != 0) values.codecs[0] = body.object.getParsedData().audioCodec[i];
      values.offer = body.object;
      cSdpNegotiator object = body.object;
      const unsigned short status = request.run(object, values);
      EXPECT_EQ(complaint(request, body.object, object, status, body.ordinary && other.ordinary), "")
          << request.name << ", values " << i << ", " << body.name << "\n"
          << textOf(object);
      changed += sameBytes(object, body.object) ? 0 : 1;
    }
  }
  return changed;
}

void expectPropertiesBelow(const std::string& folder) {
  const std::vector<Body> bodies = bodiesBelow(folder);
  ASSERT_FALSE(bodies.empty());
  const std::vector<RequestValues> sets = handful();
  int changed = 0;
  for (std::size_t i = 0; i < bodies.size(); ++i) {
    changed += expectProperties(bodies[i], bodies[(i + 1) % bodies.size()], sets);
    if (testing::Test::HasFailure()) return;
  }
  EXPECT_GT(changed, 0);
  const auto ordinary = std::count_if(bodies.begin(), bodies.end(), [](const Body& b) { return b.ordinary; });
  EXPECT_GT(ordinary, 0);
  std::printf("%zu bodies, %td of them ordinary; %zu requests, %d changes\n", bodies.size(), ordinary,
              allRequests().size(), changed);
}

TEST(RequestsCorpus, EveryRequestLeavesTheProjectsBodiesAsItSays) {
  expectPropertiesBelow(SDP_TEST_SOURCE_DIR "/parsers/sdp/test/bodies");
}

TEST(RequestsCorpus, EveryRequestLeavesACollectionOfBodiesAsItSays) {
  const std::string folder = corpusFolder();
  if (folder.empty()) GTEST_SKIP() << "SDP_CORPUS_DIR names no folder of bodies";
  expectPropertiesBelow(folder);
}

}  // namespace
