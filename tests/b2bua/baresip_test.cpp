#include "baresip.h"

#include <iostream>

// A call between two SIP clients that people use.

namespace {

const std::string kHost = "127.0.0.1";

class BaresipCall : public Calls {};

}  // namespace

// Both clients prefer PCMU, the policy wants PCMA first.
TEST_F(BaresipCall, TwoClientsTalkWithTheCodecOrderOfThePolicy) {
  Baresip bob(folder_, "bob");
  Engine engine(folder_, kHost, bob.port(),
                {"--policy", folder_.write("policy", "audio-codecs = PCMA, PCMU, telephone-event\n")});
  Baresip alice(folder_, "alice", {"-e", "/dial sip:bob@" + engine.address()});
  EXPECT_TRUE(waitUntil([&] { return engine.counters().at("established") == 1; }, kLongestCall));
  EXPECT_TRUE(waitUntil([&] { return bob.says("Call established") && alice.says("Call established"); },
                        kLongestCall));
  EXPECT_TRUE(waitUntil([&] { return bob.says("Set audio encoder: PCMA"); }, kLongestCall));
  EXPECT_TRUE(waitUntil([&] { return alice.says("Set audio encoder: PCMA"); }, kLongestCall));

  // alice's end ends the call for bob too.
  alice.stop();
  EXPECT_TRUE(waitUntil([&] { return bob.says("session closed"); }, kLongestCall));
  bob.stop();
  const Counters counters = engine.stop();
  EXPECT_EQ(counters.at("ended"), 1);
  EXPECT_EQ(counters.at("failed"), 0);
  EXPECT_EQ(counters.at("active"), 0);

  const std::string offer = alice.body("\nINVITE sip:");
  const std::string own = " RTP/AVP 0 8 101\na=rtpmap:0 PCMU/8000\na=rtpmap:8 PCMA/8000\n";
  EXPECT_NE(offer.find(own), std::string::npos) << offer;
  EXPECT_EQ(bob.body("\nINVITE sip:"),
            replaced(offer, own, " RTP/AVP 8 0 101\na=rtpmap:8 PCMA/8000\na=rtpmap:0 PCMU/8000\n"));
  const std::string answer = bob.body("\nSIP/2.0 200 ");
  EXPECT_NE(answer.find(" RTP/AVP 8 "), std::string::npos) << answer;
  EXPECT_EQ(alice.body("\nSIP/2.0 200 "), answer);
  if (HasFailure()) std::cout << alice.process().output() << bob.process().output();
}
