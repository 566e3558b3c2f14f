// Putting sections away (RFC 3264, section 8.2) without leaving their BUNDLE group (RFC 8843) without a port.

#include "requests/putAway.h"

#include <algorithm>

#include "edits.h"
#include "fieldReader.h"

namespace sdp::core {

bool hasNoPort(const Model& model) {
  return std::none_of(model.parts.begin() + 1, model.parts.end(),
                      [](const Part& section) { return section.m.readable && section.m.portNumber != 0; });
}

PuttingAway::PuttingAway(Model& model) : model_(model), table_(model.groups) {
  table_.forget();
  table_.read(model);
  table_.candidates.resize(table_.members.size());
  for (const Member& member : table_.members) {
    if (!member.again) table_.groups[member.group].live += table_.mids[member.mid].live;
  }
}

void PuttingAway::putAway(Part& section) {
  const Index index = model_.indexOf(section);
  const Index mid = table_.midOf(model_, section);
  const std::string_view port = section.m.port;
  model_.heirs.clear();
  if (mid != kNone && !table_.mids[mid].left) {
    if (section.m.portNumber != 0) findHeirs(mid, index);
    leaveGroups(mid);
  }
  takePort(section, "0");
  for (const Index heir : model_.heirs) {
    takePort(model_.parts[heir], port);
    addLive(table_.sectionMids[heir]);
  }
}

void PuttingAway::takePort(Part& section, std::string_view port) {
  if (section.m.port != port) setPort(model_, section, {port});
  removeLines(model_, section, one(Kind::bundleOnly));
}

/// A section of a mid has got a port.
void PuttingAway::addLive(Index mid) {
  if (table_.mids[mid].left) return;
  ++table_.mids[mid].live;
  for (Index m = table_.mids[mid].firstMember; m != kNone; m = table_.members[m].nextOfMid) {
    ++table_.groups[table_.members[m].group].live;
  }
}

void PuttingAway::leaveGroups(Index mid) {
  MidEntry& entry = table_.mids[mid];
  entry.left = true;
  for (Index m = entry.firstMember; m != kNone; m = table_.members[m].nextOfMid) {
    Group& group = table_.groups[table_.members[m].group];
    group.changed = true;
    group.live -= entry.live;
  }
}

/// Of each BUNDLE group in which a section is the only one with a port, the member that is to take it over.
void PuttingAway::findHeirs(Index mid, Index behind) {
  std::vector<Index>& heirs = model_.heirs;
  for (Index m = table_.mids[mid].firstOfBundles; m != kNone; m = table_.members[m].nextOfBundles) {
    Group& group = table_.groups[table_.members[m].group];
    if (group.live != 1) continue;
    const Index heir = heirOf(group, behind);
    if (heir != kNone) heirs.push_back(heir);
  }
  std::sort(heirs.begin(), heirs.end());
  heirs.erase(std::unique(heirs.begin(), heirs.end()), heirs.end());
}

/// The first member behind a section that waits for a port. A heap has what each mid of the group offers; an offer that
/// was passed by goes down to where the next of its mid belongs.
Index PuttingAway::heirOf(Group& group, Index behind) {
  const auto later = [](const Candidate& a, const Candidate& b) { return a.section > b.section; };
  const auto begin = table_.candidates.begin() + group.firstMember;
  if (!group.hasHeap) {
    group.hasHeap = true;
    group.heapEnd = group.firstMember;
    for (Index m = group.firstMember; m < group.endMember; ++m) {
      const Index mid = table_.members[m].mid;
      const Index section = table_.members[m].again ? kNone : candidateOf(mid, behind);
      if (section != kNone) table_.candidates[group.heapEnd++] = {section, mid};
    }
    std::make_heap(begin, table_.candidates.begin() + group.heapEnd, later);
  }
  while (group.heapEnd != group.firstMember) {
    const auto end = table_.candidates.begin() + group.heapEnd;
    const Candidate offered = *begin;
    const Index now = table_.mids[offered.mid].left ? kNone : candidateOf(offered.mid, behind);
    if (now == offered.section) return now;
    std::pop_heap(begin, end, later);
    if (now == kNone) {
      --group.heapEnd;
    } else {
      *(end - 1) = {now, offered.mid};
      std::push_heap(begin, end, later);
    }
  }
  return kNone;
}

/// The first section behind another that bears a mid and waits for a port. Sections are put away in their order, so that
/// those in front are passed by for good.
Index PuttingAway::candidateOf(Index mid, Index behind) {
  Index& section = table_.mids[mid].firstSection;
  while (section != kNone) {
    const Part& part = model_.parts[section];
    if (section > behind && part.m.portNumber == 0 && isBundleOnly(model_, part)) break;
    section = table_.nextSectionsOfMid[section];
  }
  return section;
}

void PuttingAway::finish() {
  auto group = table_.groups.begin();
  forEach(model_, model_.session(), one(Kind::group), [&](Index i) {
    if (group->changed) writeGroup(*group, i);
    ++group;
  });
}

void PuttingAway::writeGroup(const Group& group, Index index) {
  const std::string_view content = model_.lines[index].content();
  LineWriter line(model_, model_.parts[0], index, content.size());
  // Whatever stands between two mids belongs to the one behind.
  FieldReader fields(*valueOf(model_.lines[index]));
  const std::string_view semantics = fields.next();
  const char* at = semantics.data() + semantics.size();
  line.add({content.data(), static_cast<std::size_t>(at - content.data())});
  bool isEmpty = true;
  for (Index m = group.firstMember; m < group.endMember; ++m) {
    const std::string_view mid = fields.next();
    const char* const end = mid.data() + mid.size();
    if (!table_.mids[table_.members[m].mid].left) {
      line.add({at, static_cast<std::size_t>(end - at)});
      isEmpty = false;
    }
    at = end;
  }
  if (isEmpty) {
    line.drop();
    return removeLine(model_, index);
  }
  line.add({at, static_cast<std::size_t>(content.data() + content.size() - at)}).finish();
}

}  // namespace sdp::core
