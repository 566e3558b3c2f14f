#include <syslog.h>

#include <climits>

#include "rttTestSupport.h"

namespace {

/// Runs a report with syslog told to repeat its entries on standard error.
template <class Report>
std::string logged(Report report) {
  StandardErrorReader reader;
  openlog("kvrtt_test", LOG_PERROR, LOG_USER);
  report();
  closelog();
  return reader.finish();
}

TEST(LogReport, WritesTheFormattedMessageWithItsOrigin) {
  EXPECT_EQ(
      logged([] { KvLogReport("src/component", 61, 0, 4, 0x390001, "failed, status = %s (%d)", "full", 7); }),
      "kvrtt_test: src/component(61): [0x390001] failed, status = full (7)\n");
}

TEST(LogReport, ToleratesNullTexts) {
  // Through a pointer, since the compiler refuses a null format where it sees one.
  void (*const report)(const char*, int, int, int, int, const char*, ...) = KvLogReport;
  EXPECT_EQ(logged([&] { report(nullptr, -1, 0, 4, 1, nullptr); }), "kvrtt_test: (-1): [0x1] \n");
}

TEST(LogReport, DoesNotInterpretArgumentsAsFormats) {
  EXPECT_EQ(logged([] { KvLogReport("%n%s", 1, 0, 4, 1, "%s", "%s%n%d"); }),
            "kvrtt_test: %n%s(1): [0x1] %s%n%d\n");
}

TEST(LogReport, CutsLongMessages) {
  const std::string message(5000, 'm');
  EXPECT_EQ(logged([&] { KvLogReport("f", 1, 0, 4, 1, "%s", message.c_str()); }),
            "kvrtt_test: f(1): [0x1] " + std::string(1023, 'm') + "\n");
}

/// What is logged of a report with that severity while the log takes the severities of a mask only.
std::string loggedThrough(int mask, int severity) {
  const int former = setlogmask(mask);
  std::string text = logged([&] { KvLogReport("f", 1, -1, severity, -1, "text"); });
  setlogmask(former);
  return text;
}

TEST(LogReport, TakesAnySeverityButCountsUnknownOnesAsErrors) {
  const struct {
    int severity;
    int expected;
  } cases[] = {{0, 0}, {4, 4}, {7, 7}, {8, 3}, {-1, 3}, {INT_MIN, 3}, {INT_MAX, 3}};
  for (const auto& [severity, expected] : cases) {
    SCOPED_TRACE(severity);
    EXPECT_EQ(loggedThrough(LOG_MASK(expected), severity), "kvrtt_test: f(1): [0xffffffff] text\n");
    EXPECT_EQ(loggedThrough(LOG_UPTO(LOG_DEBUG) & ~LOG_MASK(expected), severity), "");
  }
}

}  // namespace
