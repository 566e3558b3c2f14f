// What it costs to store and to expand a body that is kept deflated: with zlib streams made for each use,
// with streams that are only reset, and as an object does it. All three work on the same body and give the
// same bytes.
//
//   sdpStorageBench [FILE] [--benchmark_... options]
//
// Without a file the first 3400 characters of the project's own browser offer are taken.

#include <benchmark/benchmark.h>
#include <zlib.h>

#include <cstdio>
#include <cstring>
#include <fstream>
#include <iterator>
#include <string>

#include "sdpNegotiator.h"

namespace {

std::string body;
cSdpNegotiator object;
unsigned char stored[SDP_STORED_TEXT_SIZE];
char expanded[MAX_SDP_PROTOCOL_DATA_SIZE];

void aim(z_stream& stream, void* in, std::size_t inSize, void* out, std::size_t outSize) {
  stream.next_in = static_cast<Bytef*>(in);
  stream.avail_in = static_cast<uInt>(inSize);
  stream.next_out = static_cast<Bytef*>(out);
  stream.avail_out = static_cast<uInt>(outSize);
}

/// Both streams, made and ended by their owner.
struct Streams {
  z_stream deflater{};
  z_stream inflater{};

  std::size_t store() {
    deflater.data_type = Z_TEXT;
    aim(deflater, body.data(), body.size() + 1, stored, sizeof stored);
    return deflate(&deflater, Z_FINISH) == Z_STREAM_END ? deflater.total_out : 0;
  }
  bool expand(std::size_t length) {
    aim(inflater, stored, length, expanded, sizeof expanded);
    return inflate(&inflater, Z_FINISH) == Z_STREAM_END;
  }
};

std::size_t storeFresh() {
  Streams streams;
  deflateInit(&streams.deflater, Z_DEFAULT_COMPRESSION);
  const std::size_t length = streams.store();
  deflateEnd(&streams.deflater);
  return length;
}

bool expandFresh(std::size_t length) {
  Streams streams;
  inflateInit(&streams.inflater);
  const bool done = streams.expand(length);
  inflateEnd(&streams.inflater);
  return done;
}

Streams& reusedStreams() {
  static Streams streams;
  if (streams.deflater.state == nullptr) {
    deflateInit(&streams.deflater, Z_DEFAULT_COMPRESSION);
    inflateInit(&streams.inflater);
  }
  return streams;
}

std::size_t storeReused() {
  Streams& streams = reusedStreams();
  deflateReset(&streams.deflater);
  return streams.store();
}

bool expandReused(std::size_t length) {
  Streams& streams = reusedStreams();
  inflateReset(&streams.inflater);
  return streams.expand(length);
}

std::size_t storeInObject() {
  return object.setRawSDP(body.c_str()) == 0 ? object.getParsedData().storedSdpLength : 0;
}

bool expandFromObject(std::size_t) { return object.getRawSDP(expanded, sizeof expanded) == 0; }

template <typename Store>
void onlyStore(benchmark::State& state, Store store) {
  for (auto _ : state) benchmark::DoNotOptimize(store());
}

template <typename Expand>
void onlyExpand(benchmark::State& state, Expand expand) {
  const std::size_t length = storeReused();
  storeInObject();
  for (auto _ : state) benchmark::DoNotOptimize(expand(length));
}

template <typename Store, typename Expand>
void both(benchmark::State& state, Store store, Expand expand) {
  for (auto _ : state) {
    const std::size_t length = store();
    if (!expand(length) || body != expanded) state.SkipWithError("the body did not come back");
  }
}

template <typename Store, typename Expand>
void registerOne(const std::string& name, Store store, Expand expand) {
  benchmark::RegisterBenchmark((name + ": store").c_str(), [=](benchmark::State& s) { onlyStore(s, store); });
  benchmark::RegisterBenchmark((name + ": expand").c_str(),
                               [=](benchmark::State& s) { onlyExpand(s, expand); });
  benchmark::RegisterBenchmark((name + ": store and expand").c_str(),
                               [=](benchmark::State& s) { both(s, store, expand); });
}

std::string read(const char* path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  body = argc > 1 ? read(argv[1]) : read(SDP_BENCH_BODY).substr(0, 3400);
  const std::size_t length = storeFresh();
  if (body.size() < SDP_STORED_TEXT_SIZE || length == 0 || storeInObject() != length) {
    std::fprintf(stderr, "sdpStorageBench: a body of %zu characters is not stored deflated\n", body.size());
    return 2;
  }
  std::printf("a body of %zu characters, deflated into %zu bytes\n", body.size(), length);
  registerOne("fresh streams", storeFresh, expandFresh);
  registerOne("reused streams", storeReused, expandReused);
  registerOne("object", storeInObject, expandFromObject);
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
