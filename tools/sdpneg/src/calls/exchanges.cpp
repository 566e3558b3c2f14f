#include <algorithm>
#include <compare>
#include <map>
#include <optional>
#include <string_view>
#include <tuple>
#include <utility>
#include <vector>

#include "calls/callAnalysis.h"

namespace tool {
namespace {

constexpr std::size_t kNobody = static_cast<std::size_t>(-1);

/// Two parties in a leg.
struct Segment {
  std::size_t leg = 0;
  std::size_t one = 0;
  std::size_t other = 0;

  bool operator<(const Segment& with) const {
    return std::tie(leg, one, other) < std::tie(with.leg, with.one, with.other);
  }
};

/// A leg without parties, which come from 0.
Segment anywhereIn(std::size_t leg) { return {leg, kNobody, kNobody}; }

/// Reads the messages in their order.
class ExchangeFinder {
 public:
  ExchangeFinder(Call& call, std::span<const TransactionFacts> facts)
      : call_(&call), facts_(facts), participants_(call) {}

  void take(std::size_t index);

 private:
  struct Fork {
    std::optional<std::size_t> exchange;
    bool isDone = false;  ///< what follows is neither offer nor answer
  };
  struct Transaction {
    std::optional<std::size_t> offer;  ///< of the request
    std::vector<std::size_t> exchanges;
    int finalStatus = 0;
    std::map<std::string_view, Fork> forks;  ///< by To tag
  };
  /// CSeq, where it goes, method and branch.
  using TransactionKey = std::tuple<std::uint64_t, Segment, std::string_view, std::string_view>;
  /// CSeq, where it goes and To tag.
  using PendingKey = std::tuple<std::uint64_t, Segment, std::string_view>;
  /// An offer of a response that an ACK or a PRACK may answer.
  struct Pending {
    std::size_t exchange = 0;
    bool isAnswered = false;
  };

  void takeRequest(std::size_t index);
  void takeResponse(std::size_t index);
  void takeBodyOf(Transaction& transaction, std::size_t index);
  void takeAnswerOf(Transaction& transaction, Fork& fork, std::size_t index);
  bool takeAcknowledgement(std::size_t index, std::uint64_t cseq);
  void end(Transaction& transaction, int status);
  std::size_t begin(Transaction& transaction, std::size_t offer);
  void setRole(std::size_t index, BodyRole role, std::optional<std::size_t> exchange = std::nullopt);
  bool isFirst(std::size_t offer);

  CallMessage& at(std::size_t index) { return call_->messages[index]; }
  Segment segmentOf(const CallMessage& message) const;
  TransactionKey keyOfTransaction(std::size_t index) const;

  Call* call_;
  std::span<const TransactionFacts> facts_;
  Participants participants_;
  std::map<TransactionKey, Transaction> transactions_;
  std::map<PendingKey, Pending> pending_;  ///< by segment, and by dialog alone
  std::map<Segment, std::size_t> firsts_;  ///< exchanges
};

/// The two parties between which a message goes, in one leg.
Segment ExchangeFinder::segmentOf(const CallMessage& message) const {
  const std::size_t source = participants_.indexOf(message.flow.source);
  const std::size_t destination = participants_.indexOf(message.flow.destination);
  return {message.leg, std::min(source, destination), std::max(source, destination)};
}

ExchangeFinder::TransactionKey ExchangeFinder::keyOfTransaction(std::size_t index) const {
  const CallMessage& message = call_->messages[index];
  // Branches tell segments apart as well.
  const std::string_view branch = facts_[index].branch;
  return {message.cseq, branch.empty() ? segmentOf(message) : anywhereIn(message.leg), message.method,
          branch};
}

void ExchangeFinder::setRole(std::size_t index, BodyRole role, std::optional<std::size_t> exchange) {
  at(index).body = role;
  at(index).exchange = exchange;
}

/// A request of a dialog is not the first offer, though it may be the first one that was captured.
bool ExchangeFinder::isFirst(std::size_t offer) {
  const CallMessage& message = at(offer);
  const bool inDialog = message.status == 0 && (message.method == "INVITE" || message.method == "UPDATE") &&
                        !message.toTag.empty();
  const auto [first, isNew] = firsts_.try_emplace(segmentOf(message), call_->exchanges.size());
  if (isNew) return !inDialog;
  const Exchange& known = call_->exchanges[first->second];
  if (known.offer == offer) return known.isFirst;
  // The same offer again, with credentials.
  if (known.finalStatus != 401 && known.finalStatus != 407) return false;
  first->second = call_->exchanges.size();
  return known.isFirst;
}

std::size_t ExchangeFinder::begin(Transaction& transaction, std::size_t offer) {
  const std::size_t index = call_->exchanges.size();
  Exchange exchange;
  exchange.offer = offer;
  exchange.finalStatus = transaction.finalStatus;
  exchange.isFirst = isFirst(offer);
  call_->exchanges.push_back(exchange);
  transaction.exchanges.push_back(index);
  return index;
}

void ExchangeFinder::end(Transaction& transaction, int status) {
  if (transaction.finalStatus != 0) return;
  transaction.finalStatus = status;
  for (const std::size_t exchange : transaction.exchanges) call_->exchanges[exchange].finalStatus = status;
}

void ExchangeFinder::take(std::size_t index) {
  CallMessage& message = at(index);
  if (message.retransmissionOf) {
    if (message.sdpSize == 0) return;
    const CallMessage& original = at(*message.retransmissionOf);
    return setRole(index, original.body == BodyRole::none ? BodyRole::sdp : original.body, original.exchange);
  }
  if (message.sdpSize != 0) setRole(index, BodyRole::sdp);
  if (message.status == 0) {
    takeRequest(index);
  } else {
    takeResponse(index);
  }
}

void ExchangeFinder::takeRequest(std::size_t index) {
  const CallMessage& message = at(index);
  const bool hasBody = message.sdpSize != 0;
  if (message.method == "ACK") {
    if (hasBody) takeAcknowledgement(index, message.cseq);
    return;
  }
  const bool isPrack = message.method == "PRACK";
  if (!isPrack && message.method != "INVITE" && message.method != "UPDATE") return;
  Transaction& transaction = transactions_[keyOfTransaction(index)] = {};
  if (!hasBody || (isPrack && takeAcknowledgement(index, facts_[index].ackCseq))) return;
  transaction.offer = begin(transaction, index);
  setRole(index, BodyRole::offer, transaction.offer);
}

/// Takes an answer to an offer of a response.
/// @return whether there is one
bool ExchangeFinder::takeAcknowledgement(std::size_t index, std::uint64_t cseq) {
  const CallMessage& message = at(index);
  auto found = pending_.find({cseq, segmentOf(message), message.toTag});
  // An ACK may go another way than the INVITE (RFC 3261 12.2.1.1).
  if (found == pending_.end()) found = pending_.find({cseq, anywhereIn(message.leg), message.toTag});
  if (found == pending_.end() || found->second.isAnswered) return false;
  Exchange& exchange = call_->exchanges[found->second.exchange];
  found->second.isAnswered = true;
  if (exchange.answer) return false;
  exchange.answer = index;
  setRole(index, BodyRole::answer, found->second.exchange);
  return true;
}

void ExchangeFinder::takeResponse(std::size_t index) {
  const CallMessage& message = at(index);
  const auto found = transactions_.find(keyOfTransaction(index));
  if (found == transactions_.end()) return;
  if (message.sdpSize != 0) takeBodyOf(found->second, index);
  if (message.status >= 200) end(found->second, message.status);
}

void ExchangeFinder::takeBodyOf(Transaction& transaction, std::size_t index) {
  const CallMessage& message = at(index);
  const bool isInvite = message.method == "INVITE";
  const bool isFinal = message.status >= 200;
  if (message.status >= 300 || (!isFinal && !isInvite)) return;
  Fork& fork = transaction.forks[message.toTag];
  if (fork.isDone) return;
  if (transaction.offer) return takeAnswerOf(transaction, fork, index);
  if (!isInvite || (!isFinal && facts_[index].rseq == 0)) return;
  fork.isDone = true;
  fork.exchange = begin(transaction, index);
  setRole(index, BodyRole::offer, fork.exchange);
  pending_[{message.cseq, segmentOf(message), message.toTag}] = {*fork.exchange, false};
  pending_[{message.cseq, anywhereIn(message.leg), message.toTag}] = {*fork.exchange, false};
}

/// The answer of the final or of a reliable response is the one; that of an unreliable one is the same in advance
/// (RFC 6337 2.1).
void ExchangeFinder::takeAnswerOf(Transaction& transaction, Fork& fork, std::size_t index) {
  if (!fork.exchange) {
    const bool isTaken = call_->exchanges[*transaction.offer].answer.has_value();
    const std::size_t offer = call_->exchanges[*transaction.offer].offer;
    fork.exchange = isTaken ? begin(transaction, offer) : *transaction.offer;
  }
  fork.isDone = at(index).status >= 200 || facts_[index].rseq != 0;
  call_->exchanges[*fork.exchange].answer = index;
  setRole(index, BodyRole::answer, fork.exchange);
}

}  // namespace

void findExchanges(Call& call, std::span<const TransactionFacts> facts) {
  ExchangeFinder finder(call, facts);
  for (std::size_t index = 0; index < call.messages.size(); ++index) finder.take(index);
}

}  // namespace tool
