#ifndef TRACE_CAPTURE_H
#define TRACE_CAPTURE_H

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <ostream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "kvRttLocal.h"

/// A line that the library traced: the flag and level of the call and the message behind the prefix.
struct TraceLine {
  int flag = 0;
  int level = 0;
  std::string text;

  bool operator==(const TraceLine&) const = default;
};

inline void PrintTo(const TraceLine& line, std::ostream* out) {
  *out << '(' << line.flag << ", " << line.level << ") \"" << line.text << '"';
}

/// Switches the library's tracing on and collects its lines, from all threads, for as long as it lives.
/// One at a time. Lines must carry the prefix of their flag, which is taken off.
class TraceCapture {
 public:
  TraceCapture() {
    KvRttSetSink(&TraceCapture::take, this);
    EXPECT_EQ(KvRttSwitchFlag("SDP_NEGOTIATOR", "INFO", true), 0);
  }
  ~TraceCapture() {
    KvRttSwitchFlag("SDP_NEGOTIATOR", "INFO", false);
    KvRttSetSink(nullptr, nullptr);
  }
  TraceCapture(const TraceCapture&) = delete;
  TraceCapture& operator=(const TraceCapture&) = delete;

  /// All lines so far. Do not call while another thread may trace.
  const std::vector<TraceLine>& lines() const { return lines_; }

  bool has(int flag, int level, std::string_view text) const { return count(flag, level, text) != 0; }
  std::ptrdiff_t count(int flag, int level, std::string_view text) const {
    return std::count(lines_.begin(), lines_.end(), TraceLine{flag, level, std::string(text)});
  }

  /// The lines so far; begins anew.
  std::vector<TraceLine> takeLines() { return std::exchange(lines_, {}); }

 private:
  static std::string_view prefixOf(int flag) {
    switch (flag) {
      case 1:
        return "SDP_NEGOTIATOR_DEBUG:";
      case 2:
        return "SDP_NEGOTIATOR_INFO:";
      case 4:
        return "SDP_NEGOTIATOR_ERROR:";
      default:
        return "SDP_NEGOTIATOR_DETAIL:";
    }
  }

  static void take(void* context, const KvRttLine* line) {
    if (std::string_view(line->component) != "SDP_NEGOTIATOR") return;
    const std::string_view prefix = prefixOf(line->flag);
    std::string_view text(line->text, line->length);
    EXPECT_EQ(text.substr(0, prefix.size()), prefix);
    text.remove_prefix(std::min(prefix.size(), text.size()));
    static_cast<TraceCapture*>(context)->lines_.push_back({line->flag, line->level, std::string(text)});
  }

  std::vector<TraceLine> lines_;
};

#endif
