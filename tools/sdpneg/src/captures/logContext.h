#ifndef SDPNEG_LOG_CONTEXT_H
#define SDPNEG_LOG_CONTEXT_H

#include <optional>
#include <string_view>

#include "captures/capturedMessage.h"

// What logs and text exports tell of a message around it: when, from where, to where.

namespace tool {

/// Reads the first date and time of a line: "2024-01-02 10:11:12.123456", also with '/' in the date, 'T' between and a
/// comma for the point; with "Z" or "+01:00" behind it, or else taken as UTC. A time without its date and year is none.
CaptureTime findTime(std::string_view line);

/// Reads a text that is nothing but a time: "2024-01-02 10:11:12.123456" and the like, as findTime() has it; without
/// seconds "2024-01-02 10:11"; or a date alone, which means its beginning. All are UTC where there is no zone.
CaptureTime parseTime(std::string_view text);

struct LogContext {
  CaptureTime time;
  Transport transport = Transport::unknown;
  Flow flow;

  /// Takes over what a line tells: a time, "A -> B", "from A" or "to B".
  void readLine(std::string_view line);
};

/// Whether a line tells from where a message went to where, with an arrow between.
bool hasArrow(std::string_view line);

}  // namespace tool

#endif
