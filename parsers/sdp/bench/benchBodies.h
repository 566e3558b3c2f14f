#ifndef SDP_BENCH_BODIES_H
#define SDP_BENCH_BODIES_H

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <utility>
#include <vector>

#include "peers.h"

// What the benchmarks over a folder of bodies share. For one source file of a program: it takes the
// allocator over.

// Every allocation of the process is counted, those of the peers' C code too.
// NOLINTBEGIN(bugprone-reserved-identifier,cert-dcl37-c)
extern "C" void* __libc_malloc(std::size_t size);
extern "C" void* __libc_calloc(std::size_t count, std::size_t size);
extern "C" void* __libc_realloc(void* block, std::size_t size);
// NOLINTEND(bugprone-reserved-identifier,cert-dcl37-c)
static std::size_t allocations = 0;
extern "C" void* malloc(std::size_t size) {
  ++allocations;
  return __libc_malloc(size);
}
extern "C" void* calloc(std::size_t count, std::size_t size) {
  ++allocations;
  return __libc_calloc(count, size);
}
extern "C" void* realloc(void* block, std::size_t size) {
  ++allocations;
  return __libc_realloc(block, size);
}

struct Bodies {
  std::vector<std::string> texts;
  std::int64_t lines = 0;

  void add(std::string body) {
    lines += std::count(body.begin(), body.end(), '\n');
    texts.push_back(std::move(body));
  }
};

/// The SDP bodies below a folder.
inline std::vector<std::string> readBodies(const char* folder) {
  std::vector<std::string> bodies;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
    if (!entry.is_regular_file() || entry.path().extension() != ".sdp") continue;
    std::ifstream file(entry.path(), std::ios::binary);
    bodies.emplace_back(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
  }
  return bodies;
}

/// Reports what was measured since `allocationsBefore` as values per line and per body.
inline void report(benchmark::State& state, std::size_t allocationsBefore, double lines, double bodies) {
  const std::size_t made = allocations - allocationsBefore;
  state.counters["per_line"] =
      benchmark::Counter(lines, benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
  state.counters["allocs_per_body"] = static_cast<double>(made) / bodies;
}

/// Does one step over all bodies, again and again.
template <typename Step>
void overBodies(benchmark::State& state, const Bodies& bodies, Step step) {
  const std::size_t before = allocations;
  for (auto _ : state) {
    for (const std::string& body : bodies.texts) benchmark::DoNotOptimize(step(body));
  }
  const auto passes = static_cast<double>(state.iterations());
  report(state, before, passes * static_cast<double>(bodies.lines),
         passes * static_cast<double>(bodies.texts.size()));
}

/// Calls `use` for each peer that was found when the benchmark was built.
template <typename Use>
void forEachPeer(Use use) {
  for (const Peer* peer : {peerSofia(), peerOsip(), peerGstreamer()}) {
    if (peer != nullptr) use(*peer);
  }
}

#endif
