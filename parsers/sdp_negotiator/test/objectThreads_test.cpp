#include <atomic>
#include <thread>

#include "objectTestSupport.h"
#include "requestProperty.h"
#include "testFiles.h"

// Objects on several threads at once, and at the very end of a thread.

namespace {

TEST(Threads, DistinctObjectsAreUsedAtOnce) {
  constexpr int threads = 4;
  constexpr int rounds = 200;
  std::atomic<int> failures{0};
  const auto work = [&failures](int number) {
    const std::string mark = "a=mine:" + std::to_string(number) + "\r\n";
    const std::string bodies[] = {audioBody() + mark,
                                  paddedTo(3000 + static_cast<std::size_t>(number)) + mark,
                                  paddedTo(9000) + "m=video 5006 RTP/AVP 31\r\n" + mark};
    for (int i = 0; i < rounds; ++i) {
      for (const std::string& body : bodies) {
        cSdpNegotiator object;
        std::vector<mediaStruct> media;
        unsigned char codecs[8];
        unsigned int attributes = 0;
        const bool right = object.sdpParse(body.c_str(), SDP_TYPE_OFFER) == 0 && textOf(object) == body &&
                           object.contains(mark.c_str()) && object.compareSdpByBody(body.c_str()) == 0 &&
                           object.getMedia(media) == 0 && object.getVideoCodecs(codecs, attributes) == 0 &&
                           media.size() == (codecs[0] == 7 ? 1U : 0U);
        if (!right) ++failures;
      }
    }
  };
  std::vector<std::thread> pool;
  for (int i = 0; i < threads; ++i) pool.emplace_back(work, i);
  for (std::thread& each : pool) each.join();
  EXPECT_EQ(failures, 0);
}

/// Makes every request, each on a copy of an object.
/// @return what does not hold behind them; empty when all does
std::string makeAllRequests(const cSdpNegotiator& body) {
  char sections[2048];
  for (const RequestRow& request : allRequests()) {
    RequestValues values;
    values.other = values.offer = body;
    values.videoOut = sections;
    values.videoOutSize = sizeof sections;
    cSdpNegotiator object = body;
    const unsigned short status = request.run(object, values);
    const std::string complaint = requestProperty::complaint(request, body, object, status, true);
    if (!complaint.empty()) return request.name + (": " + complaint);
  }
  return "";
}

TEST(Threads, DistinctObjectsMakeEveryRequestAtOnce) {
  constexpr std::size_t threads = 4;
  constexpr int rounds = 5;
  std::vector<cSdpNegotiator> bodies = {parsedObject(paddedTo(4000))};
  for (const auto& file : sdpFilesBelow(SDP_TEST_SOURCE_DIR "/parsers/sdp/test/bodies")) {
    cSdpNegotiator object;
    if (object.sdpParse(readBytes(file).c_str(), SDP_TYPE_OFFER) == 0) bodies.push_back(object);
  }
  ASSERT_GT(bodies.size(), 1U);
  std::string complaints[threads];
  std::vector<std::thread> pool;
  for (std::string& complaint : complaints) {
    pool.emplace_back([&bodies, &complaint] {
      for (int round = 0; round < rounds; ++round) {
        for (const cSdpNegotiator& body : bodies) complaint += makeAllRequests(body);
      }
    });
  }
  for (std::thread& each : pool) each.join();
  for (const std::string& complaint : complaints) EXPECT_EQ(complaint, "");
}

TEST(Threads, AnObjectMayWanderFromThreadToThread) {
  const std::string body = paddedTo(5000);
  cSdpNegotiator object;
  std::string text;
  std::thread([&] { object = parsedObject(body); }).join();
  std::thread([&] { text = textOf(object); }).join();
  EXPECT_EQ(text, body);
}

/// Uses an object while its thread ends.
struct LateUser {
  std::string* result = nullptr;
  ~LateUser() {
    if (result != nullptr) *result = textOf(objectWithText(paddedTo(4000)));
  }
};

TEST(Threads, DestructorsOfAThreadMayStillUseObjects) {
  std::string early;
  std::string late;
  std::thread([&] {
    // Destroyed in the opposite order: the first one when the library has given its memory back already.
    thread_local LateUser last;
    last.result = &late;
    EXPECT_EQ(textOf(objectWithText(paddedTo(3000))), paddedTo(3000));
    thread_local LateUser first;
    first.result = &early;
  }).join();
  EXPECT_EQ(early, paddedTo(4000));
  EXPECT_EQ(late, paddedTo(4000));
}

}  // namespace
