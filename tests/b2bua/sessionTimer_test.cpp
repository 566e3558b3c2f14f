#include <thread>

#include "storedCalls.h"
#include "twoParties.h"

// How long a call lasts without a sign of life.

namespace {

const std::string kKnows = "Supported: timer\r\n";

class SessionTimers : public TwoParties {};

class StoredSessionTimers : public StoredCalls {};

}  // namespace

TEST_F(SessionTimers, ThePartiesAreToRefreshWhereTheyKnowTimers) {
  start();
  establish(kKnows + "Session-Expires: 300\r\n", "200 OK\r\nSession-Expires: 600;refresher=uas");
  EXPECT_EQ(headerOf(accepted_, "Session-Expires"), "300;refresher=uac");
  EXPECT_EQ(headerOf(accepted_, "Require"), "timer");
  EXPECT_EQ(headerOf(invited_, "Session-Expires"), "1800;refresher=uas");
  EXPECT_EQ(headerOf(invited_, "Min-SE"), "90");
  EXPECT_EQ(headerOf(invited_, "Supported"), "100rel, timer");
}

TEST_F(SessionTimers, ACallerMayLeaveItToTheEngine) {
  start();
  establish(kKnows + "Session-Expires: 4000;refresher=uas\r\n");
  EXPECT_EQ(headerOf(accepted_, "Session-Expires"), "1800;refresher=uas");
  EXPECT_EQ(headerOf(accepted_, "Require"), "");
}

// Not shorter than the caller's own minimum.
TEST_F(SessionTimers, TheMinimumOfACallerCounts) {
  start();
  establish(kKnows + "Session-Expires: 4000\r\nMin-SE: 2000\r\n");
  EXPECT_EQ(headerOf(accepted_, "Session-Expires"), "2000;refresher=uac");
}

TEST_F(SessionTimers, NoneAreSpokenOfWhenTheyAreOff) {
  start({"--session-expires", "0"});
  establish(kKnows + "Session-Expires: 60\r\n");
  EXPECT_EQ(headerOf(accepted_, "Session-Expires"), "");
  EXPECT_EQ(headerOf(invited_, "Session-Expires"), "");
  EXPECT_EQ(headerOf(invited_, "Supported"), "100rel");
}

TEST_F(SessionTimers, WhoAsksForTooShortASessionIsToldTheMinimum) {
  start();
  const std::string refused =
      ask({.body = kOffer, .header = kKnows + "Require: timer\r\nSession-Expires: 89\r\n"});
  EXPECT_EQ(statusOf(refused), 422) << refused;
  EXPECT_EQ(headerOf(refused, "Min-SE"), "90");
  EXPECT_EQ(raised(engine_->stop()), Counters{});
}

TEST_F(SessionTimers, ATargetThatAsksForALongerSessionGetsIt) {
  start();
  answer(invite({.body = kOffer}), "422 Session Interval Too Small\r\nMin-SE: 3000");
  const std::string again = atTarget("INVITE ", "CSeq: 2 INVITE");
  EXPECT_EQ(headerOf(again, "Session-Expires"), "3000;refresher=uas");
  EXPECT_EQ(headerOf(again, "Min-SE"), "3000");
  EXPECT_EQ(contentOf(again), kOffer);
  answer(again, "200 OK", kAnswer);
  EXPECT_EQ(contentOf(atCaller("SIP/2.0 200 ")), kAnswer);
}

// The caller could do nothing about it.
TEST_F(SessionTimers, ATargetThatAsksForMoreAndMoreFails) {
  start();
  caller_.request(engine_->address(), {.body = kOffer});
  for (const char* seconds : {"2000", "2001", "2002"}) {
    const std::string asked = atTarget("INVITE ");
    ASSERT_NE(asked, "") << seconds;
    answer(asked, std::string("422 Session Interval Too Small\r\nMin-SE: ") + seconds);
    EXPECT_NE(atTarget("ACK "), "");
  }
  EXPECT_EQ(statusOf(atCaller("SIP/2.0 500 ")), 500);
  EXPECT_EQ(atTarget("INVITE ", "", kSilence), "");
  EXPECT_EQ(raised(engine_->stop()), (Counters{{"calls", 1}, {"failed", 1}}));
}

// The caller refreshes only once.
TEST_F(SessionTimers, ACallWithoutASignOfLifeEnds) {
  start({"--session-expires", "6", "--min-se", "3"});
  establish(kKnows, "200 OK\r\nSession-Expires: 90;refresher=uas");
  EXPECT_EQ(headerOf(accepted_, "Session-Expires"), "6;refresher=uac");
  std::this_thread::sleep_for(milliseconds(3'000));
  const std::string refreshed = ask({.method = "UPDATE",
                                     .cseq = 2,
                                     .toTag = tag_,
                                     .header = kKnows + "Session-Expires: 5;refresher=uac\r\n"});
  EXPECT_EQ(statusOf(refreshed), 200) << refreshed;
  EXPECT_EQ(headerOf(refreshed, "Session-Expires"), "5;refresher=uac");
  EXPECT_EQ(headerOf(refreshed, "Contact"), "<sip:" + engine_->address() + ";transport=udp>");
  EXPECT_EQ(atCaller("BYE ", "", milliseconds(2'500)), "");
  EXPECT_NE(atCaller("BYE "), "");
  EXPECT_NE(atTarget("BYE "), "");
  EXPECT_NE(engine_->log().find("ended by engine: no sign of life from the caller"), std::string::npos);
  EXPECT_EQ(raised(engine_->counters()), (Counters{{"calls", 1}, {"established", 1}, {"ended", 1}}));
}

TEST_F(SessionTimers, TheEngineAsksWhoKnowsNoTimers) {
  start({"--session-expires", "8", "--min-se", "1"});
  establish("Allow: INVITE, ACK, BYE, UPDATE\r\n");
  // The caller by UPDATE, the target by the body that it has.
  const std::string update = atCaller("UPDATE ");
  EXPECT_EQ(headerOf(update, "Session-Expires"), "8;refresher=uas");
  EXPECT_EQ(contentOf(update), "");
  caller_.respond(engine_->address(), update, "200 OK");
  const std::string again = atTarget("INVITE ");
  EXPECT_EQ(headerOf(again, "CSeq"), "2 INVITE");
  EXPECT_EQ(contentOf(again), kOffer);
  answer(again, "200 OK", kAnswer);
  EXPECT_NE(atTarget("ACK ", "CSeq: 2 ACK"), "");
  // Each of them again.
  const std::string next = atCaller("UPDATE ");
  EXPECT_EQ(headerOf(next, "CSeq"), "2 UPDATE");
  EXPECT_EQ(raised(engine_->counters()), (Counters{{"calls", 1}, {"established", 1}, {"active", 1}}));
  // Who does not know the call has none.
  caller_.respond(engine_->address(), next, "481 Call Does Not Exist");
  EXPECT_NE(atTarget("BYE "), "");
  EXPECT_EQ(engine_->counters().at("ended"), 1);
}

TEST_F(SessionTimers, AnUpdateOfNoCallIsRefused) {
  start();
  for (int call = 1; call < 4; ++call)
    EXPECT_EQ(statusOf(ask({.method = "UPDATE", .call = call, .cseq = 2, .toTag = ";tag=nobody-c"})), 481);
  establish();
  EXPECT_EQ(statusOf(ask({.method = "UPDATE", .cseq = 7, .toTag = tag_})), 200);
  // Out of order.
  EXPECT_EQ(statusOf(ask({.method = "UPDATE", .cseq = 6, .toTag = tag_})), 500);
  EXPECT_EQ(statusOf(ask({.method = "BYE", .cseq = 6, .toTag = tag_})), 500);
}

// As interval, minimum, and whether the party knows timers and the engine is to refresh.
TEST_F(StoredSessionTimers, AnotherEngineGoesOnWithThem) {
  startStore();
  const auto first = startEngine("first");
  const std::string tag = establish(*first);
  const std::vector<std::string> asked = {"HGET", "b2bua:call:" + tag.substr(5, 16), "caller.timer"};
  EXPECT_EQ(redis_->ask(asked), "1800 0 0 1");
  kill(*first);
  const auto second = startEngine("second", first->port());
  const std::string refreshed = caller_.ask(
      second->address(),
      {.method = "UPDATE", .cseq = 2, .toTag = tag, .header = kKnows + "Session-Expires: 300\r\n"},
      kLongestStart);
  EXPECT_EQ(headerOf(refreshed, "Session-Expires"), "300;refresher=uac");
  EXPECT_EQ(redis_->ask(asked), "300 0 1 0");
  EXPECT_EQ(raised(second->stop()), (Counters{{"kept", 1}, {"taken_over", 1}, {"active", 1}}));
}
