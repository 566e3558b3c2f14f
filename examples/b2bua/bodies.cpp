// The way of a body from one side to the other.

#include "answerCheck.h"
#include "engine.h"
#include "namedRequests.h"
#include "policyCheck.h"
#include "policySteps.h"

namespace b2bua {

namespace {

/// A party has one session with the engine whatever the other one does: the o-line stays, its version rises by one
/// with every change.
void continueSession(Body& body, const Body& original, const Body& before) {
  const bool isFirst = !before.isSdpPresent();
  const Body& kept = isFirst ? original : before;
  // The copy parses the body once more.
  if (body.compareSdpOLine(&kept) != 0) body.copyOLine(&kept);
  if (!isFirst && body.compareSdpByBody(&before) != 0) body.sdpIncVersion();
}

bool isUnchanged(const Body& offer, const Body& before) {
  return offer.compareSdpOLine(&before) == 0 && offer.compareSdpByBody(&before) == 0;
}

bool hasAnswer(const Leg& leg) { return leg.answered && leg.sent.isSdpPresent(); }

/// One that will be answered from the store says nothing new to the media relay.
bool isKnown(const Call& call, Side from, bool isAnswer) {
  const Leg& leg = call.legs[from];
  return !isAnswer && call.established && hasAnswer(leg) &&
         isUnchanged(call.exchange->received[from], leg.received);
}

}  // namespace

void Engine::takeBody(Call& call, Side from, const std::string& body, bool isAnswer, const BodyTaken& then) {
  Exchange& exchange = *call.exchange;
  BodyRefusal refusal{readBody(call, from, body, isAnswer)};
  // Without a section there is nothing to relay yet.
  const bool toRelay = media_ && documentOf(textOf(exchange.sent[otherOf(from)])).sectionCount() != 0;
  if (!refusal && !toRelay) refusal.reason = finishBody(call, from, body, isAnswer);
  if (refusal || !toRelay || isKnown(call, from, isAnswer)) return then(call, refusal);
  call.relayed = exchange.relayed = true;
  const auto onRelayed = [this, id = call.id, number = exchange.number, from, body, isAnswer, then](
                             const std::string& relayed, BodyRefusal unrelayed) {
    Call* const asked = callWith(id, number);
    if (asked == nullptr) return;
    if (!unrelayed) unrelayed = takeRelayed(*asked, from, relayed);
    if (!unrelayed) unrelayed.reason = finishBody(*asked, from, body, isAnswer);
    then(*asked, unrelayed);
  };
  media_->relay(call, from, isAnswer, textOf(exchange.sent[otherOf(from)]), onRelayed);
}

/// The relay has heard of an offer that came to nothing: it hears again on what both sides agreed, unless there is the
/// next offer by then. What it says is known.
void Engine::restoreMedia(Call& call) {
  if (!call.exchange->relayed || isMediaGone()) return;
  const Side offerer = call.exchange->from;
  const unsigned long aside = call.aside ? call.aside->number : 0;
  const auto answer = [this, id = call.id, offerer, aside](const std::string&, const BodyRefusal& refusal) {
    const auto found = calls_.find(id);
    if (refusal || found == calls_.end()) return;
    if (const Exchange* const next = found->second.exchange.get(); next != nullptr && next->number != aside)
      return;
    const Side answerer = otherOf(offerer);
    media_->relay(found->second, answerer, true, textOf(found->second.legs[answerer].received),
                  [](const std::string&, const BodyRefusal&) {});
  };
  media_->relay(call, offerer, false, textOf(call.legs[offerer].received), answer);
}

/// A body may come too late.
/// @return the call whose exchange still waits for it; null for none
Call* Engine::callWith(const std::string& id, unsigned long exchange) {
  const auto found = calls_.find(id);
  if (found == calls_.end() || !found->second.exchange) return nullptr;
  const Exchange& current = *found->second.exchange;
  return current.number == exchange && !current.cancelled ? &found->second : nullptr;
}

/// What the relay made of a body is from outside, too.
BodyRefusal Engine::takeRelayed(Call& call, Side from, const std::string& relayed) {
  std::string reason = takeIn(relayed, incoming_);
  if (reason.empty()) reason = parse(incoming_, call.exchange->sent[otherOf(from)]);
  if (reason.empty()) return {};
  ++counters_.mediaFailures;
  note(call, "body of the media relay refused", {{"reason", reason}}, LogLevel::warning);
  return {"the media relay cannot take the body", 503};
}

std::string Engine::readBody(Call& call, Side from, const std::string& body, bool isAnswer) {
  Exchange& exchange = *call.exchange;
  Body& received = exchange.received[from];
  Body& sent = exchange.sent[otherOf(from)];
  std::string reason = takeIn(body, incoming_, media_ != nullptr);
  if (reason.empty()) reason = parse(incoming_, received);
  if (!reason.empty()) return reason;
  sent = received;
  return applyBefore(*exchange.policy, from, isAnswer, sent, exchange.changes);
}

std::string Engine::finishBody(Call& call, Side from, const std::string& body, bool isAnswer) {
  Exchange& exchange = *call.exchange;
  Body& sent = exchange.sent[otherOf(from)];
  const Body& offer = exchange.sent[from];
  std::string reason = applyBehind(*exchange.policy, from, isAnswer, sent, exchange.changes);
  if (!reason.empty()) return reason;
  continueSession(sent, exchange.received[from], call.legs[otherOf(from)].last());
  reason = whatIsForbidden(*exchange.policy, textOf(sent),
                           isAnswer && exchange.changes.mLines == MLineChange::madeSecure);
  if (!reason.empty()) return reason;
  if (offer.isSdpPresent()) judge(call, from, offer, body);
  if (options_.show) {
    showBodies("call " + call.id + ": " + (isAnswer ? "answer" : "offer") + " from the " + nameOf(from), body,
               textOf(sent));
  }
  return "";
}

void Engine::judge(const Call& call, Side party, const Body& offer, const std::string& answer) {
  for (const std::string& line : whatIsWrong(textOf(offer), answer))
    note(call, "answer", {{"from", nameOf(party)}, {"finding", line}}, LogLevel::warning);
}

/// The target need not be asked about an offer that says nothing new, or only something new about codecs.
bool Engine::answerFromStore(Call& call, Exchange& exchange) {
  const Leg& leg = call.legs[exchange.from];
  const Body& offer = exchange.received[exchange.from];
  if (!hasAnswer(leg)) return false;
  Body updated = leg.sent;
  if (isUnchanged(offer, leg.received)) {
    note(call, "re-offer unchanged, answered from store");
  } else if (!media_ && !hasRequests(*exchange.policy) && offer.isSdpVersionIncreased(&leg.received) == 1 &&
             onlyCodecsDiffer(offer, leg.received) && updated.sdpUpdateAnswer(&leg.received, &offer) == 0) {
    continueSession(updated, leg.sent, leg.last());
    note(call, "re-offer one version on, stored answer updated");
    if (options_.show) showBodies("call " + call.id + ": stored answer", textOf(leg.sent), textOf(updated));
  } else {
    return false;
  }
  exchange.kind = Kind::local;
  const bool keysSuffice = exchange.changes.mLines == MLineChange::madeSecure;
  const std::string reason = whatIsForbidden(*exchange.policy, textOf(updated), keysSuffice);
  if (!reason.empty()) {
    refuse(call, {reason});
    return true;
  }
  exchange.sent[exchange.from] = updated;
  exchange.sent[otherOf(exchange.from)] = Body();
  answer(call, 200, textOf(updated));
  return true;
}

}  // namespace b2bua
