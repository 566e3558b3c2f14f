#include "calls/call.h"

#include <algorithm>
#include <array>

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

/// Whether ports tell participants at this address apart.
bool talksToItself(const Call& call, const IpAddress& address) {
  return std::ranges::any_of(call.messages, [&](const CallMessage& message) {
    return message.flow.source.address == address && message.flow.destination.address == address;
  });
}

}  // namespace

Participants::Participants(const Call& call) {
  const auto add = [&](const Endpoint& endpoint) {
    // Most messages come from and go to those that are known.
    const bool isKnown = std::ranges::any_of(ends_, [&](const Endpoint& end) {
      return end.address == endpoint.address && (end.port == 0 || end.port == endpoint.port);
    });
    if (isKnown) return;
    ends_.push_back(endpoint);
    if (!talksToItself(call, endpoint.address)) ends_.back().port = 0;
  };
  for (const CallMessage& message : call.messages) {
    add(message.flow.source);
    add(message.flow.destination);
  }
}

std::size_t Participants::indexOf(const Endpoint& endpoint) const {
  const auto found = std::ranges::find_if(ends_, [&](const Endpoint& end) {
    return end.address == endpoint.address && (end.port == 0 || end.port == endpoint.port);
  });
  return static_cast<std::size_t>(found - ends_.begin());
}

}  // namespace tool
