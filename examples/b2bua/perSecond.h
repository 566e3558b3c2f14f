#ifndef B2BUA_PER_SECOND_H
#define B2BUA_PER_SECOND_H

#include <chrono>

namespace b2bua {

/// Counts what happens in each second, or adds up what it takes.
class PerSecond {
 public:
  void add(unsigned long amount = 1) {
    begin();
    sum_ += amount;
  }
  unsigned long sum() {
    begin();
    return sum_;
  }

 private:
  using Clock = std::chrono::steady_clock;

  void begin() {
    if (Clock::now() < end_) return;
    end_ = Clock::now() + std::chrono::seconds(1);
    sum_ = 0;
  }

  Clock::time_point end_{};
  unsigned long sum_ = 0;
};

}  // namespace b2bua

#endif
