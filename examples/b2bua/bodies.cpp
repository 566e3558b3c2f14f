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
  if (!before.isSdpPresent()) {
    body.copyOLine(&original);
    return;
  }
  body.copyOLine(&before);
  if (body.compareSdpByBody(&before) != 0) body.sdpIncVersion();
}

bool isUnchanged(const Body& offer, const Body& before) {
  return offer.compareSdpOLine(&before) == 0 && offer.compareSdpByBody(&before) == 0;
}

}  // namespace

void Engine::takeBody(Call& call, Side from, const std::string& body, bool isAnswer, const BodyTaken& then) {
  std::string reason = readBody(call, from, body, isAnswer);
  if (reason.empty()) reason = finishBody(call, from, body, isAnswer);
  then(call, {reason});
}

std::string Engine::readBody(Call& call, Side from, const std::string& body, bool isAnswer) {
  Exchange& exchange = *call.exchange;
  Body& received = exchange.received[from];
  Body& sent = exchange.sent[otherOf(from)];
  std::string reason = takeIn(body, incoming_);
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
  continueSession(sent, exchange.received[from], call.legs[otherOf(from)].sent);
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
  if (!leg.answered || !leg.sent.isSdpPresent()) return false;
  Body updated = leg.sent;
  if (isUnchanged(offer, leg.received)) {
    note(call, "re-offer unchanged, answered from store");
  } else if (!hasRequests(*exchange.policy) && offer.isSdpVersionIncreased(&leg.received) == 1 &&
             onlyCodecsDiffer(offer, leg.received) && updated.sdpUpdateAnswer(&leg.received, &offer) == 0) {
    continueSession(updated, leg.sent, leg.sent);
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
