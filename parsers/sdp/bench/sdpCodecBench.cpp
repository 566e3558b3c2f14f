// The codec's cost per line: decode, encode, and what other parsers need for the same bodies.
//
//   sdpCodecBench [FOLDER] [--benchmark_... options]
//
// Without a folder the project's own few bodies are taken. Only bodies that the codec accepts count.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdint>
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

void printRatio(const char* name, double nanoseconds, double of, std::int64_t lines) {
  const auto count = static_cast<double>(lines);
  std::printf("%s: %.2f (%.1f and %.1f ns a line)\n", name, nanoseconds / of, nanoseconds / count,
              of / count);
}

void printDecodeRatio(const char* name, const Bodies& some) {
  const auto [index, decoding] = leastNanoseconds(over(some, indexLinesAndColons), over(some, decode));
  printRatio(name, decoding, index, some.lines);
}

// Where each line ends in a text that was encoded.
std::vector<std::size_t> lineLengths(const std::string& text) {
  std::vector<std::size_t> lengths;
  for (std::size_t at = 0; at != text.size(); at += lengths.back())
    lengths.push_back(text.find('\n', at) + 1 - at);
  return lengths;
}

// One body at a time, many times over, as an engine encodes what it has just decoded.
void printEncodeRatio() {
  std::array<double, 2> all = {0, 0};
  std::int64_t lines = 0;
  char* text = nullptr;
  int length = 0;
  int size = 0;
  for (const std::string& body : bodies.texts) {
    decode(body);
    const auto encode = [&] { return sdp_encode_r(description.get(), SDP_TYPE_UNKNOWN, text, length, size); };
    encode();
    const std::string encoded(text, static_cast<std::size_t>(length));
    const std::vector<std::size_t> lengths = lineLengths(encoded);
    std::string copy(encoded.size(), ' ');
    const auto copyLines = [&] {
      const char* from = encoded.data();
      char* to = copy.data();
      for (const std::size_t line : lengths) {
        std::memcpy(to, from, line);
        from += line;
        to += line;
      }
      return to;
    };
    const auto [encoding, copying] =
        leastNanoseconds(Runs{15, std::chrono::microseconds(20)}, encode, copyLines);
    all[0] += encoding;
    all[1] += copying;
    lines += static_cast<std::int64_t>(lengths.size());
  }
  std::free(text);
  printRatio("encode / memcpy of the same lines one by one", all[0], all[1], lines);
}

void printRatios() {
  // Of short bodies the cost that each body has counts more.
  Bodies shorter;
  for (const std::string& body : bodies.texts) {
    if (body.size() < 2560) shorter.add(body);
  }
  printDecodeRatio("decode / index of lines and colons", bodies);
  if (!shorter.texts.empty()) printDecodeRatio("decode / index, bodies below 2560 characters", shorter);
  printEncodeRatio();
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
