// What happens to the bodies between an INVITE and its ACK.

#include <utility>

#include "engine.h"
#include "multipart.h"
#include "namedRequests.h"
#include "passedHeaders.h"
#include "policyCheck.h"
#include "policySteps.h"
#include "reasons.h"

namespace b2bua {

namespace {

constexpr unsigned int kMostRepetitions = 2;

/// What a message of the engine has beside what the stack makes; it refers to the texts, empty ones are left out.
std::array<tagi_t, 5> partsOf(const std::string& contact, const std::string& header, const std::string& body,
                              const char* type = kSdp) {
  return {{{TAG_IF(!contact.empty(), SIPTAG_CONTACT_STR(contact.c_str()))},
           {TAG_IF(!header.empty(), SIPTAG_HEADER_STR(header.c_str()))},
           {TAG_IF(!body.empty(), SIPTAG_CONTENT_TYPE_STR(type))},
           {TAG_IF(!body.empty(), SIPTAG_PAYLOAD_STR(body.c_str()))},
           {TAG_END()}}};
}

/// One that is repeated until its PRACK comes is for a caller that insists on that, or knows it and gets a body.
bool isSentReliably(const sip_t& invite, int status, const std::string& body) {
  if (status <= 100 || status >= 200) return false;
  return sip_has_feature(invite.sip_require, k100rel) != 0 ||
         (!body.empty() && sip_has_feature(invite.sip_supported, k100rel) != 0);
}

}  // namespace

/// An INVITE that came, the first one of its call included, or an UPDATE with a body.
void Engine::onOffer(Leg& leg, Owned<msg_t> message, const sip_t& request) {
  Call& call = *leg.call;
  const bool update = request.sip_request->rq_method == sip_method_update;
  if (call.exchange) putAside(call);
  Exchange& exchange = beginExchange(call, Kind::relayed);
  exchange.from = leg.side;
  exchange.update = update;
  if (!update) exchange.headers[otherOf(leg.side)] = passedHeaders(request, options_.passHeaders);
  leg.remoteCseq = request.sip_cseq->cs_seq;
  takeTarget(leg, request);
  const std::optional<std::string> body = sdpOf(request);
  exchange.incoming.reset(
      nta_incoming_create(agent_.get(), leg.dialog.get(), message.release(), nullptr, TAG_END()));
  if (!exchange.incoming) return fail(call, 500);
  if (!update) {
    nta_incoming_bind(exchange.incoming.get(), onAckOrCancel, &leg);
    nta_incoming_treply(exchange.incoming.get(), SIP_100_TRYING, TAG_END());
  }
  if (!body) {
    note(call, "body refused", {{"reason", "it is no application/sdp"}}, LogLevel::warning);
    return fail(call, 415, "Accept: application/sdp");
  }
  if (body->empty()) {
    exchange.kind = call.established ? Kind::late : Kind::dummy;
    return relayOffer(call);
  }
  takeBody(call, leg.side, *body, false, [this](Call& taken, const BodyRefusal& refusal) {
    if (refusal) return refuse(taken, refusal);
    if (!taken.established || !answerFromStore(taken, *taken.exchange)) relayOffer(taken);
  });
}

Exchange& Engine::beginExchange(Call& call, Kind kind) {
  call.exchange = std::make_unique<Exchange>();
  Exchange& exchange = *call.exchange;
  exchange.kind = kind;
  exchange.number = ++exchanges_;
  exchange.policy = policy_;
  return exchange;
}

void Engine::relayOffer(Call& call) {
  Exchange& exchange = *call.exchange;
  const Side to = otherOf(exchange.from);
  if (exchange.kind == Kind::dummy) {
    makeDummyOffer(*exchange.policy, options_.listen.starts_with('['), exchange.sent[to]);
    std::string reason = applyRequests(*exchange.policy, Way::to, to, false, exchange.sent[to]);
    if (reason.empty()) reason = whatIsForbidden(*exchange.policy, textOf(exchange.sent[to]), false);
    if (!reason.empty()) return refuse(call, {reason});
    note(call, "dummy offer sent");
  }
  if (call.established) note(call, "re-offer relayed");
  sendOffer(call);
}

/// Sends a request within a dialog.
nta_outgoing_t* Engine::send(Leg& leg, sip_method_t method, const char* name, unsigned int cseq,
                             const std::string& body, nta_response_f* onResponse, Leg* receiver,
                             const std::string& header, const char* type) {
  if (leg.keptCseq != 0 && cseq >= leg.keptCseq) keep(*leg.call);
  const std::string number = std::to_string(cseq) + " " + name;
  const std::string contact = transports_.contact(leg.transport);
  return nta_outgoing_tcreate(leg.dialog.get(), onResponse, receiver, nullptr, method, name, nullptr,
                              SIPTAG_CSEQ_STR(number.c_str()),
                              TAG_NEXT(partsOf(contact, header, body, type).data()));
}

/// Sends the offer of an exchange, or an INVITE that asks for one; again, when that is worth while.
void Engine::sendOffer(Call& call) {
  Exchange& exchange = *call.exchange;
  Leg& leg = call.legs[otherOf(exchange.from)];
  exchange.concluded = false;
  exchange.reliable.clear();
  exchange.early.clear();
  exchange.waiting.reset();
  std::string header = kAllow;
  if (!call.established && exchange.kind == Kind::relayed && !exchange.update)
    addLines(header, "Supported: 100rel");
  addLines(header, sessionRequest(options_.session, leg.timer));
  addLines(header, exchange.headers[leg.side]);
  const bool update = exchange.update && leg.allowsUpdate;
  exchange.acknowledged = update;  // It has no ACK.
  const unsigned int cseq = ++leg.cseq;
  if (!update) announceInvite(leg);
  exchange.outgoing.reset(send(
      leg, update ? sip_method_update : sip_method_invite, update ? "UPDATE" : "INVITE", cseq,
      exchange.kind == Kind::late ? "" : textOf(exchange.sent[leg.side]), onInviteResponse, &leg, header));
  if (!exchange.outgoing) return fail(call, 500);
  if (!call.established && !exchange.update) awaitTarget(call);
}

void Engine::sendAck(Call& call, const std::string& body) {
  Exchange& exchange = *call.exchange;
  if (!exchange.concluded || exchange.acknowledged) return;
  exchange.acknowledged = true;
  // The stack repeats the ACK when the 200 is repeated.
  const unsigned int cseq = nta_outgoing_cseq(exchange.outgoing.get());
  Owned<nta_outgoing_t>(
      send(call.legs[otherOf(exchange.from)], SIP_METHOD_ACK, cseq, body, nullptr, nullptr));
}

int Engine::onInviteResponse(Leg* leg, nta_outgoing_t* transaction, const sip_t* response) {
  Engine& engine = *leg->engine;
  Call& call = *leg->call;
  const int status = response->sip_status->st_status;
  if (call.aside && call.aside->outgoing.get() == transaction) {
    // A provisional one is left to be repeated.
    if (status >= 200) call.aside->waiting.reset(nta_outgoing_getresponse(transaction));
    if (status >= 300) engine.abandonUpdate(call);
    return 0;
  }
  if (!call.exchange || call.exchange->outgoing.get() != transaction || call.exchange->concluded) return 0;
  call.exchange->concluded = status >= 200;
  // Those of a response that waits for its turn do not go with the one that is on its way.
  if (!call.exchange->waits() || status >= 300)
    call.exchange->headers[call.exchange->from] = passedHeaders(*response, engine.options_.passHeaders);
  const bool first = !call.established && !call.exchange->update;
  if (first) engine.hearTarget(call, status);
  if (status >= 300) {
    engine.onFailure(call, *response);
  } else if (status >= 200) {
    engine.onSuccess(call, *response);
  } else if (status > 100 && first) {
    engine.onProgress(call, *response);
  }
  return 0;
}

void Engine::onSuccess(Call& call, const sip_t& response) {
  Exchange& exchange = *call.exchange;
  const Side side = otherOf(exchange.from);
  Leg& leg = call.legs[side];
  enterDialog(leg, response);
  agreeByResponse(options_.session, response, leg.timer);
  // The party has it now, whatever becomes of its answer; until that is known, no answer is kept.
  if (exchange.sent[side].isSdpPresent() && !exchange.updated) leg.give(exchange.sent[side]);
  for (Leg& each : call.legs) each.answered = false;
  if (exchange.cancelled) return giveUp(call);
  if (!exchange.waits()) return takeAnswer(call, response);
  exchange.waiting.reset(nta_outgoing_getresponse(exchange.outgoing.get()));
}

/// The body of a 200.
void Engine::takeAnswer(Call& call, const sip_t& response) {
  Exchange& exchange = *call.exchange;
  const Side side = otherOf(exchange.from);
  const std::string body = sdpOf(response).value_or(bodyOf(response));
  if (exchange.updated) return answer(call, 200);  // What was agreed by UPDATE counts.
  // It was given before, or is the same as then.
  if (exchange.isKnown(body)) return answer(call, 200, textOf(exchange.sent[exchange.from]));
  if (exchange.kind == Kind::dummyReplaced) return onDummyReplaced(call, body);
  if (exchange.kind == Kind::refresh) return onRefreshAnswered(call, body);
  if (exchange.kind == Kind::dummy || exchange.update) sendAck(call, "");
  // The answer to the dummy is the target's body, which the caller gets as the offer.
  takeBody(call, side, body, exchange.kind == Kind::relayed, [this](Call& taken, const BodyRefusal& refusal) {
    if (refusal) return refuse(taken, refusal);
    answer(taken, 200, textOf(taken.exchange->sent[taken.exchange->from]));
  });
}

void Engine::onFailure(Call& call, const sip_t& response) {
  Exchange& exchange = *call.exchange;
  const int status = response.sip_status->st_status;
  const bool established = call.established;
  Leg& leg = call.legs[otherOf(exchange.from)];
  if (status == 422 && !exchange.cancelled && leg.timer.raiseMinimum(response) &&
      exchange.repetitions++ < kMostRepetitions) {
    if (!established && !exchange.update) leaveDialog(leg);
    return sendOffer(call);
  }
  if (established && exchange.update && exchange.acknowledged && (status == 405 || status == 501)) {
    leg.allowsUpdate = false;
    return sendOffer(call);
  }
  if (exchange.kind == Kind::refresh) {
    conclude(call);
    return onRefreshRefused(leg, response);
  }
  if (tryNext(call, &response)) return;
  if (established || call.aside) noteRefused(call);
  if (exchange.kind == Kind::dummyReplaced) {
    note(call, "the target refused the offer after the dummy", {{"status", std::to_string(status)}});
    return end(call, "no offer for the target");
  }
  if (!exchange.cancelled) {
    note(call, "failed", {{"status", std::to_string(status)}});
    // What the party would have to do about it, only the engine can.
    fail(call, status == 422 ? 500 : status);
  } else if (established) {
    complete(call);
  } else {
    forget(call);
  }
  // The party does not know the dialog, or is not there (RFC 3261 12.2.1.2).
  if (established && (status == 408 || status == 481)) end(call, "the other dialog is gone");
}

/// A body cannot be used: the exchange fails, and with it the call when it was the first one or cannot be refused any
/// more.
void Engine::refuse(Call& call, const BodyRefusal& refusal) {
  Exchange& exchange = *call.exchange;
  note(call, "body refused", {{"reason", refusal.reason}}, LogLevel::warning);
  ++counters_.refusedBodies;
  exchange.headers[exchange.from].clear();
  if (exchange.answered) return end(call, "body refused");
  leave(call);
  fail(call, refusal.status, warning(toldReason(refusal.reason)));
}

/// The party has seen the offer, so its version is taken, even if another process goes on.
void Engine::noteRefused(Call& call) {
  const Side to = otherOf(call.exchange->from);
  if (!call.exchange->sent[to].isSdpPresent()) return;
  call.legs[to].refused = std::make_unique<Body>(call.exchange->sent[to]);
  if (!call.kept) return;
  keep(call);
  keepAll();
}

void Engine::answer(Call& call, int status, const std::string& body, const std::string& header) {
  Exchange& exchange = *call.exchange;
  Leg& leg = call.legs[exchange.from];
  nta_incoming_t* const incoming = exchange.incoming.get();
  // There is nothing to answer in the engine's own exchange. After the final response the stack would send a
  // provisional one all the same, and read what it has freed.
  if (incoming == nullptr || exchange.response || nta_incoming_status(incoming) >= 200) return;
  exchange.answered = status >= 200 && status < 300;
  std::string all = std::exchange(exchange.headers[leg.side], "");
  addLines(all, header);
  if (exchange.answered) {
    const Owned<msg_t> request(nta_incoming_getrequest(incoming));
    addLines(all, kAllow);
    addLines(all, agreeByRequest(options_.session, *sip_object(request.get()), leg.timer));
  }
  exchange.response = {status, body, all};
  const bool known = exchange.answered && (exchange.kind == Kind::relayed || exchange.kind == Kind::local);
  if (known) agree(call);
  // Another process can go on from here, even with the ACK, when the store has the call.
  if (!known || call.aside || !store_.isUsed()) sendAnswer(call);
}

void Engine::sendAnswer(Call& call) {
  if (!call.exchange || !call.exchange->response) return;
  Exchange& exchange = *call.exchange;
  Leg& leg = call.legs[exchange.from];
  nta_incoming_t* const incoming = exchange.incoming.get();
  const Owned<msg_t> request(nta_incoming_getrequest(incoming));
  const auto [status, body, headers] = *std::exchange(exchange.response, std::nullopt);
  const std::string contact = status < 300 ? transports_.contact(leg.transport) : "";
  const auto parts = partsOf(contact, headers, body);
  const char* const phrase = sip_status_phrase(status);
  exchange.unacknowledged =
      !call.established && isSentReliably(*sip_object(request.get()), status, body) &&
      nta_reliable_treply(incoming, onPrack, &leg, status, phrase, TAG_NEXT(parts.data())) != nullptr;
  if (!exchange.unacknowledged) nta_incoming_treply(incoming, status, phrase, TAG_NEXT(parts.data()));
  if (exchange.update && exchange.answered) complete(call);
}

void Engine::fail(Call& call, int status, const std::string& header) {
  answer(call, status, "", header);
  if (call.established || call.aside) {
    restoreMedia(call);
    return conclude(call);
  }
  ++counters_.failed;
  forget(call);
}

/// @param request  null when neither came and the 200 was repeated long enough
int Engine::onAckOrCancel(Leg* leg, nta_incoming_t* transaction, const sip_t* request) {
  Engine& engine = *leg->engine;
  Call& call = *leg->call;
  if (call.aside && call.aside->incoming.get() == transaction) engine.abandonUpdate(call);
  if (!call.exchange || call.exchange->incoming.get() != transaction) return 0;
  if (request != nullptr && request->sip_request->rq_method == sip_method_cancel) {
    engine.onCancel(call);
  } else if (request != nullptr && call.exchange->answered) {
    if (!std::exchange(call.exchange->ackCame, true))
      engine.onAck(*leg, sdpOf(*request).value_or(bodyOf(*request)));
  } else if (call.exchange->answered) {
    engine.end(call, "no ACK");
  } else if (call.exchange->unacknowledged) {
    engine.onNoPrack(call);
  }
  return 0;
}

void Engine::onAck(Leg& leg, const std::string& body) {
  Call& call = *leg.call;
  Exchange& exchange = *call.exchange;
  if (exchange.kind != Kind::late && exchange.kind != Kind::dummy) {
    sendAck(call, "");
    return complete(call);
  }
  takeBody(call, leg.side, body, true, [this](Call& taken, const BodyRefusal& refusal) {
    if (refusal) return refuse(taken, refusal);
    if (taken.exchange->kind == Kind::dummy) return replaceDummy(taken);
    sendAck(taken, textOf(taken.exchange->sent[otherOf(taken.exchange->from)]));
    complete(taken);
  });
}

/// The caller's body is there at last: it becomes the next version of the dummy.
void Engine::replaceDummy(Call& call) {
  note(call, "dummy offer replaced");
  complete(call);
  beginExchange(call, Kind::dummyReplaced).sent[kTarget] = call.legs[kTarget].sent;
  sendOffer(call);
}

/// The caller has answered to the target's former body; this one is only kept.
void Engine::onDummyReplaced(Call& call, const std::string& body) {
  sendAck(call, "");
  const std::string reason = takeIn(body, incoming_, media_ != nullptr);
  const std::string canonical(incoming_.text());
  if (reason.empty() && call.exchange->received[kTarget].sdpParse(canonical.c_str(), SDP_TYPE_ANSWER) == 0) {
    judge(call, kTarget, call.legs[kTarget].sent, body);
    return complete(call);
  }
  const std::string why = reason.empty() ? "no answer to the offer after the dummy" : reason;
  note(call, "body refused", {{"reason", why}}, LogLevel::warning);
  end(call, "body refused");
}

/// Keeps what was agreed.
void Engine::agree(Call& call) {
  Exchange& exchange = *call.exchange;
  exchange.agreed = true;
  for (Leg& leg : call.legs) {
    if (exchange.cancelled || exchange.updated) break;
    if (exchange.received[leg.side].isSdpPresent()) leg.received = exchange.received[leg.side];
    if (!exchange.sent[leg.side].isSdpPresent()) continue;
    leg.give(exchange.sent[leg.side]);
    const bool offeredByFrom = exchange.kind != Kind::late;
    leg.answered = (leg.side == exchange.from) == offeredByFrom && exchange.kind != Kind::dummy;
  }
  if (!call.aside) keep(call);
}

void Engine::complete(Call& call) {
  if (!call.exchange->agreed) agree(call);
  if (call.aside) return conclude(call);
  const bool first = !call.established;
  if (call.exchange->cancelled) restoreMedia(call);
  conclude(call);
  call.established = true;
  if (first) {
    ++counters_.established;
    setupTimes_.add(std::chrono::steady_clock::now() - call.begun);
  }
  if (first) note(call, "established");
}

}  // namespace b2bua
