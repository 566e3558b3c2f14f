// How long a session lasts without a sign of life (RFC 4028), agreed with each party on its own.

#include "sessionTimer.h"

#include <algorithm>
#include <sstream>

namespace b2bua {

namespace {

using std::chrono::seconds;

constexpr unsigned long kLongest = 604'800;  ///< what a party may ask for
constexpr unsigned long kMargin = 32;        ///< before its end a session counts as over, a third at most
constexpr unsigned long kBetweenTries = 4;

bool isRefresher(const sip_session_expires_t& expires, const char* name) {
  return expires.x_refresher != nullptr && su_casematch(expires.x_refresher, name) != 0;
}

bool knowsTimers(const sip_t& message) {
  return sip_has_feature(message.sip_supported, kTimer) != 0 ||
         sip_has_feature(message.sip_require, kTimer) != 0;
}

unsigned long minimumIn(const sip_t& message) {
  return message.sip_min_se == nullptr ? 0 : std::min(message.sip_min_se->min_delta, kLongest);
}

std::string header(const char* name, unsigned long value) {
  return std::string(name) + ": " + std::to_string(value);
}

}  // namespace

void SessionTimer::begin() {
  start = Clock::now();
  nextTry = start + seconds(interval / 2);
}

bool SessionTimer::isOver() const {
  return interval != 0 && Clock::now() >= start + seconds(interval - std::min(kMargin, interval / 3));
}

bool SessionTimer::isDue() const { return interval != 0 && engineRefreshes && Clock::now() >= nextTry; }

void SessionTimer::postpone() { nextTry = Clock::now() + seconds(std::max(kBetweenTries, interval / 20)); }

bool SessionTimer::raiseMinimum(const sip_t& response) {
  const unsigned long asked = minimumIn(response);
  if (asked <= minimum) return false;
  minimum = asked;
  return true;
}

std::string SessionTimer::text() const {
  return std::to_string(interval) + " " + std::to_string(minimum) + (known ? " 1" : " 0") +
         (engineRefreshes ? " 1" : " 0");
}

void SessionTimer::read(const std::string& text) {
  std::istringstream words(text);
  if (!(words >> interval >> minimum >> known >> engineRefreshes)) *this = SessionTimer();
  interval = std::min(interval, kLongest);
  minimum = std::min(minimum, kLongest);
  begin();
}

std::string tooShortSession(const SessionLimits& limits, const sip_t& request) {
  const sip_session_expires_t* const asked = request.sip_session_expires;
  // Who does not know timers did not ask; a proxy did.
  const bool tooShort =
      limits.interval != 0 && asked != nullptr && knowsTimers(request) && asked->x_delta < limits.minimum;
  return tooShort ? header("Min-SE", limits.minimum) : "";
}

std::string agreeByRequest(const SessionLimits& limits, const sip_t& request, SessionTimer& timer) {
  if (limits.interval == 0) return "";
  const sip_session_expires_t* const asked = request.sip_session_expires;
  const unsigned long wanted = asked != nullptr ? asked->x_delta : limits.interval;
  const unsigned long least = std::max<unsigned long>(limits.minimum, minimumIn(request));
  timer.known = knowsTimers(request);
  timer.interval = std::max(std::min<unsigned long>(wanted, limits.interval), least);
  timer.engineRefreshes = !timer.known || (asked != nullptr && isRefresher(*asked, "uas"));
  timer.begin();
  return "Supported: timer\r\n" + header("Session-Expires", timer.interval) +
         (timer.engineRefreshes ? ";refresher=uas" : ";refresher=uac\r\nRequire: timer");
}

void agreeByResponse(const SessionLimits& limits, const sip_t& response, SessionTimer& timer) {
  if (limits.interval == 0) return;
  const sip_session_expires_t* const agreed = response.sip_session_expires;
  timer.known = agreed != nullptr || knowsTimers(response);
  timer.interval = agreed != nullptr ? std::clamp<unsigned long>(agreed->x_delta, limits.minimum, kLongest)
                                     : std::max<unsigned long>(limits.interval, timer.minimum);
  timer.engineRefreshes = agreed == nullptr || !isRefresher(*agreed, "uas");
  timer.begin();
}

std::string sessionRequest(const SessionLimits& limits, const SessionTimer& timer) {
  if (limits.interval == 0) return "";
  const bool staysHere = timer.known && timer.engineRefreshes;
  const unsigned long minimum = std::max<unsigned long>(limits.minimum, timer.minimum);
  return "Supported: timer\r\n" +
         header("Session-Expires", std::max<unsigned long>(limits.interval, minimum)) +
         (staysHere ? ";refresher=uac\r\n" : ";refresher=uas\r\n") + header("Min-SE", minimum);
}

}  // namespace b2bua
