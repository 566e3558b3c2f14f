// The groups of an offer.

#include "judge/offeredGroups.h"

#include <algorithm>
#include <utility>

namespace sdp::exchange {
namespace {

constexpr std::uint32_t kBits = 64;
constexpr std::size_t kStepsOfSearch = 16;
// One group of an answer takes a search for each member that the offer's groups have, at most.
constexpr std::size_t kStepsPerMember = 16 * kStepsOfSearch;
constexpr std::size_t kLeastSteps = std::size_t{1} << 26U;
std::uint64_t bitOf(std::uint32_t number) { return std::uint64_t{1} << number % kBits; }

}  // namespace

MidSet::MidSet(const Fields& mids) {
  std::vector<std::string_view> all;
  for (const std::string_view mid : mids) all.push_back(mid);
  sorted_ = Words(all);
  std::vector<bool> isTaken(sorted_.all().size());
  for (const std::string_view mid : all) {
    const std::size_t place = sorted_.placeOf(mid);
    if (!isTaken[place]) mids_.push_back(mid);
    isTaken[place] = true;
  }
}

OfferedGroups::OfferedGroups(const Session& session) : stepsLeft_(kLeastSteps) {
  for (const Group& group : session.groups()) {
    Kind& kind = kinds_[group.semantics];
    for (const std::string_view mid : MidSet(group.mids)) {
      kind.byMid[mid].numbers.push_back(kind.count);
      stepsLeft_ += kStepsPerMember;
    }
    ++kind.count;
  }
  for (auto& [semantics, kind] : kinds_) {
    const std::size_t words = kind.count / kBits + 1;
    for (auto& [mid, bearers] : kind.byMid) {
      if (bearers.numbers.size() < words) continue;
      bearers.bits.resize(words);
      for (const std::uint32_t group : bearers.numbers) bearers.bits[group / kBits] |= bitOf(group);
    }
  }
}

bool OfferedGroups::Bearers::have(std::uint32_t group) const {
  if (bits.empty()) return std::binary_search(numbers.begin(), numbers.end(), group);
  return (bits[group / kBits] & bitOf(group)) != 0;
}

/// @return whether there are so many steps left
bool OfferedGroups::take(std::size_t steps) {
  if (steps > stepsLeft_) return false;
  stepsLeft_ -= steps;
  return true;
}

/// Whether one group is among those of all, which are not empty. Peers may send any number of groups with any number of
/// members, so that many are compared by 64 at once.
bool OfferedGroups::haveCommon(const std::vector<const Bearers*>& all) {
  const Bearers& rarest = **std::min_element(all.begin(), all.end(), [](const Bearers* a, const Bearers* b) {
    return a->numbers.size() < b->numbers.size();
  });
  if (rarest.bits.empty()) {
    if (!take(rarest.numbers.size() * all.size() * kStepsOfSearch)) return false;
    return std::any_of(rarest.numbers.begin(), rarest.numbers.end(), [&all](std::uint32_t group) {
      return std::all_of(all.begin(), all.end(), [group](const Bearers* each) { return each->have(group); });
    });
  }
  if (!take(rarest.bits.size() * all.size())) return false;
  for (std::size_t word = 0; word < rarest.bits.size(); ++word) {
    std::uint64_t common = rarest.bits[word];
    for (std::size_t i = 0; i < all.size() && common != 0; ++i) common &= all[i]->bits[word];
    if (common != 0) return true;
  }
  return false;
}

bool OfferedGroups::contain(std::string_view semantics, const MidSet& members) {
  const auto kind = kinds_.find(semantics);
  if (kind == kinds_.end()) return false;
  std::vector<const Bearers*> all;
  for (const std::string_view mid : members) {
    const auto found = kind->second.byMid.find(mid);
    if (found == kind->second.byMid.end()) return false;
    all.push_back(&found->second);
  }
  if (all.empty()) return true;
  const auto [known, isNew] = kind->second.known.try_emplace(members.sorted(), false);
  if (isNew) known->second = haveCommon(all);
  return known->second;
}

}  // namespace sdp::exchange
