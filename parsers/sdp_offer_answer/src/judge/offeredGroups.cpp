// The groups of an offer.

#include "judge/offeredGroups.h"

#include <algorithm>
#include <unordered_set>

namespace sdp::exchange {

MidSet::MidSet(const Fields& mids) {
  std::unordered_set<std::string_view> told;
  for (const std::string_view mid : mids) {
    if (told.insert(mid).second) mids_.push_back(mid);
  }
}

OfferedGroups::OfferedGroups(const Session& session) {
  std::uint32_t number = 0;
  for (const Group& group : session.groups()) {
    Kind& kind = kinds_[group.semantics];
    for (const std::string_view mid : MidSet(group.mids)) kind[mid].push_back(number);
    ++number;
  }
}

bool OfferedGroups::contain(std::string_view semantics, const MidSet& members) const {
  const auto kind = kinds_.find(semantics);
  if (kind == kinds_.end()) return false;
  std::vector<const Numbers*> lists;
  for (const std::string_view mid : members) {
    const auto found = kind->second.find(mid);
    if (found == kind->second.end()) return false;
    lists.push_back(&found->second);
  }
  if (lists.empty()) return true;
  // Those that have the rarest member, less those that lack one of the others.
  std::sort(lists.begin(), lists.end(),
            [](const Numbers* a, const Numbers* b) { return a->size() < b->size(); });
  Numbers left = *lists.front();
  for (const Numbers* list : lists) {
    const auto lacks = [list](std::uint32_t number) {
      return !std::binary_search(list->begin(), list->end(), number);
    };
    left.erase(std::remove_if(left.begin(), left.end(), lacks), left.end());
    if (left.empty()) return false;
  }
  return true;
}

}  // namespace sdp::exchange
