// The groups of the session and their members.

#include "groupTable.h"

#include <algorithm>

#include "fieldReader.h"
#include "model.h"

namespace sdp::core {

void GroupTable::reserve(std::size_t memberCount, std::size_t sections) {
  sectionMids.reserve(sections + 1);
  nextSectionsOfMid.reserve(sections + 1);
  if (memberCount <= groups.capacity()) return;
  const std::size_t most = std::max(memberCount, 2 * groups.capacity());
  members.reserve(most);
  mids.reserve(most);
  slots_.reserve(most);
  groups.reserve(most);
}

Index GroupTable::midOf(const Model& model, const Part& section) const {
  return sectionMids.empty() ? kNone : sectionMids[model.indexOf(section)];
}

Index GroupTable::find(std::string_view mid) {
  if (groups.empty()) return kNone;
  return slots_.slotOf(mid, [&](Index entry) { return mids[entry].mid == mid; });
}

void GroupTable::read(const Model& model) {
  readGroups(model);
  if (areSectionsRead_) return;
  areSectionsRead_ = true;
  sectionMids.clear();
  if (!groups.empty()) readSections(model);
}

void GroupTable::readGroups(const Model& model) {
  if (isRead_) return;
  isRead_ = true;
  areSectionsRead_ = false;
  groups.clear();
  members.clear();
  mids.clear();
  std::size_t most = 0;
  forEach(model, model.session(), one(Kind::group), [&](Index i) { most += model.lines[i].length / 2; });
  if (most == 0) return;
  slots_.reset(most);
  forEach(model, model.session(), one(Kind::group), [&](Index i) { readGroup(model, i); });
}

void GroupTable::addGroup(const Model& model, Index line) {
  const bool fits = !groups.empty() && slots_.fits(mids.size() + mostMidsOf(model.lines[line]));
  if (!isRead_ || !fits) return forget();
  readGroup(model, line);
  forgetSections();
}

void GroupTable::readGroup(const Model& model, Index line) {
  const auto index = static_cast<Index>(groups.size());
  const auto first = static_cast<Index>(members.size());
  FieldReader fields(valueOf(model.lines[line]).value_or(std::string_view()));
  groups.push_back({fields.next(), first, first});
  Group& group = groups.back();
  for (std::string_view mid = fields.next(); !mid.empty(); mid = fields.next()) {
    Index& slot = slots_.slotOf(mid, [&](Index entry) { return mids[entry].mid == mid; });
    if (slot == kNone) {
      slot = static_cast<Index>(mids.size());
      mids.emplace_back().mid = mid;
    }
    MidEntry& entry = mids[slot];
    const auto member = static_cast<Index>(members.size());
    const bool again = entry.lastMember != kNone && members[entry.lastMember].group == index;
    members.push_back({slot, index, again});
    if (again) continue;
    (entry.lastMember == kNone ? entry.firstMember : members[entry.lastMember].nextOfMid) = member;
    entry.lastMember = member;
    if (!group.isBundle()) continue;
    if (entry.bundle == kNone) entry.bundle = index;
    (entry.lastOfBundles == kNone ? entry.firstOfBundles : members[entry.lastOfBundles].nextOfBundles) =
        member;
    entry.lastOfBundles = member;
  }
  group.endMember = static_cast<Index>(members.size());
}

void GroupTable::readSections(const Model& model) {
  for (MidEntry& entry : mids) {
    entry.firstSection = entry.lastSection = kNone;
    entry.live = 0;
  }
  sectionMids.assign(model.parts.size(), kNone);
  nextSectionsOfMid.assign(model.parts.size(), kNone);
  for (Index n = 1; n < model.parts.size(); ++n) {
    const Part& section = model.parts[n];
    if (!section.m.readable) continue;
    const std::string_view mid = sdp::core::midOf(model, section);
    if (mid.empty()) continue;
    const Index found = find(mid);
    if (found == kNone) continue;
    MidEntry& entry = mids[found];
    sectionMids[n] = found;
    (entry.lastSection == kNone ? entry.firstSection : nextSectionsOfMid[entry.lastSection]) = n;
    entry.lastSection = n;
    if (section.m.portNumber != 0) ++entry.live;
  }
}

}  // namespace sdp::core
