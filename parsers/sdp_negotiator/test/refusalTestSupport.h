#ifndef REFUSAL_TEST_SUPPORT_H
#define REFUSAL_TEST_SUPPORT_H

#include <gtest/gtest.h>

#include <algorithm>
#include <ostream>
#include <string>

#include "modifiersTestSupport.h"
#include "sdpRefusal.h"

// An edit that is refused, and why.

/// How a refusal shows in the trace: not at all, or as a line of that flag and level.
struct Traced {
  int flag = 0;
  int level = 0;
};

inline constexpr Traced kNotTraced = {};
inline constexpr Traced kError = {4, 3};
inline constexpr Traced kInfo = {2, 2};
inline constexpr Traced kProgress = {8, 4};
inline constexpr Traced kInvalidArgument = {2, 3};

struct Refused {
  const char* name;
  std::string before;
  TextEdit edit;
  eSdpRefusal reason;
  eSdpRefusalKind kind;
  Traced traced;
  std::string text;
  unsigned short status = 1;
};

inline void PrintTo(const Refused& refused, std::ostream* out) { *out << refused.name; }

/// The edit gives its status, and the thread's last refusal is its reason.
inline void expectReason(const Refused& refused) {
  SdpBuffer buffer(refused.before);
  const unsigned int earlier = sdpLastRefusal().number;
  EXPECT_EQ(refused.edit(buffer.data()), refused.status);
  const sSdpRefusal& last = sdpLastRefusal();
  EXPECT_GT(last.number, earlier);
  EXPECT_EQ(last.reason, refused.reason);
  EXPECT_EQ(last.kind, refused.kind);
  EXPECT_EQ(std::string(last.text), refused.text);
}

/// Expects a refusal's reason, and its text to be traced once in just that way, or not at all.
inline void expectTracedReason(const Refused& refused) {
  TraceCapture trace;
  expectReason(refused);
  const auto shown = std::count_if(trace.lines().begin(), trace.lines().end(),
                                   [&](const TraceLine& line) { return line.text == refused.text; });
  EXPECT_EQ(shown, refused.traced.flag != 0 ? 1 : 0);
  EXPECT_EQ(trace.count(refused.traced.flag, refused.traced.level, refused.text), shown);
}

inline const auto nameOfCase = [](const testing::TestParamInfo<Refused>& info) {
  return std::string(info.param.name);
};

#endif
