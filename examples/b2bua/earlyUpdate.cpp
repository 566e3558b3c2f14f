// UPDATE with a body before the call is answered (RFC 3311). Its exchange takes the place of the INVITE's, which is put
// aside meanwhile: whatever ends that one refuses the UPDATE first.

#include <utility>

#include "engine.h"
#include "multipart.h"

namespace b2bua {

/// @return whether both parties have an answer that is acknowledged, and the other one can be sent an UPDATE
bool Engine::mayUpdateEarly(const Call& call, const Leg& leg) {
  const Exchange& exchange = *call.exchange;
  return !call.established && !call.aside && exchange.settled && !exchange.concluded && !exchange.cancelled &&
         !exchange.waits() && call.legs[otherOf(leg.side)].allowsUpdate;
}

/// What both have by now counts for what follows.
void Engine::putAside(Call& call) {
  Exchange& exchange = *call.exchange;
  for (Leg& leg : call.legs) {
    if (exchange.updated) break;
    leg.received = exchange.received[leg.side];
    leg.sent = exchange.sent[leg.side];
  }
  exchange.updated = true;
  call.aside = std::move(call.exchange);
  call.exchange.reset();
}

void Engine::takeEarlyOffer(Call& call, const std::string& body) {
  takeBody(call, call.exchange->from, body, false, [this](Call& taken, const BodyRefusal& refusal) {
    if (refusal) return concludeUpdate(taken, refusal.status);
    const Side to = otherOf(taken.exchange->from);
    Leg& leg = taken.legs[to];
    taken.exchange->outgoing.reset(send(leg, SIP_METHOD_UPDATE, ++leg.cseq, textOf(taken.exchange->sent[to]),
                                        onEarlyUpdateResponse, &leg, kAllow));
    if (!taken.exchange->outgoing) concludeUpdate(taken, 500);
  });
}

int Engine::onEarlyUpdateResponse(Leg* leg, nta_outgoing_t* transaction, const sip_t* response) {
  Engine& engine = *leg->engine;
  Call& call = *leg->call;
  if (!call.aside || call.exchange->outgoing.get() != transaction || call.exchange->concluded) return 0;
  const int status = response != nullptr ? response->sip_status->st_status : 408;
  if (status < 200) return 0;
  call.exchange->concluded = true;
  if (status >= 300) {
    engine.concludeUpdate(call, status);
    return 0;
  }
  nta_leg_client_route(leg->dialog.get(), nullptr, response->sip_contact);
  engine.takeBody(call, leg->side, sdpOf(*response).value_or(""), true,
                  [&engine](Call& taken, const BodyRefusal& refusal) {
                    engine.concludeUpdate(taken, refusal ? refusal.status : 200);
                  });
  return 0;
}

/// Answers the UPDATE, and goes on with the INVITE.
void Engine::concludeUpdate(Call& call, int status) {
  Exchange& update = *call.exchange;
  answer(call, status, status < 300 ? textOf(update.sent[update.from]) : "");
  const Owned<nta_outgoing_t> outgoing = std::move(update.outgoing);  // It may be in its callback.
  if (status < 300) {
    for (Leg& leg : call.legs) {
      leg.received = update.received[leg.side];
      leg.give(update.sent[leg.side]);
    }
  } else if (outgoing) {
    noteRefused(call);
  }
  call.exchange = std::move(call.aside);
  goOn(call);
}

void Engine::abandonUpdate(Call& call) {
  if (call.aside) concludeUpdate(call, 500);
}

/// The INVITE's own response comes while it is put aside. A provisional one is left to be repeated.
void Engine::onResponseAside(Call& call, nta_outgoing_t* invite, int status) {
  if (status >= 200) call.aside->waiting.reset(nta_outgoing_getresponse(invite));
  if (status >= 300) concludeUpdate(call, 500);
}

}  // namespace b2bua
