#ifndef B2BUA_SESSION_TIMER_H
#define B2BUA_SESSION_TIMER_H

#include <chrono>
#include <string>

#include "options.h"
#include "sip.h"

namespace b2bua {

/// What the engine and a party have agreed about how long the session lasts without a sign of life (RFC 4028).
///
/// The party gives that sign where it knows timers: so it comes to whatever process has the call by then.
struct SessionTimer {
  using Clock = std::chrono::steady_clock;

  unsigned long interval = 0;  ///< seconds; 0 for a session without end
  unsigned long minimum = 0;   ///< that the party has asked for
  bool known = false;          ///< the party knows timers
  bool engineRefreshes = false;
  Clock::time_point start{};    ///< the last sign of life
  Clock::time_point nextTry{};  ///< of the engine's own

  void begin();
  bool isOver() const;
  /// @return whether the engine is to refresh the session now
  bool isDue() const;
  /// A refresh was refused; the next try is a little later.
  void postpone();
  /// Takes the minimum of a 422 over.
  /// @return whether that makes another request worth while
  bool raiseMinimum(const sip_t& response);
  /// What another process goes on with; it begins anew there.
  std::string text() const;
  void read(const std::string& text);
};

/// @return the header of the 422 when a request asks for a shorter session than is allowed; empty when it does not
std::string tooShortSession(const SessionLimits& limits, const sip_t& request);

/// The party has asked, and the timer begins anew with what the engine answers.
/// @return header lines of the answer; empty without timers
std::string agreeByRequest(const SessionLimits& limits, const sip_t& request, SessionTimer& timer);
void agreeByResponse(const SessionLimits& limits, const sip_t& response, SessionTimer& timer);

/// @return header lines of a request of the engine's; empty without timers
std::string sessionRequest(const SessionLimits& limits, const SessionTimer& timer);

}  // namespace b2bua

#endif
