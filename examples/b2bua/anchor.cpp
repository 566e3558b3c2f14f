#include "anchor.h"

#include <sdpDocumentRequests.h>

#include <algorithm>
#include <charconv>

#include "bodyLines.h"
#include "reasons.h"
#include "rtpengine.h"

namespace b2bua {

namespace {

constexpr unsigned int kMostPairs = 32;  ///< of one body
const char* const kNoPorts = "no ports are left";

/// Two ports for each section, or for each of its layers: PORT/COUNT.
unsigned int pairsOf(const std::string& body) {
  unsigned int pairs = 0;
  for (const BodySection& section : BodyLines(body).sections) {
    if (section.media.empty()) continue;
    const std::size_t slash = std::min(section.port.find('/'), section.port.size() - 1);
    unsigned int count = 1;
    std::from_chars(section.port.data() + slash + 1, section.port.data() + section.port.size(), count);
    pairs += std::min(count, kMostPairs + 1);
    if (pairs > kMostPairs) break;
  }
  return pairs;
}

/// @return whether a number up to a character is taken
bool take(std::string_view& text, char end, unsigned short& number) {
  const auto [behind, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || behind == text.data() + text.size() || *behind != end) return false;
  text.remove_prefix(static_cast<std::size_t>(behind + 1 - text.data()));
  return true;
}

}  // namespace

std::string textOf(const std::vector<PortRun>& runs) {
  std::string text;
  for (const PortRun& run : runs) text += std::to_string(run.first) + "/" + std::to_string(run.pairs) + ",";
  return text;
}

std::vector<PortRun> portsOf(std::string_view text) {
  std::vector<PortRun> runs;
  PortRun run;
  while (runs.size() < kMostPairs && take(text, '/', run.first) && take(text, ',', run.pairs) &&
         run.first % 2 == 0 && run.first >= kLowestPort && run.pairs > 0 && run.pairs <= kMostPairs)
    runs.push_back(run);
  return runs;
}

Anchor::Anchor(const MediaOptions& options, Counters& counters)
    : options_(options), counters_(counters), taken_((options.lastPort + 1U - options.firstPort) / 2) {}

void Anchor::relay(Call& call, Side from, bool, const std::string& body, Done done) {
  ++counters_.mediaRequests;
  std::string text = body;
  BodyRefusal refusal{anchored(call.legs[otherOf(from)], text)};
  if (!refusal) return done(text, refusal);
  ++counters_.mediaFailures;
  if (refusal.reason == kNoPorts) refusal.status = 503;
  done("", refusal);
}

/// A side keeps its ports, unless a body has more sections than any before.
std::string Anchor::anchored(Leg& to, std::string& body) {
  const unsigned int pairs = std::max(pairsOf(body), 1U);
  if (pairs > kMostPairs) return "too many ports";
  if ((to.ports.empty() || to.ports.back().pairs < pairs) && !giveRun(to, pairs)) return kNoPorts;
  sdp::Document document;
  sdp::Refusal refusal = document.read(body);
  if (!refusal) refusal = sdp::anchor(document, options_.relay, to.ports.back().first);
  body = document.text();
  return refusal ? reasonOf(refusal) : "";
}

/// The next run of pairs that are free, around the end of the pool at most once.
bool Anchor::giveRun(Leg& leg, unsigned int pairs) {
  std::size_t free = 0;
  std::size_t at = next_;
  for (std::size_t looked = 0; looked < taken_.size() + pairs; ++looked, ++at) {
    if (at >= taken_.size()) at = free = 0;
    free = taken_[at] ? 0 : free + 1;
    if (free < pairs) continue;
    next_ = at + 1;
    const std::size_t first = options_.firstPort + 2 * (next_ - pairs);
    leg.ports.push_back({static_cast<unsigned short>(first), static_cast<unsigned short>(pairs)});
    mark(leg.ports.back(), true);
    return true;
  }
  return false;
}

/// Those of another process may be outside of the pool.
void Anchor::mark(const PortRun& run, bool taken) {
  for (std::size_t port = run.first; port < run.first + 2UL * run.pairs; port += 2) {
    if (port >= options_.firstPort && (port - options_.firstPort) / 2 < taken_.size())
      taken_[(port - options_.firstPort) / 2] = taken;
  }
}

void Anchor::resume(const Call& call) {
  for (const Leg& leg : call.legs)
    for (const PortRun& run : leg.ports) mark(run, true);
}

void Anchor::release(const Call& call) {
  for (const Leg& leg : call.legs)
    for (const PortRun& run : leg.ports) mark(run, false);
}

std::unique_ptr<MediaRelay> makeMediaRelay(su_root_t* root, const MediaOptions& options, Log& log,
                                           Counters& counters) {
  if (options.kind == MediaKind::anchor) return std::make_unique<Anchor>(options, counters);
  if (options.kind == MediaKind::rtpengine) return std::make_unique<Rtpengine>(root, options, log, counters);
  return nullptr;
}

}  // namespace b2bua
