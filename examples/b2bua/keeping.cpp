// What the store has of the calls: kept in time, or later when the server was away, and given up when another process has
// taken a call over.

#include <algorithm>
#include <utility>

#include "engine.h"

namespace b2bua {

namespace {

using std::chrono::milliseconds;

constexpr std::size_t kPortion = 50;                 ///< calls that are looked after at once
constexpr milliseconds kBetweenPortions{100};        ///< so 500 a second
constexpr std::chrono::minutes kBetweenLooks{10};    ///< through all calls
constexpr std::chrono::hours kLongestUnkept{6};      ///< records go by themselves after a day
constexpr std::chrono::seconds kBetweenPings{1};     ///< that a lost server is noticed
constexpr std::chrono::seconds kLongestDelay{3};     ///< of a 200, by a store that is away
constexpr std::size_t kMostToLookAfter = 2'000'000;  ///< ended calls of a long outage go by themselves

}  // namespace

void Engine::keep(Call& call) {
  if (!store_.isUsed()) return;
  call.kept = call.outdated = true;
  toKeep_.push_back(call.id);
}

/// The store gets at once what is to be kept since the last time, then the 200s go out. When it is away they wait for it,
/// but not for long: else all calls would end with it.
void Engine::keepAll() {
  while (!toKeep_.empty()) {
    const auto count = static_cast<std::ptrdiff_t>(std::min(kPortion, toKeep_.size()));
    std::vector<Call*> calls;
    for (auto id = toKeep_.begin(); id != toKeep_.begin() + count; ++id) {
      if (const auto found = calls_.find(*id); found != calls_.end()) calls.push_back(&found->second);
    }
    const bool kept = save(calls);
    if (!kept && !stopping_ && std::chrono::steady_clock::now() - *awaySince_ < kLongestDelay) return;
    toKeep_.erase(toKeep_.begin(), toKeep_.begin() + count);
    for (Call* const call : calls) {
      ++(kept ? counters_.kept : counters_.notKept);
      if (!kept) note(*call, "could not be kept in the store", {}, LogLevel::warning);
      if (!kept) lookAfter(*call);
      sendAnswer(*call);
    }
  }
}

bool Engine::save(const std::vector<Call*>& calls) {
  if (calls.empty()) return true;
  const bool kept = store_.save(calls);
  const auto now = std::chrono::steady_clock::now();
  if (kept) awaySince_.reset();
  if (!kept && !awaySince_) awaySince_ = now;
  for (Call* const call : calls) {
    call->outdated = !kept;
    if (kept) call->keptAt = now;
  }
  return kept;
}

/// The 200 to an INVITE that goes out may find this process gone: then its ACK has to come from another one.
void Engine::announceInvite(Leg& leg) {
  leg.unacknowledged = leg.cseq;
  if (leg.call->kept && !leg.call->outdated) store_.addAck(leg);
}

void Engine::lookAfter(Call& call) {
  if (!std::exchange(call.lookedAfter, true)) lookAfter(call.id);
}

void Engine::lookAfter(const std::string& id) {
  if (toLookAfter_.size() < kMostToLookAfter) toLookAfter_.push_back(id);
}

/// A server that cannot be asked leaves all as it is.
bool Engine::isOwn(const Call& call) {
  if (!store_.isUsed() || !call.kept) return true;
  const std::vector<std::string> owners = store_.ownersOf({call.id});
  return owners.empty() || !store_.isElsewhere(owners.front(), call);
}

/// Another process has the call: nothing is said to its parties from here.
void Engine::giveAway(Call& call) {
  note(call, "has gone on elsewhere");
  calls_.erase(std::string(call.id));
}

/// The 200 that another process had from a party may still wait for its ACK: the INVITE's own transaction is no more.
void Engine::acknowledge(Leg& leg) {
  if (leg.unacknowledged == 0) return;
  const std::string number = std::to_string(leg.unacknowledged) + " ACK";
  const std::string branch = "z9hG4bK" + randomText();
  const Owned<nta_outgoing_t> sent(
      nta_outgoing_tcreate(leg.dialog.get(), nullptr, nullptr, nullptr, SIP_METHOD_ACK, nullptr,
                           SIPTAG_CSEQ_STR(number.c_str()), NTATAG_ACK_BRANCH(branch.c_str()), TAG_END()));
  leg.unacknowledged = 0;
}

void Engine::tend() {
  // That none of them is told another process does no harm.
  if (!acknowledged_.empty()) store_.removeAcks(std::exchange(acknowledged_, {}));
  if (!store_.isUsed()) return;
  keepAll();
  const auto now = std::chrono::steady_clock::now();
  if (now < nextPortion_) return;
  nextPortion_ = now + kBetweenPortions;
  if (store_.connections() != connections_) {
    // What this server knows, nobody can tell: it may be a replica that was behind, or have begun anew.
    connections_ = store_.connections();
    for (auto& [id, call] : calls_) call.outdated = call.kept;
    nextLook_ = now;  // those that were not kept at all are first in the queue still
  }
  if (now >= nextLook_) {
    nextLook_ = now + kBetweenLooks;
    for (auto& [id, call] : calls_) {
      call.outdated = call.outdated || now - call.keptAt > kLongestUnkept;
      if (call.kept) lookAfter(call);
    }
  }
  if (!toLookAfter_.empty()) return tendPortion();
  if (calls_.empty() || now < nextPing_) return;
  nextPing_ = now + kBetweenPings;
  store_.ping();
}

void Engine::tendPortion() {
  const auto count = static_cast<std::ptrdiff_t>(std::min(kPortion, toLookAfter_.size()));
  const std::vector<std::string> ids(toLookAfter_.begin(), toLookAfter_.begin() + count);
  const std::vector<std::string> owners = store_.ownersOf(ids);
  // With another server first all of them are outdated.
  if (owners.empty() || store_.connections() != connections_) return;
  toLookAfter_.erase(toLookAfter_.begin(), toLookAfter_.begin() + count);
  std::vector<Call*> toKeep;
  for (std::size_t i = 0; i < ids.size(); ++i) {
    const auto found = calls_.find(ids[i]);
    if (found == calls_.end()) {
      if (store_.isOwn(owners[i]) && !store_.remove(ids[i], true)) lookAfter(ids[i]);
      continue;
    }
    Call& call = found->second;
    call.lookedAfter = false;
    if (store_.isElsewhere(owners[i], call)) {
      giveAway(call);
    } else if (call.outdated || !store_.isOwn(owners[i])) {
      toKeep.push_back(&call);
    }
  }
  if (save(toKeep)) {
    counters_.madeUpFor += toKeep.size();
  } else {
    for (Call* const call : toKeep) lookAfter(*call);
  }
}

}  // namespace b2bua
