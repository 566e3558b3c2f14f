#include <algorithm>
#include <optional>

#include "calls/callAnalysis.h"
#include "captures/sipView.h"

namespace tool {
namespace {

/// What became of a call's first leg.
class Outcome {
 public:
  Outcome(const Call& call, std::span<const TransactionFacts> facts) : call_(&call), facts_(facts) {
    for (std::size_t index = 0; index < call.messages.size(); ++index) {
      if (call.messages[index].leg == 0) take(index);
    }
  }

  int result() const { return result_; }
  CallState state() const {
    const bool isAnswered = result_ / 100 == 2 || isMidway_;
    if (isAnswered) return hasBye_ ? CallState::ended : CallState::up;
    if (result_ == 487) return CallState::cancelled;
    if (result_ >= 300) return CallState::failed;
    if (hasCancel_) return CallState::cancelled;
    return hasBye_ ? CallState::ended : CallState::ringing;
  }

 private:
  void take(std::size_t index) {
    const CallMessage& message = call_->messages[index];
    if (message.method == "INVITE" && message.status == 0) takeInvite(index);
    if (message.method == "INVITE" && message.status >= 200) takeFinal(index);
    const bool isMidway = !hasInvite_ && (message.method == "ACK" || message.method == "UPDATE");
    isMidway_ = isMidway_ || (isMidway && message.status == 0 && !message.toTag.empty());
    hasInvite_ = hasInvite_ || message.method == "INVITE";
    hasBye_ = hasBye_ || message.method == "BYE";
    hasCancel_ = hasCancel_ || (message.method == "CANCEL" && message.status == 0);
  }

  /// The first INVITE, and one that the caller sent in its place when it was asked for another.
  void takeInvite(std::size_t index) {
    const CallMessage& message = call_->messages[index];
    if (!first_) {
      isMidway_ = isMidway_ || !message.toTag.empty();
    } else {
      const CallMessage& first = call_->messages[*first_];
      const bool isRetry = asksForAnother(result_) && message.cseq > first.cseq &&
                           message.flow.source.address == first.flow.source.address &&
                           message.fromTag == first.fromTag && message.toTag.empty() == first.toTag.empty();
      if (!isRetry) return;
      result_ = 0;
    }
    first_ = index;
  }

  /// Responses that proxies got are not what the caller got.
  void takeFinal(std::size_t index) {
    const CallMessage& message = call_->messages[index];
    if (!first_) {
      // The INVITE came before the capture.
      result_ = message.status;
      return;
    }
    const bool isOfFirst =
        call_->messages[*first_].cseq == message.cseq && facts_[*first_].branch == facts_[index].branch;
    if (isOfFirst) result_ = message.status;
  }

  const Call* call_;
  std::span<const TransactionFacts> facts_;
  std::optional<std::size_t> first_;
  int result_ = 0;
  bool hasInvite_ = false;
  bool isMidway_ = false;  ///< the capture begins when the call is up
  bool hasBye_ = false;
  bool hasCancel_ = false;
};

void tellTimes(Call& call) {
  for (const CallMessage& message : call.messages) {
    if (!message.time) continue;
    if (!call.start) call.start = message.time;
    call.end = message.time;
  }
}

void tellParties(Call& call) {
  const auto isFirstInvite = [](const CallMessage& message) {
    return message.leg == 0 && message.method == "INVITE" && message.status == 0;
  };
  auto told = std::ranges::find_if(call.messages, isFirstInvite);
  if (told == call.messages.end()) told = call.messages.begin();
  const SipView view(told->text);
  call.from = uriOf(view.value(KnownField::from).value_or(""));
  call.to = uriOf(view.value(KnownField::to).value_or(""));
}

}  // namespace

void tellResult(Call& call, std::span<const TransactionFacts> facts) {
  if (call.messages.empty()) return;
  const Outcome outcome(call, facts);
  call.result = outcome.result();
  call.state = outcome.state();
  tellTimes(call);
  tellParties(call);
}

}  // namespace tool
