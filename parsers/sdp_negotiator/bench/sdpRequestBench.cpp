// What requests of an object cost per body: fetching the text, editing it, parsing and storing what comes of it. The
// object is restored before each, which "restore" measures alone. Beside them stand the parse of the same bodies and
// what other parsers need to decode them and encode them again. Ahead of all come the ratios of the most used requests
// to the parse, measured in turns.
//
//   sdpRequestBench [FOLDER] [--benchmark_... options]
//
// Without a folder the project's own few bodies are taken. Only bodies that an object accepts count.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <iterator>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "../test/requestTable.h"
#include "benchBodies.h"
#include "benchRatios.h"
#include "sdpNegotiator.h"

namespace {

/// Bodies as texts and as objects.
struct Parsed {
  Bodies bodies;
  std::vector<cSdpNegotiator> objects;
};

Parsed plain;
Parsed deflated;
cSdpNegotiator object;

/// What a request works on, restored before each call: some are also given an earlier body, or a record of what
/// another request removed.
void restore(RequestValues& values, const cSdpNegotiator& body) {
  object = values.other = values.offer = body;
  std::fill_n(values.removed, sizeof values.removed, '\0');
  values.removed[0] = 1;
}

void load(const char* folder) {
  for (std::string& body : readBodies(folder)) {
    if (object.sdpParse(body.c_str(), SDP_TYPE_OFFER) != 0) continue;
    Parsed& kind = body.size() < SDP_STORED_TEXT_SIZE ? plain : deflated;
    kind.objects.push_back(object);
    kind.bodies.add(std::move(body));
  }
}

template <typename Step>
void overObjects(benchmark::State& state, const Parsed& parsed, Step step) {
  RequestValues values;
  const std::size_t before = allocations;
  for (auto _ : state) {
    for (const cSdpNegotiator& each : parsed.objects) {
      restore(values, each);
      step(object, values);
      benchmark::DoNotOptimize(&object);
    }
  }
  const auto passes = static_cast<double>(state.iterations());
  report(state, before, passes * static_cast<double>(parsed.bodies.lines),
         passes * static_cast<double>(parsed.objects.size()));
}

/// The requests whose ratios are printed.
constexpr std::string_view kMostUsed[] = {"sdpRestrictAudioCodecsTo",
                                          "sdpReorderAudioCodecPreference",
                                          "sdpModifyTransportTypes",
                                          "sdpReplaceMode",
                                          "createDummy",
                                          "createDummy, own o-line",
                                          "createDummyAnswer",
                                          "createDummyAck",
                                          "createDummyAck, codecs",
                                          "copyOLine"};

/// One call of a step on each object, which is restored before.
template <typename Step>
auto overRestored(const Parsed& parsed, Step step) {
  auto values = std::make_shared<RequestValues>();
  values->other = parsed.objects.front();
  return [&parsed, values, step] {
    std::size_t sum = 0;
    for (const cSdpNegotiator& each : parsed.objects) {
      object = each;
      sum += step(object, *values);
    }
    return sum;
  };
}

/// Prints a request's time, with that of restoring the object, in times of the parse of the same bodies.
template <typename Step>
void printRatio(const char* name, const Parsed& parsed, Step step) {
  const auto parse = [](const std::string& body) { return object.sdpParse(body.c_str(), SDP_TYPE_OFFER); };
  const auto [parsing, requesting] = leastNanoseconds(over(parsed.bodies, parse), overRestored(parsed, step));
  const auto lines = static_cast<double>(parsed.bodies.lines);
  std::printf("  %s / sdpParse: %.2f (%.1f and %.1f ns a line)\n", name, requesting / parsing,
              requesting / lines, parsing / lines);
}

void printRatios(const Parsed& parsed) {
  printRatio("restore", parsed, [](cSdpNegotiator&, RequestValues&) -> unsigned short { return 0; });
  for (const RequestRow& request : allRequests()) {
    if (std::ranges::find(kMostUsed, request.name) == std::end(kMostUsed)) continue;
    printRatio(request.name, parsed, request.run);
  }
}

void registerAll(const std::string& kind, const Parsed& parsed) {
  if (parsed.objects.empty()) return;
  std::printf("%s: %zu bodies, %lld lines\n", kind.c_str(), parsed.objects.size(),
              static_cast<long long>(parsed.bodies.lines));
  printRatios(parsed);
  const auto addText = [&](const std::string& name, auto step) {
    benchmark::RegisterBenchmark((kind + ": " + name).c_str(), [&parsed, step](benchmark::State& s) {
      overBodies(s, parsed.bodies, step);
    });
  };
  addText("sdpParse",
          [](const std::string& body) { return object.sdpParse(body.c_str(), SDP_TYPE_OFFER) == 0; });
  const auto addRequest = [&](const char* name, auto step) {
    benchmark::RegisterBenchmark((kind + ": " + name).c_str(),
                                 [&parsed, step](benchmark::State& s) { overObjects(s, parsed, step); });
  };
  addRequest("restore", [](cSdpNegotiator&, RequestValues&) {});
  for (const RequestRow& request : allRequests()) addRequest(request.name, request.run);
  forEachPeer([&](const Peer& peer) {
    addText(std::string(peer.name) + ": decode and encode",
            [peer](const std::string& body) { return peer.run(body, true); });
  });
}

}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  const char* const folder = argc > 1 ? argv[1] : SDP_BENCH_BODIES;
  load(folder);
  if (plain.objects.empty() && deflated.objects.empty()) {
    std::fprintf(stderr, "sdpRequestBench: no body that an object accepts in %s\n", folder);
    return 2;
  }
  registerAll("below 2560 characters", plain);
  registerAll("2560 characters and more", deflated);
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
