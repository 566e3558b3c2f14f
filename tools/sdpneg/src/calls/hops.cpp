#include <algorithm>
#include <array>
#include <numeric>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include "calls/callAnalysis.h"
#include "calls/callKeys.h"

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

/// The participants between which a message goes.
struct Ends {
  std::size_t source;
  std::size_t destination;
};

/// Those of each message.
std::vector<Ends> endsOf(const Call& call, const Participants& participants) {
  std::vector<Ends> ends;
  ends.reserve(call.messages.size());
  for (const CallMessage& message : call.messages)
    ends.push_back(
        {participants.indexOf(message.flow.source), participants.indexOf(message.flow.destination)});
  return ends;
}

/// Tells which participants are one party that has an address for each of two legs: the one that sent the first request
/// of a leg, and the one that got such a request last before, in the leg that this was joined to, where these legs share
/// no participant.
/// @return a participant of each participant's party
std::vector<std::size_t> partiesOf(const Call& call, const Participants& participants,
                                   const std::vector<Ends>& ends) {
  std::vector<std::size_t> parties(participants.size());
  std::iota(parties.begin(), parties.end(), std::size_t{0});
  if (call.legs.size() == 1) return parties;
  std::vector<NumberedKeys<std::size_t>> members(call.legs.size());
  std::vector<const CallMessage*> firsts(call.legs.size());
  std::vector<const CallMessage*> befores(call.legs.size());  ///< of the leg that it was joined to
  std::vector<const CallMessage*> lasts(call.legs.size());    ///< requests up to here
  for (std::size_t index = 0; index < call.messages.size(); ++index) {
    const CallMessage& message = call.messages[index];
    if (firsts[message.leg] == nullptr) {
      firsts[message.leg] = &message;
      befores[message.leg] = lasts[call.legs[message.leg].joinedTo];
    }
    members[message.leg].add(ends[index].source);
    members[message.leg].add(ends[index].destination);
    if (message.status == 0) lasts[message.leg] = &message;
  }
  for (std::size_t leg = 1; leg < call.legs.size(); ++leg) {
    const CallMessage* const before = befores[leg];
    if (before == nullptr || firsts[leg]->status != 0 || before->method != firsts[leg]->method) continue;
    const NumberedKeys<std::size_t>& others = members[call.legs[leg].joinedTo];
    const bool isShared = std::ranges::any_of(
        members[leg].keys(), [&](std::size_t member) { return others.find(member) != others.size(); });
    if (isShared) continue;
    parties[participants.indexOf(firsts[leg]->flow.source)] =
        parties[participants.indexOf(before->flow.destination)];
  }
  return parties;
}

/// The parties between which each message goes.
std::vector<Ends> partyEndsOf(const Call& call) {
  const Participants participants(call);
  std::vector<Ends> ends = endsOf(call, participants);
  const std::vector<std::size_t> parties = partiesOf(call, participants, ends);
  for (Ends& each : ends) each = {parties[each.source], parties[each.destination]};
  return ends;
}

/// Whether all messages of a leg go from one of two to the other: nobody sends anything on.
bool isBetweenTwo(const Call& call, const std::vector<Ends>& ends) {
  if (call.legs.size() != 1 || ends.empty()) return false;
  const Ends first = ends.front();
  return first.source != first.destination && std::ranges::all_of(ends, [&](const Ends& each) {
           return (each.source == first.source && each.destination == first.destination) ||
                  (each.source == first.destination && each.destination == first.source);
         });
}

class HopFinder {
 public:
  /// @param ends the parties between which each message goes
  HopFinder(Call& call, std::vector<Ends> ends)
      : call_(&call),
        ends_(std::move(ends)),
        requests_(call.messages.size() / 4),
        kinds_(kKeysOfMessage * call.messages.size()),
        sentOn_(call.messages.size()) {
    received_.reserve(kKeysOfMessage * call.messages.size());
  }

  void take(std::size_t index);

 private:
  using Key = WordKeys::Key;
  /// The request that a message was sent on as in a leg.
  struct SentOn {
    std::size_t leg;
    std::uint64_t cseq;
  };

  /// How alike two messages must be, the most alike first.
  enum class Likeness : std::uint8_t { status, role, kind };
  static constexpr std::array kLikenesses = {Likeness::status, Likeness::role, Likeness::kind};
  static constexpr std::size_t kKeysOfMessage = 2 * kLikenesses.size();

  Key keyOf(const CallMessage& message, std::size_t party, Likeness likeness) const;
  static Key inRequest(Key key, std::size_t request) {
    key.second |= std::uint64_t{request + 1} << 32U;
    return key;
  }
  Received* find(const Key& key) {
    const std::size_t number = kinds_.find(key);
    return number == kinds_.size() ? nullptr : &received_[number];
  }
  Received& receivedAt(const Key& key) {
    const std::size_t number = kinds_.add(key);
    if (number == received_.size()) received_.emplace_back();
    return received_[number];
  }
  std::optional<std::size_t> findBefore(std::size_t index);
  bool isUsable(std::size_t before, const CallMessage& after) const;
  void note(std::size_t index);

  const CallMessage& at(std::size_t index) const { return call_->messages[index]; }

  Call* call_;
  std::vector<Ends> ends_;  ///< by message
  NumberedKeys<std::string_view> methods_;
  WordKeys requests_;  ///< by leg and CSeq
  WordKeys kinds_;
  std::vector<Received> received_;           ///< by kind
  std::size_t method_ = 0;                   ///< of the message that is looked at
  std::size_t request_ = 0;                  ///< its request
  std::vector<std::vector<SentOn>> sentOn_;  ///< by the message that came in
};

/// What a message and the one that it is sent on as have in common.
HopFinder::Key HopFinder::keyOf(const CallMessage& message, std::size_t party, Likeness likeness) const {
  const int status = likeness == Likeness::status ? message.status : message.status / 100;
  const std::uint64_t role = likeness == Likeness::kind ? 0 : static_cast<std::uint64_t>(message.body) + 1;
  return {std::uint64_t{party} << 32U | method_,
          static_cast<std::uint64_t>(status) << 8U | role << 4U | static_cast<std::uint64_t>(likeness)};
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

std::optional<std::size_t> HopFinder::findBefore(std::size_t index) {
  const CallMessage& after = at(index);
  for (const Likeness likeness : kLikenesses) {
    // Of another role is only what has no body any more.
    if (likeness == Likeness::kind && after.body != BodyRole::none) break;
    const Key key = keyOf(after, ends_[index].source, likeness);
    // The same request in the same leg, as proxies send it on.
    if (const Received* const proxied = find(inRequest(key, request_)); proxied != nullptr) {
      const std::size_t before = *proxied->last;
      const bool goesBack = ends_[before].source == ends_[index].destination;
      if (!goesBack) return before;
    }
    const Received* const found = find(key);
    if (found == nullptr) continue;
    const bool isOwnLeg = at(*found->last).leg == after.leg;
    const std::optional<std::size_t> before = isOwnLeg ? found->lastOfOther : found->last;
    if (before && isUsable(*before, after)) return before;
  }
  return std::nullopt;
}

void HopFinder::note(std::size_t index) {
  const CallMessage& message = at(index);
  for (const Likeness likeness : kLikenesses) {
    const Key key = keyOf(message, ends_[index].destination, likeness);
    receivedAt(inRequest(key, request_)).last = index;
    Received& received = receivedAt(key);
    if (received.last && at(*received.last).leg != message.leg) received.lastOfOther = received.last;
    received.last = index;
  }
}

void HopFinder::take(std::size_t index) {
  const CallMessage& message = at(index);
  if (message.retransmissionOf) return;
  method_ = methods_.add(message.method);
  request_ = requests_.add({message.leg, message.cseq});
  const std::optional<std::size_t> before = findBefore(index);
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
  std::vector<Ends> ends = partyEndsOf(call);
  if (isBetweenTwo(call, ends)) return;
  HopFinder finder(call, std::move(ends));
  for (std::size_t index = 0; index < call.messages.size(); ++index) finder.take(index);
}

}  // namespace tool
