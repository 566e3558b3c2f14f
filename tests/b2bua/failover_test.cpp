#include <targets.h>

#include "calls.h"
#include "rawParty.h"

// Several targets: who gets a call, and where it goes when that one does not take it.

using b2bua::readTarget;
using b2bua::Target;
using b2bua::Targets;
using Places = std::vector<std::string>;

namespace {

constexpr milliseconds kLongestWait{5'000};
constexpr milliseconds kSilence{300};  ///< after which nothing comes any more

const std::string kOffer =
    "v=0\r\no=alice 21 4 IN IP4 192.0.2.10\r\ns=-\r\nc=IN IP4 192.0.2.10\r\nt=0 0\r\nm=audio 49170 RTP/AVP 0 8\r\n";
const std::string kAnswer =
    "v=0\r\no=bob 33 9 IN IP4 192.0.2.20\r\ns=-\r\nc=IN IP4 192.0.2.20\r\nt=0 0\r\nm=audio 30000 RTP/AVP 8\r\n";

Target targetAt(const std::string& address, unsigned int weight, unsigned int priority) {
  Target target;
  target.address = address;
  target.weight = weight;
  target.priority = priority;
  return target;
}

std::string bodyOf(const std::string& message) { return message.substr(message.find("\r\n\r\n") + 4); }

/// An engine with two targets, the first of which has the better priority.
class Failover : public Calls {
 protected:
  void start(const std::vector<std::string>& options = {}) {
    std::vector<std::string> all = {"--target", second_.address() + ";priority=1", "--target-seconds", "1"};
    all.insert(all.end(), options.begin(), options.end());
    engine_ = std::make_unique<Engine>(folder_, "127.0.0.1", first_.port(), all);
    ASSERT_FALSE(engine_->address().empty());
  }

  std::string invitedAt(const RawParty& target) const { return target.receive("INVITE ", "", kLongestWait); }

  /// The target takes the call, and the caller acknowledges that.
  void accept(const RawParty& target, const std::string& invited, int call = 1) const {
    target.respond(engine_->address(), invited, "200 OK", kAnswer);
    const std::string response = caller_.receive("SIP/2.0 200 ", "", kLongestWait);
    EXPECT_EQ(bodyOf(response), kAnswer) << response;
    caller_.request(engine_->address(), {.method = "ACK", .call = call, .toTag = toTagOf(response)});
    EXPECT_NE(target.receive("ACK ", "", kLongestWait), "");
  }

  const RawParty caller_;
  const RawParty first_;
  const RawParty second_;
  std::unique_ptr<Engine> engine_;
};

}  // namespace

TEST(Targets, AreReadWithTheirParameters) {
  const auto plain = readTarget("192.0.2.1:5060");
  ASSERT_TRUE(plain);
  EXPECT_EQ(plain->address, "192.0.2.1:5060");
  EXPECT_EQ(plain->place(), "192.0.2.1:5060");
  EXPECT_EQ(plain->weight, 1U);
  EXPECT_EQ(plain->priority, 0U);
  const auto full = readTarget("[2001:db8::1]:5061;priority=0;transport=tls;weight=10000");
  ASSERT_TRUE(full);
  EXPECT_EQ(full->address, "[2001:db8::1]:5061");
  EXPECT_EQ(full->place(), "[2001:db8::1]:5061;transport=tls");
  EXPECT_EQ(full->weight, 10'000U);
}

TEST(Targets, AreRefusedWithOtherParameters) {
  for (const char* text :
       {"192.0.2.1:5060;", "192.0.2.1:5060;weight", "192.0.2.1:5060;weight=0", "192.0.2.1:5060;weight=10001",
        "192.0.2.1:5060;weight=1x", "192.0.2.1:5060;priority=-1",
        "192.0.2.1:5060;priority=", "192.0.2.1:5060;transport=sctp", "192.0.2.1:5060;lr"})
    EXPECT_FALSE(readTarget(text)) << text;
}

TEST(Targets, OfLowPriorityNumbersComeFirst) {
  Targets targets({targetAt("c", 10'000, 2), targetAt("a", 1, 0), targetAt("b", 100, 1)});
  for (int i = 0; i < 100; ++i) ASSERT_EQ(targets.order(), (Places{"a", "b", "c"}));
}

// 3 of 4 calls go to the one with three times the weight: of 10000, that is 7500, with a deviation of 43.
TEST(Targets, OfOnePriorityAreFirstByTheirWeights) {
  Targets targets({targetAt("a", 30, 0), targetAt("b", 10, 0)});
  int first = 0;
  for (int i = 0; i < 10'000; ++i) first += targets.order().front() == "a" ? 1 : 0;
  EXPECT_GT(first, 7'500 - 5 * 43);
  EXPECT_LT(first, 7'500 + 5 * 43);
}

TEST(Targets, ThatFailedComeLastUntilTheyAnswer) {
  Targets targets({targetAt("a", 1, 0), targetAt("b", 1, 1), targetAt("c", 1, 2)});
  targets.failed("a");
  EXPECT_EQ(targets.order(), (Places{"b", "c", "a"}));
  targets.failed("b");
  targets.failed("nobody");
  EXPECT_EQ(targets.order(), (Places{"c", "a", "b"}));
  targets.failed("c");
  EXPECT_EQ(targets.order(), (Places{"a", "b", "c"}));
  targets.answered("b");
  EXPECT_EQ(targets.order(), (Places{"b", "a", "c"}));
}

TEST_F(Failover, ACallGoesOnAfter503) {
  start();
  caller_.request(engine_->address(), {.body = kOffer});
  const std::string refused = invitedAt(first_);
  first_.respond(engine_->address(), refused, "503 Service Unavailable");
  const std::string invited = invitedAt(second_);
  EXPECT_NE(first_.receive("ACK ", "", kLongestWait), "");
  EXPECT_EQ(bodyOf(invited), bodyOf(refused));
  EXPECT_EQ(bodyOf(invited), kOffer);
  EXPECT_NE(headerOf(invited, "Call-ID"), headerOf(refused, "Call-ID"));
  EXPECT_TRUE(invited.starts_with("INVITE sip:bob@" + second_.address() + " SIP/2.0\r\n")) << invited;
  EXPECT_EQ(headerOf(invited, "To"), "<sip:bob@" + second_.address() + ">");
  accept(second_, invited);
  EXPECT_EQ(caller_.receive("SIP/2.0 503 ", "", kSilence), "");
  // The first one rests.
  caller_.request(engine_->address(), {.call = 2, .body = kOffer});
  accept(second_, invitedAt(second_), 2);
  EXPECT_EQ(first_.receive("INVITE ", "", kSilence), "");
  Counters counters = raised(engine_->counters());
  counters.erase("active");
  EXPECT_EQ(counters, (Counters{{"calls", 2}, {"established", 2}, {"failovers", 1}}));
}

TEST_F(Failover, ACallGoesOnAfterSilenceAndALateAnswerIsEnded) {
  start();
  caller_.request(engine_->address(), {.body = kOffer});
  const std::string late = invitedAt(first_);
  accept(second_, invitedAt(second_));
  first_.respond(engine_->address(), late, "200 OK", kAnswer);
  const std::string callId = headerOf(late, "Call-ID");
  EXPECT_NE(first_.receive("ACK ", callId, kLongestWait), "");
  const std::string bye = first_.receive("BYE ", callId, kLongestWait);
  EXPECT_EQ(headerOf(bye, "CSeq"), "2 BYE") << bye;
  EXPECT_EQ(toTagOf(bye), ";tag=raw");
  first_.respond(engine_->address(), bye, "200 OK");
  // The call with the second one goes on.
  EXPECT_EQ(second_.receive("BYE ", "", kSilence), "");
  EXPECT_EQ(engine_->counters()["active"], 1);
}

// The request is cancelled as soon as that is allowed (RFC 3261 9.1).
TEST_F(Failover, ATargetThatRingsLateIsCancelled) {
  start();
  caller_.request(engine_->address(), {.body = kOffer});
  const std::string late = invitedAt(first_);
  accept(second_, invitedAt(second_));
  first_.respond(engine_->address(), late, "180 Ringing");
  const std::string cancelled = first_.receive("CANCEL ", headerOf(late, "Call-ID"), kLongestWait);
  EXPECT_EQ(headerOf(cancelled, "Via"), headerOf(late, "Via"));
}

// Whoever is given up gets no more of the call, and its transactions must not point into it.
TEST_F(Failover, AnInfoOfASilentTargetIsRefusedWhenItIsGivenUp) {
  start();
  caller_.request(engine_->address(), {.body = kOffer});
  const std::string invited = invitedAt(first_);
  const std::string contact = headerOf(invited, "Contact");
  first_.send(
      engine_->address(),
      "INFO " + contact.substr(1, contact.find('>') - 1) + " SIP/2.0\r\nVia: SIP/2.0/UDP " +
          first_.address() + ";branch=z9hG4bKinfo\r\nMax-Forwards: 70\r\nFrom: " + headerOf(invited, "To") +
          ";tag=raw\r\nTo: " + headerOf(invited, "From") + "\r\nCall-ID: " + headerOf(invited, "Call-ID") +
          "\r\nCSeq: 1 INFO\r\nContent-Length: 0\r\n\r\n");
  const std::string info = caller_.receive("INFO ", "", kLongestWait);
  EXPECT_NE(info, "");
  const std::string other = invitedAt(second_);
  EXPECT_NE(first_.receive("SIP/2.0 500 ", "CSeq: 1 INFO", kLongestWait), "");
  accept(second_, other);
  caller_.respond(engine_->address(), info, "200 OK");
  EXPECT_EQ(first_.receive("SIP/2.0 200 ", "CSeq: 1 INFO", kSilence), "");
  EXPECT_EQ(engine_->counters()["active"], 1);
}

TEST_F(Failover, ATargetThatSaysAnythingIsWaitedFor) {
  start();
  caller_.request(engine_->address(), {.body = kOffer});
  const std::string invited = invitedAt(first_);
  first_.respond(engine_->address(), invited, "100 Trying");
  EXPECT_EQ(second_.receive("INVITE ", "", milliseconds(2'000)), "");
  accept(first_, invited);
}

TEST_F(Failover, AClosedPortIsLeftAtOnce) {
  const std::string nobody = "127.0.0.1:" + freePort();
  Engine engine(folder_, "127.0.0.1", nobody.substr(nobody.find(':') + 1),
                {"--target", second_.address() + ";priority=1", "--target-seconds", "30"});
  caller_.request(engine.address(), {.body = kOffer});
  EXPECT_NE(invitedAt(second_), "");
}

TEST_F(Failover, OtherRefusalsAreTheCallers) {
  start();
  caller_.request(engine_->address(), {.body = kOffer});
  first_.respond(engine_->address(), invitedAt(first_), "486 Busy Here");
  EXPECT_NE(caller_.receive("SIP/2.0 486 ", "", kLongestWait), "");
  EXPECT_EQ(second_.receive("INVITE ", "", kSilence), "");
}

TEST_F(Failover, TheLastRefusalIsTheCallers) {
  start();
  for (int call = 1; call <= 2; ++call) {
    // When all rest, all are tried all the same.
    caller_.request(engine_->address(), {.call = call, .body = kOffer});
    first_.respond(engine_->address(), invitedAt(first_), "503 Service Unavailable");
    second_.respond(engine_->address(), invitedAt(second_), "503 Service Unavailable");
    EXPECT_NE(caller_.receive("SIP/2.0 503 ", "", kLongestWait), "");
  }
  EXPECT_EQ(raised(engine_->stop()), (Counters{{"calls", 2}, {"failed", 2}, {"failovers", 2}}));
}

TEST_F(Failover, ACancelledCallGoesNowhere) {
  start();
  caller_.request(engine_->address(), {.body = kOffer});
  EXPECT_NE(invitedAt(first_), "");
  caller_.request(engine_->address(), {.method = "CANCEL", .branch = "INVITE1"});
  EXPECT_NE(caller_.receive("SIP/2.0 487 ", "", kLongestWait), "");
  EXPECT_EQ(second_.receive("INVITE ", "", milliseconds(2'000)), "");
}

TEST_F(Failover, AnInviteWithoutBodyGoesOnWithItsDummy) {
  start();
  caller_.request(engine_->address(), {});
  const std::string refused = invitedAt(first_);
  first_.respond(engine_->address(), refused, "503 Service Unavailable");
  const std::string invited = invitedAt(second_);
  EXPECT_TRUE(bodyOf(invited).starts_with("v=0\r\no=IRM ")) << invited;
  EXPECT_EQ(bodyOf(invited), bodyOf(refused));
}
