#include <thread>

#include "calls.h"
#include "rawParty.h"
#include "slowServer.h"

// Who floods the engine, or holds the server that it asks, keeps nobody from calling.

namespace {

constexpr milliseconds kLongestWait{5'000};
constexpr int kFlood = 20'000;
constexpr int kAtOnce = 50;             ///< fewer than fill the engine's socket
constexpr long kMostGrowth = 12'000;    ///< kB; one kept transaction has some 8 kB
constexpr milliseconds kPromptly{600};  ///< twice what the engine waits for the store, and some

const std::string kOffer =
    "v=0\r\no=alice 21 4 IN IP4 192.0.2.10\r\ns=-\r\nc=IN IP4 192.0.2.10\r\nt=0 0\r\n"
    "m=audio 49170 RTP/AVP 8\r\n";
const std::string kAnswer =
    "v=0\r\no=bob 33 9 IN IP4 192.0.2.20\r\ns=-\r\nc=IN IP4 192.0.2.20\r\nt=0 0\r\n"
    "m=audio 30000 RTP/AVP 8\r\n";

class Overload : public Calls {
 protected:
  void start(const std::vector<std::string>& options = {}) {
    engine_ = std::make_unique<Engine>(folder_, "127.0.0.1", target_.port(), options);
    ASSERT_FALSE(engine_->address().empty());
  }

  /// Sends a request again and again, each as a new one, and expects that the engine does not grow.
  /// @param ask  sends the request of a number
  void expectNothingKept(const std::function<void(int)>& send) {
    const auto answered = [&](int number) {
      return statusOf(caller_.ask(engine_->address(), {.method = "OPTIONS", .call = number}, kLongestWait)) ==
             200;
    };
    ASSERT_TRUE(answered(kFlood + 1));
    const long before = engine_->process().residentMemory();
    for (int i = 1; i <= kFlood; ++i) {
      send(i);
      if (i % kAtOnce == 0) {
        ASSERT_TRUE(answered(kFlood + 1 + i));
      }
    }
    EXPECT_LE(engine_->process().residentMemory(), before + kMostGrowth);
  }

  std::string establish() const {
    caller_.request(engine_->address(), {.body = kOffer});
    target_.respond(engine_->address(), target_.receive("INVITE ", "", kLongestWait), "200 OK", kAnswer);
    const std::string tag = toTagOf(caller_.receive("SIP/2.0 200 ", "", kLongestWait));
    caller_.request(engine_->address(), {.method = "ACK", .toTag = tag});
    EXPECT_NE(target_.receive("ACK ", "", kLongestWait), "");
    return tag;
  }

  const RawParty caller_;
  const RawParty target_;
  std::unique_ptr<Engine> engine_;
};

}  // namespace

TEST_F(Overload, OptionsAreNotRemembered) {
  start();
  expectNothingKept([&](int i) { caller_.request(engine_->address(), {.method = "OPTIONS", .call = i}); });
}

TEST_F(Overload, OtherMethodsAreNotRemembered) {
  start();
  expectNothingKept([&](int i) { caller_.request(engine_->address(), {.method = "MESSAGE", .call = i}); });
}

TEST_F(Overload, StrayAcksAreNotRemembered) {
  start();
  expectNothingKept([&](int i) {
    caller_.request(engine_->address(), {.method = "ACK", .call = i, .toTag = ";tag=nobody"});
  });
}

TEST_F(Overload, ByesOfUnknownDialogsAreNotRemembered) {
  start();
  expectNothingKept([&](int i) {
    caller_.request(engine_->address(), {.method = "BYE", .call = i, .toTag = ";tag=0123456789abcdef-c"});
  });
}

TEST_F(Overload, InvitesWithoutContactAreNotRemembered) {
  start();
  expectNothingKept([&](int i) { caller_.request(engine_->address(), {.call = i, .contact = "none"}); });
  EXPECT_EQ(statusOf(caller_.ask(engine_->address(), {.call = 3 * kFlood, .contact = "none"}, kLongestWait)),
            400);
  EXPECT_EQ(raised(engine_->stop()), Counters{});
}

TEST_F(Overload, RequestsWithinADialogAreNotRemembered) {
  start();
  const std::string tag = establish();
  expectNothingKept([&](int i) {
    caller_.request(engine_->address(), {.method = "OPTIONS", .cseq = 1 + i, .toTag = tag});
  });
  EXPECT_EQ(
      statusOf(caller_.ask(engine_->address(), {.method = "BYE", .cseq = 2, .toTag = tag}, kLongestWait)),
      200);
}

TEST_F(Overload, MoreInvitesInASecondThanAllowedAreRefused) {
  start({"--max-invites", "3"});
  for (int call = 1; call <= 5; ++call) caller_.request(engine_->address(), {.call = call, .body = kOffer});
  EXPECT_NE(caller_.receive("SIP/2.0 503 ", "Call-ID: 4@", kLongestWait), "");
  EXPECT_NE(caller_.receive("SIP/2.0 503 ", "Call-ID: 5@", kLongestWait), "");
  EXPECT_EQ(raised(engine_->counters()), (Counters{{"calls", 3}, {"overload", 2}, {"active", 3}}));
  std::this_thread::sleep_for(std::chrono::seconds(1));
  caller_.request(engine_->address(), {.call = 6, .body = kOffer});
  EXPECT_NE(caller_.receive("SIP/2.0 100 ", "Call-ID: 6@", kLongestWait), "");
}

// A call has two of them: the caller's and the target's INVITE.
TEST_F(Overload, MoreTransactionsThanAllowedAreRefused) {
  start({"--max-transactions", "4"});
  const std::string tag = establish();
  caller_.request(engine_->address(), {.call = 2, .body = kOffer});
  EXPECT_NE(target_.receive("INVITE ", "", kLongestWait), "");
  EXPECT_EQ(statusOf(caller_.ask(engine_->address(), {.call = 3, .body = kOffer}, kLongestWait)), 503);
  EXPECT_EQ(
      statusOf(caller_.ask(engine_->address(), {.cseq = 2, .toTag = tag, .body = kOffer}, kLongestWait)),
      503);
  // A call can be ended all the same.
  EXPECT_EQ(
      statusOf(caller_.ask(engine_->address(), {.method = "BYE", .cseq = 3, .toTag = tag}, kLongestWait)),
      200);
  EXPECT_NE(target_.receive("BYE ", "", kLongestWait), "");
  EXPECT_EQ(raised(engine_->counters()),
            (Counters{{"calls", 2}, {"established", 1}, {"ended", 1}, {"overload", 2}, {"active", 1}}));
}

TEST_F(Overload, ACancelWithoutTransactionIsRefused) {
  start();
  EXPECT_EQ(
      statusOf(caller_.ask(engine_->address(), {.method = "CANCEL", .branch = "INVITE1"}, kLongestWait)),
      481);
}

TEST_F(Overload, AnOlderRequestOfADialogIsRefused) {
  start();
  const std::string tag = establish();
  EXPECT_EQ(
      statusOf(caller_.ask(engine_->address(), {.method = "BYE", .cseq = 0, .toTag = tag}, kLongestWait)),
      500);
  EXPECT_EQ(engine_->counters().at("active"), 1);
}

// The server sends something each 150 ms, and never all of it.
TEST_F(Overload, AStoreThatAnswersSlowlyHoldsNobody) {
  const SlowServer server("+PONG\r\n");
  start({"--state", "redis://127.0.0.1:" + server.port()});
  const std::string tag = establish();
  EXPECT_TRUE(
      waitUntil([&] { return engine_->log().find("could not be kept") != std::string::npos; }, kLongestWait));
  for (int i = 1; i <= 8; ++i) {
    EXPECT_EQ(statusOf(caller_.ask(engine_->address(), {.method = "OPTIONS", .call = 100 + i}, kPromptly)),
              200);
    std::this_thread::sleep_for(milliseconds(100));
  }
  EXPECT_EQ(
      statusOf(caller_.ask(engine_->address(), {.method = "BYE", .cseq = 2, .toTag = tag}, kLongestWait)),
      200);
}

// What a reply announces is not made room for before it comes.
TEST_F(Overload, AStoreThatAnnouncesABillionElementsHoldsNobody) {
  const SlowServer server("+PONG\r\n", "*1000000000\r\n");
  start({"--state", "redis://127.0.0.1:" + server.port()});
  caller_.request(engine_->address(), {.method = "BYE", .toTag = ";tag=0123456789abcdef-c"});
  EXPECT_EQ(statusOf(caller_.ask(engine_->address(), {.method = "OPTIONS", .call = 2}, kPromptly)), 200);
  EXPECT_EQ(server.requests(), 2);
}

// Five each second; the others are as good as lost, and repeated.
TEST_F(Overload, TheStoreIsAskedForFewUnknownTags) {
  const SlowServer server("+PONG\r\n", "*0\r\n");
  start({"--state", "redis://127.0.0.1:" + server.port()});
  const int before = server.requests();
  for (int i = 1; i <= 40; ++i) {
    caller_.request(
        engine_->address(),
        {.method = "BYE", .call = i, .toTag = ";tag=0123456789abcde" + std::to_string(i % 10) + "-c"});
  }
  EXPECT_EQ(statusOf(caller_.ask(engine_->address(), {.method = "OPTIONS", .call = 100}, kLongestWait)), 200);
  EXPECT_GE(server.requests() - before, 5);
  EXPECT_LE(server.requests() - before, 10);
  EXPECT_GE(engine_->counters().at("overload"), 30);
}
