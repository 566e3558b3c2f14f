// What hops take away.

#include "calls/troubleFinder.h"
#include "text/search.h"

namespace tool {
namespace {

/// A section as it came to a hop and as it went out.
struct Passed {
  const sdp::Document& before;
  const sdp::Document& after;
  sdp::Section in;
  sdp::Section out;
  TroublePlace place;
  std::string hop;  ///< " by 192.0.2.1"

  /// The hop does not take part in the media.
  bool hasSamePlace() const { return in.port() == out.port() && addressOf(in) == addressOf(out); }
};

std::string placeOf(const sdp::Section& section) {
  return shownPiece(addressOf(section)) + " port " + std::to_string(section.port());
}

void findLostCandidates(TroubleFinder& finder, const Passed& passed) {
  const std::size_t count = passed.in.candidateCount();
  if (count == 0 || passed.out.candidateCount() != 0) return;
  if (!passed.out.hasIce() && !passed.hasSamePlace()) return;
  finder.tell("hop-lost-candidates", passed.place,
              shownPiece(passed.in.media()) + ": " + std::to_string(count) +
                  (count == 1 ? " candidate was" : " candidates were") + " taken away" + passed.hop +
                  (passed.out.hasIce() ? ", and ice-ufrag is still there"
                                       : ", and media go to " + placeOf(passed.out) + " as before"));
}

std::string kindsOf(const sdp::Document& body, const sdp::Section& section) {
  std::string kinds;
  const auto add = [&](bool isThere, std::string_view kind) {
    if (isThere) kinds.append(kinds.empty() ? "" : ", ").append(kind);
  };
  add(section.has("crypto") || body.session().has("crypto"), "crypto");
  add(section.has("key-mgmt") || body.session().has("key-mgmt"), "key-mgmt");
  add(!section.fingerprintHash().empty(), "fingerprint");
  return kinds;
}

void findLostKeys(TroubleFinder& finder, const Passed& passed) {
  if (hasKeys(passed.after, passed.out)) return;
  const bool isSecure = hasSecureProfile(passed.out);
  const std::string media = shownPiece(passed.in.media());
  if (hasKeys(passed.before, passed.in) && (isSecure || passed.hasSamePlace())) {
    finder.tell("hop-lost-keys", passed.place,
                media + ": " + kindsOf(passed.before, passed.in) + " was taken away" + passed.hop +
                    (isSecure ? ", and the profile is " + shownPiece(passed.out.transport())
                              : ", and media go to " + placeOf(passed.out) + " as before"));
  }
  if (isSecure && !sdpneg::equalNoCase(passed.in.transport(), passed.out.transport())) {
    finder.tell("profile-without-keys", passed.place,
                media + ": " + shownPiece(passed.in.transport()) + " became " +
                    shownPiece(passed.out.transport()) + passed.hop + ", and there are no keys");
  }
}

/// Whether nothing is lost by a hop, wherever media go.
bool isKept(const sdp::Document& before, const sdp::Document& after) {
  for (const sdp::Section& out : after.sections()) {
    const sdp::Section in = before.section(out.index());
    if (!isActive(in) || !isActive(out)) continue;
    if (in.candidateCount() != 0 && out.candidateCount() == 0) return false;
    if (hasKeys(after, out)) continue;
    if (hasKeys(before, in) || hasSecureProfile(out)) return false;
  }
  return true;
}

}  // namespace

void findHopTroubles(TroubleFinder& finder) {
  const std::vector<CallMessage>& messages = finder.call().messages;
  for (const Hop& hop : finder.call().hops) {
    if (messages[hop.before].sdpSize == 0 || messages[hop.after].sdpSize == 0) continue;
    if (messages[hop.before].sdp() == messages[hop.after].sdp()) continue;
    if (!finder.isNews("hop-lost-keys", hop.before, hop.after)) continue;
    if (finder.bodies().factsOf(hop.before, hop.after).isPassedOnWell) {
      if (!finder.bodies().passOver(hop.before, hop.after)) return;
      continue;
    }
    const sdp::Document* const before = finder.bodies().of(hop.before);
    const sdp::Document* const after = finder.bodies().of(hop.after);
    if (before == nullptr || after == nullptr) return;
    if (isKept(*before, *after)) {
      finder.bodies().factsOf(hop.before, hop.after).isPassedOnWell = true;
      continue;
    }
    const std::string by = " by " + messages[hop.after].flow.source.address.text();
    for (const sdp::Section& out : after->sections()) {
      const sdp::Section in = before->section(out.index());
      if (!isActive(in) || !isActive(out)) continue;
      const Passed passed{*before, *after, in, out, {hop.after, out.index()}, by};
      findLostCandidates(finder, passed);
      findLostKeys(finder, passed);
    }
  }
}

}  // namespace tool
