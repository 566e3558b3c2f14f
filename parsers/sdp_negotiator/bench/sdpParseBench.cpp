// What it costs per line to give an object a body: decode, analysis and storing, beside the decode alone and
// what other parsers need to decode the same bodies. Bodies that are stored as they are and those that are
// deflated are measured apart.
//
//   sdpParseBench [FOLDER] [--benchmark_... options]
//
// Without a folder the project's own few bodies are taken. Only bodies that an object accepts count.

#include <benchmark/benchmark.h>

#include <cstdio>
#include <memory>
#include <string>
#include <utility>

#include "benchBodies.h"
#include "benchRatios.h"
#include "sdpNegotiator.h"
#include "sdpNegotiatorParser.h"

namespace {

Bodies plainBodies;
Bodies deflatedBodies;
cSdpNegotiator object;
auto description = std::make_unique<sDescription>();

bool decode(const std::string& body) {
  char error[SDP_ERROR_TEXT_SIZE];
  unsigned short start = 0;
  unsigned short end = 0;
  return sdp_decodeOpt_r(description.get(), body.c_str(), SDP_TYPE_OFFER, error, false, start, end) == 0;
}

bool analyse(const std::string& body) {
  sSdpParsedData data;
  data.init();
  return sdpParserMessage::sdpParse(body.c_str(), SDP_TYPE_OFFER, data) == 0;
}

bool store(const std::string& body) { return object.setRawSDP(body.c_str()) == 0; }

bool parse(const std::string& body) { return object.sdpParse(body.c_str(), SDP_TYPE_OFFER) == 0; }

void load(const char* folder) {
  for (std::string& body : readBodies(folder)) {
    if (!parse(body)) continue;
    (body.size() < SDP_STORED_TEXT_SIZE ? plainBodies : deflatedBodies).add(std::move(body));
  }
}

void printRatios(const std::string& kind, const Bodies& bodies) {
  const auto [decoding, analysing, parsing] =
      leastNanoseconds(over(bodies, decode), over(bodies, analyse), over(bodies, parse));
  const auto lines = static_cast<double>(bodies.lines);
  std::printf("%s: analysis / decode: %.2f, sdpParse / decode: %.2f (%.1f, %.1f and %.1f ns a line)\n",
              kind.c_str(), analysing / decoding, parsing / decoding, analysing / lines, parsing / lines,
              decoding / lines);
}

template <typename Step>
void registerOne(const std::string& name, const Bodies& bodies, Step step) {
  benchmark::RegisterBenchmark(name.c_str(),
                               [&bodies, step](benchmark::State& s) { overBodies(s, bodies, step); });
}

void registerAll(const std::string& kind, const Bodies& bodies) {
  if (bodies.texts.empty()) return;
  std::printf("%s: %zu bodies, %lld lines\n", kind.c_str(), bodies.texts.size(),
              static_cast<long long>(bodies.lines));
  printRatios(kind, bodies);
  registerOne(kind + ": decode", bodies, decode);
  registerOne(kind + ": decode and analysis", bodies, analyse);
  registerOne(kind + ": storing", bodies, store);
  registerOne(kind + ": sdpParse", bodies, parse);
  forEachPeer([&](const Peer& peer) {
    registerOne(kind + ": " + peer.name + ": decode", bodies,
                [peer](const std::string& body) { return peer.run(body, false); });
  });
}

}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  const char* const folder = argc > 1 ? argv[1] : SDP_BENCH_BODIES;
  load(folder);
  if (plainBodies.texts.empty() && deflatedBodies.texts.empty()) {
    std::fprintf(stderr, "sdpParseBench: no body that an object accepts in %s\n", folder);
    return 2;
  }
  registerAll("below 2560 characters", plainBodies);
  registerAll("2560 characters and more", deflatedBodies);
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
