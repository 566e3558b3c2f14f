#include <algorithm>
#include <array>
#include <map>
#include <numeric>
#include <optional>
#include <set>
#include <vector>

#include "calls/callAnalysis.h"

namespace tool {
namespace {

/// What one participant sends on for another is sent so soon, in microseconds: after questions and queues perhaps, ...
constexpr std::int64_t kLongestHop = std::int64_t{300} * 1000000;
/// ... and once more in the same leg (after a challenge) at once.
constexpr std::int64_t kLongestRepeat = std::int64_t{2} * 1000000;

/// The last messages of one kind that a participant got, of two legs.
struct Received {
  std::optional<std::size_t> last;
  std::optional<std::size_t> lastOfOther;  ///< of another leg than the last one
};

/// Tells which participants are one party that has an address for each of two legs: the one that sent the first request
/// of a leg, and the one that got such a request last before, in the leg that this was joined to, where these legs share
/// no participant.
/// @return a participant of each participant's party
std::vector<std::size_t> partiesOf(const Call& call, const Participants& participants) {
  std::vector<std::size_t> parties(participants.size());
  std::iota(parties.begin(), parties.end(), std::size_t{0});
  std::vector<std::set<std::size_t>> members(call.legs.size());
  std::vector<const CallMessage*> firsts(call.legs.size());
  std::vector<const CallMessage*> befores(call.legs.size());  ///< of the leg that it was joined to
  std::vector<const CallMessage*> lasts(call.legs.size());    ///< requests up to here
  for (const CallMessage& message : call.messages) {
    if (firsts[message.leg] == nullptr) {
      firsts[message.leg] = &message;
      befores[message.leg] = lasts[call.legs[message.leg].joinedTo];
    }
    members[message.leg].insert(participants.indexOf(message.flow.source));
    members[message.leg].insert(participants.indexOf(message.flow.destination));
    if (message.status == 0) lasts[message.leg] = &message;
  }
  for (std::size_t leg = 1; leg < call.legs.size(); ++leg) {
    const CallMessage* const before = befores[leg];
    if (before == nullptr || firsts[leg]->status != 0 || before->method != firsts[leg]->method) continue;
    const std::set<std::size_t>& others = members[call.legs[leg].joinedTo];
    const bool isShared =
        std::ranges::any_of(members[leg], [&](std::size_t member) { return others.contains(member); });
    if (isShared) continue;
    parties[participants.indexOf(firsts[leg]->flow.source)] =
        parties[participants.indexOf(before->flow.destination)];
  }
  return parties;
}

class HopFinder {
 public:
  explicit HopFinder(Call& call)
      : call_(&call),
        participants_(call),
        parties_(partiesOf(call, participants_)),
        sentOn_(call.messages.size()) {}

  void take(std::size_t index);

 private:
  using Key = std::string;
  /// The request that a message was sent on as in a leg.
  struct SentOn {
    std::size_t leg;
    std::uint64_t cseq;
  };

  /// How alike two messages must be, the most alike first.
  enum class Likeness : std::uint8_t { status, role, kind };
  static constexpr std::array kLikenesses = {Likeness::status, Likeness::role, Likeness::kind};

  Key keyOf(const CallMessage& message, std::size_t participant, Likeness likeness) const;
  static Key inRequest(Key key, const CallMessage& message);
  std::optional<std::size_t> findBefore(const CallMessage& after) const;
  bool isUsable(std::size_t before, const CallMessage& after) const;
  void note(std::size_t index);

  const CallMessage& at(std::size_t index) const { return call_->messages[index]; }
  std::size_t partyOf(const Endpoint& endpoint) const { return parties_[participants_.indexOf(endpoint)]; }

  Call* call_;
  Participants participants_;
  std::vector<std::size_t> parties_;  ///< by participant
  std::map<Key, Received> received_;
  std::vector<std::vector<SentOn>> sentOn_;  ///< by the message that came in
};

/// What a message and the one that it is sent on as have in common.
HopFinder::Key HopFinder::keyOf(const CallMessage& message, std::size_t participant,
                                Likeness likeness) const {
  Key key = std::to_string(participant) + " " + message.method;
  const int status = likeness == Likeness::status ? message.status : message.status / 100;
  key.append(" ")
      .append(std::to_string(status))
      .append(" ")
      .append(std::to_string(static_cast<int>(likeness)));
  if (likeness != Likeness::kind) key.append(std::to_string(static_cast<int>(message.body)));
  return key;
}

/// The same request in the same leg, as proxies send it on.
HopFinder::Key HopFinder::inRequest(Key key, const CallMessage& message) {
  return key.append(" ").append(std::to_string(message.leg)).append(" ").append(std::to_string(message.cseq));
}

bool HopFinder::isUsable(std::size_t before, const CallMessage& after) const {
  const CallMessage& message = at(before);
  const auto& sent = sentOn_[before];
  const bool isRepeat = std::ranges::any_of(
      sent, [&](const SentOn& on) { return on.leg == after.leg && on.cseq != after.cseq; });
  if (message.time && after.time) {
    // Messages are in the order of time.
    const std::int64_t most = isRepeat ? kLongestRepeat : kLongestHop;
    if (*after.time > *message.time && *message.time > *after.time - most) return true;
    return *after.time == *message.time;
  }
  return !isRepeat;
}

std::optional<std::size_t> HopFinder::findBefore(const CallMessage& after) const {
  const std::size_t participant = partyOf(after.flow.source);
  for (const Likeness likeness : kLikenesses) {
    // Of another role is only what has no body any more.
    if (likeness == Likeness::kind && after.body != BodyRole::none) break;
    const Key key = keyOf(after, participant, likeness);
    const auto proxied = received_.find(inRequest(key, after));
    if (proxied != received_.end()) {
      const std::size_t before = *proxied->second.last;
      const bool goesBack = partyOf(at(before).flow.source) == partyOf(after.flow.destination);
      if (!goesBack) return before;
    }
    const auto found = received_.find(key);
    if (found == received_.end()) continue;
    const bool isOwnLeg = at(*found->second.last).leg == after.leg;
    const std::optional<std::size_t> before = isOwnLeg ? found->second.lastOfOther : found->second.last;
    if (before && isUsable(*before, after)) return before;
  }
  return std::nullopt;
}

void HopFinder::note(std::size_t index) {
  const CallMessage& message = at(index);
  const std::size_t participant = partyOf(message.flow.destination);
  for (const Likeness likeness : kLikenesses) {
    const Key key = keyOf(message, participant, likeness);
    received_[inRequest(key, message)].last = index;
    Received& received = received_[key];
    if (received.last && at(*received.last).leg != message.leg) received.lastOfOther = received.last;
    received.last = index;
  }
}

void HopFinder::take(std::size_t index) {
  const CallMessage& message = at(index);
  if (message.retransmissionOf) return;
  const std::optional<std::size_t> before = findBefore(message);
  note(index);
  if (!before) return;
  std::vector<SentOn>& sent = sentOn_[*before];
  const bool isDropped = message.body == BodyRole::none;
  const bool wasSent = !sent.empty();
  constexpr std::size_t kMostSent = 16;
  if (sent.size() < kMostSent) sent.push_back({message.leg, message.cseq});
  // A body was not dropped where it was sent on by another message.
  const bool isHop = at(*before).body != BodyRole::none && !(isDropped && wasSent);
  if (isHop) call_->hops.push_back({*before, index});
}

}  // namespace

void findHops(Call& call) {
  HopFinder finder(call);
  for (std::size_t index = 0; index < call.messages.size(); ++index) finder.take(index);
}

}  // namespace tool
