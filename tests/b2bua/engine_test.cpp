#include <csignal>

#include "../testFiles.h"
#include "calls.h"

// How the engine starts and ends.

namespace {

const std::string kHost = "127.0.0.1";

class EngineProcess : public Calls {
 protected:
  /// Runs the engine with options that do not let it start.
  /// @return its output
  std::string expectRefusal(const std::vector<std::string>& options, int status) {
    Process engine(B2BUA_PROGRAM, options, folder_.path(), "refused");
    EXPECT_EQ(engine.wait(kLongestStart), status);
    EXPECT_FALSE(engine.output().starts_with("ready"));
    return engine.output();
  }

  std::string policyRefusal(const std::string& policy) {
    return expectRefusal(
        {"--target", kHost + ":9", "--listen", kHost + ":0", "--policy", folder_.write("policy", policy)}, 2);
  }
};

}  // namespace

TEST_F(EngineProcess, tellsHowItIsUsed) {
  EXPECT_NE(expectRefusal({}, 2).find("--target"), std::string::npos);
  expectRefusal({"--target", "nonsense"}, 2);
  expectRefusal({"--target", kHost + ":9", "--no-such-option"}, 2);
  EXPECT_NE(expectRefusal({"--help"}, 0).find("--policy"), std::string::npos);
}

TEST_F(EngineProcess, tellsWhatOfAPolicyItDoesNotUnderstand) {
  EXPECT_NE(policyRefusal("# first\nvideo = off\ncolour = blue\n").find("colour"), std::string::npos);
  EXPECT_NE(policyRefusal("audio-codecs = PCMA, NOSUCHCODEC\n").find("unknown codec: NOSUCHCODEC"),
            std::string::npos);
  EXPECT_NE(policyRefusal("ice = perhaps\n").find("Check perhaps"), std::string::npos);
  EXPECT_NE(policyRefusal("video = cap 512\n").find("video is on, off or cap BANDWIDTH LEVEL"),
            std::string::npos);
  EXPECT_NE(policyRefusal("video = cap 99999999999 3\n").find("video is on"), std::string::npos);
  EXPECT_NE(policyRefusal("connection-address = home\n").find("no address: home"), std::string::npos);
  std::string codecs = "PCMA";
  for (int i = 0; i < 20; ++i) codecs += ", PCMA";
  EXPECT_NE(policyRefusal("audio-codecs = " + codecs + "\n").find("more than 20 codecs"), std::string::npos);
}

TEST_F(EngineProcess, doesNotStartWithoutItsPortOrItsStore) {
  Engine first(folder_, kHost, "9");
  expectRefusal({"--target", kHost + ":9", "--listen", first.address()}, 1);
  expectRefusal(
      {"--target", kHost + ":9", "--listen", kHost + ":0", "--state", "redis://" + kHost + ":" + freePort()},
      1);
  EXPECT_EQ(raised(first.stop()), Counters{});
}

TEST_F(EngineProcess, hangsUpOnBothSidesWhenItEnds) {
  writeBodies({.bodies = {{"offer",
                           "v=0\no=- 1 1 IN IP4 192.0.2.1\ns=-\nc=IN IP4 192.0.2.1\nt=0 0\n"
                           "m=audio 4000 RTP/AVP 8\n"},
                          {"answer",
                           "v=0\no=- 2 2 IN IP4 192.0.2.2\ns=-\nc=IN IP4 192.0.2.2\nt=0 0\n"
                           "m=audio 5000 RTP/AVP 8\n"}}});
  const std::string port = freePort();
  Engine engine(folder_, kHost, port);
  Sipp target = startTarget(folder_, "call-target", kHost, port);
  Sipp caller = startCaller(folder_, "ended-caller", kHost, engine.address());
  EXPECT_TRUE(waitUntil([&] { return engine.counters().at("established") == 1; }, kLongestStart));
  EXPECT_EQ(raised(engine.stop()), (Counters{{"calls", 1}, {"established", 1}, {"ended", 1}}));
  caller.finish();
  target.finish();
}
