// What happens to the bodies between an INVITE and its ACK.

#include <memory>

#include "bodyDiff.h"
#include "engine.h"

namespace b2bua {

namespace {

const char* nameOf(Side side) { return side == kCaller ? "caller" : "target"; }

std::string warningOf(const std::string& agent, const std::string& reason) {
  return "Warning: 399 " + agent + " \"" + reason + "\"\r\n";
}

/// A party has one session with the engine whatever the other one does: the o-line stays, its version rises by one
/// with every change.
void continueSession(cSdpNegotiator& body, const cSdpNegotiator& original, const cSdpNegotiator& before) {
  if (!before.isSdpPresent()) {
    body.copyOLine(&original);
    return;
  }
  body.copyOLine(&before);
  if (body.compareSdpByBody(&before) != 0) body.sdpIncVersion();
}

bool isUnchanged(const cSdpNegotiator& offer, const cSdpNegotiator& before) {
  return offer.compareSdpOLine(&before) == 0 && offer.compareSdpByBody(&before) == 0;
}

}  // namespace

std::string Engine::takeBody(Call& call, Side from, const std::string& body, bool isAnswer) {
  Exchange& exchange = *call.exchange;
  cSdpNegotiator& received = exchange.received[from];
  cSdpNegotiator& sent = exchange.sent[otherOf(from)];
  if (body.find('\0') != std::string::npos) return "NUL in the body";
  if (received.sdpParse(body.c_str(), SDP_TYPE_UNKNOWN) != 0) {
    return log_.reasonOf([&] { received.sdpParse(body.c_str(), SDP_TYPE_UNKNOWN); });
  }
  sent = received;
  std::string reason = isAnswer ? applyToAnswer(policy_, sent, exchange.changes)
                                : applyToOffer(policy_, sent, exchange.changes);
  if (!reason.empty()) return reason;
  continueSession(sent, received, call.legs[otherOf(from)].sent);
  if (options_.show) {
    showBodies("call " + call.id + ": " + (isAnswer ? "answer" : "offer") + " from the " + nameOf(from), body,
               textOf(sent));
  }
  return "";
}

/// An INVITE that came, the first one of its call included.
void Engine::onInvite(Call& call, Side side, const SipMessage& invite, const std::string& key) {
  if (call.exchange) return transactions_.respond(key, {.status = 491});
  if (!invite.contact.empty()) call.legs[side].contact = invite.contact;
  Exchange& exchange = call.exchange.emplace();
  exchange.from = side;
  exchange.key = key;
  exchange.cseq = invite.cseq;
  exchange.first = !call.established;
  invites_[key] = call.id;
  transactions_.respond(key, {.status = 100});
  if (!exchange.first) ++counters_.reoffers;
  if (invite.body.empty()) {
    exchange.kind = exchange.first ? Kind::dummy : Kind::late;
    return relayInvite(call, false);
  }
  if (invite.contentType != "application/sdp") {
    note(call, "body refused: it is " + invite.contentType);
    return fail(call, {.status = 415, .headers = "Accept: application/sdp\r\n"});
  }
  const std::string reason = takeBody(call, side, invite.body, false);
  if (!reason.empty()) return refuse(call, reason);
  if (!exchange.first && answerFromStore(call, exchange)) return;
  relayInvite(call, true);
}

/// The target need not be asked about an offer that says nothing new, or only something new about codecs.
bool Engine::answerFromStore(Call& call, Exchange& exchange) {
  const Leg& leg = call.legs[exchange.from];
  const cSdpNegotiator& offer = exchange.received[exchange.from];
  if (!leg.answered || !leg.sent.isSdpPresent()) return false;
  cSdpNegotiator updated = leg.sent;
  if (isUnchanged(offer, leg.received)) {
    note(call, "re-offer unchanged, answered from store");
  } else if (offer.isSdpVersionIncreased(&leg.received) == 1 && onlyCodecsDiffer(offer, leg.received) &&
             updated.sdpUpdateAnswer(&leg.received, &offer) == 0) {
    continueSession(updated, leg.sent, leg.sent);
    note(call, "re-offer one version on, stored answer updated");
    if (options_.show) showBodies("call " + call.id + ": stored answer", textOf(leg.sent), textOf(updated));
  } else {
    return false;
  }
  exchange.kind = Kind::local;
  exchange.sent[exchange.from] = updated;
  exchange.sent[otherOf(exchange.from)].sdpParse("", SDP_TYPE_UNKNOWN);
  answerWithBody(call, textOf(updated));
  return true;
}

void Engine::relayInvite(Call& call, bool withBody) {
  Exchange& exchange = *call.exchange;
  const Side to = otherOf(exchange.from);
  if (exchange.kind == Kind::dummy) {
    makeDummyOffer(policy_, socket_.local().address.ss_family == AF_INET6, exchange.sent[to]);
    note(call, "dummy offer sent");
  }
  if (!exchange.first) note(call, "re-offer relayed");
  sendInvite(call, to, withBody || exchange.kind == Kind::dummy ? textOf(exchange.sent[to]) : "");
}

void Engine::sendInvite(Call& call, Side to, const std::string& body) {
  Leg& leg = call.legs[to];
  SipRequest invite = requestOn(leg, "INVITE", ++leg.localCseq);
  invite.contact = contact();
  invite.body = body;
  call.exchange->sentCseq = invite.cseq;
  // The branch is known when the first response comes.
  const auto branch = std::make_shared<std::string>();
  *branch = transactions_.request(invite, [this, id = call.id, branch](const SipMessage& response) {
    onInviteResponse(id, *branch, response);
  });
  call.exchange->branch = *branch;
}

void Engine::sendAck(Call& call, const std::string& body) {
  Exchange& exchange = *call.exchange;
  if (exchange.branch.empty()) return;  // nothing was relayed
  SipRequest ack = requestOn(call.legs[otherOf(exchange.from)], "ACK", exchange.sentCseq);
  ack.body = body;
  exchange.acknowledged = true;
  transactions_.acknowledge(exchange.branch, ack);
}

void Engine::onInviteResponse(const std::string& id, const std::string& branch, const SipMessage& response) {
  const auto found = calls_.find(id);
  if (found == calls_.end() || !found->second.exchange || found->second.exchange->branch != branch) return;
  Call& call = found->second;
  if (response.status < 200) {
    onProvisional(call, response);
  } else if (response.status < 300) {
    onSuccess(call, response);
  } else {
    onFailure(call, response);
  }
}

void Engine::onProvisional(Call& call, const SipMessage& response) {
  if (response.status == 100 || !call.exchange->first) return;
  answer(call, {.status = response.status, .reason = response.reason, .contact = contact()});
}

void Engine::onSuccess(Call& call, const SipMessage& response) {
  Exchange& exchange = *call.exchange;
  const Side side = otherOf(exchange.from);
  Leg& leg = call.legs[side];
  if (!response.contact.empty()) leg.contact = response.contact;
  if (exchange.first) {  // the target's tag is known only now
    leg.remote = response.to;
    leg.remoteTag = response.toTag;
    leg.routes = routesOf({response.recordRoutes.rbegin(), response.recordRoutes.rend()});
  }
  if (exchange.cancelled) {
    sendAck(call, "");
    if (!exchange.first) return complete(call);
    sendBye(call, side);
    return forget(call);
  }
  if (exchange.kind == Kind::dummyReplaced) return onDummyReplaced(call, response);
  if (exchange.kind == Kind::dummy) {
    sendAck(call, "");
    leg.sent = exchange.sent[side];
  }
  // The answer to the dummy is the target's body, which the caller gets as the offer.
  const std::string reason = takeBody(call, side, response.body, exchange.kind == Kind::relayed);
  if (reason.empty()) return answerWithBody(call, textOf(exchange.sent[exchange.from]));
  if (!exchange.acknowledged) sendAck(call, "");
  refuse(call, reason);
}

void Engine::onFailure(Call& call, const SipMessage& response) {
  Exchange& exchange = *call.exchange;
  if (exchange.kind == Kind::dummyReplaced) {
    note(call, "the target refused the offer after the dummy with " + std::to_string(response.status));
    return end(call, "engine: no offer for the target");
  }
  if (!exchange.cancelled) {
    note(call, "failed with " + std::to_string(response.status));
    return fail(call, {.status = response.status,
                       .reason = response.reason,
                       .headers = response.warning.empty() ? "" : "Warning: " + response.warning + "\r\n"});
  }
  if (exchange.first) return forget(call);
  complete(call);
}

/// A body cannot be used: the exchange fails, and with it the call when it was the first one or cannot be refused any
/// more.
void Engine::refuse(Call& call, const std::string& reason) {
  Exchange& exchange = *call.exchange;
  note(call, "body refused: " + reason);
  ++counters_.refusedBodies;
  if (exchange.answered) return end(call, "engine: body refused");
  if (exchange.first && exchange.acknowledged) sendBye(call, otherOf(exchange.from));
  fail(call, {.status = 488, .headers = warningOf(socket_.local().text(), reason)});
}

/// Answers the INVITE of the exchange.
void Engine::answer(Call& call, SipResponse response) {
  const std::string& local = call.legs[call.exchange->from].local;
  response.toTag = local.substr(local.rfind('=') + 1);
  transactions_.respond(call.exchange->key, response);
}

/// Refuses the INVITE of the exchange, and ends the call when it is the first one.
void Engine::fail(Call& call, const SipResponse& response) {
  answer(call, response);
  if (call.exchange->first) {
    ++counters_.failed;
    return forget(call);
  }
  invites_.erase(call.exchange->key);
  call.exchange.reset();
}

void Engine::answerWithBody(Call& call, const std::string& body) {
  call.exchange->answered = true;
  answer(call, {.status = 200, .contact = contact(), .body = body});
}

void Engine::onAck(Call& call, Side side, const SipMessage& ack) {
  if (!call.exchange) return;
  Exchange& exchange = *call.exchange;
  if (exchange.from != side || exchange.cseq != ack.cseq || !exchange.answered) return;
  transactions_.confirm(exchange.key);
  if (exchange.kind == Kind::late || exchange.kind == Kind::dummy) {
    const std::string reason = takeBody(call, side, ack.body, true);
    if (!reason.empty()) return refuse(call, reason);
  }
  if (exchange.kind == Kind::dummy) return replaceDummy(call);
  sendAck(call, exchange.kind == Kind::late ? textOf(exchange.sent[otherOf(side)]) : "");
  complete(call);
}

/// The caller's body is there at last: it becomes the next version of the dummy.
void Engine::replaceDummy(Call& call) {
  note(call, "dummy offer replaced");
  complete(call);
  Exchange& exchange = call.exchange.emplace();
  exchange.kind = Kind::dummyReplaced;
  sendInvite(call, kTarget, textOf(call.legs[kTarget].sent));
}

/// The caller has answered to the target's former body; this one is only kept.
void Engine::onDummyReplaced(Call& call, const SipMessage& response) {
  sendAck(call, "");
  cSdpNegotiator& received = call.exchange->received[kTarget];
  if (received.sdpParse(response.body.c_str(), SDP_TYPE_ANSWER) != 0) {
    note(call, "body refused: no answer to the offer after the dummy");
    return end(call, "engine: body refused");
  }
  complete(call);
}

/// Keeps what was agreed.
void Engine::complete(Call& call) {
  Exchange& exchange = *call.exchange;
  const bool first = exchange.first && !exchange.cancelled;
  invites_.erase(exchange.key);
  for (const Side side : {kCaller, kTarget}) {
    if (exchange.cancelled) break;
    Leg& leg = call.legs[side];
    if (exchange.received[side].isSdpPresent()) leg.received = exchange.received[side];
    if (!exchange.sent[side].isSdpPresent()) continue;
    leg.sent = exchange.sent[side];
    const bool offeredByFrom = exchange.kind == Kind::relayed || exchange.kind == Kind::local;
    leg.answered = (side == exchange.from) == offeredByFrom && exchange.kind != Kind::dummy;
  }
  call.exchange.reset();
  if (first) {
    call.established = true;
    ++counters_.established;
  }
  if (!store_.save(call)) note(call, "could not be kept in the store");
  if (first) note(call, "established");
}

}  // namespace b2bua
