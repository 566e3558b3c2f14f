#include "anchor.h"

#include <sdpDocumentRequests.h>

#include <algorithm>

#include "bencode.h"
#include "reasons.h"
#include "rtpengine.h"

namespace b2bua {

namespace {

constexpr unsigned int kMostPairs = 32;  ///< of one body
const char* const kNoPorts = "no ports are left";

/// Two ports for each section, or for each of its layers: PORT/COUNT. Without a section as with one.
std::uint64_t pairsOf(const sdp::Document& document) {
  std::uint64_t pairs = 0;
  for (const sdp::Section section : document.sections())
    pairs += std::min<std::uint64_t>(section.portCount(), kMostPairs + 1);
  return std::max<std::uint64_t>(pairs, 1);
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
  while (runs.size() < kMostPairs && takeNumber(text, '/', run.first) && takeNumber(text, ',', run.pairs) &&
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
  sdp::Document document;
  sdp::Refusal refusal = document.read(body);
  if (refusal) return reasonOf(refusal);
  const std::uint64_t pairs = pairsOf(document);
  if (pairs > kMostPairs) return "too many ports";
  if ((to.ports.empty() || to.ports.back().pairs < pairs) && !giveRun(to, static_cast<unsigned short>(pairs)))
    return kNoPorts;
  refusal = sdp::anchor(document, options_.relay, to.ports.back().first);
  body = document.text();
  return refusal ? reasonOf(refusal) : "";
}

/// The next run of pairs that are free, around the end of the pool at most once.
bool Anchor::giveRun(Leg& leg, unsigned short pairs) {
  std::size_t free = 0;
  std::size_t at = next_;
  for (std::size_t looked = 0; looked < taken_.size() + pairs; ++looked, ++at) {
    if (at >= taken_.size()) at = free = 0;
    free = taken_[at] ? 0 : free + 1;
    if (free < pairs) continue;
    next_ = at + 1;
    leg.ports.push_back({static_cast<unsigned short>(options_.firstPort + 2 * (next_ - pairs)), pairs});
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

void Anchor::mark(const Call& call, bool taken) {
  for (const Leg& leg : call.legs)
    for (const PortRun& run : leg.ports) mark(run, taken);
}

std::unique_ptr<MediaRelay> makeMediaRelay(su_root_t* root, const MediaOptions& options, Log& log,
                                           Counters& counters) {
  if (options.kind == MediaKind::anchor) return std::make_unique<Anchor>(options, counters);
  if (options.kind == MediaKind::rtpengine) return std::make_unique<Rtpengine>(root, options, log, counters);
  return nullptr;
}

}  // namespace b2bua
