#include <algorithm>
#include <csignal>

#include "calls.h"
#include "rawParty.h"

// An engine is killed, and the next one goes on with its calls from what Redis keeps.

namespace {

using Bodies = std::vector<std::string>;

constexpr std::size_t kCalls = 5;
const std::string kHost = "127.0.0.1";

const std::string kOffer =
    "v=0\n"
    "o=alice 21 4 IN IP4 192.0.2.10\n"
    "s=-\n"
    "c=IN IP4 192.0.2.10\n"
    "t=0 0\n"
    "m=audio 49170 RTP/AVP 0 8\n"
    "a=rtpmap:0 PCMU/8000\n"
    "a=rtpmap:8 PCMA/8000\n"
    "a=sendrecv\n";

// What the policy makes of it.
const std::string kOffered =
    "v=0\n"
    "o=alice 21 4 IN IP4 192.0.2.10\n"
    "s=-\n"
    "c=IN IP4 192.0.2.10\n"
    "t=0 0\n"
    "m=audio 49170 RTP/AVP 8\n"
    "a=rtpmap:8 PCMA/8000\n"
    "a=sendrecv\n";

const std::string kAnswer =
    "v=0\n"
    "o=bob 33 9 IN IP4 192.0.2.20\n"
    "s=-\n"
    "c=IN IP4 192.0.2.20\n"
    "t=0 0\n"
    "m=audio 30000 RTP/AVP 8\n"
    "a=rtpmap:8 PCMA/8000\n"
    "a=sendrecv\n";

/// The bodies of each of several calls: all first ones, then all second ones.
Bodies forEachCall(const std::string& first, const std::string& second = "") {
  Bodies bodies(kCalls, first);
  if (!second.empty()) bodies.insert(bodies.end(), kCalls, second);
  return bodies;
}

class Takeover : public Calls {
 protected:
  void SetUp() override {
    const bool ready =
        waitUntil([this] { return redis_.output().find("Ready to accept connections") != std::string::npos; },
                  kLongestStart);
    ASSERT_TRUE(ready) << redis_.output();
  }

  /// Calls through an engine that is killed when the calls are established, and on through the next one.
  Played playWithTakeover(const std::string& targetScenario) {
    const std::vector<std::string> options = {"--policy", folder_.write("policy", "audio-codecs = PCMA\n"),
                                              "--state", "redis://" + kHost + ":" + redisPort_};
    const std::vector<std::string> sippOptions = {"-m", std::to_string(kCalls), "-r", "100"};
    const std::string port = freePort();
    Engine first(folder_, kHost, port, options);
    Sipp target = startTarget(folder_, targetScenario, kHost, port, sippOptions);
    Sipp caller = startCaller(folder_, "takeover-caller", kHost, first.address(), sippOptions);
    EXPECT_TRUE(waitUntil([&] { return first.counters().at("established") == kCalls; }, kLongestStart));
    EXPECT_EQ(first.counters().at("reoffers"), 0);
    first.process().signal(SIGKILL);
    EXPECT_EQ(first.process().wait(kLongestStart), 128 + SIGKILL);
    Engine second(folder_, kHost, port, options, first.port(), "second-engine");
    const bool done = caller.finish();
    target.finish(done ? kLongestCall : kLongestStart);
    Played played;
    played.counters = second.stop();
    played.log = second.log();
    played.atCaller = bodiesOf(caller.received());
    played.atTarget = bodiesOf(target.received());
    return played;
  }

  const std::string redisPort_ = freePort();
  Process redis_{
      REDIS_PROGRAM,
      {"--port", redisPort_, "--bind", kHost, "--save", "", "--appendonly", "no", "--dir", folder_.path()},
      folder_.path(),
      "redis"};
};

/// Waits for a message, which must come.
std::string received(const RawParty& party, const std::string& start) {
  const std::string message = party.receive(start, "", kLongestStart);
  EXPECT_NE(message, "") << start;
  return message;
}

std::string firstLineOf(const std::string& message) { return message.substr(0, message.find("\r\n")); }

void expectTakenOver(const Played& played, std::size_t relayed) {
  EXPECT_EQ(played.counters.at("taken_over"), kCalls);
  EXPECT_EQ(played.counters.at("reoffers"), kCalls);
  EXPECT_EQ(played.counters.at("ended"), kCalls);
  EXPECT_EQ(played.counters.at("calls"), 0);
  EXPECT_EQ(played.counters.at("failed"), 0);
  EXPECT_EQ(played.counters.at("active"), 0);
  std::size_t found = 0;
  for (std::size_t at = 0; (at = played.log.find(" re-offer relayed", at)) != std::string::npos; ++at)
    ++found;
  EXPECT_EQ(found, relayed) << played.log;
}

}  // namespace

TEST_F(Takeover, AHoldAfterItGetsTheRightBodies) {
  const std::string hold = replaced(replaced(kOffer, "21 4 IN", "21 11 IN"), "a=sendrecv", "a=sendonly");
  const std::string holdAnswer =
      replaced(replaced(kAnswer, "33 9 IN", "33 15 IN"), "a=sendrecv", "a=recvonly");
  writeBodies(
      {.bodies = {{"offer", kOffer}, {"answer", kAnswer}, {"reoffer", hold}, {"reanswer", holdAnswer}}});
  const Played played = playWithTakeover("takeover-target");
  // The versions go on from those of the first engine.
  EXPECT_EQ(played.atTarget, forEachCall(kOffered, replaced(replaced(kOffered, "21 4 IN", "21 5 IN"),
                                                            "a=sendrecv", "a=sendonly")));
  EXPECT_EQ(played.atCaller, forEachCall(kAnswer, replaced(replaced(kAnswer, "33 9 IN", "33 10 IN"),
                                                           "a=sendrecv", "a=recvonly")));
  expectTakenOver(played, kCalls);
}

TEST_F(Takeover, AnUnchangedReofferAfterItIsAnsweredFromTheStore) {
  writeBodies({.bodies = {{"offer", kOffer}, {"answer", kAnswer}, {"reoffer", kOffer}}});
  const Played played = playWithTakeover("call-target");
  EXPECT_EQ(played.atTarget, forEachCall(kOffered));
  EXPECT_EQ(played.atCaller, forEachCall(kAnswer, kAnswer));
  expectTakenOver(played, 0);
}

TEST_F(Takeover, TheRouteToThePartiesStays) {
  const RawParty caller;
  const RawParty target;
  const std::vector<std::string> options = {"--state", "redis://" + kHost + ":" + redisPort_};
  Engine first(folder_, kHost, target.port(), options);
  const std::string engine = first.address();
  const std::string routes =
      "\r\nRoute: <sip:" + target.address() + ";lr;hop=1>\r\nRoute: <sip:192.0.2.7;lr>\r\n";
  caller.request(engine, {.body = withCrLf(kOffer)});
  target.respond(engine, received(target, "INVITE "),
                 "200 OK\r\nRecord-Route: <sip:192.0.2.7;lr>, <sip:" + target.address() + ";lr;hop=1>",
                 withCrLf(kAnswer));
  const std::string tag = toTagOf(received(caller, "SIP/2.0 200 "));
  caller.request(engine, {.method = "ACK", .toTag = tag});
  const std::string acknowledged = received(target, "ACK ");
  EXPECT_NE(acknowledged.find(routes), std::string::npos) << acknowledged;
  EXPECT_TRUE(waitUntil([&] { return first.counters().at("established") == 1; }, kLongestStart));
  first.process().signal(SIGKILL);
  EXPECT_EQ(first.process().wait(kLongestStart), 128 + SIGKILL);
  Engine second(folder_, kHost, target.port(), options, first.port(), "second-engine");
  // Who is not of the dialog takes nothing over.
  EXPECT_EQ(
      statusOf(caller.ask(engine, {.method = "BYE", .call = 2, .cseq = 2, .toTag = tag}, kLongestStart)),
      481);
  EXPECT_EQ(raised(second.counters()), Counters{});
  EXPECT_EQ(statusOf(caller.ask(engine, {.method = "BYE", .cseq = 2, .toTag = tag}, kLongestStart)), 200);
  const std::string ended = received(target, "BYE ");
  EXPECT_EQ(firstLineOf(ended), "BYE sip:bob@" + target.address() + " SIP/2.0");
  EXPECT_NE(ended.find(routes), std::string::npos) << ended;
}
