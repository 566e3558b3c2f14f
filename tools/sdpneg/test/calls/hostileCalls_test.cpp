#include <gtest/gtest.h>

#include <ctime>

#include "calls/messages.h"

// Captures that were made to take long: what is equal in all their messages, or different in each.

namespace {

using calling::kProxy;
using calling::sdp;
using calling::Sip;
using calling::Table;

struct HostileCase {
  std::string name;
  Sip (*message)(std::size_t index);
  std::size_t messages = 40000;
};

std::string nameOf(const testing::TestParamInfo<HostileCase>& info) { return info.param.name; }

/// An INVITE with all that joins legs, at one time.
Sip equal() {
  return {.start = "INVITE",
          .destination = kProxy,
          .body = sdp(),
          .headers = "X-CID: 1\r\nX-Mine: 2\r\nSession-ID: 3;remote=4\r\nP-Charging-Vector: icid-value=5\r\n",
          .time = 1000000000};
}

Sip repeated(std::size_t) { return equal(); }
Sip leg(std::size_t index) {
  Sip sip = equal();
  sip.callId = std::to_string(index);
  return sip;
}
Sip legOfNumbers(std::size_t index) {
  Sip sip = leg(index);
  sip.headers.clear();
  sip.body.clear();
  if (index % 2 == 1) std::swap(sip.source, sip.destination);
  return sip;
}
Sip legOfOrigin(std::size_t index) {
  Sip sip = legOfNumbers(index);
  sip.body = sdp();
  return sip;
}
Sip chained(std::size_t index) {
  Sip sip = leg(index);
  sip.headers = "X-CID: " + std::to_string(index + 1) + "\r\n";
  return sip;
}
Sip fork(std::size_t index) {
  Sip sip = equal();
  if (index == 0) return sip;
  sip.start = "200 INVITE";
  std::swap(sip.source, sip.destination);
  sip.toTag = std::to_string(index);
  return sip;
}
Sip offer(std::size_t index) {
  Sip sip = equal();
  sip.toTag = "t";
  sip.cseq = static_cast<int>(index);
  return sip;
}
Sip branch(std::size_t index) {
  Sip sip = equal();
  sip.branch = std::to_string(index);
  return sip;
}
std::string addressOf(std::size_t index) {
  return "10." + std::to_string(index >> 16U & 255U) + "." + std::to_string(index >> 8U & 255U) + "." +
         std::to_string(index & 255U);
}
Sip sentOnAndOn(std::size_t index) {
  // Views of these texts are kept by the message.
  static std::string source;
  static std::string destination;
  source = addressOf(index);
  destination = addressOf(index + 1);
  Sip sip = equal();
  sip.source = source;
  sip.destination = destination;
  return sip;
}
Sip withItself(std::size_t index) {
  static std::string source;
  source = "127.0.0.1:" + std::to_string(index % 60000 + 1);
  Sip sip = equal();
  sip.source = source;
  sip.destination = "127.0.0.1:5060";
  return sip;
}
Sip ended(std::size_t index) {
  Sip sip = leg(index);
  if (index % 2 == 1) sip.start = "BYE";
  sip.callId = std::to_string(index / 2);
  sip.toTag = std::to_string(index / 2);
  sip.time = static_cast<std::int64_t>(index) * 40000000;
  return sip;
}

class HostileCalls : public testing::TestWithParam<HostileCase> {};

/// Processor time that it takes to make calls of so many messages.
double secondsOf(Sip (*message)(std::size_t), std::size_t count) {
  Table table({.joinHeaders = {"X-Mine"}});
  const std::clock_t begin = std::clock();
  for (std::size_t index = 0; index < count; ++index) {
    table.take(message(index));
    if (table.calls.size() > 100) table.calls.clear();
  }
  table.table.finish();
  return static_cast<double>(std::clock() - begin) / CLOCKS_PER_SEC;
}

TEST_P(HostileCalls, TakeTimeInProportion) {
  const double few = secondsOf(GetParam().message, GetParam().messages / 8);
  const double many = secondsOf(GetParam().message, GetParam().messages);
  // Eight times as many messages take 64 times as long where each one is compared with each other.
  EXPECT_LT(many, 24 * few + 0.2) << few;
}

INSTANTIATE_TEST_SUITE_P(
    Calls, HostileCalls,
    testing::Values(HostileCase{"OneMessageRepeated", repeated, 100000},
                    HostileCase{"EqualLegs", leg, 100000}, HostileCase{"LegsOfEqualNumbers", legOfNumbers},
                    HostileCase{"LegsOfOneOrigin", legOfOrigin}, HostileCase{"LegsThatNameTheNext", chained},
                    HostileCase{"Forks", fork}, HostileCase{"OffersInOneDialog", offer},
                    HostileCase{"Branches", branch}, HostileCase{"Proxies", sentOnAndOn},
                    HostileCase{"Ports", withItself}, HostileCase{"CallsOneAfterAnother", ended}),
    nameOf);

}  // namespace
