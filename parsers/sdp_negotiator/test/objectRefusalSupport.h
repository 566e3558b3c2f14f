#ifndef OBJECT_REFUSAL_SUPPORT_H
#define OBJECT_REFUSAL_SUPPORT_H

#include <algorithm>
#include <functional>
#include <ostream>
#include <string>

#include "requestTestSupport.h"
#include "sdpRefusal.h"

/// What is expected of the last refusal.
struct Reason {
  eSdpRefusal reason;
  eSdpRefusalKind kind;
  std::string text;
  bool traced = true;  ///< as a line of this text
  int section = 0;
  eSdpRefusalField field = SDP_REFUSAL_FIELD_NONE;
  int line = 0;
  int column = 0;
};

inline void expectLast(const Reason& expected) {
  const sSdpRefusal& last = sdpLastRefusal();
  EXPECT_EQ(last.reason, expected.reason);
  EXPECT_EQ(last.kind, expected.kind);
  EXPECT_STREQ(last.text, expected.text.c_str());
  EXPECT_EQ(last.section, expected.section);
  EXPECT_EQ(last.field, expected.field);
  EXPECT_EQ(last.line, expected.line);
  EXPECT_EQ(last.column, expected.column);
}

/// Calls twice, with tracing off and on: the reason is the same, and the trace has it where it is traced.
inline void expectRefused(const Reason& expected, const std::function<void()>& call) {
  unsigned int before = sdpLastRefusal().number;
  call();
  EXPECT_GT(sdpLastRefusal().number, before);
  expectLast(expected);
  before = sdpLastRefusal().number;
  const Traces traces = tracesOf(call);
  EXPECT_GT(sdpLastRefusal().number, before);
  expectLast(expected);
  const bool traced = std::any_of(traces.begin(), traces.end(),
                                  [&](const TraceLine& line) { return line.text == expected.text; });
  EXPECT_EQ(traced, expected.traced);
}

#endif
