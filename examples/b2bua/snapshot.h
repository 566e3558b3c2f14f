#ifndef B2BUA_SNAPSHOT_H
#define B2BUA_SNAPSHOT_H

#include <array>
#include <chrono>
#include <numeric>
#include <string>

namespace b2bua {

/// Why something was not taken.
enum class Limit {
  calls,
  invites,
  transactions,
  unknownTags,
  draining,
  callsOfSource,
  messagesOfSource,
  memory,
  mediaGone
};

inline constexpr std::array kLimitNames = {
    "calls",     "invites",          "transactions",        "unknown-tags",
    "draining",  "calls-per-source", "messages-per-source", "memory",
    "media-gone"};

struct Counters {
  unsigned long calls = 0;
  unsigned long established = 0;
  unsigned long ended = 0;
  unsigned long failed = 0;
  unsigned long cancelled = 0;
  unsigned long reoffers = 0;
  unsigned long refusedBodies = 0;
  unsigned long malformed = 0;
  unsigned long takenOver = 0;
  unsigned long kept = 0;
  unsigned long notKept = 0;
  unsigned long madeUpFor = 0;
  unsigned long mediaRequests = 0;
  unsigned long mediaFailures = 0;
  unsigned long mediaGone = 0;
  unsigned long failovers = 0;
  unsigned long redirections = 0;
  unsigned long closedConnections = 0;
  std::array<unsigned long, kLimitNames.size()> notTaken{};

  unsigned long& of(Limit limit) { return notTaken[static_cast<std::size_t>(limit)]; }
  /// @return what was not taken though calls may be
  unsigned long overload() {
    return std::accumulate(notTaken.begin(), notTaken.end(), 0UL) - of(Limit::calls) - of(Limit::draining);
  }
};

struct CounterName {
  const char* name;
  const char* help;
  unsigned long Counters::*value;
};

/// What is shown, in this order.
inline constexpr CounterName kCounterNames[] = {
    {"calls", "Calls that a caller began.", &Counters::calls},
    {"established", "Calls whose first exchange of bodies is complete.", &Counters::established},
    {"ended", "Established calls that ended.", &Counters::ended},
    {"failed", "Calls that were refused, or ended before they were established.", &Counters::failed},
    {"cancelled", "Calls that the caller gave up.", &Counters::cancelled},
    {"reoffers", "INVITEs within calls.", &Counters::reoffers},
    {"refused_bodies", "Bodies that could not be used or that the policy forbids.", &Counters::refusedBodies},
    {"malformed", "Messages that could not be read.", &Counters::malformed},
    {"taken_over", "Calls of other processes that were gone on with.", &Counters::takenOver},
    {"kept", "Times that a call was kept in the store.", &Counters::kept},
    {"not_kept", "Times that a call could not be kept in the store.", &Counters::notKept},
    {"made_up_for", "Calls kept later, after that or in another server.", &Counters::madeUpFor},
    {"media_requests", "Bodies that the media relay was asked about.", &Counters::mediaRequests},
    {"media_failures", "Bodies that it could not be asked about, or that it gave nothing usable for.",
     &Counters::mediaFailures},
    {"media_gone", "How often the media relay was lost.", &Counters::mediaGone},
    {"failovers", "Times that a call went on to another target.", &Counters::failovers},
    {"redirections", "Contacts of redirections that were followed.", &Counters::redirections},
    {"closed_connections", "Connections that were closed since there were too many.",
     &Counters::closedConnections},
};

/// How long calls took to be established.
struct SetupTimes {
  static constexpr std::array kBounds = {0.05, 0.1, 0.25, 0.5, 1.0, 2.5, 5.0, 10.0, 30.0, 60.0};

  void add(std::chrono::duration<double> time) {
    ++count;
    sum += time.count();
    for (std::size_t i = 0; i < kBounds.size(); ++i) within[i] += time.count() <= kBounds[i] ? 1U : 0U;
  }

  unsigned long count = 0;
  double sum = 0;                                      ///< seconds
  std::array<unsigned long, kBounds.size()> within{};  ///< that took no longer than a bound
};

/// What the engine is at a time, for those who may not ask the engine itself: it belongs to one thread.
struct Snapshot {
  std::chrono::steady_clock::time_point time;
  Counters counters;
  SetupTimes setupTimes;
  unsigned long messages = 0;  ///< received
  std::size_t calls = 0;
  std::size_t transactions = 0;
  std::size_t memory = 0;  ///< resident, bytes
  std::string notReady{};  ///< why no calls are taken; empty when they are
};

/// @return the resident memory of this process in bytes, 0 when it is not known
std::size_t residentMemory();

/// @return Prometheus' text format, version 0.0.4
std::string metricsOf(const Snapshot& snapshot);

}  // namespace b2bua

#endif
