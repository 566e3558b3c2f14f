#include <stateStore.h>

#include <csignal>
#include <sstream>
#include <thread>

#include "storedCalls.h"

// Several engines with one store: each call has one of them at a time, and none says what another one has said already.

namespace {

const std::string kHost = "127.0.0.1";

class Ownership : public StoredCalls {
 protected:
  void SetUp() override { startStore(); }
};

std::string keyOf(const std::string& tag) { return "b2bua:call:" + tag.substr(5, 16); }

/// @return the version of a body's o-line
int versionOf(const std::string& message) {
  std::istringstream words(message.substr(message.find("\r\no=") + 4));
  std::string user;
  std::string session;
  int version = 0;
  words >> user >> session >> version;
  return version;
}

}  // namespace

TEST_F(Ownership, AnAckThatComesToAnotherEngineIsPassedOn) {
  const auto first = startEngine("first");
  const auto second = startEngine("second");
  const std::string tag = toTagOf(invite(*first));
  kill(*first);
  caller_.request(second->address(), {.method = "ACK", .toTag = tag});
  const std::string ack = received(target_, "ACK ");
  EXPECT_EQ(headerOf(ack, "CSeq"), "1 ACK");
  // Once.
  caller_.request(second->address(), {.method = "ACK", .toTag = tag});
  hangUp(*second, tag, 2);
  EXPECT_EQ(target_.receive("ACK ", "", milliseconds(300)), "");
  EXPECT_EQ(raised(second->stop()), (Counters{{"taken_over", 1}, {"ended", 1}}));
}

TEST_F(Ownership, AnAckThatNobodyGotIsMadeUpForByTheNextRequest) {
  const auto first = startEngine("first");
  const auto second = startEngine("second");
  const std::string tag = toTagOf(invite(*first));
  kill(*first);
  caller_.request(second->address(), {.method = "BYE", .cseq = 2, .toTag = tag});
  EXPECT_EQ(headerOf(received(target_, "ACK "), "CSeq"), "1 ACK");
  EXPECT_EQ(cseqOf(received(target_, "BYE ")), 102);
}

TEST_F(Ownership, AnAckThatCameIsNotRepeated) {
  const auto first = startEngine("first");
  const auto second = startEngine("second");
  const std::string tag = establish(*first);
  EXPECT_EQ(first->counters().at("established"), 1);
  kill(*first);
  hangUp(*second, tag, 2);
  EXPECT_EQ(target_.receive("ACK ", "", milliseconds(300)), "");
}

// The party repeats its 200, which nobody else knows of, and takes no further offer until it has the ACK.
TEST_F(Ownership, AnOfferThatWasUnderWayHasItsAckFromWhoeverGoesOn) {
  const auto first = startEngine("first");
  const auto second = startEngine("second");
  const std::string tag = establish(*first);
  caller_.request(first->address(), {.cseq = 2, .toTag = tag, .body = offerOf(2)});
  EXPECT_EQ(headerOf(received(target_, "INVITE "), "CSeq"), "2 INVITE");
  kill(*first);
  caller_.request(second->address(), {.cseq = 2, .toTag = tag, .body = offerOf(2)});
  EXPECT_EQ(headerOf(received(target_, "ACK "), "CSeq"), "2 ACK");
  EXPECT_EQ(headerOf(received(target_, "INVITE "), "CSeq"), "102 INVITE");
}

// While it waits for the end of other calls, those that others go on with have their answers.
TEST_F(Ownership, AnOfferIsAnsweredByAnEngineThatEnds) {
  const auto first = startEngine("first");
  const std::string tag = establish(*first);
  caller_.request(first->address(), {.cseq = 2, .toTag = tag, .body = offerOf(2)});
  const std::string offer = received(target_, "INVITE ");
  // Its target says nothing, so that the engine has something to wait for.
  caller_.request(first->address(), {.call = 2, .body = offerOf(1)});
  EXPECT_NE(received(target_, "INVITE "), "");
  first->process().signal(SIGTERM);
  EXPECT_NE(caller_.receive("SIP/2.0 503 ", "", milliseconds(1'000)), "");
  target_.respond(first->address(), offer, "200 OK", answerOf(2));
  EXPECT_NE(caller_.receive("SIP/2.0 200 ", "CSeq: 2 INVITE", milliseconds(2'000)), "");
}

// Those that wait for the store are tried again with each message that comes meanwhile.
TEST_F(Ownership, NoRecordIsMadeForAStoreThatIsLeftAlone) {
  b2bua::StateStore store(store_);
  redis_->process().signal(SIGKILL);
  EXPECT_EQ(redis_->process().wait(kLongestStart), 128 + SIGKILL);
  b2bua::Call first;
  EXPECT_FALSE(store.save({&first}));
  b2bua::Call second;
  EXPECT_FALSE(store.save({&second}));
  for (const b2bua::Leg& leg : second.legs) EXPECT_EQ(leg.keptCseq, 0U);
}

TEST_F(Ownership, AnOfferThatWasRefusedNeedsNoAck) {
  const auto first = startEngine("first");
  const auto second = startEngine("second");
  const std::string tag = establish(*first);
  caller_.request(first->address(), {.cseq = 2, .toTag = tag, .body = offerOf(2)});
  target_.respond(first->address(), received(target_, "INVITE "), "488 Not Acceptable Here");
  received(caller_, "SIP/2.0 488 ");
  received(target_, "ACK ");
  EXPECT_TRUE(waitUntil(
      [&] {
        return redis_->ask({"HEXISTS", keyOf(tag), "target.ack"}) == "0";
      },
      kLongestStart));
  kill(*first);
  hangUp(*second, tag, 3);
  EXPECT_EQ(target_.receive("ACK ", "", milliseconds(300)), "");
}

TEST_F(Ownership, AStrangersAckPassesNothingOn) {
  const auto first = startEngine("first");
  const auto second = startEngine("second");
  const std::string tag = toTagOf(invite(*first));
  caller_.request(second->address(), {.method = "ACK", .call = 2, .toTag = tag});
  EXPECT_EQ(target_.receive("ACK ", "", milliseconds(300)), "");
  EXPECT_EQ(raised(second->counters()), Counters{});
  caller_.request(first->address(), {.method = "ACK", .toTag = tag});
  received(target_, "ACK ");
}

// What the party has seen counts for whoever goes on, too.
TEST_F(Ownership, ARefusedOfferKeepsItsVersion) {
  const auto first = startEngine("first");
  const auto second = startEngine("second");
  const std::string tag = establish(*first);
  caller_.request(first->address(), {.cseq = 2,
                                     .toTag = tag,
                                     .body = "v=0\r\no=alice 21 2 IN IP4 192.0.2.10\r\ns=-\r\n"
                                             "c=IN IP4 192.0.2.10\r\nt=0 0\r\nm=audio 40100 RTP/AVP 8\r\n"});
  const std::string refused = received(target_, "INVITE ");
  target_.respond(first->address(), refused, "488 Not Acceptable Here");
  received(caller_, "SIP/2.0 488 ");
  kill(*first);
  EXPECT_EQ(versionOf(reoffer(*second, tag, 3)), versionOf(refused) + 1);
  EXPECT_EQ(versionOf(reoffer(*second, tag, 4)), versionOf(refused) + 2);
}

// Each engine starts 100 beyond what its forerunner has noted, so what that may have sent since is less.
TEST_F(Ownership, NoNumberIsUsedTwiceWhenACallGoesToAndFro) {
  const auto first = startEngine("first");
  const auto second = startEngine("second");
  const std::string tag = establish(*first);
  EXPECT_EQ(cseqOf(reoffer(*first, tag, 2)), 2);
  EXPECT_EQ(cseqOf(reoffer(*second, tag, 3)), 103);
  EXPECT_EQ(cseqOf(reoffer(*second, tag, 4)), 104);
  // The first one has the call in its memory still, with the numbers of then.
  EXPECT_EQ(cseqOf(reoffer(*first, tag, 5)), 205);
  EXPECT_NE(first->log().find(" has gone on elsewhere"), std::string::npos);
  EXPECT_EQ(cseqOf(hangUp(*second, tag, 6)), 306);
  EXPECT_EQ(first->counters().at("taken_over"), 1);
  EXPECT_EQ(second->stop().at("taken_over"), 2);
}

TEST_F(Ownership, AnEngineThatBeginsAnewTakesItsCallsBack) {
  auto first = startEngine("first");
  const auto second = startEngine("second");
  const std::string tag = establish(*first);
  const std::string port = first->port();
  kill(*first);
  EXPECT_EQ(cseqOf(reoffer(*second, tag, 2)), 102);
  first = startEngine("first-again", port);
  EXPECT_EQ(cseqOf(hangUp(*first, tag, 3)), 203);
  EXPECT_TRUE(waitUntil([&] { return redis_->ask({"HGETALL", keyOf(tag)}) == "owner - "; }, kLongestStart));
  // The second one has it still, and learns that it is over.
  EXPECT_EQ(
      statusOf(caller_.ask(second->address(), {.method = "BYE", .cseq = 4, .toTag = tag}, kLongestStart)),
      481);
  EXPECT_EQ(second->stop().at("active"), 0);
}

TEST_F(Ownership, WhoLostACallSaysNothingWhenItsAckIsMissed) {
  const auto first = startEngine("first");
  const auto second = startEngine("second");
  const std::string tag = toTagOf(invite(*first));
  caller_.request(second->address(), {.method = "ACK", .toTag = tag});
  received(target_, "ACK ");
  // It repeats its 200 for 32 seconds.
  EXPECT_TRUE(waitUntil([&] { return first->counters().at("active") == 0; }, milliseconds(40'000)));
  EXPECT_EQ(target_.receive("BYE ", "", milliseconds(300)), "");
  EXPECT_EQ(first->stop().at("failed"), 0);
  hangUp(*second, tag, 2);
}

TEST_F(Ownership, ACallTakesFiveCommandsOfTheStore) {
  const auto engine = startEngine("engine");
  const std::string tag = establish(*engine);
  hangUp(*engine, tag, 2);
  EXPECT_EQ(raised(engine->stop()), (Counters{{"calls", 1}, {"established", 1}, {"ended", 1}, {"kept", 1}}));
  for (const char* const command : {"hset", "expire", "hdel", "hget", "del"})
    EXPECT_EQ(redis_->count(command), 1) << command;
}

// Whoever has a 200 can rely on the call.
TEST_F(Ownership, AnAnswerWaitsForTheStore) {
  const auto first = startEngine("first");
  redis_->process().signal(SIGSTOP);
  caller_.request(first->address(), {.body = offerOf(1)});
  target_.respond(first->address(), received(target_, "INVITE "), "200 OK", answerOf(1));
  EXPECT_EQ(caller_.receive("SIP/2.0 200 ", "", milliseconds(500)), "");
  redis_->process().signal(SIGCONT);
  const std::string tag = toTagOf(received(caller_, "SIP/2.0 200 "));
  kill(*first);
  EXPECT_EQ(first->log().find("could not be kept"), std::string::npos);
  hangUp(*startEngine("second"), tag, 2);
}

TEST_F(Ownership, AnAnswerThatWaitsGoesOutBeforeTheCallEnds) {
  const auto engine = startEngine("engine");
  caller_.request(engine->address(), {.body = offerOf(1)});
  const std::string invite = received(target_, "INVITE ");
  target_.respond(engine->address(), invite, "180 Ringing");
  const std::string tag = toTagOf(received(caller_, "SIP/2.0 180 "));
  redis_->process().signal(SIGSTOP);
  target_.respond(engine->address(), invite, "200 OK", answerOf(1));
  EXPECT_EQ(caller_.receive("SIP/2.0 200 ", "", milliseconds(300)), "");
  caller_.request(engine->address(), {.method = "BYE", .cseq = 2, .toTag = tag});
  EXPECT_EQ(headerOf(received(caller_, "SIP/2.0 200 "), "CSeq"), "2 BYE");
  EXPECT_EQ(headerOf(received(caller_, "SIP/2.0 200 "), "CSeq"), "1 INVITE");
  received(target_, "BYE ");
  redis_->process().signal(SIGCONT);
}

// As the replica has it that was behind when it became the primary.
TEST_F(Ownership, AFormerOwnerInTheRecordIsPutRight) {
  const auto first = startEngine("first");
  const auto second = startEngine("second");
  const std::string tag = establish(*first);
  const std::string former = redis_->ask({"HGET", keyOf(tag), "owner"});
  EXPECT_EQ(cseqOf(reoffer(*second, tag, 2)), 102);
  const std::string owner = redis_->ask({"HGET", keyOf(tag), "owner"});
  EXPECT_NE(owner, former);
  redis_->ask({"HSET", keyOf(tag), "owner", former});
  EXPECT_EQ(cseqOf(reoffer(*second, tag, 3)), 103);
  EXPECT_EQ(redis_->ask({"HGET", keyOf(tag), "owner"}), owner);
  // A later one is who has it.
  EXPECT_EQ(cseqOf(reoffer(*first, tag, 4)), 204);
  EXPECT_EQ(second->log().find(" has gone on elsewhere"), std::string::npos);
  hangUp(*first, tag, 5);
}

TEST_F(Ownership, WhatCouldNotBeKeptIsMadeUpFor) {
  const auto first = startEngine("first");
  const std::string before = establish(*first, 1);
  const std::string port = redis_->port();
  redis_.reset();
  const std::string meanwhile = establish(*first, 2);
  const std::string ended = establish(*first, 3);
  hangUp(*first, ended, 2, 3);
  EXPECT_EQ(first->counters().at("not_kept"), 2);
  // It begins with nothing, so that the first call is to be kept again, too.
  redis_ = std::make_unique<RedisServer>(folder_.path(), port);
  ASSERT_TRUE(redis_->isReady());
  EXPECT_TRUE(waitUntil([&] { return first->counters().at("made_up_for") == 2; }, kLongestStart));
  EXPECT_EQ(redis_->ask({"EXISTS", keyOf(ended)}), "0");
  kill(*first);
  const auto second = startEngine("second");
  reoffer(*second, before, 2, 1);
  hangUp(*second, meanwhile, 2, 2);
}

// Records go by themselves after a day, so that of a long call is written anew.
TEST_F(Ownership, ALongCallStaysInTheStore) {
  const std::string later = folder_.path() + "/later";
  const std::vector<std::string> options = {"--state", store_, "--session-expires", "0"};
  const Engine engine(folder_, kHost, target_.port(), options, "0", "engine",
                      {"/usr/bin/env", "LD_PRELOAD=" LATER_CLOCK, "B2BUA_LATER=" + later});
  const std::string tag = establish(engine);
  redis_->ask({"EXPIRE", keyOf(tag), "100"});
  folder_.write("later", "");
  EXPECT_TRUE(waitUntil(
      [&] {
        return std::stoi(redis_->ask({"TTL", keyOf(tag)})) == 86'400;
      },
      kLongestStart));
  hangUp(engine, tag, 2);
}

// What an outage of the store left there goes when it is over.
TEST_F(Ownership, ACallThatEndsInAnOutageIsForgottenAfterIt) {
  const auto engine = startEngine("engine");
  const std::string tag = establish(*engine);
  redis_->process().signal(SIGSTOP);
  hangUp(*engine, tag, 2);
  redis_->process().signal(SIGCONT);
  EXPECT_TRUE(waitUntil([&] { return redis_->ask({"HGETALL", keyOf(tag)}) == "owner - "; }, kLongestStart));
}

// An answer would end the call.
TEST_F(Ownership, WhoCannotAskTheStoreLeavesRequestsToBeRepeated) {
  const auto first = startEngine("first");
  const std::string tag = establish(*first);
  kill(*first);
  const auto second = startEngine("second");
  redis_->process().signal(SIGSTOP);
  EXPECT_EQ(caller_.ask(second->address(), {.method = "BYE", .cseq = 2, .toTag = tag}, milliseconds(700)),
            "");
  redis_->process().signal(SIGCONT);
  std::this_thread::sleep_for(milliseconds(1'100));
  hangUp(*second, tag, 2);
}

TEST_F(Ownership, RecordsThatAreWrongAreRefused) {
  const std::string huge(100'000, 'x');
  const std::pair<const char*, std::string> wrong[] = {
      {"caller.cseq", "4294967296"},
      {"caller.cseq", "-1"},
      {"caller.cseq", ""},
      {"target.cseq", "2147483648"},
      {"target.cseq", "12x"},
      {"target.remote-cseq", "many"},
      {"target.ack", "99999999999999999999"},
      {"caller.call-id", ""},
      {"caller.local", "<sip:bob@192.0.2.1"},
      {"caller.local", "<sip:bob@192.0.2.1>"},
      {"caller.remote", "<sip:alice@192.0.2.1>;tag=1\r\nX-More: 1"},
      {"target.remote", huge},
      {"target.remote", std::string("<sip:a@b>\0;tag=1", 16)},
      {"target.contact", "nobody at all <"},
      {"target.contact", "*"},
      {"target.contact", "<tel:+123>"},
      {"target.contact", ""},
      {"target.routes", "<<<>"},
      {"target.sent", ""},
      {"target.sent", "rubbish"},
      {"caller.received", huge},
      {"caller.received", std::string(40, '\0')},
  };
  const auto first = startEngine("first");
  const std::string tag = establish(*first);
  kill(*first);
  const auto second = startEngine("second");
  const std::string key = keyOf(tag);
  int number = 0;
  for (const auto& [field, value] : wrong) {
    // Few unknown tags of a second are looked for.
    if (++number % 4 == 0) std::this_thread::sleep_for(milliseconds(1'000));
    const std::string right = redis_->ask({"HGET", key, field});
    redis_->ask({"HSET", key, field, value});
    EXPECT_EQ(
        statusOf(caller_.ask(second->address(), {.method = "BYE", .cseq = 2, .toTag = tag}, kLongestStart)),
        481)
        << field << " " << value.substr(0, 40);
    redis_->ask({"HSET", key, field, right});
    if (right.empty()) redis_->ask({"HDEL", key, field});
  }
  redis_->ask({"RENAME", key, "aside"});
  redis_->ask({"SET", key, "no hash"});
  EXPECT_EQ(caller_.ask(second->address(), {.method = "BYE", .cseq = 2, .toTag = tag}, milliseconds(300)),
            "");
  std::this_thread::sleep_for(milliseconds(1'100));
  redis_->ask({"RENAME", "aside", key});
  EXPECT_EQ(redis_->ask({"HEXISTS", key, "owner"}), "1");
  hangUp(*second, tag, 2);
}
