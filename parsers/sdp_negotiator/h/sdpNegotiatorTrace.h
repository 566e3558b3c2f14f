#ifndef SDP_NEGOTIATOR_TRACE_H
#define SDP_NEGOTIATOR_TRACE_H

#include <cstdarg>

#include "sdpNegotiatorExport.h"

// Trace lines of the library.

namespace sdpneg {
/// Whether trace lines are written. A trace call asks that by itself; this is for the library's own loops, which would do
/// so many times. Not exported.
bool isTracing();
namespace trace {
/// `cNegotTraceManager::writeTraceMsg` with the arguments of another variadic function. Not exported.
int write(int flag, int level, const char* format, va_list arguments) __attribute__((format(printf, 3, 0)));
}  // namespace trace
}  // namespace sdpneg

/// The prefixes of trace lines, NUL-padded: "SDP_NEGOTIATOR_DEBUG:", "SDP_NEGOTIATOR_INFO:",
/// "SDP_NEGOTIATOR_ERROR:" and "SDP_NEGOTIATOR_DETAIL:".
extern SDP_NEGOTIATOR_API const char SDP_NEGOTIATOR_RTT_STR[4][25];

/// Registers the library with the platform's trace facility and writes its trace lines. All lines go
/// through the one instance `negotTrcManager`, which registers while the library is being loaded.
class SDP_NEGOTIATOR_API cNegotTraceManager {
 public:
  /// Registers the component "SDP_NEGOTIATOR" with the flags 1 "DEBUG", 2 "INFO" and 4 "ERROR".
  ///
  /// When the facility cannot be prepared (`pvxTraceRttInit` fails), nothing is registered or reported, and
  /// the handle stays as that call left it. When it refuses the component (`KvRttRegFacility` fails), that is
  /// reported once to the platform's log and the handle is -1. Lines are written as otherwise in both cases:
  /// the facility is asked with that handle, so with -1 too, and a line follows if it answers that "INFO"
  /// is on.
  cNegotTraceManager();

  /// Does nothing; the component stays registered. Defined in the library, which exports it, rather than
  /// here, where it would become part of the engine.
  ~cNegotTraceManager();  // NOLINT(performance-trivially-destructible)

  cNegotTraceManager(const cNegotTraceManager&) = delete;
  cNegotTraceManager& operator=(const cNegotTraceManager&) = delete;

  /// Writes one line: the flag's prefix, followed at once by the formatted message. Lines are written
  /// while the flag 2 ("INFO") is on, whatever flag they carry. May be called from several threads;
  /// needs about 40 KB of stack while tracing is on.
  ///
  /// A line holds at most 20479 characters. Prefix and format together are cut at that length before
  /// they are formatted (a conversion that loses its end is left out) and the result is cut at it again.
  /// A message that cannot be formatted leaves the prefix alone.
  ///
  /// @param flag 1 debug, 2 information, 4 error, 8 progress; handed on. The prefix is the row flag / 2 of
  ///        `SDP_NEGOTIATOR_RTT_STR`; outside the table it is the one for detail
  /// @param level handed on
  /// @param format,... the message as for printf; null writes the prefix alone
  /// @return 0 while tracing is off, otherwise what the facility returned for the line
  static int writeTraceMsg(int flag, int level, const char* format, ...)
      __attribute__((format(printf, 3, 4)));

 private:
  friend bool sdpneg::isTracing();
  friend int sdpneg::trace::write(int, int, const char*, va_list);

  /// The facility's handle of the component; -1 while it is not registered, 0 before the constructor.
  int handle;
};

/// The one instance.
extern SDP_NEGOTIATOR_API cNegotTraceManager negotTrcManager;

#endif
