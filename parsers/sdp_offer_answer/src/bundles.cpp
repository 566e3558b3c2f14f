// BUNDLE groups and what their sections share.

#include "bundles.h"

#include <array>

namespace sdp::exchange {
namespace {

constexpr std::array<std::string_view, kCredentials> kNames{"crypto", "key-mgmt",  "fingerprint", "setup",
                                                            "tls-id", "ice-ufrag", "ice-pwd"};

}  // namespace

std::string_view nameOf(Credential credential) { return kNames[static_cast<std::size_t>(credential)]; }

Bundles::Bundles(const Document& document) : document_(&document) {
  groups_.assign(std::size_t{document.sectionCount()} + 1, kNone);
  for (const Section& section : document.sections()) {
    const std::optional<std::uint32_t> group = section.bundle();
    if (!group) continue;
    groups_[section.index()] = *group;
    if (*group >= holders_.size()) holders_.resize(std::size_t{*group} + 1);
    for (std::size_t i = 0; i < kCredentials; ++i) {
      std::uint32_t& holder = holders_[*group].holders[i];
      if (holder == 0 && section.has(kNames[i])) holder = section.index();
    }
  }
}

std::optional<std::uint32_t> Bundles::groupOf(std::uint32_t section) const {
  if (section >= groups_.size() || groups_[section] == kNone) return std::nullopt;
  return groups_[section];
}

bool Bundles::areTogether(std::uint32_t a, std::uint32_t b) const {
  const std::optional<std::uint32_t> group = groupOf(a);
  return group && group == groupOf(b);
}

Range<AttributeCursor> Bundles::attributesOf(std::uint32_t section, Credential credential) const {
  const std::string_view name = nameOf(credential);
  const Section own = document_->section(section);
  if (own.has(name)) return own.attributes(name);
  if (document_->session().has(name)) return document_->session().attributes(name);
  const std::optional<std::uint32_t> group = groupOf(section);
  const std::uint32_t holder = group ? holders_[*group].holders[static_cast<std::size_t>(credential)] : 0;
  return document_->section(holder == 0 ? section : holder).attributes(name);
}

std::string_view Bundles::valueOf(std::uint32_t section, Credential credential) const {
  for (const Attribute& attribute : attributesOf(section, credential)) {
    return attribute.value.value_or(std::string_view());
  }
  return {};
}

}  // namespace sdp::exchange
