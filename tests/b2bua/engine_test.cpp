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
    const std::string file = folder_.write("policy", policy);
    const std::string output =
        expectRefusal({"--target", kHost + ":9", "--listen", kHost + ":0", "--policy", file}, 1);
    const std::size_t at = output.find(file);
    return at == std::string::npos ? output : output.substr(at + file.size());
  }
};

}  // namespace

TEST_F(EngineProcess, tellsHowItIsUsed) {
  EXPECT_NE(expectRefusal({}, 2).find("--target"), std::string::npos);
  expectRefusal({"--target", "nonsense"}, 2);
  expectRefusal({"--target", kHost + ":9", "--no-such-option"}, 2);
  EXPECT_NE(expectRefusal({"--help"}, 0).find("--policy"), std::string::npos);
}

TEST_F(EngineProcess, tellsTheLineOfAPolicyThatItDoesNotUnderstand) {
  EXPECT_TRUE(policyRefusal("# first\nvideo = off\ncolour = blue\n").starts_with(":3: "));
  EXPECT_TRUE(policyRefusal("audio-codecs = PCMA, NOSUCHCODEC\n").starts_with(":1: "));
  EXPECT_TRUE(policyRefusal("\nice\n").starts_with(":2: "));
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
