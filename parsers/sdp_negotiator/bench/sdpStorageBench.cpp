// What it costs to store and to expand bodies that are kept deflated: with zlib streams made for each use, with streams
// that are only reset, and as an object does it, all over the same bodies. In front of them stand ratios of one run: the
// object beside zlib's reused streams.
//
//   sdpStorageBench [FILE|FOLDER] [--benchmark_... options]
//
// Without either the project's own bodies for benchmarks are taken. Those count that an object parses and keeps deflated.

#include <benchmark/benchmark.h>
#include <zlib.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "benchBodies.h"
#include "benchRatios.h"
#include "sdpNegotiator.h"

namespace {

/// What zlib and the object keep of a body.
struct Kept {
  std::string byZlib;
  cSdpNegotiator object;
};

Bodies bodies;
std::vector<Kept> kept;  ///< of each body
cSdpNegotiator object;
char stored[SDP_STORED_TEXT_SIZE];
char expanded[MAX_SDP_PROTOCOL_DATA_SIZE];

void aim(z_stream& stream, const std::string& in, std::size_t inSize, char* out, std::size_t outSize) {
  stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(in.c_str()));
  stream.avail_in = static_cast<uInt>(inSize);
  stream.next_out = reinterpret_cast<Bytef*>(out);
  stream.avail_out = static_cast<uInt>(outSize);
}

/// Both streams, made and ended by their owner.
struct Streams {
  z_stream deflater{};
  z_stream inflater{};

  std::size_t store(const std::string& body) {
    deflater.data_type = Z_TEXT;
    aim(deflater, body, body.size() + 1, stored, sizeof stored);
    return deflate(&deflater, Z_FINISH) == Z_STREAM_END ? deflater.total_out : 0;
  }
  bool expand(const std::string& bytes) {
    aim(inflater, bytes, bytes.size(), expanded, sizeof expanded);
    return inflate(&inflater, Z_FINISH) == Z_STREAM_END;
  }
};

struct Fresh {
  static std::size_t store(const std::string& body) {
    Streams streams;
    deflateInit(&streams.deflater, Z_DEFAULT_COMPRESSION);
    const std::size_t length = streams.store(body);
    deflateEnd(&streams.deflater);
    return length;
  }
  static bool expand(const Kept& each) {
    Streams streams;
    inflateInit(&streams.inflater);
    const bool done = streams.expand(each.byZlib);
    inflateEnd(&streams.inflater);
    return done;
  }
};

struct Reused {
  static Streams& streams() {
    static Streams streams;
    if (streams.deflater.state == nullptr) {
      deflateInit(&streams.deflater, Z_DEFAULT_COMPRESSION);
      inflateInit(&streams.inflater);
    }
    return streams;
  }
  static std::size_t store(const std::string& body) {
    deflateReset(&streams().deflater);
    return streams().store(body);
  }
  static bool expand(const Kept& each) {
    inflateReset(&streams().inflater);
    return streams().expand(each.byZlib);
  }
};

struct Object {
  static std::size_t store(const std::string& body) {
    return object.setRawSDP(body.c_str()) == 0 ? object.getParsedData().storedSdpLength : 0;
  }
  static bool expand(const Kept& each) { return each.object.getRawSDP(expanded, sizeof expanded) == 0; }
};

bool parse(const std::string& body) { return object.sdpParse(body.c_str(), SDP_TYPE_OFFER) == 0; }

template <typename Way>
bool expandAll() {
  bool all = true;
  for (const Kept& each : kept) all = Way::expand(each) && all;
  return all;
}

template <typename Way>
void registerOne(const std::string& name) {
  benchmark::RegisterBenchmark((name + ": store").c_str(),
                               [](benchmark::State& state) { overBodies(state, bodies, Way::store); });
  benchmark::RegisterBenchmark((name + ": expand").c_str(), [](benchmark::State& state) {
    const std::size_t before = allocations;
    for (auto _ : state) {
      if (!expandAll<Way>()) state.SkipWithError("a body did not come back");
    }
    const auto passes = static_cast<double>(state.iterations());
    report(state, before, passes * static_cast<double>(bodies.lines),
           passes * static_cast<double>(kept.size()));
  });
}

void printRatios() {
  const auto [zlibStoring, storing, zlibExpanding, expanding, parsing] =
      leastNanoseconds(over(bodies, Reused::store), over(bodies, Object::store), expandAll<Reused>,
                       expandAll<Object>, over(bodies, parse));
  const auto lines = static_cast<double>(bodies.lines);
  std::printf(
      "store / reused zlib stream: %.2f, expand / reused zlib stream: %.2f, sdpParse / deflating with a reused "
      "zlib stream: %.2f\n",
      storing / zlibStoring, expanding / zlibExpanding, parsing / zlibStoring);
  std::printf(
      "(ns a line: zlib stores in %.1f and expands in %.1f, the object stores in %.1f, expands in %.1f, and parses "
      "in %.1f)\n",
      zlibStoring / lines, zlibExpanding / lines, storing / lines, expanding / lines, parsing / lines);
}

/// Takes a body that is parsed and kept deflated, and that comes back as it was.
/// @return false for another one
bool take(std::string body) {
  Kept each;
  if (body.size() < SDP_STORED_TEXT_SIZE || !parse(body)) return false;
  each.object = object;
  each.byZlib.assign(stored, Fresh::store(body));
  const bool both = !each.byZlib.empty() && Fresh::expand(each) && body == expanded && Object::expand(each) &&
                    body == expanded;
  if (!both) return false;
  kept.push_back(each);
  bodies.add(std::move(body));
  return true;
}

void load(const char* path) {
  if (std::filesystem::is_directory(path)) {
    for (std::string& body : readBodies(path)) take(std::move(body));
    return;
  }
  std::ifstream file(path, std::ios::binary);
  take({std::istreambuf_iterator<char>(file), {}});
}

}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  load(argc > 1 ? argv[1] : SDP_BENCH_BODIES);
  if (kept.empty()) {
    std::fprintf(stderr, "sdpStorageBench: no body that is stored deflated\n");
    return 2;
  }
  std::size_t characters = 0;
  std::size_t byZlib = 0;
  std::size_t byObject = 0;
  for (std::size_t i = 0; i < kept.size(); ++i) {
    characters += bodies.texts[i].size();
    byZlib += kept[i].byZlib.size();
    byObject += kept[i].object.getParsedData().storedSdpLength;
  }
  std::printf("%zu bodies of %zu characters, deflated into %zu bytes, by zlib into %zu\n", kept.size(),
              characters, byObject, byZlib);
  printRatios();
  registerOne<Fresh>("fresh streams");
  registerOne<Reused>("reused streams");
  registerOne<Object>("object");
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
