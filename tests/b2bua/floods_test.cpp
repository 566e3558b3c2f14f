#include <arpa/inet.h>
#include <heads.h>
#include <netinet/in.h>
#include <sources.h>

#include <atomic>
#include <cstdlib>
#include <iostream>
#include <thread>

#include "calls.h"
#include "rawParty.h"

// Limits of each source, and who floods the engine: calls that are there go on.

namespace {

constexpr milliseconds kLongestWait{5'000};
constexpr milliseconds kSilence{60};
constexpr milliseconds kRepeat{500};   ///< T1 of RFC 3261
constexpr long kMostGrowth = 100'000;  ///< kB

const std::string kOffer =
    "v=0\r\no=alice 21 4 IN IP4 192.0.2.10\r\ns=-\r\nc=IN IP4 192.0.2.10\r\nt=0 0\r\n"
    "m=audio 49170 RTP/AVP 8\r\n";
const std::string kHold =
    "v=0\r\no=alice 21 5 IN IP4 192.0.2.10\r\ns=-\r\nc=IN IP4 192.0.2.10\r\nt=0 0\r\n"
    "m=audio 49170 RTP/AVP 8\r\na=sendonly\r\n";
const std::string kAnswer =
    "v=0\r\no=bob 33 9 IN IP4 192.0.2.20\r\ns=-\r\nc=IN IP4 192.0.2.20\r\nt=0 0\r\n"
    "m=audio 30000 RTP/AVP 8\r\n";

/// Answers INVITEs and BYEs, but leaves every second call of the flood alone.
class Answerer {
 public:
  ~Answerer() {
    ended_ = true;
    thread_.join();
  }
  const std::string& port() const { return party_.port(); }
  void start(const std::string& engine) {
    thread_ = std::thread([this, engine] { answer(engine); });
  }

 private:
  void answer(const std::string& engine) const {
    for (unsigned int flood = 0; !ended_;) {
      const std::string request = party_.receive("", "", milliseconds(50));
      const bool invite = request.starts_with("INVITE ");
      if (invite && request.find("mallory") != std::string::npos && ++flood % 2 == 0) continue;
      if (invite || request.starts_with("BYE "))
        party_.respond(engine, request, "200 OK", invite ? kAnswer : "");
    }
  }

  const RawParty party_;
  std::atomic<bool> ended_{false};
  std::thread thread_;
};

class Limits : public Calls {
 protected:
  void start(const std::vector<std::string>& options) {
    engine_ = std::make_unique<Engine>(folder_, "127.0.0.1", target_.port(), options);
    ASSERT_FALSE(engine_->address().empty());
  }

  std::string options(const RawParty& party, int call, milliseconds longest = kLongestWait) const {
    return party.ask(engine_->address(), {.method = "OPTIONS", .call = call}, longest);
  }
  /// @return the answer, unless the call got through
  std::string refusal(const RawParty& party, int call) const {
    return party.ask(engine_->address(), {.call = call, .body = kOffer}, milliseconds(200));
  }

  const RawParty caller_;
  const RawParty other_{"127.0.0.2"};
  const RawParty target_;
  std::unique_ptr<Engine> engine_;
};

class Floods : public Calls {
 protected:
  void start(const std::vector<std::string>& options) {
    engine_ = std::make_unique<Engine>(folder_, "127.0.0.1", target_.port(), options);
    ASSERT_FALSE(engine_->address().empty());
    target_.start(engine_->address());
    tag_ = toTagOf(ask({.body = kOffer}));
    caller_.request(engine_->address(), {.method = "ACK", .toTag = tag_});
    ASSERT_TRUE(waitUntil([&] { return engine_->counters().at("established") == 1; }, kLongestWait));
    memory_ = engine_->process().residentMemory();
  }

  /// Asks as parties do, again and again.
  std::string ask(const RawRequest& asked) const {
    const auto end = std::chrono::steady_clock::now() + kLongestWait;
    std::string response;
    while (response.empty() && std::chrono::steady_clock::now() < end)
      response = caller_.ask(engine_->address(), asked, kRepeat);
    return response;
  }

  void acknowledge(int cseq) const {
    caller_.request(engine_->address(), {.method = "ACK", .cseq = cseq, .toTag = tag_});
  }

  /// Asks once more with 491, as parties do: the kernel may have lost the ACK to the 200 before, which is sent again then.
  /// @param cseq  that of the 200 before; of this one then
  int reoffer(const std::string& body, int& cseq) const {
    const auto end = std::chrono::steady_clock::now() + kLongestWait;
    int next = cseq + 1;
    int status = statusOf(ask({.cseq = next, .toTag = tag_, .body = body}));
    while (status == 491 && std::chrono::steady_clock::now() < end) {
      acknowledge(cseq);
      status = statusOf(ask({.cseq = ++next, .toTag = tag_, .body = body}));
    }
    cseq = next;
    return status;
  }

  /// Holds the call, resumes it and ends it.
  void expectTheCallGoesOn() {
    int cseq = 1;
    for (const std::string* const body : {&kHold, &kOffer, &kHold, &kOffer, &kHold, &kOffer}) {
      EXPECT_EQ(reoffer(*body, cseq), 200);
      acknowledge(cseq);
    }
    EXPECT_EQ(statusOf(ask({.method = "BYE", .cseq = cseq + 1, .toTag = tag_})), 200);
    const long memory = engine_->process().residentMemory();
    std::cout << "resident memory " << memory_ << " kB, in the flood " << memory << " kB\n";
    EXPECT_LE(memory, memory_ + kMostGrowth);
  }

  void expectTheCallOutlastsHalfOpenOnes(const std::vector<std::string>& options) {
    writeBodies({.bodies = {{"offer", kOffer}}});
    start(options);
    Sipp flood(folder_, "flood", "half-open-caller", "127.0.0.2", freePort(),
               {"-r", "1000", "-m", "1000000", "-l", "1000000", engine_->address()});
    ASSERT_TRUE(waitUntil([&] { return engine_->counters().at("calls") > 50; }, kLongestWait));
    std::this_thread::sleep_for(std::chrono::seconds(3));
    expectTheCallGoesOn();
    EXPECT_TRUE(flood.process().isRunning());
    const Counters counters = engine_->counters();
    EXPECT_EQ(counters.at("ended"), 1);
    EXPECT_GT(counters.at("overload"), 500);
  }

  Answerer target_;
  const RawParty caller_;
  std::unique_ptr<Engine> engine_;
  std::string tag_;
  long memory_ = 0;
};

sockaddr_storage addressOf(const std::string& text) {
  sockaddr_storage address{};
  auto& four = reinterpret_cast<sockaddr_in&>(address);
  auto& six = reinterpret_cast<sockaddr_in6&>(address);
  const bool isSix = text.find(':') != std::string::npos;
  address.ss_family = isSix ? AF_INET6 : AF_INET;
  const int done = isSix ? inet_pton(AF_INET6, text.c_str(), &six.sin6_addr)
                         : inet_pton(AF_INET, text.c_str(), &four.sin_addr);
  EXPECT_EQ(done, 1) << text;
  return address;
}

b2bua::SourceCounts* countsOf(b2bua::Sources& sources, const std::string& text) {
  const sockaddr_storage address = addressOf(text);
  return sources.of(reinterpret_cast<const sockaddr&>(address));
}

}  // namespace

TEST(Sources, AreAddressesOrNetworks) {
  b2bua::Sources sources;
  sources.trust("192.0.2.9");
  sources.trust("2001:db8::9");
  sources.trust("2001:0DB8:0:0::A");
  countsOf(sources, "192.0.2.1")->messages = 7;
  EXPECT_EQ(countsOf(sources, "192.0.2.1")->messages, 7U);
  EXPECT_EQ(countsOf(sources, "::ffff:192.0.2.1")->messages, 7U);
  EXPECT_EQ(countsOf(sources, "192.0.2.2")->messages, 0U);
  countsOf(sources, "2001:db8::1")->messages = 8;
  EXPECT_EQ(countsOf(sources, "2001:db8::ffff:0:0:2")->messages, 8U);
  EXPECT_EQ(countsOf(sources, "2001:db8:0:1::1")->messages, 0U);
  EXPECT_EQ(countsOf(sources, "192.0.2.9"), nullptr);
  EXPECT_EQ(countsOf(sources, "::ffff:192.0.2.9"), nullptr);
  EXPECT_EQ(countsOf(sources, "2001:db8::9"), nullptr);
  EXPECT_EQ(countsOf(sources, "2001:db8::a"), nullptr);
  EXPECT_NE(countsOf(sources, "2001:db8::8"), nullptr);
}

// 4096 of them; one more and all further ones are one.
TEST(Sources, AreBoundedAndForgottenEachSecond) {
  b2bua::Sources sources;
  const auto name = [](int i) { return "10.0." + std::to_string(i / 256) + "." + std::to_string(i % 256); };
  for (int i = 0; i < 4'096; ++i) ++countsOf(sources, name(i))->messages;
  EXPECT_EQ(countsOf(sources, name(4'095))->messages, 1U);
  ++countsOf(sources, name(4'096))->messages;
  ++countsOf(sources, name(5'000))->messages;
  EXPECT_EQ(countsOf(sources, name(4'096))->messages, 2U);
  EXPECT_EQ(countsOf(sources, name(0))->messages, 1U);
  std::this_thread::sleep_for(milliseconds(1'100));
  EXPECT_EQ(countsOf(sources, name(0))->messages, 0U);
  EXPECT_EQ(countsOf(sources, name(5'000))->messages, 0U);
}

TEST(HeaderLines, AreCountedUpToTheBody) {
  using b2bua::Head;
  const auto lines = [](std::size_t count, const std::string& line) {
    std::string text = "OPTIONS sip:bob@example.com SIP/2.0\r\n";
    for (std::size_t i = 1; i < count; ++i) text += line;
    return text;
  };
  for (const std::string& line :
       {std::string("y:\r\n"), std::string("y:\n"), std::string("y:\r"), std::string("y:\0", 3),
        std::string("y:\r\n z\r\n"), std::string("y: a,\r\n")}) {
    const std::size_t most = line.size() > 6 ? 256 : 512;
    EXPECT_EQ(b2bua::headOf("\r\n\n" + lines(most, line)), Head::open) << line;
    EXPECT_EQ(b2bua::headOf("\r\n\n" + lines(most + 1, line)), Head::tooLong) << line;
  }
  for (const char* const end : {"\r\n", "\n", "\r"})
    EXPECT_EQ(b2bua::headOf(lines(512, "y:\r\n") + end + lines(9'000, "a=x\r\n")), Head::ended);
  EXPECT_EQ(b2bua::headOf(""), Head::open);
  EXPECT_EQ(b2bua::headOf("\r\n\r\n"), Head::open);
  EXPECT_EQ(b2bua::headOf("y:\r\n\r"), Head::open);
  EXPECT_EQ(b2bua::headOf("y:\r\n\n"), Head::ended);
}

// The stack would be busy with each of them for about a second, and with it the engine.
TEST_F(Limits, ADatagramOfHeadersDoesNotHoldTheEngine) {
  start({});
  std::string headers;
  while (headers.size() < 60'000) headers += "y:\n";
  std::string values = "Privacy: z";
  while (values.size() < 60'000) values += ",z";
  int call = 0;
  for (const std::string& many : {headers, values + "\r\n", headers}) {
    other_.request(engine_->address(), {.method = "OPTIONS", .call = ++call, .header = many});
    EXPECT_EQ(statusOf(options(caller_, call, milliseconds(500))), 200);
  }
  EXPECT_EQ(raised(engine_->stop()), (Counters{{"malformed", 3}}));
}

TEST_F(Limits, ASourceThatSaysTooMuchIsNotHeardForASecond) {
  start({"--max-messages-per-source", "20"});
  for (int call = 1; call <= 20; ++call) EXPECT_EQ(statusOf(options(other_, call)), 200);
  for (int call = 21; call <= 23; ++call) EXPECT_EQ(options(other_, call, kSilence), "");
  EXPECT_EQ(statusOf(options(caller_, 1)), 200);
  std::this_thread::sleep_for(std::chrono::seconds(1));
  EXPECT_EQ(statusOf(options(other_, 30)), 200);
  EXPECT_EQ(raised(engine_->stop()), (Counters{{"overload", 3}}));
}

TEST_F(Limits, ASourceThatIsTrustedIsHeard) {
  start(
      {"--max-messages-per-source", "5", "--max-calls-per-source", "1", "--trusted", "127.0.0.9,127.0.0.2"});
  for (int call = 1; call <= 20; ++call) EXPECT_EQ(statusOf(options(other_, call)), 200);
  for (int call = 21; call <= 23; ++call) EXPECT_EQ(refusal(other_, call), "");
  EXPECT_EQ(raised(engine_->counters()), (Counters{{"calls", 3}, {"active", 3}}));
}

// It answers what the engine asks.
TEST_F(Limits, TheTargetIsTrusted) {
  start({"--max-messages-per-source", "5"});
  for (int call = 1; call <= 20; ++call) EXPECT_EQ(statusOf(options(target_, call)), 200);
}

// Whatever their ports, priorities and transports are, and whichever of them has the calls.
TEST_F(Limits, AllTargetsAreTrusted) {
  const RawParty second("127.0.0.3");
  const RawParty sameHost("127.0.0.3");
  const RawParty third("127.0.0.4");
  start({"--max-messages-per-source", "5", "--transports", "udp,tcp", "--target",
         second.address() + ";priority=1", "--target", "127.0.0.4:9;transport=tcp;weight=2", "--target",
         "[::1]:9"});
  for (int call = 1; call <= 12; ++call) {
    for (const RawParty* const party : {&second, &sameHost, &third, &target_})
      EXPECT_EQ(statusOf(options(*party, call)), 200) << party->address();
  }
  for (int call = 1; call <= 5; ++call) EXPECT_EQ(statusOf(options(other_, call)), 200);
  EXPECT_EQ(options(other_, 6, kSilence), "");
}

TEST_F(Limits, ASourceMayBeginSoManyCallsInASecond) {
  start({"--max-calls-per-source", "2"});
  for (int call = 1; call <= 3; ++call) other_.request(engine_->address(), {.call = call, .body = kOffer});
  const std::string response = other_.receive("SIP/2.0 503 ", "", kLongestWait);
  EXPECT_NE(headerOf(response, "Call-ID").find("3@"), std::string::npos);
  EXPECT_EQ(headerOf(response, "Retry-After"), "1");
  EXPECT_EQ(refusal(caller_, 1), "");
  EXPECT_EQ(raised(engine_->counters()), (Counters{{"calls", 3}, {"overload", 1}, {"active", 3}}));
}

TEST_F(Limits, NoCallIsTakenWithTooMuchMemory) {
  start({"--max-memory", "1"});
  const std::string response = refusal(caller_, 1);
  EXPECT_EQ(statusOf(response), 503);
  EXPECT_EQ(headerOf(response, "Retry-After"), "10");
  EXPECT_EQ(statusOf(options(caller_, 2)), 200);
  EXPECT_EQ(raised(engine_->counters()), (Counters{{"overload", 1}}));
}

// A million of them where B2BUA_FLOOD says so, and more until the call has ended.
TEST_F(Floods, OfMalformedDatagramsLeaveACallAlone) {
  start({});
  const char* const wanted = std::getenv("B2BUA_FLOOD");
  const long most = wanted != nullptr ? std::strtol(wanted, nullptr, 10) : 100'000;
  std::atomic<bool> done{false};
  std::atomic<long> sent{0};
  std::thread flood([&] {
    const RawParty flooder("127.0.0.2");
    const std::string datagrams[] = {
        "\r\n\r\n",
        std::string(20, '\0'),
        "garbage without an end",
        "INVITE sip:bob@127.0.0.1 SIP/2.0\r\nVia: nonsense\r\n\r\n",
        "INVITE sip:bob@127.0.0.1 SIP/2.0\r\nContent-Length: 99999999999\r\n\r\n",
        "SIP/2.0 abc\r\n\r\n",
        "BYE sip:" + std::string(1'000, 'x') + " SIP/2.0\r\n",
    };
    for (; sent < most || !done; ++sent)
      flooder.send(engine_->address(), datagrams[static_cast<std::size_t>(sent) % std::size(datagrams)]);
  });
  EXPECT_TRUE(waitUntil([&] { return sent > 10'000; }, kLongestWait));
  expectTheCallGoesOn();
  done = true;
  flood.join();
  const Counters counters = engine_->counters();
  std::cout << sent << " datagrams sent, " << counters.at("malformed") << " read, " << counters.at("overload")
            << " dropped\n";
  EXPECT_EQ(counters.at("ended"), 1);
  EXPECT_GT(counters.at("malformed"), 100);
  // What comes while the engine has nothing else to do, it reads.
  EXPECT_GT(counters.at("overload"), 1'000);
}

TEST_F(Floods, OfHalfOpenCallsLeaveACallAlone) { expectTheCallOutlastsHalfOpenOnes({}); }

TEST_F(Floods, OfHalfOpenCallsOfASourceAreLimited) {
  expectTheCallOutlastsHalfOpenOnes({"--max-calls-per-source", "50"});
}
