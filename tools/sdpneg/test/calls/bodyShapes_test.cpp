// What bodies have in common, and what calls whose bodies have it are spared.

#include "calls/bodyShapes.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "calls/madeCall.h"
#include "calls/media.h"
#include "calls/troubles.h"

namespace {

using made::body;
using made::Maker;
using tool::shapeOf;

TEST(ShapeOf, LeavesOutWhatDiffersFromCallToCall) {
  EXPECT_EQ(shapeOf("v=0\r\no=- 12 3 IN IP4 198.51.100.7\r\ns=-\r\nc=IN IP4 198.51.100.7\r\nt=0 0\r\n"
                    "m=audio 31002 RTP/AVP 8\r\nc=IN IP6 2001:db8::77\r\na=ptime:20\r\nm=video 1 RTP/AVP 34"),
            "v=0\r\no=\r\ns=-\r\nc=IN IP4 192.0.2.1\r\nt=0 0\r\n"
            "m=audio 4000 RTP/AVP 8\r\nc=IN IP6 2001:db8::1\r\na=ptime:20\r\nm=video 4000 RTP/AVP 34");
  EXPECT_EQ(shapeOf("o=a 1 1 IN IP4 x\nm=audio 65535 RTP/AVP 0\n"), "o=\nm=audio 4000 RTP/AVP 0\n");
}

TEST(ShapeOf, KeepsWhatMeansSomething) {
  for (const std::string text : {
           "m=audio 0 RTP/AVP 8\r\n",          // refused
           "m=audio 9 RTP/AVP 8\r\n",          // not known yet
           "m=audio 05000 RTP/AVP 8\r\n",      // odd numbers
           "m=audio 65536 RTP/AVP 8\r\n",      //
           "m=audio 123456 RTP/AVP 8\r\n",     //
           "m=audio 5000/2 RTP/AVP 8\r\n",     // several
           "m=audio  5000 RTP/AVP 8\r\n",      // blanks
           "m=audio\r\n",                      //
           "m=audio 5000x RTP/AVP 8\r\n",      //
           "c=IN IP4 0.0.0.0\r\n",             // held
           "c=IN IP4 10.1.2.3\r\n",            // private
           "c=IN IP4 224.2.1.1/127\r\n",       // a group
           "c=IN IP4 host.example\r\n",        // a name
           "c=IN IP4 2001:db8::77\r\n",        // of another kind
           "c=IN IP6 fd00::1\r\n",             // private
           "c=IN IP4 198.51.100.7 \r\n",       // blanks
           "o=- 1 1 IN IP4 198.51.100.7\x01",  // no text
           "a=rtcp:31003\r\n",                 // other lines
           " c=IN IP4 198.51.100.7\r\n",       //
       }) {
    EXPECT_EQ(shapeOf(text), text);
  }
}

TEST(BodyShapes, AreNumberedAndKeepWhatIsKnown) {
  tool::BodyShapes shapes;
  const auto audio = shapes.of(body("m=audio 5000 RTP/AVP 8\n"));
  const auto other = shapes.of(body("m=audio 5000 RTP/AVP 0\n"));
  EXPECT_NE(audio, 0U);
  EXPECT_NE(other, audio);
  EXPECT_EQ(shapes.of(body("m=audio 6000 RTP/AVP 8\n", "2")), audio);
  EXPECT_EQ(shapes.of(std::string(4000, 'v')), 0U);

  shapes.factsOf(audio, other).isJudgedFine = true;
  EXPECT_FALSE(shapes.factsOf(other, audio).isJudgedFine);
  EXPECT_TRUE(shapes.factsOf(audio, other).isJudgedFine);
  shapes.factsOf(audio, 0).isJudgedFine = true;
  EXPECT_FALSE(shapes.factsOf(audio, 0).isJudgedFine) << "its shape is not kept";
}

TEST(BodyShapes, AreForgottenBetweenCallsOnceTheyAreMany) {
  tool::BodyShapes shapes;
  const auto of = [&](int number) {
    return shapes.of("s=" + std::to_string(number) + std::string(1000, ' '));
  };
  for (int i = 0; i < 1000; ++i) {
    const auto shape = of(i);
    if (shape != 0) shapes.factsOf(shape, shape).isReachable = true;
  }
  EXPECT_EQ(of(1000), 0U) << "there is no room";
  const auto first = of(0);
  EXPECT_TRUE(shapes.factsOf(first, first).isReachable);
  shapes.makeRoom();
  const auto again = of(1000);
  EXPECT_NE(again, 0U);
  EXPECT_FALSE(shapes.factsOf(again, again).isReachable);
}

TEST(BodyShapes, OfManyPairsKeepTheFirst) {
  tool::BodyShapes shapes;
  for (tool::BodyShapes::Shape i = 1; i <= 2000; ++i) shapes.factsOf(i, 1).isReachable = true;
  EXPECT_TRUE(shapes.factsOf(1, 1).isReachable);
  EXPECT_FALSE(shapes.factsOf(2000, 1).isReachable);
}

/// A call with a hop, whose bodies are these.
tool::Call callOf(const std::string& offer, const std::string& sent, const std::string& answer) {
  Maker maker;
  const std::size_t in = maker.add({made::kAlice, made::kProxy}, offer);
  const std::size_t out = maker.add({made::kProxy, made::kBob}, sent);
  const std::size_t accepted = maker.add(Maker::accept({made::kProxy, made::kBob}), answer);
  const std::size_t passed = maker.add(Maker::accept({made::kAlice, made::kProxy}), answer);
  maker.exchange(in, passed);
  maker.exchange(out, accepted);
  maker.hop(in, out);
  maker.call.state = tool::CallState::ended;
  return maker.call;
}

/// What is told of a call.
std::vector<std::string> toldOf(const tool::Call& call) {
  std::vector<std::string> told = made::rulesOf(call);
  for (const tool::Trouble& trouble : call.troubles) told.push_back(trouble.text);
  told.insert(told.end(), call.codecs.begin(), call.codecs.end());
  told.push_back(call.security);
  return told;
}

TEST(BodyShapes, LeaveNothingUntoldOfLaterCalls) {
  const std::string keys =
      "a=crypto:1 AES_CM_128_HMAC_SHA1_80 inline:d0RmdmcmVCspeEc3QGZiNWpVLFJhQX1cfHAwJSoj\n";
  const std::string events = "a=rtpmap:101 telephone-event/8000\n";
  const std::vector<std::string> bodies = {
      body("m=audio 4000 RTP/AVP 8 101\n" + events),
      body("m=audio 5002 RTP/AVP 8 101\n" + events, "7", "203.0.113.9"),
      body("m=audio 0 RTP/AVP 8 101\n" + events),
      body("m=audio 5004 RTP/AVP 8 101\n" + events, "1", "10.9.8.7"),
      body("m=audio 5004 RTP/AVP 8 101\n" + events, "1", "10.9.8.6"),
      body("m=audio 5006 RTP/AVP 8 101\n" + events, "1", "0.0.0.0"),
      body("m=audio 5008 RTP/AVP 8 101\na=sendonly\n" + events),
      body("m=audio 5010 RTP/AVP 0\n"),
      body("m=audio 5012 RTP/SAVP 8\n" + keys),
      body("m=audio 5012 RTP/SAVP 8\n"),
      body("m=audio 5014 RTP/AVP 8\na=ice-ufrag:abcd\na=ice-pwd:0123456789012345678901\n"
           "a=candidate:1 1 udp 1 10.9.8.7 5014 typ host\n"),
      body("m=audio 5014 RTP/AVP 8\n"),
      body("m=audio 5016 RTP/AVP 8\nm=image 5018 udptl t38\n"),
  };
  tool::BodyCache shared;
  std::size_t troubles = 0;
  for (const std::string& offer : bodies) {
    for (const std::string& sent : bodies) {
      for (const std::string& answer : bodies) {
        tool::Call one = callOf(offer, sent, answer);
        tool::Call other = one;
        describeMedia(one);
        findTroubles(one);
        shared.begin(other);
        describeMedia(other, shared);
        findTroubles(other, shared);
        troubles += one.troubles.size();
        ASSERT_EQ(toldOf(other), toldOf(one)) << offer << sent << answer;
      }
    }
  }
  EXPECT_GT(troubles, bodies.size() * bodies.size());
}

}  // namespace
