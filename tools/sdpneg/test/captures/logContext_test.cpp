#include "captures/logContext.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using tool::CaptureTime;
using tool::findTime;
using tool::LogContext;

// 2024-01-02 is 19724 days behind 1970-01-01: 54 years of 365 days, 13 leap days and one day.
constexpr std::int64_t kDay = 19724 * 86400LL * 1000000;
constexpr std::int64_t kTime = kDay + (10 * 3600 + 11 * 60 + 12) * 1000000LL;

TEST(LogContext, ReadsTimes) {
  const struct {
    std::string line;
    CaptureTime time;
  } cases[] = {
      {"2024-01-02 10:11:12", kTime},
      {"2024/01/02 10:11:12.123456 192.0.2.1:5060 -> 192.0.2.2:5060", kTime + 123456},
      {"[2024-01-02T10:11:12,5] x", kTime + 500000},
      {"2024-01-02T10:11:12.123456789Z", kTime + 123456},
      {"2024-01-02T10:11:12.1+01:00", kTime + 100000 - 3600 * 1000000LL},
      {"2024-01-02T10:11:12-0530", kTime + (5 * 60 + 30) * 60LL * 1000000},
      {"1 12024-01-02 2024-01-02 10:11:12.", kTime},
      {"1970-01-01 00:00:00", 0},
  };
  for (const auto& one : cases) EXPECT_EQ(findTime(one.line), one.time) << one.line;
}

TEST(LogContext, GuessesNoTimes) {
  for (const std::string line :
       {"", "10:11:12.123456", "Jan  2 10:11:12", "2024-13-02 10:11:12", "2023-02-29 10:11:12",
        "2024-01/02 10:11:12", "2024-01-02 24:11:12", "2024-01-02 10:60:12", "2024-01-02 10:11",
        "2024-01-02_10:11:12", "2024-01-0210:11:12", "1969-12-31 23:59:59", "12024-01-02 10:11:12",
        "2024-01-02 10:11:1x"}) {
    EXPECT_EQ(findTime(line), std::nullopt) << line;
  }
}

TEST(LogContext, ParsesTimesThatStandAlone) {
  const struct {
    std::string text;
    CaptureTime time;
  } cases[] = {
      {"2024-01-02", kDay},
      {"2024/01/02", kDay},
      {"2024-01-02 10:11", kTime - 12 * 1000000LL},
      {"2024-01-02T10:11:12", kTime},
      {"2024-01-02T10:11:12.25Z", kTime + 250000},
      {"2024-01-02 10:11:12+01:00", kTime - 3600 * 1000000LL},
      {"2024-01-02 10:11:12-0530", kTime + (5 * 60 + 30) * 60LL * 1000000},
      {"", std::nullopt},
      {"10:11", std::nullopt},
      {"10:11:12", std::nullopt},
      {"2024-01-0", std::nullopt},
      {"2024-01-02 ", std::nullopt},
      {"2024-01-02x10:11", std::nullopt},
      {"2024-01-02 10:11:12 ", std::nullopt},
      {"2024-01-02 10:11:12.", std::nullopt},
      {"2024-01-02 10:11:12+99:00", std::nullopt},
      {"2024-01-02 10:11:12ZZ", std::nullopt},
      {"2024-01-02 10:11:12Z+01:00", std::nullopt},
      {"2024-02-30", std::nullopt},
      {" 2024-01-02 10:11:12", std::nullopt},
  };
  for (const auto& one : cases) EXPECT_EQ(tool::parseTime(one.text), one.time) << one.text;
}

LogContext contextOf(std::string_view line) {
  LogContext context;
  context.readLine(line);
  return context;
}

TEST(LogContext, ReadsAddresses) {
  const struct {
    const char* line;
    const char* source;
    const char* destination;
    const char* transport;
  } cases[] = {
      {"2024/01/02 10:11:12.123456 192.0.2.1:5060 -> 192.0.2.2:5062", "192.0.2.1:5060", "192.0.2.2:5062",
       "unknown"},
      {"[2001:db8::1]:5060 -> [2001:db8::2]:5060", "[2001:db8::1]:5060", "[2001:db8::2]:5060", "unknown"},
      {"<--- SIP read from UDP:192.0.2.1:5060 --->", "192.0.2.1:5060", "unknown", "UDP"},
      {"<--- Transmitting (NAT) to 192.0.2.2:5060 --->", "unknown", "192.0.2.2:5060", "unknown"},
      {"recv 900 bytes from tcp/[192.0.2.1]:5060 at 10:11:12:", "192.0.2.1:5060", "unknown", "TCP"},
      {"sent from 192.0.2.1 to 192.0.2.2:", "192.0.2.1", "192.0.2.2", "unknown"},
      {"about 192.0.2.1:5060 and 192.0.2.2:5060", "unknown", "unknown", "unknown"},
      {"192.0.2.1:5060 -> somewhere 192.0.2.2", "unknown", "unknown", "unknown"},
      {"-> 192.0.2.2", "unknown", "unknown", "unknown"},
      {"from example.com to sip:bob@192.0.2.2", "unknown", "unknown", "unknown"},
  };
  for (const auto& one : cases) {
    const LogContext context = contextOf(one.line);
    EXPECT_EQ(context.flow.source.text(), one.source) << one.line;
    EXPECT_EQ(context.flow.destination.text(), one.destination) << one.line;
    EXPECT_EQ(textOf(context.transport), one.transport) << one.line;
  }
}

TEST(LogContext, GathersWhatSeveralLinesTell) {
  LogContext context;
  for (const char* line :
       {"2024-01-02 10:11:12 received", "from 192.0.2.1:5060", "to 192.0.2.2:5060", "------"}) {
    context.readLine(line);
  }
  EXPECT_EQ(context.time, kTime);
  EXPECT_EQ(context.flow.source.text(), "192.0.2.1:5060");
  EXPECT_EQ(context.flow.destination.text(), "192.0.2.2:5060");
}

TEST(LogContext, KnowsArrowsBetweenAddressesAlone) {
  EXPECT_TRUE(tool::hasArrow("x 192.0.2.1:5060 -> 192.0.2.2:5060"));
  EXPECT_FALSE(tool::hasArrow("a -> b"));
  EXPECT_FALSE(tool::hasArrow("192.0.2.1:5060 192.0.2.2:5060"));
}

}  // namespace
