#include "calls/troubleFinder.h"

#include <algorithm>

#include "calls/troubles.h"

namespace tool {
namespace {

/// Troubles that are told of a call.
constexpr std::size_t kMostTroubles = 1000;
}  // namespace

TroubleFinder::TroubleFinder(Call& call, BodyCache& bodies)
    : call_(call),
      segments_(call),
      bodies_(bodies),
      before_(call.messages.size(), kNowhere),
      after_(call.messages.size(), kNowhere),
      answers_(call.messages.size(), kNowhere),
      offers_(call.messages.size(), kNowhere),
      textNumbers_(call.messages.size(), kNowhere) {
  for (const Hop& hop : call.hops) {
    if (hop.before >= hop.after) continue;
    if (before_[hop.after] == kNowhere) before_[hop.after] = hop.before;
    if (after_[hop.before] == kNowhere) after_[hop.before] = hop.after;
  }
  for (std::size_t i = 0; i < call.exchanges.size(); ++i) {
    const Exchange& exchange = call.exchanges[i];
    offers_[exchange.offer] = i;
    if (exchange.answer && answers_[*exchange.answer] == kNowhere) answers_[*exchange.answer] = i;
  }
}

const Exchange* TroubleFinder::answeredBy(std::size_t message) const {
  return answers_[message] == kNowhere ? nullptr : &call_.exchanges[answers_[message]];
}

const Exchange* TroubleFinder::offeredBy(std::size_t message) const {
  return offers_[message] == kNowhere ? nullptr : &call_.exchanges[offers_[message]];
}

void TroubleFinder::tell(std::string_view rule, const TroublePlace& place, std::string text) {
  const auto known =
      std::ranges::find_if(troubleRules(), [&](const TroubleRule& entry) { return entry.name == rule; });
  tell(rule, known != troubleRules().end() && known->isWarning, place, std::move(text));
}

void TroubleFinder::tell(std::string_view rule, bool isWarning, const TroublePlace& place, std::string text) {
  ++count_;
  if (call_.troubles.size() >= kMostTroubles) {
    hasMore_ = true;
    return;
  }
  call_.troubles.push_back(
      {std::string(rule), place.message, place.section, lineOf(place), isWarning, std::move(text)});
}

bool TroubleFinder::isNews(std::string_view rule, std::size_t first, std::size_t second) {
  return told_.insert({textOf(first), textOf(second), rule}).second;
}

std::size_t TroubleFinder::textOf(std::size_t message) {
  std::size_t& number = textNumbers_[message];
  if (number == kNowhere) number = texts_.add(call_.messages[message].sdp());
  return number;
}

std::size_t TroubleFinder::lineOf(const TroublePlace& place) {
  const CallMessage& message = call_.messages[place.message];
  if (message.sdpSize == 0) return 0;
  if (counted_.first != place.message) {
    const std::string_view front = std::string_view(message.text).substr(0, message.sdpBegin);
    counted_ = {place.message, static_cast<std::size_t>(std::ranges::count(front, '\n'))};
  }
  if (place.line != 0) return counted_.second + place.line;
  if (place.section == 0) return counted_.second + 1;
  const sdp::Document* const body = bodies_.of(place.message);
  if (body == nullptr || place.section > body->sectionCount()) return counted_.second + 1;
  return counted_.second + body->section(place.section).lineNumber();
}

void TroubleFinder::finish() {
  std::ranges::stable_sort(call_.troubles, [](const Trouble& a, const Trouble& b) {
    return a.message != b.message ? a.message < b.message : a.section < b.section;
  });
  if (!hasMore_ && !bodies_.isSpent()) return;
  const std::size_t last = call_.messages.empty() ? 0 : call_.messages.size() - 1;
  call_.troubles.push_back({"not-all-told", last, 0, 0, true,
                            hasMore_ ? "there are more troubles than are told"
                                     : "there is too much to look at; not all bodies were"});
}

bool wasAccepted(const Call& call, const Exchange& exchange) {
  if (!exchange.answer) return false;
  if (exchange.finalStatus != 0) return exchange.finalStatus / 100 == 2;
  return call.messages[*exchange.answer].method == "ACK" || call.messages[*exchange.answer].status / 100 == 2;
}

}  // namespace tool
