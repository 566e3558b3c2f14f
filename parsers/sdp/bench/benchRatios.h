#ifndef SDP_BENCH_RATIOS_H
#define SDP_BENCH_RATIOS_H

#include <benchmark/benchmark.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "benchBodies.h"

// Ratios of what is measured in one run: they hold on machines that differ, and on one that has other work.

/// How many runs the steps have each, and how long they take, more or less.
struct Runs {
  int count = 70;
  std::chrono::microseconds length{2000};
};

/// Nanoseconds of one call of each step, the least of many short runs. The steps take turns, so that what else the machine
/// does falls on all of them; the runs differ in length, so that the turns of another program do not fall on one of them
/// again and again.
template <typename... Steps>
std::array<double, sizeof...(Steps)> leastNanoseconds(Runs runs, Steps... steps) {
  using Clock = std::chrono::steady_clock;
  std::array<double, sizeof...(Steps)> least;
  least.fill(1e18);
  const auto run = [](auto& step, std::chrono::microseconds length, double& best) {
    const auto begin = Clock::now();
    std::size_t calls = 0;
    do {
      benchmark::DoNotOptimize(step());
      ++calls;
    } while (Clock::now() - begin < length);
    const std::chrono::duration<double, std::nano> taken = Clock::now() - begin;
    best = std::min(best, taken.count() / static_cast<double>(calls));
  };
  for (int turn = 0; turn < runs.count; ++turn) {
    std::size_t index = 0;
    const std::chrono::microseconds length = runs.length * (4 + turn % 7) / 8;
    (run(steps, length, least[index++]), ...);
  }
  return least;
}

template <typename... Steps>
std::array<double, sizeof...(Steps)> leastNanoseconds(Steps... steps) {
  return leastNanoseconds(Runs{}, steps...);
}

/// One call of a step that goes over all texts.
template <typename Step>
auto over(const Bodies& texts, Step step) {
  return [&texts, step]() mutable {
    std::size_t sum = 0;
    for (const std::string& text : texts.texts) sum += static_cast<std::size_t>(step(text));
    return sum;
  };
}

/// What the least of indexes keeps of a line.
struct LinePlace {
  std::uint32_t begin;
  std::uint32_t end;
  std::uint32_t colon;
};

/// The index that readers are measured against: where the lines and their first colons are.
inline std::size_t indexLinesAndColons(const std::string& body) {
  static std::vector<LinePlace> places;
  places.clear();
  const char* const begin = body.data();
  const char* const end = begin + body.size();
  for (const char* at = begin; at != end;) {
    const auto* const lf =
        static_cast<const char*>(std::memchr(at, '\n', static_cast<std::size_t>(end - at)));
    const char* const stop = lf != nullptr ? lf : end;
    const auto* const colon =
        static_cast<const char*>(std::memchr(at, ':', static_cast<std::size_t>(stop - at)));
    places.push_back({static_cast<std::uint32_t>(at - begin), static_cast<std::uint32_t>(stop - begin),
                      static_cast<std::uint32_t>((colon != nullptr ? colon : stop) - begin)});
    at = lf != nullptr ? lf + 1 : end;
  }
  return places.size();
}

#endif
