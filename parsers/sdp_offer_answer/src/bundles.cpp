// BUNDLE groups and what their sections share.

#include "bundles.h"

#include <algorithm>

#include "plainText.h"

namespace sdp::exchange {
namespace {

constexpr std::array<std::string_view, kCredentials> kNames{"crypto", "key-mgmt",  "fingerprint", "setup",
                                                            "tls-id", "ice-ufrag", "ice-pwd"};

struct Member {
  std::string_view mid;
  std::uint32_t section;
};

bool isLess(const Member& a, const Member& b) {
  return a.mid != b.mid ? a.mid < b.mid : a.section < b.section;
}

}  // namespace

std::string_view nameOf(Credential credential) { return kNames[static_cast<std::size_t>(credential)]; }

Bundles::Bundles(const Document& document) : document_(&document) {
  for (std::size_t i = 1; i < kCredentials; ++i) {
    const std::optional<Attribute> attribute = document.session().attribute(kNames[i]);
    isInSession_[i] = attribute.has_value();
    if (attribute) inSession_[i] = attribute->fields()[0];
  }
  static_assert(static_cast<std::size_t>(Credential::crypto) == 0);
  findMembers();
  for (Group& group : groups_) findHolders(group);
}

void Bundles::findMembers() {
  groupOf_.assign(std::size_t{document_->sectionCount()} + 1, kNone);
  std::vector<Member> members;
  for (const Section& section : document_->sections()) {
    const std::optional<std::uint32_t> group = section.bundle();
    if (!group || !isPlain(section.mid())) continue;
    groupOf_[section.index()] = *group;
    members.push_back({section.mid(), section.index()});
  }
  std::sort(members.begin(), members.end(), isLess);
  std::vector<bool> isTaken(groupOf_.size());
  for (const sdp::Group& line : document_->session().groups()) {
    const auto number = static_cast<std::uint32_t>(groups_.size());
    Group& group = groups_.emplace_back();
    if (line.semantics != "BUNDLE") continue;
    for (const std::string_view mid : line.mids) {
      auto member = std::lower_bound(members.begin(), members.end(), Member{mid, 0}, isLess);
      // A mid that stands there again is passed by with the first of its sections.
      for (; member != members.end() && member->mid == mid && !isTaken[member->section]; ++member) {
        if (groupOf_[member->section] != number) break;
        isTaken[member->section] = true;
        group.members.push_back(member->section);
      }
    }
  }
}

void Bundles::findHolders(Group& group) const {
  for (const std::uint32_t index : group.members) {
    const Section section = document_->section(index);
    if (!section.isReadable() || section.isDisabled()) continue;
    for (std::size_t i = 0; i < kCredentials; ++i) {
      if (group.holders[i] != 0) continue;
      const std::optional<Attribute> attribute = section.attribute(kNames[i]);
      if (!attribute) continue;
      group.holders[i] = index;
      group.values[i] = attribute->fields()[0];
    }
  }
}

std::optional<std::uint32_t> Bundles::groupOf(std::uint32_t section) const {
  if (section >= groupOf_.size() || groupOf_[section] == kNone) return std::nullopt;
  return groupOf_[section];
}

bool Bundles::areTogether(std::uint32_t a, std::uint32_t b) const {
  const std::optional<std::uint32_t> group = groupOf(a);
  return group && group == groupOf(b);
}

Place Bundles::placeOf(std::uint32_t section, Credential credential) const {
  const auto i = static_cast<std::size_t>(credential);
  if (document_->section(section).has(kNames[i])) return Place::section;
  if (isInSession_[i]) return Place::session;
  const std::optional<std::uint32_t> group = groupOf(section);
  return group && groups_[*group].holders[i] != 0 ? Place::group : Place::nowhere;
}

std::uint32_t Bundles::holderOf(std::uint32_t section, Credential credential) const {
  switch (placeOf(section, credential)) {
    case Place::section:
      return section;
    case Place::group:
      return groups_[*groupOf(section)].holders[static_cast<std::size_t>(credential)];
    default:
      return 0;
  }
}

Range<AttributeCursor> Bundles::attributesOf(std::uint32_t section, Credential credential) const {
  const std::string_view name = nameOf(credential);
  if (placeOf(section, credential) == Place::session) return document_->session().attributes(name);
  return document_->section(holderOf(section, credential)).attributes(name);
}

std::string_view Bundles::valueOf(std::uint32_t section, Credential credential) const {
  const auto i = static_cast<std::size_t>(credential);
  const std::optional<Attribute> own = document_->section(section).attribute(kNames[i]);
  if (own) return own->fields()[0];
  switch (placeOf(section, credential)) {
    case Place::session:
      return inSession_[i];
    case Place::group:
      return groups_[*groupOf(section)].values[i];
    default:
      return {};
  }
}

}  // namespace sdp::exchange
