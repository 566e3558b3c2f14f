#include <csignal>
#include <thread>

#include "twoParties.h"

// The engine as a service: what it reads anew, and how it ends.

namespace {

constexpr milliseconds kShortWait{1'000};

class Service : public TwoParties {
 protected:
  void start(std::vector<std::string> options) {
    options.insert(options.end(), {"--policy", folder_.write("policy", "audio-codecs = PCMA\n")});
    TwoParties::start(options);
  }

  /// @return the caller's 200
  std::string answer(const std::string& invited, const RawRequest& asked) const {
    target_.respond(engine_->address(), invited, "200 OK", kAnswer);
    const std::string response = caller_.receive("SIP/2.0 200 ", "INVITE", kLongestWait);
    caller_.request(engine_->address(),
                    {.method = "ACK", .call = asked.call, .cseq = asked.cseq, .toTag = toTagOf(response)});
    EXPECT_NE(target_.receive("ACK ", "", kLongestWait), "");
    return response;
  }

  /// @return the engine's tag
  std::string establish() const { return toTagOf(answer(invite({.body = kOffer}), {})); }

  bool isLogged(const std::string& text) const {
    return waitUntil([&] { return engine_->log().find(text) != std::string::npos; }, kLongestWait);
  }

  void hangUp(const std::string& policy) {
    folder_.write("policy", policy);
    engine_->process().signal(SIGHUP);
  }

  void expectAnEndBy(int second) {
    start({"--drain-seconds", "100"});
    establish();
    engine_->process().signal(SIGTERM);
    ASSERT_TRUE(isLogged(" draining calls 1\n"));
    engine_->process().signal(second);
    EXPECT_NE(target_.receive("BYE ", "", kShortWait), "");
    EXPECT_EQ(engine_->process().wait(kLongestWait), 0);
  }
};

/// @return the formats of the first m-line
std::string formatsOf(const std::string& message) {
  const std::size_t line = message.find("RTP/AVP ");
  return line == std::string::npos ? "" : message.substr(line + 8, message.find("\r\n", line) - line - 8);
}

}  // namespace

TEST_F(Service, ReadsItsPolicyAnewAtHangup) {
  start({});
  EXPECT_EQ(formatsOf(invite({.call = 1, .body = kOffer})), "8");
  hangUp("audio-codecs = PCMU\n");
  EXPECT_TRUE(isLogged(" policy read anew\n"));
  EXPECT_EQ(formatsOf(invite({.call = 2, .body = kOffer})), "0");
}

// The offer was made under the former policy, which the answer would break.
TEST_F(Service, AnExchangeKeepsThePolicyThatItBeganWith) {
  start({});
  const std::string invited = invite({.body = kOffer});
  hangUp("audio-codecs = PCMU\n");
  ASSERT_TRUE(isLogged(" policy read anew\n"));
  const std::string response = answer(invited, {});
  EXPECT_EQ(formatsOf(response), "8");
  EXPECT_EQ(formatsOf(invite({.cseq = 2, .toTag = toTagOf(response), .body = kHold})), "0");
}

TEST_F(Service, KeepsItsPolicyWhenTheNewOneIsUnusable) {
  start({});
  hangUp("audio-codecs = PCMU\ncolour = blue\n");
  EXPECT_TRUE(isLogged(" policy not read anew: " + folder_.path("policy") + ":2:")) << engine_->log();
  EXPECT_EQ(formatsOf(invite({.call = 1, .body = kOffer})), "8");
  std::filesystem::remove(folder_.path("policy"));
  engine_->process().signal(SIGHUP);
  EXPECT_TRUE(waitUntil(
      [&] {
        const std::string log = engine_->log();
        return log.find("not read anew", log.find("not read anew") + 1) != std::string::npos;
      },
      kLongestWait));
  EXPECT_EQ(formatsOf(invite({.call = 2, .body = kOffer})), "8");
}

TEST_F(Service, DrainsAtTermination) {
  start({"--drain-seconds", "20"});
  const std::string tag = establish();
  EXPECT_EQ(statusOf(ask({.method = "OPTIONS", .call = 2})), 200);
  engine_->process().signal(SIGTERM);
  ASSERT_TRUE(isLogged(" draining calls 1\n"));
  for (const char* method : {"OPTIONS", "INVITE"}) {
    const std::string response = ask({.method = method, .call = 3, .body = kOffer});
    EXPECT_EQ(statusOf(response), 503);
    EXPECT_EQ(headerOf(response, "Retry-After"), "10");
  }
  // The running call goes on, and ends the engine with it.
  EXPECT_EQ(formatsOf(answer(invite({.cseq = 2, .toTag = tag, .body = kHold}), {.cseq = 2})), "8");
  EXPECT_TRUE(engine_->process().isRunning());
  EXPECT_EQ(statusOf(ask({.method = "BYE", .cseq = 3, .toTag = tag})), 200);
  const std::string bye = target_.receive("BYE ", "", kLongestWait);
  target_.respond(engine_->address(), bye, "200 OK");
  EXPECT_EQ(engine_->process().wait(kLongestWait), 0);
  EXPECT_NE(engine_->process().output().find("established=1 ended=1 failed=0"), std::string::npos);
}

TEST_F(Service, DrainsNoLongerThanAllowed) {
  start({"--drain-seconds", "1"});
  establish();
  engine_->process().signal(SIGTERM);
  EXPECT_EQ(target_.receive("BYE ", "", milliseconds(700)), "");
  EXPECT_NE(target_.receive("BYE ", "", kShortWait), "");
  EXPECT_NE(caller_.receive("BYE ", "", kShortWait), "");
  EXPECT_EQ(engine_->process().wait(kLongestWait), 0);
}

TEST_F(Service, ASecondTerminationEndsTheDraining) { expectAnEndBy(SIGTERM); }

TEST_F(Service, AnInterruptEndsTheDraining) { expectAnEndBy(SIGINT); }

TEST_F(Service, AnInterruptDoesNotDrain) {
  start({"--drain-seconds", "100"});
  establish();
  engine_->process().signal(SIGINT);
  EXPECT_NE(target_.receive("BYE ", "", kShortWait), "");
  EXPECT_EQ(engine_->process().wait(kLongestWait), 0);
}
