#include <csignal>
#include <iostream>

#include "../testFiles.h"
#include "baresip.h"
#include "rtpengineProcess.h"
#include "storedCalls.h"

// Media that flow while the engine of their call is killed, and the next one that goes on with the call: two clients,
// Kamailio as deploy/ has it, two engines, one Redis, one rtpengine.

namespace {

const std::string kHost = "127.0.0.1";

/// Kamailio with the configuration of deploy/, and lists of its own.
class Kamailio {
 public:
  /// @param list  its engines and callees, as dispatcher.list has them
  Kamailio(const TemporaryFolder& folder, const std::string& port, const std::string& list)
      : process_(KAMAILIO_PROGRAM,
                 {"-f", configuration(folder, port), "-A",
                  "LIST_FILE=\"" + folder.write("dispatcher.list", list) + "\"", "-DD", "-E", "-m", "64",
                  "-w", folder.path(), "-Y", folder.path()},
                 folder.path(), "kamailio") {
    EXPECT_TRUE(waitUntil(
        [&] {
          return statusOf(party_.ask(kHost + ":" + port, {.method = "OPTIONS"}, milliseconds{100})) == 200;
        },
        kLongestStart))
        << process_.output();
  }
  /// It ends its children, which would stay if it was killed.
  ~Kamailio() {
    process_.signal(SIGTERM);
    process_.wait(kLongestStart);
  }
  Kamailio(const Kamailio&) = delete;
  Kamailio& operator=(const Kamailio&) = delete;

  Process& process() { return process_; }

 private:
  static std::string configuration(const TemporaryFolder& folder, const std::string& port) {
    std::string text = readBytes(B2BUA_TEST_FOLDER "/../../deploy/kamailio.cfg");
    const std::pair<std::string, std::string> kChanges[] = {
        {"127.0.1.1:5060", kHost + ":" + port},
        {"log_stderror=no", "log_stderror=yes"},
        // The client knows no user of that name.
        {"request_route {",
         "modparam(\"dispatcher\", \"ds_ping_reply_codes\", \"code=404\")\nrequest_route {"}};
    for (const auto& [shipped, own] : kChanges) {
      EXPECT_NE(text.find(shipped), std::string::npos) << shipped;
      text = replaced(text, shipped, own);
    }
    return folder.write("kamailio.cfg", text);
  }

  const RawParty party_;
  Process process_;
};

/// How the caller sends its media; the target always has plain RTP.
struct Secured {
  std::string name;
  std::string account;  ///< parameters of the caller's account
  std::string kind;     ///< what the engine is told of it
  std::string crypto;   ///< suite that the relay tells; empty for plain RTP
  long early = 0;       ///< so many packets may come before their keys
};

class MediaFailover : public Calls, public testing::WithParamInterface<Secured> {
 protected:
  void SetUp() override {
    ASSERT_TRUE(redis_.isReady());
    const std::string proxy = freePort();
    for (const char* const name : {"first-engine", "second-engine"})
      engines_.push_back(startEngine(name, proxy));
    bob_ = std::make_unique<Baresip>(folder_, "bob", std::vector<std::string>{}, talking());
    kamailio_ =
        std::make_unique<Kamailio>(folder_, proxy,
                                   "1 sip:" + engines_[0]->address() + "\n1 sip:" + engines_[1]->address() +
                                       "\n2 sip:" + kHost + ":" + bob_->port() + "\n");
    const std::vector<std::string> dial = {"-e", "/dial sip:bob@" + kHost + ":" + proxy};
    alice_ = std::make_unique<Baresip>(folder_, "alice", dial,
                                       talking(GetParam().account, {"srtp", "dtls_srtp", "ice"}));
    ASSERT_TRUE(waitUntil([&] { return engineOfCall() != nullptr; }, kLongestCall));
    ASSERT_TRUE(relay_.hasFlow());
    for (auto& [tag, errors] : early_) {
      errors = relay_.side(tag).errors;
      EXPECT_LE(errors, GetParam().early);
    }
  }

  std::unique_ptr<Engine> startEngine(const std::string& name, const std::string& target) {
    std::vector<std::string> options = relay_.options();
    options.insert(options.end(), {"--media-caller", GetParam().kind, "--media-target", "rtp", "--state",
                                   "redis://" + kHost + ":" + redis_.port(), "--policy",
                                   folder_.write("policy", "audio-codecs = PCMA, PCMU\n")});
    return std::make_unique<Engine>(folder_, kHost, target, options, "0", name);
  }

  /// The one that an established call has; null without one.
  std::unique_ptr<Engine>* engineOfCall() {
    for (std::unique_ptr<Engine>& engine : engines_)
      if (engine->counters()["established"] == 1) return &engine;
    return nullptr;
  }

  /// Packets come from both sides, in the agreed codec, and the relay can read all of them.
  void expectFlow() const {
    EXPECT_TRUE(relay_.hasFlow());
    for (const char* const tag : {"-c", "-t"}) {
      EXPECT_EQ(relay_.side(tag).codec, "PCMA/8000");
      EXPECT_EQ(relay_.side(tag).errors, early_.at(tag));
    }
    EXPECT_EQ(relay_.side("-c").crypto, GetParam().crypto);
    EXPECT_EQ(relay_.side("-t").crypto, "");
  }

  void TearDown() override {
    if (HasFailure() && alice_)
      std::cout << alice_->process().output() << bob_->process().output() << kamailio_->process().output()
                << relay_.process().output();
    Calls::TearDown();
  }

  std::map<std::string, long> early_ = {{"-c", 0}, {"-t", 0}};
  RedisServer redis_{folder_.path(), freeServerPort()};
  RtpengineProcess relay_{folder_};
  std::vector<std::unique_ptr<Engine>> engines_;
  std::unique_ptr<Baresip> bob_;
  std::unique_ptr<Kamailio> kamailio_;
  std::unique_ptr<Baresip> alice_;
};

}  // namespace

TEST_P(MediaFailover, GoOnWhenTheEngineIsKilledAndFollowTheNextOne) {
  expectFlow();
  std::unique_ptr<Engine>& killed = *engineOfCall();
  Engine& next = killed == engines_[0] ? *engines_[1] : *engines_[0];
  killed->process().signal(SIGKILL);
  EXPECT_EQ(killed->process().wait(kLongestStart), 128 + SIGKILL);
  expectFlow();
  EXPECT_EQ(next.counters()["taken_over"], 0);

  alice_->command("hold");
  ASSERT_TRUE(waitUntil([&] { return bob_->says("a=sendonly"); }, kLongestCall));
  EXPECT_TRUE(relay_.isSilent("-t"));
  EXPECT_TRUE(waitUntil([&] { return alice_->says("a=recvonly"); }, kLongestCall));
  EXPECT_EQ(next.counters()["taken_over"], 1);
  alice_->command("resume");
  expectFlow();

  alice_->command("hangup");
  EXPECT_TRUE(waitUntil([&] { return relay_.calls() == 0; }, kLongestCall));
  EXPECT_TRUE(waitUntil([&] { return bob_->says("session closed"); }, kLongestCall));
  EXPECT_FALSE(alice_->says("failed to decrypt"));
  const Counters counters = next.stop();
  EXPECT_EQ(counters.at("ended"), 1);
  EXPECT_EQ(counters.at("reoffers"), 2);
  EXPECT_EQ(counters.at("media_requests"), 4);
  EXPECT_EQ(counters.at("media_failures"), 0);
}

INSTANTIATE_TEST_SUITE_P(Callers, MediaFailover,
                         testing::Values(Secured{"Plain", "", "rtp", ""},
                                         Secured{"Sdes", ";mediaenc=srtp-mand", "srtp",
                                                 "AES_CM_128_HMAC_SHA1_80"},
                                         Secured{"DtlsAndIce", ";mediaenc=dtls_srtp;medianat=ice", "webrtc",
                                                 "AES_CM_128_HMAC_SHA1_80", 5}),
                         [](const auto& row) { return row.param.name; });
