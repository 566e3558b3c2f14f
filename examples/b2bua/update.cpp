// UPDATE within a call (RFC 3311): a sign of life when it has no body, else an offer without an ACK.

#include "engine.h"
#include "multipart.h"

namespace b2bua {

namespace {

/// @return a header that tells when to try again, at a time that others do not choose, too
std::string retryAfter() {
  return "Retry-After: " + std::to_string(std::stoul(randomText(), nullptr, 16) % 11);
}

}  // namespace

void Engine::onUpdate(Leg& leg, Owned<msg_t> message, const sip_t& update) {
  const std::optional<std::string> body = sdpOf(update);
  if (!body) return reply(std::move(message), 415, "Accept: application/sdp");
  if (body->empty()) return onSignOfLife(leg, std::move(message), update);
  Call& call = *leg.call;
  const bool early = call.exchange && mayUpdateEarly(call, leg);
  if (call.exchange && !early) {
    // An offer of its own that has no answer yet, or one that the party has not answered.
    const bool own = call.exchange->incoming && call.exchange->from == leg.side;
    return own ? reply(std::move(message), 500, retryAfter()) : reply(std::move(message), 491);
  }
  if (const auto limit = limitOfReoffers()) return turnAway(std::move(message), *limit);
  leg.remoteCseq = update.sip_cseq->cs_seq;
  takeTarget(leg, update);
  nta_incoming_t* const transaction = openTransaction(leg, std::move(message));
  if (transaction == nullptr) return;
  if (early) putAside(call);
  Exchange& exchange = beginExchange(call, Kind::relayed);
  exchange.from = leg.side;
  exchange.update = true;
  exchange.incoming.reset(transaction);
  ++counters_.reoffers;
  early ? takeEarlyOffer(call, *body) : takeOffer(call, *body);
}

/// Answered without a transaction.
void Engine::onSignOfLife(Leg& leg, Owned<msg_t> message, const sip_t& update) {
  leg.remoteCseq = update.sip_cseq->cs_seq;
  const std::string before = leg.timer.text();
  takeTarget(leg, update);
  const std::string timer = agreeTimer(leg, update);
  reply(std::move(message), 200,
        std::string(kAllow) + "\r\nContact: " + transports_.contact(leg.transport) +
            (timer.empty() ? "" : "\r\n" + timer));
  if (leg.call->kept && leg.timer.text() != before) keep(*leg.call);
}

}  // namespace b2bua
