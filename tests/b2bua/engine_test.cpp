#include <csignal>
#include <filesystem>

#include "../testFiles.h"
#include "calls.h"
#include "rawParty.h"

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

TEST_F(EngineProcess, TellsHowItIsUsed) {
  EXPECT_NE(expectRefusal({}, 2).find("--target"), std::string::npos);
  expectRefusal({"--target", "nonsense"}, 2);
  expectRefusal({"--target", kHost + ":9", "--no-such-option"}, 2);
  EXPECT_TRUE(expectRefusal({"--target", kHost + ":0"}, 2).starts_with("--target: no port: "));
  EXPECT_TRUE(expectRefusal({"--target", kHost + ":9", "--session-expires", "60"}, 2)
                  .starts_with("--session-expires: less than --min-se\n"));
  EXPECT_NE(expectRefusal({"--help"}, 0).find("--policy"), std::string::npos);
}

TEST_F(EngineProcess, TellsWhatOfAPolicyItDoesNotUnderstand) {
  EXPECT_NE(policyRefusal("# first\nvideo = off\ncolour = blue\n").find("colour"), std::string::npos);
  EXPECT_NE(policyRefusal("audio-codecs = PCMA, NOSUCHCODEC\n").find("unknown codec: NOSUCHCODEC"),
            std::string::npos);
  EXPECT_NE(policyRefusal("ice = perhaps\n").find("--ice: none of keep, remove: perhaps\n"),
            std::string::npos);
  EXPECT_NE(policyRefusal("video = cap 512\n").find("video is on, off or cap BANDWIDTH LEVEL"),
            std::string::npos);
  EXPECT_NE(policyRefusal("video = cap 99999999999 3\n").find("video is on"), std::string::npos);
  EXPECT_NE(policyRefusal("connection-address = home\n").find("no address: home"), std::string::npos);
  std::string codecs = "PCMA";
  for (int i = 0; i < 20; ++i) codecs += ", PCMA";
  EXPECT_NE(policyRefusal("audio-codecs = " + codecs + "\n").find("more than 20 codecs"), std::string::npos);
}

TEST_F(EngineProcess, NamesThePlaceInAPolicyItDoesNotUnderstand) {
  const std::string file = folder_.path("policy");
  const struct {
    const char* policy;
    const char* place;
  } cases[] = {
      {"# first\nvideo = off\ncolour = blue\n", "3:1"},  {"\nice = perhaps\n", "2:7"},
      {"ice = keep\naudio-codecs = PCMA, NO\n", "2:22"}, {"video = cap 512", "1:9"},
      {"\n\nconnection-address=home\n", "3:20"},         {"nonsense\n", "1:1"},
      {"ice = keep\n\nice = remove\n", "3:1"},           {"ice = keep\n[more]\nvideo = off\n", "2:1"},
  };
  for (const auto& each : cases) {
    const std::string output = policyRefusal(each.policy);
    EXPECT_TRUE(output.starts_with(file + ":" + each.place + ": ")) << output;
  }
  // Not when the command line is wrong.
  const std::string output = expectRefusal({"--target", kHost + ":9", "--listen", kHost + ":0", "--ice",
                                            "perhaps", "--policy", folder_.write("policy", "ice = keep\n")},
                                           2);
  EXPECT_TRUE(output.starts_with("--ice: ")) << output;
}

TEST_F(EngineProcess, DoesNotListenAtAWildcard) {
  for (const char* address : {"0.0.0.0:0", "[::]:0", "[0:0::0]:0", "[::ffff:0.0.0.0]:0"}) {
    const std::string output = expectRefusal({"--target", kHost + ":9", "--listen", address}, 2);
    EXPECT_NE(output.find("no wildcard address"), std::string::npos) << output;
  }
}

// As programs that keep logs do: the file is moved away, and the engine told.
TEST_F(EngineProcess, OpensItsLogAnewAtHangup) {
  const RawParty caller;
  Engine engine(folder_, kHost, freePort());
  const auto refusal = [&](int call) {
    caller.ask(engine.address(), {.call = call, .body = "hello"}, kLongestStart);
  };
  refusal(1);
  EXPECT_NE(engine.log(), "");
  std::filesystem::rename(folder_.path("engine.log"), folder_.path("old.log"));
  const std::string old = readBytes(folder_.path("old.log"));
  engine.process().signal(SIGHUP);
  EXPECT_TRUE(waitUntil([&] { return std::filesystem::exists(folder_.path("engine.log")); }, kLongestStart));
  refusal(2);
  EXPECT_NE(engine.log().find(" body refused: "), std::string::npos);
  EXPECT_EQ(readBytes(folder_.path("old.log")), old);
  EXPECT_EQ(engine.stop().at("failed"), 2);
}

TEST_F(EngineProcess, DoesNotStartWithoutItsPortOrItsStore) {
  Engine first(folder_, kHost, "9");
  expectRefusal({"--target", kHost + ":9", "--listen", first.address()}, 1);
  expectRefusal(
      {"--target", kHost + ":9", "--listen", kHost + ":0", "--state", "redis://" + kHost + ":" + freePort()},
      1);
  EXPECT_EQ(raised(first.stop()), Counters{});
}

TEST_F(EngineProcess, HangsUpOnBothSidesWhenItEnds) {
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
