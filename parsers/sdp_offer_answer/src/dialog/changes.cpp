// What a peer's offer changes.

#include "answer/direction.h"
#include "bodies.h"
#include "bundles.h"
#include "exchange.h"
#include "origins.h"
#include "text/search.h"

namespace sdp::exchange {
namespace {

OriginChange originChangeOf(std::string_view offer, std::string_view current) {
  if (current.empty()) return OriginChange::first;
  if (offer == current) return OriginChange::refresh;
  const std::optional<Origin> now = originOf(offer);
  const std::optional<Origin> before = originOf(current);
  if (!now || !before) return OriginChange::unreadable;
  if (!now->isSameSession(*before)) return OriginChange::otherSession;
  const std::strong_ordering order = compareVersions(now->version, before->version);
  if (order != std::strong_ordering::equal) {
    return order == std::strong_ordering::greater ? OriginChange::raised : OriginChange::notRaised;
  }
  return haveSameLines(offer, current) ? OriginChange::refresh : OriginChange::sameVersion;
}

/// Whether two parts of bodies have the same lines, empty ones and o-lines apart.
template <typename Part>
bool areSameParts(const Part& a, const Part& b) {
  auto x = a.lines().begin();
  auto y = b.lines().begin();
  const auto skip = [](auto& line) {
    while (line != std::default_sentinel && (line->content.empty() || line->content.starts_with("o=")))
      ++line;
  };
  for (skip(x), skip(y); x != std::default_sentinel && y != std::default_sentinel; skip(x), skip(y)) {
    if (x->content != y->content) return false;
    ++x;
    ++y;
  }
  return x == std::default_sentinel && y == std::default_sentinel;
}

bool isSameAddress(const std::optional<Connection>& a, const std::optional<Connection>& b) {
  if (!a || !b) return !a && !b;
  return a->address == b->address && a->addressType == b->addressType;
}

SectionChange changeOf(const Section& now, const Section& before) {
  const auto isAlive = [](const Section& section) { return section.isReadable() && !section.isDisabled(); };
  if (before.index() == 0) return SectionChange::added;
  if (isAlive(now) != isAlive(before)) {
    return isAlive(now) ? SectionChange::added : SectionChange::disabled;
  }
  if (!areSameParts(now, before)) return SectionChange::changed;
  // What is of all does not concern a section that was disabled and still is.
  const bool isSame = !isAlive(now) || (isSameAddress(now.connection(), before.connection()) &&
                                        now.direction() == before.direction());
  return isSame ? SectionChange::same : SectionChange::changed;
}

}  // namespace

ReceivedOffer changesOf(const Document& offer, const Document& current) {
  ReceivedOffer result;
  result.origin = originChangeOf(offer.text(), current.text());
  const bool isFirst = result.origin == OriginChange::first;
  result.isSessionChanged = !isFirst && !areSameParts(offer.session(), current.session());
  result.hasFewerSections = offer.sectionCount() < current.sectionCount();
  const Bundles bundles(offer);
  for (const Section& section : offer.sections()) {
    const Direction meant = offeredDirection(section, bundles);
    const SectionChange change = changeOf(section, current.section(section.index()));
    result.sections.push_back({change, meant, meant != section.direction()});
  }
  return result;
}

}  // namespace sdp::exchange
