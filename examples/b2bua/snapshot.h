#ifndef B2BUA_SNAPSHOT_H
#define B2BUA_SNAPSHOT_H

#include <chrono>
#include <string>

#include "counters.h"

namespace b2bua {

/// How long calls took to be established.
class SetupTimes {
 public:
  static constexpr std::array kBounds = {0.05, 0.1, 0.25, 0.5, 1.0, 2.5, 5.0, 10.0, 30.0, 60.0};

  void add(std::chrono::duration<double> time) {
    ++count_;
    sum_ += time.count();
    for (std::size_t i = 0; i < kBounds.size(); ++i) within_[i] += time.count() <= kBounds[i] ? 1U : 0U;
  }
  unsigned long count() const { return count_; }
  double sum() const { return sum_; }  ///< seconds
  /// @return how many took no longer than the bound of an index
  unsigned long within(std::size_t i) const { return within_[i]; }

 private:
  unsigned long count_ = 0;
  double sum_ = 0;
  std::array<unsigned long, kBounds.size()> within_{};
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
