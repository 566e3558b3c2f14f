#include "calls/legJoiner.h"

#include <algorithm>
#include <array>
#include <utility>

#include "text/search.h"

namespace tool {
namespace {

// What is kept and looked at at most, so that nothing grows with what a capture repeats.
constexpr std::size_t kMostLooks = 64;
constexpr std::size_t kMostKeys = 32;
constexpr std::size_t kMostUses = 32;
constexpr std::size_t kMostFlows = 8;
constexpr std::size_t kMostSender = 256;
constexpr std::size_t kMostAttempts = 4;
constexpr std::size_t kMostCompared = 64;

/// An INVITE is sent on so soon, in microseconds.
constexpr std::int64_t kSoon = 2000000;
/// A body that comes from another address than it went to is sent on so soon.
constexpr std::int64_t kBodySoon = 5000000;

bool isWithinItself(const Flow& flow) { return flow.source.address == flow.destination.address; }

/// Whether two ends of flows are of one participant: where an address talks to itself, ports tell participants apart.
bool isSame(const Endpoint& one, const Endpoint& other, bool withPorts) {
  return one.isKnown() && one.address == other.address && (!withPorts || one.port == other.port);
}

/// Whether what went on the first flow may have gone on on the second.
bool leadsTo(const Flow& before, const Flow& after) {
  return isSame(before.destination, after.source, isWithinItself(before) || isWithinItself(after));
}

bool shareParticipant(const Flow& one, const Flow& other) {
  const bool withPorts = isWithinItself(one) || isWithinItself(other);
  return isSame(one.source, other.source, withPorts) || isSame(one.source, other.destination, withPorts) ||
         isSame(one.destination, other.source, withPorts) ||
         isSame(one.destination, other.destination, withPorts);
}

/// Whether a time is at or behind another one, by not more than so much.
bool isWithin(std::int64_t begin, std::int64_t time, std::int64_t most) {
  return time >= begin && (begin < 0 ? time <= begin + most : time - begin <= most);
}

template <typename Value>
void addOnce(std::vector<Value>& values, const Value& value) {
  if (values.size() < kMostFlows && std::ranges::find(values, value) == values.end()) values.push_back(value);
}

/// "192.0.2.1:5060" of a top Via "SIP/2.0/UDP 192.0.2.1:5060;branch=...".
std::string sentByOf(const SipView& view) {
  sdpneg::Words words(view.value(KnownField::via).value_or(""), " \t\r\n;,");
  words.next();
  return std::string(words.next().substr(0, kMostSender));
}

/// Who calls whom; nothing where that cannot be told.
std::vector<JoinNumbers> numbersOf(const SipView& view) {
  const std::string from = comparableUser(userOf(uriOf(view.value(KnownField::from).value_or(""))));
  const std::string to = comparableUser(userOf(uriOf(view.value(KnownField::to).value_or(""))));
  const std::string target = comparableUser(userOf(uriOf(view.requestUri())));
  constexpr std::size_t kMostNumber = 128;
  std::vector<JoinNumbers> numbers;
  if (from.empty() || from.size() > kMostNumber) return numbers;
  for (const std::string* const called : {&to, &target}) {
    if (called->empty() || called->size() > kMostNumber || (called == &target && target == to)) continue;
    std::string both = std::string(from).append(" to ").append(*called);
    const JoinHash hash = KeyedHasher()(both);
    numbers.push_back({std::move(both), hash});
  }
  return numbers;
}

/// Whether a leg had its final response before another one began, of which the beginning was seen.
bool wasSetUpBefore(const OpenLeg& one, const OpenLeg& other) {
  return one.isAnswered && !other.invites.empty() && one.answeredSequence < other.sequence;
}

/// Whether two legs were set up at the same time, as most legs of one call are.
bool wereSetUpTogether(const OpenLeg& one, const OpenLeg& other) {
  return !wasSetUpBefore(one, other) && !wasSetUpBefore(other, one);
}

}  // namespace

void LegJoiner::look(OpenLeg& leg, const SipView& view, const CallMessage& message, std::size_t sequence) {
  const bool isNew = leg.looks == 0;
  const bool isInvite = message.method == "INVITE";
  if (isInvite && message.status == 0 && message.toTag.empty()) noteInvite(leg, view, message);
  if (isNew) lookByCallId(leg);
  if (leg.looks < kMostLooks && (isNew || isInvite || message.sdpSize != 0)) {
    ++leg.looks;
    lookByHeaders(leg, view);
    lookByOrigin(leg, view, message);
  }
  if (isInvite && message.status >= 200 && !asksForAnother(message.status) && !leg.isAnswered) {
    leg.isAnswered = true;
    leg.answered = message.time;
    leg.answeredSequence = sequence;
    compare(leg);
  }
}

void LegJoiner::lookByCallId(OpenLeg& leg) {
  if (named_.empty()) return;
  for (const JoinHash key : keysOfCallId(leg.callId)) {
    const auto found = named_.find(key);
    if (found != named_.end()) calls_->join(leg, *found->second.leg, found->second.by, found->second.detail);
  }
}

void LegJoiner::lookByHeaders(OpenLeg& leg, const SipView& view) {
  for (const JoinKey& key : headerKeys(view, joinHeaders_)) {
    if (!key.callId().empty()) {
      OpenLeg* const named = calls_->find(key.callId());
      if (named != nullptr) calls_->join(leg, *named, key.by, key.detail);
    }
    const auto found = named_.find(key.hash());
    if (key.joinsEqual() && found != named_.end()) {
      calls_->join(leg, *found->second.leg, key.by, key.detail);
    }
    keep(leg, key);
  }
}

void LegJoiner::keep(OpenLeg& leg, const JoinKey& key) {
  const JoinHash hash = key.hash();
  const auto found = named_.find(hash);
  if (found != named_.end() && found->second.leg->call == leg.call) return;
  if (leg.keys.size() == kMostKeys) return;
  leg.keys.push_back(hash);
  named_[hash] = {&leg, key.by, key.detail};
}

/// How a body that was sent in a leg may have become that of a message of another leg: its sender got it, and is not where
/// it came from. Senders whose bodies all have the same o-line are told apart so.
LegJoiner::Way LegJoiner::wayOf(const OriginUse& use, const Sending& sending) {
  const CallMessage& message = sending.message;
  if (std::ranges::find(use.senders, sending.sender) != use.senders.end()) return Way::none;
  bool isShared = false;
  bool isReceived = false;
  for (const Flow& flow : use.flows) {
    const bool withPorts = isWithinItself(flow) || isWithinItself(message.flow);
    if (isSame(flow.source, message.flow.source, withPorts)) return Way::none;
    isReceived = isReceived || leadsTo(flow, message.flow);
    isShared = isShared || shareParticipant(flow, message.flow);
  }
  // One that has an address to each side shares none.
  const bool isSoon = !use.time || !message.time || isWithin(*use.time, *message.time, kBodySoon);
  if (isReceived) return Way::received;
  return !isShared && isSoon ? Way::possible : Way::none;
}

void LegJoiner::lookByOrigin(OpenLeg& leg, const SipView& view, const CallMessage& message) {
  if (message.sdpSize == 0) return;
  Sending sending{message, {}};
  if (!message.flow.source.isKnown()) {
    // Requests alone say who sends them.
    if (message.status != 0) return;
    sending.sender = sentByOf(view);
  }
  const std::optional<OriginKey> origin = originKeyOf(message.sdp());
  if (!origin) return;
  if (origin->media) lookByOriginKey(leg, sending, *origin->media, *origin);
  lookByOriginKey(leg, sending, origin->whole, *origin);
}

/// Calls with the same bodies are set up one behind the other, so the first leg that waits is meant; where none does, a
/// body is sent on to several, and the last leg is.
LegJoiner::OriginUse* LegJoiner::findSentOn(std::vector<OriginUse>& uses, const OpenLeg& leg,
                                            const Sending& sending) {
  OriginUse* last = nullptr;
  OriginUse* earlier = nullptr;  // an established one, whose body is sent on later
  const bool isKnown = std::ranges::any_of(uses, [&](const OriginUse& use) {
    return use.leg != &leg && use.leg->call == leg.call && wayOf(use, sending) != Way::none;
  });
  if (isKnown) return nullptr;
  for (OriginUse& use : uses) {
    const Way way = use.leg->call == leg.call ? Way::none : wayOf(use, sending);
    if (way == Way::none) continue;
    if (wereSetUpTogether(*use.leg, leg)) {
      last = &use;
      if (!use.isTaken) break;
    } else if (way == Way::received && use.leg->progress != CallProgress::over) {
      earlier = &use;
    }
  }
  return last != nullptr ? last : earlier;
}

void LegJoiner::lookByOriginKey(OpenLeg& leg, const Sending& sending, JoinHash key, const OriginKey& origin) {
  const auto [found, isNew] = origins_.try_emplace(key);
  std::vector<OriginUse>& uses = found->second;
  if (OriginUse* const sentOn = findSentOn(uses, leg, sending)) {
    sentOn->isTaken = true;
    calls_->join(leg, *sentOn->leg, JoinedBy::origin, origin.detail());
  }

  auto own = std::ranges::find(uses, &leg, &OriginUse::leg);
  if (own == uses.end()) {
    if (leg.originKeys.size() == kMostKeys) {
      if (isNew) origins_.erase(found);
      return;
    }
    leg.originKeys.push_back(key);
    if (uses.size() == kMostUses) {
      const auto set = std::ranges::find_if(uses, [](const OriginUse& use) { return use.leg->isAnswered; });
      uses.erase(set == uses.end() ? uses.begin() : set);
    }
    own = uses.insert(uses.end(), {&leg, sending.message.time, {}, {}, false});
  }
  addOnce(own->flows, sending.message.flow);
  if (!sending.message.flow.source.isKnown()) addOnce(own->senders, sending.sender);
}

void LegJoiner::noteInvite(OpenLeg& leg, const SipView& view, const CallMessage& message) {
  addOnce(leg.invites, message.flow);
  const bool isKnown = !leg.attempts.empty() && leg.attempts.back().cseq == message.cseq;
  if (isKnown || !message.time || leg.attempts.size() == kMostAttempts) return;
  LegAttempt& attempt = leg.attempts.emplace_back(LegAttempt{*message.time, message.cseq, numbersOf(view)});
  for (const JoinNumbers& numbers : attempt.numbers)
    attempts_[{numbers.hash, attempt.time, leg.sequence}] = &leg;
}

void LegJoiner::findNearest(const OpenLeg& leg, const LegAttempt& attempt, Nearest& nearest) const {
  for (const JoinNumbers& numbers : attempt.numbers) {
    auto at = attempts_.lower_bound({numbers.hash, attempt.time, leg.sequence});
    for (std::size_t compared = 0; compared < kMostCompared && at != attempts_.begin(); ++compared) {
      --at;
      const auto& [hash, time, sequence] = at->first;
      OpenLeg& other = *at->second;
      if (!isWithin(time, attempt.time, kSoon) || hash != numbers.hash) break;
      const bool isOpen = !other.isAnswered || (other.answered && *other.answered > attempt.time);
      if (other.call == leg.call || !isOpen) continue;
      const bool leads = std::ranges::any_of(
          other.invites, [&](const Flow& flow) { return leadsTo(flow, leg.invites.front()); });
      if (!leads) continue;
      if (nearest.leg == nullptr || time > nearest.time) {
        nearest = {&other, time, false};
      } else if (time == nearest.time && other.call != nearest.leg->call) {
        nearest.isAmbiguous = true;
      }
    }
  }
}

void LegJoiner::compare(OpenLeg& leg) {
  if (leg.isCompared || leg.attempts.empty()) return;
  leg.isCompared = true;
  const LegAttempt& attempt = leg.attempts.front();
  if (leg.parent != nullptr || attempt.numbers.empty()) return;
  Nearest nearest;
  findNearest(leg, attempt, nearest);
  if (nearest.leg == nullptr || nearest.isAmbiguous) return;
  const std::string after = std::to_string((attempt.time - nearest.time) / 1000);
  calls_->join(leg, *nearest.leg, JoinedBy::timeAndNumbers,
               attempt.numbers.front().text + ", " + after + " ms later");
}

void LegJoiner::compareAll(const OpenCall& call) {
  std::vector<OpenLeg*> legs;
  for (const auto& leg : call.legs) legs.push_back(leg.get());
  // Those that may have come of these first; then these.
  for (const OpenLeg* const leg : std::vector<OpenLeg*>(legs)) {
    for (const LegAttempt& attempt : leg->attempts) {
      for (const JoinNumbers& numbers : attempt.numbers) {
        auto at = attempts_.lower_bound({numbers.hash, attempt.time, leg->sequence});
        for (std::size_t compared = 0; compared < kMostCompared && at != attempts_.end(); ++compared, ++at) {
          const auto& [hash, time, sequence] = at->first;
          if (hash != numbers.hash || !isWithin(attempt.time, time, kSoon)) break;
          if (!at->second->isCompared) legs.push_back(at->second);
        }
      }
    }
  }
  for (OpenLeg* const leg : legs) compare(*leg);
}

void LegJoiner::forget(const OpenCall& call) {
  for (const auto& leg : call.legs) {
    for (const JoinHash key : leg->keys) {
      const auto found = named_.find(key);
      if (found != named_.end() && found->second.leg == leg.get()) named_.erase(found);
    }
    for (const JoinHash key : leg->originKeys) {
      const auto found = origins_.find(key);
      if (found == origins_.end()) continue;
      std::erase_if(found->second, [&](const OriginUse& use) { return use.leg == leg.get(); });
      if (found->second.empty()) origins_.erase(found);
    }
    for (const LegAttempt& attempt : leg->attempts) {
      for (const JoinNumbers& numbers : attempt.numbers) {
        attempts_.erase({numbers.hash, attempt.time, leg->sequence});
      }
    }
  }
}

}  // namespace tool
