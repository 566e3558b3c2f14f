#include <iostream>
#include <thread>

#include "calls.h"

// Many calls at once and one after the other, without a failure and with bounded memory.

namespace {

using std::chrono::seconds;

constexpr int kCallsPerSecond = 200;
/// An ended call is remembered for 32 s, for what is repeated (RFC 3261 17). Memory is steady only after that.
constexpr seconds kUntilSteady{35};
constexpr seconds kMeasured{20};
constexpr long kMostMemory = 400'000;  ///< kB

const std::string kOffer =
    "v=0\n"
    "o=alice 21 4 IN IP4 192.0.2.10\n"
    "s=-\n"
    "c=IN IP4 192.0.2.10\n"
    "t=0 0\n"
    "m=audio 49170 RTP/AVP 0 8 18 101\n"
    "a=rtpmap:101 telephone-event/8000\n"
    "a=fmtp:101 0-15\n";

const std::string kAnswer =
    "v=0\n"
    "o=bob 33 9 IN IP4 192.0.2.20\n"
    "s=-\n"
    "c=IN IP4 192.0.2.20\n"
    "t=0 0\n"
    "m=audio 30000 RTP/AVP 8 101\n"
    "a=rtpmap:101 telephone-event/8000\n";

class Load : public Calls {};

}  // namespace

TEST_F(Load, TwoHundredCallsPerSecondSucceedInBoundedMemory) {
  writeBodies({.bodies = {{"offer", kOffer}, {"answer", kAnswer}}});
  const long total = kCallsPerSecond * (kUntilSteady + kMeasured).count();
  const std::string port = freePort();
  Engine engine(folder_, "127.0.0.1", port,
                {"--policy", folder_.write("policy", "audio-codecs = PCMA, PCMU\n")});
  const std::vector<std::string> options = {"-m", std::to_string(total), "-l", "2000", "-f", "60"};
  std::vector<std::string> callerOptions = options;
  callerOptions.insert(callerOptions.end(), {"-r", std::to_string(kCallsPerSecond), engine.address()});
  Sipp target(folder_, "target", "call-target", "127.0.0.1", port, options);
  const auto start = std::chrono::steady_clock::now();
  Sipp caller(folder_, "caller", "call-caller", "127.0.0.1", freePort(), callerOptions);

  std::this_thread::sleep_until(start + kUntilSteady);
  const long before = engine.process().residentMemory();
  const long callsBefore = engine.counters().at("calls");
  std::this_thread::sleep_until(start + kUntilSteady + kMeasured - seconds(1));
  const long after = engine.process().residentMemory();
  const long calls = engine.counters().at("calls") - callsBefore;

  EXPECT_TRUE(caller.finish());
  EXPECT_TRUE(target.finish());
  const Counters counters = engine.stop();
  EXPECT_EQ(counters.at("calls"), total);
  EXPECT_EQ(counters.at("established"), total);
  EXPECT_EQ(counters.at("ended"), total);
  EXPECT_EQ(counters.at("active"), 0);
  EXPECT_EQ(counters.at("malformed"), 0);

  RecordProperty("memoryBefore", std::to_string(before));
  RecordProperty("memoryAfter", std::to_string(after));
  std::cout << "resident memory " << before << " kB, after " << calls << " calls more " << after << " kB\n";
  ASSERT_GT(before, 0);
  EXPECT_GE(calls, kCallsPerSecond * kMeasured.count() * 9 / 10);
  EXPECT_LE(after, before + calls);  // less than 1 kB for each call
  EXPECT_LE(after, kMostMemory);
}
