#include <csignal>

#include "slowServer.h"
#include "storedCalls.h"

// The primary of the store is whichever the Sentinels name.

namespace {

const std::string kHost = "127.0.0.1";

class Sentinels : public StoredCalls {
 protected:
  /// A primary, a replica of it, and who looks after them.
  void SetUp() override {
    redis_ = std::make_unique<RedisServer>(folder_.path(), freeServerPort());
    ASSERT_TRUE(redis_->isReady());
    replica_ =
        std::make_unique<RedisServer>(folder_.path(), freeServerPort(),
                                      std::vector<std::string>{"--replicaof", kHost + " " + redis_->port(),
                                                               "--repl-diskless-sync-delay", "0"});
    ASSERT_TRUE(replica_->isReady());
    ASSERT_TRUE(waitUntil(
        [&] {
          return replica_->ask({"INFO", "replication"}).find("master_link_status:up") != std::string::npos;
        },
        kLongestCall));
    const std::string file =
        folder_.write("sentinel.conf", "port " + port_ + "\nbind " + kHost + "\ndir " + folder_.path() +
                                           "\nsentinel monitor calls " + kHost + " " + redis_->port() +
                                           " 1\nsentinel down-after-milliseconds calls 500\n"
                                           "sentinel failover-timeout calls 3000\n");
    sentinel_ = std::make_unique<Process>(SENTINEL_PROGRAM, std::vector<std::string>{file}, folder_.path(),
                                          "sentinel");
    // It learns of the replica from the primary.
    ASSERT_TRUE(
        waitUntil([&] { return sentinel_->output().find("+slave ") != std::string::npos; }, kLongestCall))
        << sentinel_->output();
    // The first one is not there.
    store_ = "redis+sentinel://" + kHost + ":" + freePort() + "," + kHost + ":" + port_ + "/calls";
  }

  const std::string port_ = freeServerPort();
  std::unique_ptr<RedisServer> replica_;
  std::unique_ptr<Process> sentinel_;
};

class SentinelAddress : public StoredCalls {
 protected:
  int statusWith(const std::string& state) {
    Process engine(B2BUA_PROGRAM, {"--target", kHost + ":9", "--listen", kHost + ":0", "--state", state},
                   folder_.path(), "refused");
    return engine.wait(kLongestStart).value_or(-1);
  }
};

}  // namespace

TEST_F(Sentinels, CallsOutliveThePrimary) {
  const auto first = startEngine("first");
  const std::string before = establish(*first, 1);
  redis_->process().signal(SIGKILL);
  const std::string meanwhile = establish(*first, 2);
  // Both are kept anew: the replica may not have had the last state.
  EXPECT_TRUE(waitUntil([&] { return first->counters().at("made_up_for") == 2; }, kLongestCall))
      << first->log();
  // The second one's answer waited for the new primary, unless that took long.
  EXPECT_EQ(first->counters().at("kept") + first->counters().at("not_kept"), 2);
  kill(*first);
  const auto second = startEngine("second");
  EXPECT_EQ(cseqOf(hangUp(*second, before, 2, 1)), 102);
  EXPECT_EQ(cseqOf(hangUp(*second, meanwhile, 2, 2)), 102);
  EXPECT_EQ(replica_->ask({"DBSIZE"}), "2");  // that they have ended
  EXPECT_EQ(raised(second->stop()), (Counters{{"taken_over", 2}, {"ended", 2}}));
}

TEST_F(Sentinels, AReplicaIsNotWrittenTo) {
  // A Sentinel that is behind the times.
  const auto bulk = [](const std::string& text) {
    return "$" + std::to_string(text.size()) + "\r\n" + text + "\r\n";
  };
  const std::string old = "*2\r\n" + bulk(kHost) + bulk(replica_->port());
  const SlowServer behind(old, old);
  Process engine(B2BUA_PROGRAM,
                 {"--target", kHost + ":9", "--listen", kHost + ":0", "--state",
                  "redis+sentinel://" + kHost + ":" + behind.port() + "/calls"},
                 folder_.path(), "refused");
  EXPECT_EQ(engine.wait(kLongestStart), 1);
  EXPECT_EQ(behind.requests(), 1);
  // The other one knows better.
  store_ = "redis+sentinel://" + kHost + ":" + behind.port() + "," + kHost + ":" + port_ + "/calls";
  EXPECT_EQ(raised(startEngine("engine")->stop()), Counters{});
}

TEST_F(SentinelAddress, RefusesWhatIsNone) {
  for (const char* const state :
       {"redis+sentinel://", "redis+sentinel:///calls", "redis+sentinel://127.0.0.1:1/",
        "redis+sentinel://127.0.0.1/calls", "redis+sentinel://127.0.0.1:99999/calls",
        "redis+sentinel://127.0.0.1:1,,127.0.0.1:2/calls", "redis://127.0.0.1:0", "redis://127.0.0.1:6379x",
        "redis://:6379", "rediss://127.0.0.1:6379"}) {
    EXPECT_EQ(statusWith(state), 1) << state;
  }
}

TEST_F(SentinelAddress, RefusesAnswersThatAreNone) {
  for (const char* const answer :
       {"*-1\r\n", "$-1\r\n", "*0\r\n", "*1\r\n$1\r\nx\r\n", "*2\r\n$9\r\nlocalhost\r\n$1\r\n1\r\n",
        "*2\r\n$9\r\n127.0.0.1\r\n$5\r\n99999\r\n", "*2\r\n$9\r\n127.0.0.1\r\n$0\r\n\r\n",
        "*2\r\n*0\r\n*0\r\n", "-ERR no\r\n", "*1000000000\r\n", "$536870912\r\n", "rubbish\r\n"}) {
    const SlowServer sentinel(answer, answer);
    EXPECT_EQ(statusWith("redis+sentinel://" + kHost + ":" + sentinel.port() + "/calls"), 1) << answer;
    EXPECT_EQ(sentinel.requests(), 1) << answer;
  }
}
