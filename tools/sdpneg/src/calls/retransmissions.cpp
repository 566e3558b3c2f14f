#include <functional>
#include <unordered_set>

#include "calls/callAnalysis.h"
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

/// Compares messages by their index.
class Sameness {
 public:
  Sameness(const Call& call, std::span<const TransactionFacts> facts) : call_(&call), facts_(facts) {}

  /// A hash.
  std::size_t operator()(std::size_t index) const {
    const CallMessage& message = call_->messages[index];
    const std::hash<std::string_view> hash;
    std::size_t sum = hashOf(message.flow);
    for (const std::size_t part :
         {hash(startLineOf(message)), hash(facts_[index].branch), hash(message.toTag),
          static_cast<std::size_t>(message.cseq), message.leg}) {
      sum = sum * 31 + part;
    }
    return sum;
  }
  /// Whether they are equal.
  bool operator()(std::size_t one, std::size_t other) const {
    const CallMessage& a = call_->messages[one];
    const CallMessage& b = call_->messages[other];
    const bool isSame = a.flow == b.flow && a.leg == b.leg && a.cseq == b.cseq && a.method == b.method &&
                        a.toTag == b.toTag && facts_[one].branch == facts_[other].branch &&
                        facts_[one].rseq == facts_[other].rseq && startLineOf(a) == startLineOf(b);
    const bool isOther = isUnreliable(a, facts_[one]) && (a.sdpSize == 0) != (b.sdpSize == 0);
    return isSame && !isOther;
  }

 private:
  const Call* call_;
  std::span<const TransactionFacts> facts_;
};

}  // namespace

void markRetransmissions(Call& call, std::span<const TransactionFacts> facts) {
  const Sameness sameness(call, facts);
  std::unordered_set<std::size_t, Sameness, Sameness> firsts(call.messages.size(), sameness, sameness);
  for (std::size_t index = 0; index < call.messages.size(); ++index) {
    const auto [first, isNew] = firsts.insert(index);
    if (!isNew) call.messages[index].retransmissionOf = *first;
  }
}

}  // namespace tool
