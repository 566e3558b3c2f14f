// UPDATE (RFC 3311): a sign of life when it has no body, else an offer without an ACK.
//
// Before the call is answered its exchange takes the place of the INVITE's, which is put aside meanwhile: whatever ends
// that one refuses the UPDATE first.

#include <utility>

#include "engine.h"
#include "passedHeaders.h"

namespace b2bua {

/// Answered without a transaction.
void Engine::onSignOfLife(Leg& leg, Owned<msg_t> message, const sip_t& update) {
  leg.remoteCseq = update.sip_cseq->cs_seq;
  const std::string before = leg.timer.text();
  takeTarget(leg, update);
  std::string header = std::string(kAllow) + "\r\nContact: " + transports_.contact(leg.transport);
  addLines(header, agreeByRequest(options_.session, update, leg.timer));
  if (leg.call->kept && leg.timer.text() != before) {
    keep(*leg.call);
    keepAll();
  }
  reply(std::move(message), 200, header);
}

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
}

void Engine::abandonUpdate(Call& call) {
  if (!call.aside) return;
  if (call.exchange->outgoing) noteRefused(call);
  fail(call, 500);
}

/// The exchange is over; one that was put aside goes on.
void Engine::conclude(Call& call) {
  // Nobody has to send an ACK any more, but in the one that was put aside.
  for (Leg& leg : call.legs) {
    if (!call.aside && std::exchange(leg.unacknowledged, 0) != 0 && call.kept)
      acknowledged_.push_back(call.id);
  }
  call.exchange = std::move(call.aside);
  if (call.exchange) goOn(call);
}

}  // namespace b2bua
