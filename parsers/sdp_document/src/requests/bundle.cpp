// Dissolving BUNDLE groups (RFC 8843), and putting sections away on request.

#include "edits.h"
#include "requests/media.h"
#include "requests/putAway.h"

namespace sdp::core {
namespace {

/// The first section with a port, of each group and of what a mid's groups have.
void findLeaders(Model& model) {
  GroupTable& table = model.groups;
  model.leading.assign(table.groups.size(), kNone);
  // Of several sections that bear a mid the first with a port counts.
  for (MidEntry& entry : table.mids) {
    while (entry.firstSection != kNone && model.parts[entry.firstSection].m.portNumber == 0) {
      entry.firstSection = table.nextSectionsOfMid[entry.firstSection];
    }
  }
  for (const Member& member : table.members) {
    Index& leader = model.leading[member.group];
    leader = std::min(leader, table.mids[member.mid].firstSection);
  }
  for (const Member& member : table.members) {
    Index& leader = table.mids[member.mid].leader;
    if (leader == kNone && table.groups[member.group].isBundle()) leader = model.leading[member.group];
  }
}

/// The port field that a section's group has; empty when it has none.
std::string_view portOfGroup(const Model& model, const Part& section) {
  const GroupTable& table = model.groups;
  const Index mid = table.midOf(model, section);
  if (mid == kNone) return {};
  const Index leader = table.mids[mid].leader;
  return leader == kNone ? std::string_view() : model.parts[leader].m.port;
}

void putAwayChosen(Model& model) {
  PuttingAway putting(model);
  for (const Index n : model.chosen) putting.putAway(model.parts[n]);
  putting.finish();
}

}  // namespace

Refusal unbundle(Model& model) {
  model.groups.forget();
  model.groups.read(model);
  findLeaders(model);
  for (std::size_t n = 1; n < model.parts.size(); ++n) {
    Part& section = model.parts[n];
    if (!section.m.readable || !isBundleOnly(model, section)) continue;
    if (section.m.portNumber == 0) {
      const std::string_view port = portOfGroup(model, section);
      if (!port.empty()) setPort(model, section, {port});
    }
    removeLines(model, section, one(Kind::bundleOnly));
  }
  auto group = model.groups.groups.begin();
  forEach(model, model.session(), one(Kind::group), [&](Index i) {
    if ((group++)->isBundle()) removeLine(model, i);
  });
  // It says of mids what is of use here alone.
  model.groups.forget();
  return {};
}

Refusal disable(Model& model, const Selection& selection) {
  choose(model, selection);
  putAwayChosen(model);
  return {};
}

Refusal disableSections(Model& model, std::span<const std::uint32_t> sections) {
  std::vector<bool> isWanted(model.parts.size());
  for (const std::uint32_t n : sections) {
    if (n < isWanted.size()) isWanted[n] = true;
  }
  choose(model, {Selection::By::all, {}, 0});
  std::erase_if(model.chosen, [&](Index n) { return !isWanted[n]; });
  putAwayChosen(model);
  return {};
}

}  // namespace sdp::core
