#include "calls/openCalls.h"

#include <algorithm>
#include <iterator>
#include <limits>
#include <utility>

namespace tool {
namespace {

/// Legs that a call may have, and dialogs that a leg may have.
constexpr std::size_t kMostLegs = 256;
constexpr std::size_t kMostDialogs = 16;
constexpr std::size_t kMostTag = 256;
/// That a leg has at least, as a rule.
constexpr std::size_t kFewMessages = 8;

/// Microseconds for which calls may be silent: retransmissions end after 32 seconds (RFC 3261 17.1.1.2); INVITEs are
/// refreshed each minute (13.3.1.1); calls without session timers are silent as long as they last.
constexpr std::array<std::int64_t, kProgresses> kMostSilence = {
    std::int64_t{32} * 1000000, std::int64_t{300} * 1000000, std::int64_t{86400} * 1000000};

/// A dialog by its tags, from whichever side.
std::string dialogOf(const CallMessage& message) {
  const std::string_view from = std::string_view(message.fromTag).substr(0, kMostTag);
  const std::string_view to = std::string_view(message.toTag).substr(0, kMostTag);
  return std::string(std::min(from, to)).append("\n").append(std::max(from, to));
}

void addOnce(std::vector<std::string>& dialogs, const std::string& dialog) {
  if (dialogs.size() < kMostDialogs && std::ranges::find(dialogs, dialog) == dialogs.end()) {
    dialogs.push_back(dialog);
  }
}

}  // namespace

void OpenLeg::follow(const CallMessage& message) {
  const bool isInvite = message.method == "INVITE";
  const bool isRequestInDialog = message.status == 0 && !message.toTag.empty();
  const bool isMidway = !hasInvite && (message.method == "ACK" || message.method == "UPDATE");
  hasInvite = hasInvite || isInvite;
  const bool confirms =
      ((isInvite || isMidway) && isRequestInDialog) || (isInvite && message.status / 100 == 2);
  const bool fails = isInvite && message.status >= 300;
  const bool rings = isInvite && !confirms && !fails;
  const bool ends = message.method == "BYE";
  if (!rings && !fails && !confirms && !ends) return;
  const std::string dialog = dialogOf(message);
  if (confirms && std::ranges::find(ended, dialog) == ended.end()) addOnce(confirmed, dialog);
  if (ends) {
    std::erase(confirmed, dialog);
    addOnce(ended, dialog);
  }
  if (!confirmed.empty()) {
    progress = CallProgress::up;
  } else if (rings) {
    progress = CallProgress::ringing;
  } else {
    progress = CallProgress::over;
  }
}

void makeRoot(OpenLeg& leg) {
  OpenLeg* child = &leg;
  OpenLeg* parent = std::exchange(child->parent, nullptr);
  JoinedBy by = std::exchange(child->joinedBy, JoinedBy::first);
  std::string detail = std::exchange(child->joinDetail, {});
  while (parent != nullptr) {
    OpenLeg* const next = std::exchange(parent->parent, child);
    by = std::exchange(parent->joinedBy, by);
    detail = std::exchange(parent->joinDetail, std::move(detail));
    child = parent;
    parent = next;
  }
}

OpenLeg* OpenCalls::find(std::string_view callId) const {
  const auto found = legs_.find(callId);
  return found == legs_.end() ? nullptr : found->second;
}

OpenLeg& OpenCalls::begin(const std::string& callId, std::size_t sequence) {
  std::list<OpenCall>& list = lists_[static_cast<std::size_t>(CallProgress::ringing)];
  OpenCall& call = list.emplace_back();
  call.place = std::prev(list.end());
  call.number = ++begun_;
  numbers_.insert(call.number);
  OpenLeg& leg = *call.legs.emplace_back(std::make_unique<OpenLeg>());
  leg.callId = callId;
  leg.call = &call;
  leg.sequence = sequence;
  legs_[leg.callId] = &leg;
  return leg;
}

void OpenCalls::place(OpenCall& call) {
  CallProgress progress = CallProgress::over;
  for (const auto& leg : call.legs) progress = std::max(progress, leg->progress);
  std::list<OpenCall>& from = listOf(call);
  call.progress = progress;
  std::list<OpenCall>& into = listOf(call);
  into.splice(into.end(), from, call.place);
}

void OpenCalls::add(OpenMessage&& message, std::int64_t now) {
  OpenLeg& leg = *message.leg;
  OpenCall& call = *leg.call;
  leg.follow(message.message);
  const std::size_t size = message.message.text.size() + sizeof(OpenMessage);
  call.bytes += size;
  bytes_ += size;
  call.lastTime = now;
  call.lastSequence = message.sequence;
  if (call.messages.empty()) call.messages.reserve(kFewMessages);
  call.messages.push_back(std::move(message));
  place(call);
}

bool OpenCalls::join(OpenLeg& leg, OpenLeg& other, JoinedBy by, const std::string& detail) {
  if (leg.call == other.call || leg.call->legs.size() + other.call->legs.size() > kMostLegs) return false;
  OpenLeg& later = leg.sequence > other.sequence ? leg : other;
  OpenLeg& earlier = &later == &leg ? other : leg;
  makeRoot(later);
  later.parent = &earlier;
  later.joinedBy = by;
  later.joinDetail = detail;

  // What is less is moved, so that no message is moved often.
  OpenCall& into = leg.call->messages.size() >= other.call->messages.size() ? *leg.call : *other.call;
  OpenCall& from = &into == leg.call ? *other.call : *leg.call;
  for (auto& moved : from.legs) {
    moved->call = &into;
    into.legs.push_back(std::move(moved));
  }
  std::ranges::move(from.messages, std::back_inserter(into.messages));
  into.bytes += from.bytes;
  numbers_.erase(std::max(into.number, from.number));
  into.number = std::min(into.number, from.number);
  into.lastTime = std::max(into.lastTime, from.lastTime);
  into.lastSequence = std::max(into.lastSequence, from.lastSequence);
  listOf(from).erase(from.place);
  place(into);
  return true;
}

OpenCall* OpenCalls::findOver(std::int64_t now, std::int64_t nowOfEnded) {
  for (std::size_t progress = 0; progress < kProgresses; ++progress) {
    if (lists_[progress].empty()) continue;
    OpenCall& call = lists_[progress].front();
    const bool hasEnded = static_cast<CallProgress>(progress) == CallProgress::over;
    if ((hasEnded ? nowOfEnded : now) - call.lastTime > kMostSilence[progress]) return &call;
  }
  return nullptr;
}

OpenCall* OpenCalls::findMostSilent() {
  OpenCall* found = nullptr;
  for (std::list<OpenCall>& list : lists_) {
    if (list.empty()) continue;
    if (found == nullptr || list.front().lastSequence < found->lastSequence) found = &list.front();
  }
  return found;
}

std::vector<OpenCall*> OpenCalls::byNumber() {
  std::vector<OpenCall*> calls;
  calls.reserve(size());
  for (std::list<OpenCall>& list : lists_) {
    for (OpenCall& call : list) calls.push_back(&call);
  }
  std::ranges::sort(calls, {}, &OpenCall::number);
  return calls;
}

std::size_t OpenCalls::lowestNumber() const {
  return numbers_.empty() ? std::numeric_limits<std::size_t>::max() : *numbers_.begin();
}

OpenCall OpenCalls::remove(OpenCall& call) {
  for (const auto& leg : call.legs) legs_.erase(leg->callId);
  numbers_.erase(call.number);
  bytes_ -= call.bytes;
  std::list<OpenCall>& list = listOf(call);
  OpenCall removed = std::move(call);
  list.erase(removed.place);
  return removed;
}

}  // namespace tool
