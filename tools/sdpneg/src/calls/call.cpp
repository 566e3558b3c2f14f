#include "calls/call.h"

#include <algorithm>
#include <array>
#include <set>
#include <tuple>

namespace tool {

std::string_view textOf(JoinedBy by) {
  constexpr std::array<std::string_view, 5> kNames = {"", "join-header", "call-id-header", "origin",
                                                      "time-and-numbers"};
  return kNames[static_cast<std::size_t>(by)];
}

std::string_view textOf(CallState state) {
  constexpr std::array<std::string_view, 5> kNames = {"ringing", "up", "ended", "failed", "cancelled"};
  return kNames[static_cast<std::size_t>(state)];
}

std::size_t Call::retransmissions() const {
  return static_cast<std::size_t>(std::ranges::count_if(
      messages, [](const CallMessage& message) { return message.retransmissionOf.has_value(); }));
}

std::string joinsOf(const Call& call) {
  std::array<bool, 5> isUsed{};
  for (const Leg& leg : call.legs) isUsed[static_cast<std::size_t>(leg.joinedBy)] = true;
  std::string joins;
  for (const JoinedBy by :
       {JoinedBy::joinHeader, JoinedBy::callIdHeader, JoinedBy::origin, JoinedBy::timeAndNumbers}) {
    if (!isUsed[static_cast<std::size_t>(by)]) continue;
    if (!joins.empty()) joins += ", ";
    joins += textOf(by);
  }
  return joins;
}

namespace {

Endpoint withoutPort(const Endpoint& endpoint) { return {endpoint.address, 0}; }

}  // namespace

bool Participants::Order::operator()(const Endpoint& one, const Endpoint& other) const {
  return std::tie(one.address.family, one.address.bytes, one.port) <
         std::tie(other.address.family, other.address.bytes, other.port);
}

Participants::Participants(const Call& call) {
  std::set<Endpoint, Order> talkingToThemselves;
  for (const CallMessage& message : call.messages) {
    const Flow& flow = message.flow;
    if (flow.source.address == flow.destination.address) {
      talkingToThemselves.insert(withoutPort(flow.source));
    }
  }
  haveNoPorts_ = talkingToThemselves.empty();
  const auto add = [&](const Endpoint& endpoint) {
    const bool hasPort = !haveNoPorts_ && talkingToThemselves.contains(withoutPort(endpoint));
    ends_.add(hasPort ? endpoint : withoutPort(endpoint));
  };
  for (const CallMessage& message : call.messages) {
    add(message.flow.source);
    add(message.flow.destination);
  }
}

std::size_t Participants::indexOf(const Endpoint& endpoint) const {
  if (haveNoPorts_) return ends_.find(withoutPort(endpoint));
  const std::size_t found = ends_.find(endpoint);
  return found == ends_.size() ? ends_.find(withoutPort(endpoint)) : found;
}

}  // namespace tool
