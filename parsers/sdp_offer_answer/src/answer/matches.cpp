// Which local section serves which section of the offer.

#include <algorithm>

#include "answer/fax.h"
#include "answer/sides.h"
#include "parameters.h"
#include "plainText.h"
#include "text/search.h"

namespace sdp::exchange {
namespace {

/// The profile of an RTP transport: what stands behind `RTP/`.
std::string_view profileOf(std::string_view transport) {
  constexpr std::string_view kRtp = "RTP/";
  return transport.substr(transport.find(kRtp) + kRtp.size());
}

bool isKnownProfile(std::string_view profile) {
  return profile == "AVP" || profile == "AVPF" || profile == "SAVP" || profile == "SAVPF";
}

/// Whether a local section can take the transport of an offered one; keys are another matter.
bool canServe(const Section& local, const Section& offered) {
  if (!offered.isRtp()) return sdpneg::equalNoCase(offered.transport(), local.transport());
  if (offered.transport() == local.transport()) return true;
  if (!isPlain(offered.transport())) return false;
  return local.isRtp() && isOverTcp(offered.transport()) == isOverTcp(local.transport()) &&
         isKnownProfile(profileOf(offered.transport())) && isKnownProfile(profileOf(local.transport()));
}

/// An address without what stands behind its slash; empty without one.
std::string_view addressOf(const Section& section) {
  const std::optional<Connection> connection = section.connection();
  const std::string_view address = connection ? connection->address : std::string_view();
  return address.substr(0, address.find('/'));
}

bool isMulticast(std::string_view address) {
  if (sdpneg::contains(address, ":")) return sdpneg::startsWithNoCase(address, "ff");
  constexpr std::uint64_t kFirst = 224;
  constexpr std::uint64_t kLast = 239;
  const std::optional<std::uint64_t> first = readNumber(address.substr(0, address.find('.')));
  return first && *first >= kFirst && *first <= kLast;
}

bool isOtherMulticast(const Section& offered, const Section& local) {
  const std::string_view address = addressOf(offered);
  return isMulticast(address) && !sdpneg::equalNoCase(address, addressOf(local));
}

}  // namespace

Matches::Matches(const Sides& sides) : sides_(sides) {
  readLocals();
  sections_.resize(sides.offer.sectionCount());
  acceptedOf_.assign(sections_.size(), kNone);
  accepted_.reserve(locals_.size());
  for (const Section& offered : sides.offer.sections()) {
    if (!isBundledOnly(offered)) match(offered);
  }
  for (const Section& offered : sides.offer.sections()) {
    if (isBundledOnly(offered)) match(offered);
  }
  formGroups();
  refuseUnreachable();
}

const Accepted* Matches::find(std::uint32_t section) const {
  const std::uint32_t number = acceptedOf_[section - 1];
  return number == kNone ? nullptr : &accepted_[number];
}

void Matches::readLocals() {
  for (const Section& section : sides_.local.sections()) {
    if (section.isReadable() && !section.isDisabled()) locals_.push_back({section, CodecList(section)});
  }
}

void Matches::match(const Section& offered) {
  AnsweredSection& result = sections_[offered.index() - 1];
  if (!offered.isReadable()) return;
  result.outcome = offered.isDisabled() ? SectionOutcome::disabled : SectionOutcome::noLocalSection;
  if (offered.isDisabled()) return;
  std::optional<Accepted>
      candidate;  // made when it is wanted, since most of many sections have no partner left
  for (LocalSection& local : locals_) {
    if (local.isUsed || local.section.media() != offered.media()) continue;
    if (!candidate) candidate = Accepted{offered, {}, CodecList(offered), nullptr, {}, {}, {}, nullptr};
    const SectionOutcome outcome = tryLocal(*candidate, local);
    // Of several reasons the one is told that came last.
    if (outcome == SectionOutcome::accepted || outcome > result.outcome) result.outcome = outcome;
    if (outcome != SectionOutcome::accepted) continue;
    local.isUsed = true;
    candidate->local = local.section;
    candidate->localFormats = &local.formats;
    result.local = local.section.index();
    acceptedOf_[offered.index() - 1] = static_cast<std::uint32_t>(accepted_.size());
    accepted_.push_back(std::move(*candidate));
    return;
  }
}

SectionOutcome Matches::tryLocal(Accepted& candidate, const LocalSection& local) {
  const Section& offered = candidate.offered;
  if (!canServe(local.section, offered)) return SectionOutcome::otherTransport;
  const auto choose = offered.isRtp() ? chooseCodecs : chooseWords;
  candidate.formats = choose(candidate.offeredFormats, local.formats, sides_.options);
  if (candidate.formats.pairs.empty()) return SectionOutcome::noCommonFormat;
  candidate.keys = {};
  const SectionOutcome outcome =
      keys_.choose({offered, sides_.offered}, {local.section, sides_.own}, candidate.keys);
  if (outcome != SectionOutcome::accepted) return outcome;
  if (isOtherMulticast(offered, local.section)) return SectionOutcome::otherMulticast;
  if (differInRateManagement(offered, local.section)) return SectionOutcome::otherRateManagement;
  const bool isAlone = isBundledOnly(offered) && !hasLiveCompany(offered, local.section);
  return isAlone ? SectionOutcome::notInGroup : SectionOutcome::accepted;
}

/// RTP without rtcp-mux cannot share a port (RFC 8843, section 9).
bool Matches::canJoin(const Section& offered, const Section& local) const {
  if (!sides_.offered.groupOf(offered.index()) || !sides_.own.groupOf(local.index())) return false;
  return !offered.isRtp() || (offered.hasRtcpMux() && local.hasRtcpMux());
}

/// Whether another section of both groups is accepted that has a port.
bool Matches::hasLiveCompany(const Section& offered, const Section& local) const {
  if (!canJoin(offered, local)) return false;
  return std::any_of(accepted_.begin(), accepted_.end(), [&](const Accepted& other) {
    return other.offered.port() != 0 && sides_.offered.areTogether(offered.index(), other.offered.index()) &&
           sides_.own.areTogether(local.index(), other.local.index()) && canJoin(other.offered, other.local);
  });
}

void Matches::formGroups() {
  for (Accepted& section : accepted_) section.leader = &section;
  for (std::uint32_t group = 0; group < sides_.offered.groupCount(); ++group) formGroup(group);
}

/// The accepted sections of an offered group that share a local one with its first.
void Matches::formGroup(std::uint32_t offeredGroup) {
  AnsweredGroup group;
  const Accepted* leader = nullptr;
  bool hasOfferedPort = false;
  for (const std::uint32_t index : sides_.offered.membersOf(offeredGroup)) {
    const Accepted* const section = find(index);
    if (section == nullptr || !canJoin(section->offered, section->local)) continue;
    if (!group.members.empty() &&
        !sides_.own.areTogether(section->local.index(), accepted_[group.members[0]].local.index()))
      continue;
    group.members.push_back(static_cast<std::size_t>(section - accepted_.data()));
    if (leader == nullptr && section->local.port() != 0) leader = section;
    hasOfferedPort = hasOfferedPort || section->offered.port() != 0;
  }
  if (leader == nullptr || !hasOfferedPort) return;
  for (const std::size_t member : group.members) {
    accepted_[member].group = groups_.size();
    accepted_[member].leader = leader;
  }
  groups_.push_back(std::move(group));
}

/// What has no port of its own, on either side, needs a group.
void Matches::refuseUnreachable() {
  for (const Accepted& section : accepted_) {
    if (section.group || (section.local.port() != 0 && section.offered.port() != 0)) continue;
    const std::uint32_t index = section.offered.index();
    sections_[index - 1] = {SectionOutcome::notInGroup, 0};
    acceptedOf_[index - 1] = kNone;
  }
}

}  // namespace sdp::exchange
