#include <set>
#include <string_view>
#include <tuple>
#include <vector>

#include "calls/callAnalysis.h"
#include "calls/callKeys.h"
#include "text/lines.h"

namespace tool {
namespace {

std::string_view startLineOf(const CallMessage& message) {
  return sdpneg::content(message.text, sdpneg::lineAt(message.text, 0));
}

/// Whether a response is one of several provisional ones that are told apart by their bodies: they are not sent again
/// unless they are reliable (RFC 3261 13.3.1.1, RFC 3262 3).
bool isUnreliable(const CallMessage& message, const TransactionFacts& facts) {
  return message.status / 100 == 1 && facts.rseq == 0;
}

/// What messages that repeat each other have in common. The order has no meaning.
auto identityOf(const CallMessage& message, const TransactionFacts& facts) {
  const Flow& flow = message.flow;
  const bool hasBody = isUnreliable(message, facts) && message.sdpSize != 0;
  const auto isOf = [](const IpAddress& address) { return std::tie(address.family, address.bytes); };
  return std::tuple(message.cseq, facts.rseq, message.leg, hasBody, startLineOf(message),
                    std::string_view(message.method), std::string_view(facts.branch),
                    std::string_view(message.toTag), isOf(flow.source.address), flow.source.port,
                    isOf(flow.destination.address), flow.destination.port);
}

/// The same for messages that repeat each other, and for few others.
WordKeys::Key roughIdentityOf(const CallMessage& message) {
  const Flow& flow = message.flow;
  const std::uint64_t numbers = std::uint64_t{message.leg} << 32U |
                                static_cast<std::uint64_t>(message.status) << 16U |
                                std::uint64_t{message.method.size()} << 8U | message.toTag.size();
  return {hashOf(flow) ^ message.cseq, numbers};
}

}  // namespace

void markRetransmissions(Call& call, std::span<const TransactionFacts> facts) {
  const auto identity = [&](std::size_t index) { return identityOf(call.messages[index], facts[index]); };
  const auto precedes = [&](std::size_t one, std::size_t other) { return identity(one) < identity(other); };
  // Most are told apart by numbers alone. Of those that are not, each first one is in one of these.
  WordKeys keys(call.messages.size());
  std::vector<std::size_t> firstOfKey;
  std::set<std::size_t, decltype(precedes)> firsts(precedes);
  for (std::size_t index = 0; index < call.messages.size(); ++index) {
    CallMessage& message = call.messages[index];
    const std::size_t key = keys.add(roughIdentityOf(message));
    if (key == firstOfKey.size()) {
      firstOfKey.push_back(index);
    } else if (identity(firstOfKey[key]) == identity(index)) {
      message.retransmissionOf = firstOfKey[key];
    } else if (const auto [first, isNew] = firsts.insert(index); !isNew) {
      message.retransmissionOf = *first;
    }
  }
}

}  // namespace tool
