#include "calls/bodyCache.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

tool::Call callOf(const std::vector<std::string>& bodies) {
  tool::Call call;
  for (const std::string& body : bodies) {
    tool::CallMessage& message = call.messages.emplace_back();
    message.text = body;
    message.sdpSize = body.size();
  }
  return call;
}

std::string bodyOn(int port) {
  return "v=0\r\no=- 1 1 IN IP4 192.0.2.1\r\ns=-\r\nc=IN IP4 192.0.2.1\r\nt=0 0\r\nm=audio " +
         std::to_string(port) + " RTP/AVP 8\r\n";
}

TEST(BodyCache, HasADocumentForMessagesWithOneText) {
  const tool::Call call = callOf({bodyOn(4000), bodyOn(4002), bodyOn(4000)});
  tool::BodyCache bodies;
  bodies.begin(call);
  const sdp::Document* const first = bodies.of(0);
  ASSERT_NE(first, nullptr);
  EXPECT_EQ(first->section(1).port(), 4000);
  const sdp::Document* const second = bodies.of(1);
  ASSERT_NE(second, nullptr);
  EXPECT_EQ(second->section(1).port(), 4002);
  EXPECT_EQ(bodies.of(2), first);
  EXPECT_EQ(bodies.ofAny(1), second);
}

TEST(BodyCache, KeepsFourThatWereAskedForLast) {
  std::vector<std::string> texts;
  texts.reserve(20);
  for (int i = 0; i < 20; ++i) texts.push_back(bodyOn(4000 + 2 * i));
  const tool::Call call = callOf(texts);
  tool::BodyCache bodies;
  bodies.begin(call);
  for (std::size_t i = 0; i + 4 < texts.size(); ++i) {
    const sdp::Document* const first = bodies.of(i);
    ASSERT_NE(first, nullptr);
    for (std::size_t behind = 1; behind <= 4; ++behind) ASSERT_NE(bodies.of(i + behind), nullptr);
    EXPECT_EQ(first->text(), texts[i]);
  }
}

TEST(BodyCache, BeginsAnewWithEachCall) {
  tool::BodyCache bodies;
  for (const int port : {4000, 5000}) {
    const tool::Call call = callOf({bodyOn(port)});
    bodies.begin(call);
    const sdp::Document* const body = bodies.of(0);
    ASSERT_NE(body, nullptr);
    EXPECT_EQ(body->section(1).port(), port);
  }
}

TEST(BodyCache, ReadsNoMoreThanACallMayCost) {
  const tool::Call call = callOf({bodyOn(4000), bodyOn(4002)});
  tool::BodyCache bodies;
  bodies.begin(call);
  ASSERT_NE(bodies.of(0), nullptr);
  EXPECT_FALSE(bodies.spend(std::size_t{64} * 1024 * 1024));
  EXPECT_TRUE(bodies.isSpent());
  EXPECT_NE(bodies.of(0), nullptr) << "it was read";
  EXPECT_EQ(bodies.of(1), nullptr);
  EXPECT_NE(bodies.ofAny(1), nullptr);
}

TEST(BodyCache, CountsWhatIsPassedOverAsRead) {
  const tool::Call call = callOf({bodyOn(4000), bodyOn(4002), bodyOn(4004)});
  tool::BodyCache bodies;
  bodies.begin(call);
  EXPECT_TRUE(bodies.passOver(0, 1));
  EXPECT_FALSE(bodies.spend(std::size_t{64} * 1024 * 1024));
  EXPECT_TRUE(bodies.passOver(0, 1)) << "they are there";
  const sdp::Document* const second = bodies.of(1);
  ASSERT_NE(second, nullptr);
  EXPECT_EQ(second->section(1).port(), 4002);
  EXPECT_FALSE(bodies.passOver(0, 2));
  EXPECT_EQ(bodies.of(2), nullptr);
  bodies.passOverAny(0, 2);
  const sdp::Document* const third = bodies.of(2);
  ASSERT_NE(third, nullptr);
  EXPECT_EQ(third->section(1).port(), 4004);
}

TEST(BodyCache, KeepsWhatIsKnownOfShapesForLaterCalls) {
  tool::BodyCache bodies;
  const tool::Call first = callOf({bodyOn(4000), bodyOn(0)});
  bodies.begin(first);
  bodies.factsOf(0, 0).isReachable = true;
  EXPECT_FALSE(bodies.factsOf(0, 1).isReachable);
  const tool::Call second = callOf({bodyOn(0), bodyOn(6000)});
  bodies.begin(second);
  EXPECT_TRUE(bodies.factsOf(1, 1).isReachable);
  EXPECT_FALSE(bodies.factsOf(0, 0).isReachable);
}

}  // namespace
