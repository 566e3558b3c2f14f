#include "calls/segments.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <tuple>
#include <utility>

namespace tool {
namespace {

using Neighbour = std::tuple<AddressFamily, std::array<std::uint8_t, 16>, std::uint16_t>;

Neighbour neighbourOf(const Endpoint& endpoint, bool hasPort) {
  const std::uint16_t port = hasPort ? endpoint.port : std::uint16_t{0};
  return {endpoint.address.family, endpoint.address.bytes, port};
}

}  // namespace

Segments::Segments(const Call& call) {
  NumberedKeys<std::tuple<std::size_t, Neighbour, Neighbour>> known;
  ofMessage_.reserve(call.messages.size());
  for (const CallMessage& message : call.messages) {
    const Flow& flow = message.flow;
    const bool hasPorts = flow.source.address == flow.destination.address;
    Neighbour one = neighbourOf(flow.source, hasPorts);
    Neighbour other = neighbourOf(flow.destination, hasPorts);
    if (other < one) std::swap(one, other);
    ofMessage_.push_back(known.add({message.leg, one, other}));
  }
  size_ = known.size();
}

}  // namespace tool
