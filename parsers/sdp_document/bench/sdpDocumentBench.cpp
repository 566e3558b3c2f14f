// What a document costs: reading beside a scan that only finds lines and colons and beside other parsers, a chain of
// requests beside its reading, texts that grow, hostile ones among them, and single edits between questions.
//
//   sdpDocumentBench [FOLDER] [--benchmark_... options]
//
// Without a folder the benchmark's own browser offer is read. Ratios and growing texts stand at the end.

#include <benchmark/benchmark.h>

#include <array>
#include <cstdio>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "benchBodies.h"
#include "benchRatios.h"
#include "documentBodies.h"
#include "mixedEdits.h"
#include "sdpDocumentRequests.h"

namespace {

Bodies bodies;
Bodies offers;  ///< those of them that the chain of requests works on

using Words = std::vector<std::string_view>;
const std::vector<Words> kChain = {{"keep-codecs", "opus,PCMA,telephone-event,VP8"},
                                   {"anchor", "192.0.2.9", "20000"},
                                   {"set-profile", "RTP/AVP"}};

sdp::Document document;

bool read(const std::string& body) { return !document.read(body); }

bool readAndChangeOnly(const std::string& body) {
  if (!read(body)) return false;
  for (const Words& words : kChain) {
    if (sdp::perform(document, words)) return false;
  }
  return true;
}

std::size_t readAndChange(const std::string& body) {
  return readAndChangeOnly(body) ? document.text().size() : 0;
}

/// Everything that a table of the sections shows.
std::size_t readAndAsk(const std::string& body) {
  if (!read(body)) return 0;
  std::size_t sum = 0;
  for (const sdp::Section& section : document.sections()) {
    sum += section.port() + static_cast<std::size_t>(section.security()) +
           static_cast<std::size_t>(section.direction()) + section.mid().size() + section.candidateCount() +
           section.bundle().value_or(0) + section.usesTrickleIce();
    if (const auto connection = section.connection()) sum += connection->address.size();
    for (const sdp::Format& format : section.formats()) {
      sum += format.encoding ? format.encoding->clockRate : 0;
      for (const std::string_view feedback : format.feedback()) sum += feedback.size();
    }
  }
  return sum;
}

void load(const char* folder) {
  std::vector<std::string> texts = {browserOffer()};
  if (folder != nullptr) texts = readBodies(folder);
  for (std::string& text : texts) {
    if (readAndChange(text) != 0 && text.find("UDP/TLS/RTP/SAVPF") != std::string::npos) offers.add(text);
    bodies.add(std::move(text));
  }
}

void printRatios() {
  const auto [index, reading] = leastNanoseconds(over(bodies, indexLinesAndColons), over(bodies, read));
  std::printf("\nreading / index of lines and colons: %.2f (%.1f and %.1f ns a line)\n", reading / index,
              reading / static_cast<double>(bodies.lines), index / static_cast<double>(bodies.lines));
  if (offers.texts.empty()) return;
  const auto [offerIndex, offerReading, chain, withText] =
      leastNanoseconds(over(offers, indexLinesAndColons), over(offers, read), over(offers, readAndChangeOnly),
                       over(offers, readAndChange));
  std::printf(
      "offers of browsers, %zu: reading / index: %.2f; three requests / reading: %.2f, with the text: %.2f\n",
      offers.texts.size(), offerReading / offerIndex, chain / offerReading - 1, withText / offerReading - 1);
}

/// Costs of texts that grow, as nanoseconds a character: they stay the same where the cost is linear.
void printGrowth() {
  std::printf("\nns a character of texts of 16 KB, 128 KB and 1 MB\n");
  std::vector<std::pair<std::string, std::function<std::string(std::size_t)>>> texts = {
      {"sections", [](std::size_t size) { return manySections(size / 52); }}};
  for (const Hostile& hostile : hostileTexts()) texts.emplace_back(hostile.name, hostile.make);
  const std::vector<Words> requests = {{"keep-codecs", "VP8,PCMU"},
                                       {"drop-codecs", "VP8"},
                                       {"order-codecs", "PCMA"},
                                       {"anchor", "192.0.2.9", "1024"},
                                       {"set-profile", "RTP/AVP"},
                                       {"opportunistic"},
                                       {"secure-only"},
                                       {"unbundle"},
                                       {"strip-attributes", "ice-*,ssrc"},
                                       {"direction", "inactive"},
                                       {"disable", "all"},
                                       {"canonical"}};
  for (const auto& [name, make] : texts) {
    std::array<std::string, 3> grown = {make(std::size_t{16} << 10U), make(std::size_t{128} << 10U),
                                        make(std::size_t{1} << 20U)};
    const auto print = [&grown](const char* what,
                                const std::function<std::size_t(const std::string&)>& step) {
      std::printf("  %-18s", what);
      for (const std::string& text : grown) {
        std::printf(" %8.2f",
                    leastNanoseconds([&] { return step(text); })[0] / static_cast<double>(text.size()));
      }
      std::printf("\n");
    };
    std::printf("%s\n", name.c_str());
    print("read", read);
    print("read and ask", readAndAsk);
    for (const Words& words : requests) {
      print(std::string(words[0]).c_str(), [&words](const std::string& text) {
        if (!read(text)) return std::size_t{0};
        return static_cast<std::size_t>(sdp::perform(document, words).reason) + document.text().size();
      });
    }
  }
}

void registerAll() {
  const auto add = [](const char* name, const Bodies& texts, auto step) {
    benchmark::RegisterBenchmark(name,
                                 [&texts, step](benchmark::State& state) { overBodies(state, texts, step); });
  };
  add("index: lines and colons", bodies, indexLinesAndColons);
  add("read", bodies, read);
  add("read and ask", bodies, readAndAsk);
  if (!offers.texts.empty()) {
    add("offers of browsers: read", offers, read);
    add("offers of browsers: read, three requests, text", offers, readAndChange);
  }
  forEachPeer([](const Peer& peer) {
    benchmark::RegisterBenchmark(
        (std::string(peer.name) + ": decode").c_str(), [peer](benchmark::State& state) {
          overBodies(state, bodies, [&](const std::string& body) { return peer.run(body, false); });
        });
  });
}

}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  load(argc > 1 ? argv[1] : nullptr);
  if (bodies.texts.empty()) {
    std::fprintf(stderr, "sdpDocumentBench: no bodies in %s\n", argv[1]);
    return 2;
  }
  std::printf("%zu bodies, %lld lines\n", bodies.texts.size(), static_cast<long long>(bodies.lines));
  registerAll();
  benchmark::RunSpecifiedBenchmarks();
  printRatios();
  printGrowth();
  printMixedEdits();
  benchmark::Shutdown();
  return 0;
}
