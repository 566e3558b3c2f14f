#include "calls/callTable.h"

#include <algorithm>
#include <iterator>
#include <limits>
#include <optional>
#include <utility>

#include "calls/callAnalysis.h"
#include "calls/callKeys.h"
#include "calls/legJoiner.h"
#include "calls/messageFacts.h"
#include "calls/openCalls.h"
#include "captures/sipView.h"

namespace tool {
namespace {

/// Whether a method makes a call of a Call-ID by which there is none.
bool beginsCall(std::string_view method) {
  constexpr std::string_view kMethods[] = {"INVITE", "ACK", "BYE", "CANCEL", "PRACK", "UPDATE"};
  return std::ranges::find(kMethods, method) != std::end(kMethods);
}

/// Whether a method is of no call, whatever its Call-ID.
bool isOutside(std::string_view method) { return method == "REGISTER" || method == "PUBLISH"; }

/// Times far from each other can be subtracted without care.
CaptureTime usableTime(CaptureTime time) {
  constexpr std::int64_t kMost = std::numeric_limits<std::int64_t>::max() / 4;
  return time && *time >= 0 && *time <= kMost ? time : std::nullopt;
}

/// Longer than any call is silent, in microseconds.
constexpr std::int64_t kFarAhead = std::int64_t{7} * 86400 * 1000000;

/// The messages in the order of their times. Those without one stay behind the one that they came after.
std::vector<OpenMessage*> inOrder(std::vector<OpenMessage>& messages) {
  struct Place {
    std::int64_t time;
    OpenMessage* message;
  };
  std::vector<Place> places;
  places.reserve(messages.size());
  for (OpenMessage& message : messages) places.push_back({0, &message});
  const auto sequenceOf = [](const Place& place) { return place.message->sequence; };
  if (!std::ranges::is_sorted(places, {}, sequenceOf)) std::ranges::sort(places, {}, sequenceOf);
  std::int64_t time = 0;
  for (Place& place : places) place.time = time = place.message->message.time.value_or(time);
  if (!std::ranges::is_sorted(places, {}, &Place::time)) std::ranges::stable_sort(places, {}, &Place::time);
  std::vector<OpenMessage*> order;
  order.reserve(messages.size());
  for (const Place& place : places) order.push_back(place.message);
  return order;
}

/// The legs of a call in the order in which they begin, with the joins that lead from the first one to them.
void takeLegs(const std::vector<OpenMessage*>& messages, Call& call) {
  NumberedKeys<OpenLeg*> legs;
  for (OpenMessage* const message : messages) message->message.leg = legs.add(message->leg);
  makeRoot(*legs[0]);
  call.legs.reserve(legs.size());
  for (OpenLeg* const openLeg : legs.keys()) {
    Leg& leg = call.legs.emplace_back();
    leg.joinedTo = openLeg->parent == nullptr ? 0 : legs.find(openLeg->parent);
    leg.callId = std::move(openLeg->callId);
    leg.joinedBy = openLeg->joinedBy;
    leg.joinDetail = std::move(openLeg->joinDetail);
  }
}

/// Makes a call of an open one.
Call closed(OpenCall&& open) {
  const std::vector<OpenMessage*> order = inOrder(open.messages);
  Call call;
  call.number = open.number;
  takeLegs(order, call);
  std::vector<TransactionFacts> facts;
  facts.reserve(open.messages.size());
  call.messages.reserve(open.messages.size());
  for (OpenMessage* const message : order) {
    call.messages.push_back(std::move(message->message));
    facts.push_back(std::move(message->facts));
  }
  markRetransmissions(call, facts);
  findExchanges(call, facts);
  findHops(call);
  tellResult(call, facts);
  return call;
}

}  // namespace

void ReadMessage::read(const CapturedMessage& captured) {
  message = captured;
  view.read(message.text);
  facts = factsOf(view);
}

ClosedCall::ClosedCall(std::unique_ptr<OpenCall> open, bool isGivenUp)
    : open_(std::move(open)), isGivenUp_(isGivenUp) {}

ClosedCall::ClosedCall(ClosedCall&& other) noexcept = default;
ClosedCall& ClosedCall::operator=(ClosedCall&& other) noexcept = default;
ClosedCall::~ClosedCall() = default;

std::size_t ClosedCall::bytes() const { return open_->bytes; }

Call ClosedCall::analysed() {
  Call call = closed(std::move(*open_));
  call.isGivenUp = isGivenUp_;
  open_.reset();
  return call;
}

class CallTable::Impl {
 public:
  Impl(CallOptions options, ClosedCallSink sink)
      : options_(std::move(options)), sink_(std::move(sink)), joiner_(calls_, options_.joinHeaders) {}

  void take(const CapturedMessage& message);
  void take(ReadMessage& message);
  void passTime(std::int64_t elapsed, std::int64_t nowOfEnded);
  void finish();

  std::size_t lowestOpen() const { return calls_.lowestNumber(); }
  std::size_t messages() const { return messages_; }
  std::size_t otherMessages() const { return otherMessages_; }
  std::size_t openCalls() const { return calls_.size(); }

 private:
  /// A message whose time is far ahead of all others. Alone it does not end all calls, so the next one is awaited.
  struct Ahead {
    CapturedMessage message;
    std::string text;
  };
  void takeAhead(bool isTimeToGoOn);
  void takeInTurn(ReadMessage& message);
  void keep(ReadMessage& read, OpenLeg* leg);
  void giveAwayOver(std::int64_t nowOfEnded = 0);
  void giveAwayTooMany();
  void giveAway(OpenCall& open, bool isGivenUp);
  void close(OpenCall& open, bool isGivenUp);

  CallOptions options_;
  ClosedCallSink sink_;
  OpenCalls calls_;
  LegJoiner joiner_;
  ReadMessage read_;
  std::int64_t now_ = 0;
  std::optional<Ahead> ahead_;
  std::size_t messages_ = 0;
  std::size_t otherMessages_ = 0;
};

void CallTable::Impl::take(const CapturedMessage& message) {
  read_.read(message);
  take(read_);
}

void CallTable::Impl::take(ReadMessage& read) {
  const CapturedMessage& message = read.message;
  const std::int64_t time = usableTime(message.time).value_or(0);
  const bool isFarAhead = now_ != 0 && time - now_ > kFarAhead;
  if (isFarAhead && !ahead_) {
    ahead_.emplace(Ahead{message, std::string(message.text)});
    return;
  }
  if (ahead_) takeAhead(isFarAhead);
  now_ = std::max(now_, time);
  takeInTurn(read);
}

void CallTable::Impl::takeAhead(bool isTimeToGoOn) {
  Ahead ahead = *std::exchange(ahead_, std::nullopt);
  ahead.message.text = ahead.text;
  if (isTimeToGoOn) now_ = *ahead.message.time;
  ReadMessage read;
  read.read(ahead.message);
  takeInTurn(read);
}

void CallTable::Impl::takeInTurn(ReadMessage& read) {
  ++messages_;
  giveAwayOver();
  const std::optional<MessageFacts>& facts = read.facts;
  OpenLeg* const leg = facts && !isOutside(facts->method) ? calls_.find(facts->callId) : nullptr;
  const bool isOfCall = leg != nullptr || (facts && beginsCall(facts->method));
  if (!isOfCall) {
    ++otherMessages_;
    return;
  }
  keep(read, leg);
  giveAwayTooMany();
}

void CallTable::Impl::keep(ReadMessage& read, OpenLeg* leg) {
  const CapturedMessage& captured = read.message;
  MessageFacts& facts = *read.facts;
  OpenMessage open;
  open.sequence = messages_;
  open.leg = leg != nullptr ? leg : &calls_.begin(facts.callId, open.sequence);
  CallMessage& message = open.message;
  message.number = captured.number;
  message.time = usableTime(captured.time);
  message.transport = captured.transport;
  message.flow = captured.flow;
  message.isCut = captured.isCut;
  message.text = captured.text;
  if (const auto sdp = read.view.sdp(); sdp && !sdp->empty()) {
    message.sdpBegin = static_cast<std::size_t>(sdp->data() - captured.text.data());
    message.sdpSize = sdp->size();
  }
  message.method = std::move(facts.method);
  message.status = facts.status;
  message.cseq = facts.cseq;
  message.fromTag = std::move(facts.fromTag);
  message.toTag = std::move(facts.toTag);
  open.facts = std::move(facts.transaction);
  joiner_.look(*open.leg, read.view, message, open.sequence);
  OpenCall& call = *open.leg->call;
  calls_.add(std::move(open), now_);
  if (call.bytes > options_.mostCallBytes) close(call, true);
}

void CallTable::Impl::giveAwayOver(std::int64_t nowOfEnded) {
  while (OpenCall* const call = calls_.findOver(now_, std::max(now_, nowOfEnded))) giveAway(*call, false);
}

void CallTable::Impl::giveAwayTooMany() {
  while (calls_.size() > options_.mostOpenCalls || calls_.bytes() > options_.mostOpenBytes) {
    giveAway(*calls_.findMostSilent(), true);
  }
}

void CallTable::Impl::giveAway(OpenCall& open, bool isGivenUp) {
  // What joins now may have to wait with the other call.
  const std::size_t calls = calls_.size();
  joiner_.compareAll(open);
  if (calls_.size() == calls) close(open, isGivenUp);
}

void CallTable::Impl::close(OpenCall& open, bool isGivenUp) {
  joiner_.forget(open);
  sink_({std::make_unique<OpenCall>(calls_.remove(open)), isGivenUp});
}

void CallTable::Impl::passTime(std::int64_t elapsed, std::int64_t nowOfEnded) {
  if (messages_ == 0 || !usableTime(elapsed)) return;
  now_ = usableTime(now_ + elapsed).value_or(now_);
  giveAwayOver(usableTime(nowOfEnded).value_or(0));
}

void CallTable::Impl::finish() {
  if (ahead_) takeAhead(false);
  std::vector<OpenLeg*> legs;
  for (OpenCall* const open : calls_.byNumber()) {
    for (const auto& leg : open->legs) legs.push_back(leg.get());
  }
  for (OpenLeg* const leg : legs) joiner_.compare(*leg);
  for (OpenCall* const open : calls_.byNumber()) close(*open, false);
}

CallTable::CallTable(CallOptions options, CallSink sink)
    : CallTable(std::move(options), ClosedCallSink([this, sink = std::move(sink)](ClosedCall&& closed) {
                  Call call = closed.analysed();
                  retransmissions_ += call.retransmissions();
                  sink(std::move(call));
                })) {}

CallTable::CallTable(CallOptions options, ClosedCallSink sink)
    : impl_(std::make_unique<Impl>(std::move(options), std::move(sink))) {}

CallTable::~CallTable() = default;

void CallTable::take(const CapturedMessage& message) { impl_->take(message); }

void CallTable::take(ReadMessage& message) { impl_->take(message); }

void CallTable::passTime(std::int64_t elapsed, std::int64_t nowOfEnded) {
  impl_->passTime(elapsed, nowOfEnded);
}

void CallTable::finish() { impl_->finish(); }

std::size_t CallTable::messages() const { return impl_->messages(); }

std::size_t CallTable::retransmissions() const { return retransmissions_; }

std::size_t CallTable::otherMessages() const { return impl_->otherMessages(); }

std::size_t CallTable::openCalls() const { return impl_->openCalls(); }

std::size_t CallTable::lowestOpen() const { return impl_->lowestOpen(); }

}  // namespace tool
