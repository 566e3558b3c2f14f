// The codec's cost per line: decode, encode, and what other parsers need for the same bodies.
//
//   sdpCodecBench [FOLDER] [--benchmark_... options]
//
// Without a folder the project's own few bodies are taken. Only bodies that the codec accepts count.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "benchBodies.h"
#include "benchRatios.h"
#include "sessionDescription.h"

namespace {

Bodies bodies;
auto description = std::make_unique<sDescription>();

bool decode(const std::string& body) {
  char error[SDP_ERROR_TEXT_SIZE];
  unsigned short start = 0;
  unsigned short end = 0;
  return sdp_decodeOpt_r(description.get(), body.c_str(), SDP_TYPE_UNKNOWN, error, false, start, end) == 0;
}

void load(const char* folder) {
  for (std::string& body : readBodies(folder)) {
    if (decode(body)) bodies.add(std::move(body));
  }
}

void BM_floor(benchmark::State& state) {
  overBodies(state, bodies, [](const std::string& body) {
    std::size_t lines = 0;
    const char* end = body.data() + body.size();
    for (const char* p = body.data(); p != nullptr && p < end; ++lines) {
      const void* lf = std::memchr(p, '\n', static_cast<std::size_t>(end - p));
      p = lf != nullptr ? static_cast<const char*>(lf) + 1 : nullptr;
    }
    return lines;
  });
}

void BM_decode(benchmark::State& state) { overBodies(state, bodies, decode); }

void BM_encode(benchmark::State& state) {
  std::vector<std::unique_ptr<sDescription>> decoded;
  for (const std::string& body : bodies.texts) {
    decode(body);
    decoded.push_back(std::make_unique<sDescription>());
    sdp_copyDescription(decoded.back().get(), description.get());
  }
  char* text = nullptr;
  int length = 0;
  int size = 0;
  const std::size_t before = allocations;
  double lines = 0;
  // One body at a time, many times over, as an engine encodes what it has just decoded.
  for (auto _ : state) {
    for (const auto& one : decoded) {
      for (int i = 0; i < 16; ++i)
        benchmark::DoNotOptimize(sdp_encode_r(one.get(), SDP_TYPE_UNKNOWN, text, length, size));
    }
  }
  for (const auto& one : decoded) {
    sdp_encode_r(one.get(), SDP_TYPE_UNKNOWN, text, length, size);
    lines += static_cast<double>(std::count(text, text + length, '\n'));
  }
  std::free(text);
  const auto passes = static_cast<double>(state.iterations()) * 16;
  report(state, before, passes * lines, passes * static_cast<double>(bodies.texts.size()));
}

void BM_decodeAndEncode(benchmark::State& state) {
  char* text = nullptr;
  int length = 0;
  int size = 0;
  overBodies(state, bodies, [&](const std::string& body) {
    return decode(body) && sdp_encode_r(description.get(), SDP_TYPE_UNKNOWN, text, length, size) == 0;
  });
  std::free(text);
}

void printRatios() {
  const auto [index, decoding] = leastNanoseconds(over(bodies, indexLinesAndColons), over(bodies, decode));
  const auto lines = static_cast<double>(bodies.lines);
  std::printf("decode / index of lines and colons: %.2f (%.1f and %.1f ns a line)\n", decoding / index,
              decoding / lines, index / lines);
}

void registerAll() {
  benchmark::RegisterBenchmark("floor: memchr over the lines", BM_floor);
  benchmark::RegisterBenchmark("decode", BM_decode);
  benchmark::RegisterBenchmark("encode", BM_encode);
  benchmark::RegisterBenchmark("decode and encode", BM_decodeAndEncode);
  forEachPeer([](const Peer& peer) {
    const std::string name(peer.name);
    for (const bool encode : {false, true}) {
      const std::string work = encode ? ": decode and encode" : ": decode";
      benchmark::RegisterBenchmark((name + work).c_str(), [peer, encode](benchmark::State& state) {
        overBodies(state, bodies, [&](const std::string& body) { return peer.run(body, encode); });
      });
    }
  });
}

}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  load(argc > 1 ? argv[1] : SDP_BENCH_BODIES);
  if (bodies.texts.empty()) {
    std::fprintf(stderr, "sdpCodecBench: no body that can be decoded in %s\n",
                 argc > 1 ? argv[1] : SDP_BENCH_BODIES);
    return 2;
  }
  std::printf("%zu bodies, %lld lines, a record of %zu bytes\n", bodies.texts.size(),
              static_cast<long long>(bodies.lines), sizeof(sDescription));
  printRatios();
  registerAll();
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
