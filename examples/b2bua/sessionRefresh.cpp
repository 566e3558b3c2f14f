// Signs of life of the parties, and those that the engine asks for where a party does not give them by itself.

#include <vector>

#include "engine.h"
#include "policySteps.h"

namespace b2bua {

void Engine::onSecond(su_root_magic_t*, su_timer_t*, void* context) {
  Engine& engine = *static_cast<Engine*>(context);
  std::vector<std::pair<std::string, Side>> due;
  for (const auto& [id, call] : engine.calls_) {
    for (const Leg& leg : call.legs) {
      if (call.established && (leg.timer.isOver() || leg.timer.isDue())) due.emplace_back(id, leg.side);
    }
  }
  for (const auto& [id, side] : due) {
    // The other side may have ended it.
    const auto found = engine.calls_.find(id);
    if (found != engine.calls_.end()) engine.lookAfterSession(found->second.legs[side]);
  }
}

void Engine::lookAfterSession(Leg& leg) {
  Call& call = *leg.call;
  if (leg.timer.isOver()) return end(call, std::string("no sign of life from the ") + nameOf(leg.side));
  // What is on its way tells enough; what cannot be sent now is asked for again in a second.
  if (call.exchange || leg.own || hasTooManyTransactions()) return;
  if (!isOwn(call)) return giveAway(call);
  if (leg.allowsUpdate) {
    leg.own.reset(send(leg, SIP_METHOD_UPDATE, ++leg.cseq, "", onRefreshResponse, &leg,
                       sessionRequest(options_.session, leg.timer)));
    return;
  }
  if (!leg.sent.isSdpPresent()) return;
  Exchange& exchange = beginExchange(call, Kind::refresh);
  exchange.from = otherOf(leg.side);
  exchange.sent[leg.side] = leg.sent;
  sendOffer(call);
}

int Engine::onRefreshResponse(Leg* leg, nta_outgoing_t* transaction, const sip_t* response) {
  const int status = response->sip_status->st_status;
  if (leg->own.get() != transaction || status < 200) return 0;
  const Owned<nta_outgoing_t> done = std::move(leg->own);
  Engine& engine = *leg->engine;
  if (status >= 300) {
    engine.onRefreshRefused(*leg, *response);
    return 0;
  }
  engine.enterDialog(*leg, *response);
  agreeByResponse(engine.options_.session, *response, leg->timer);
  engine.keep(*leg->call);
  return 0;
}

/// That a party refuses a refresh is a sign of life, too, unless it does not know the dialog.
void Engine::onRefreshRefused(Leg& leg, const sip_t& response) {
  const int status = response.sip_status->st_status;
  note(*leg.call, "refresh refused", {{"by", nameOf(leg.side)}, {"status", std::to_string(status)}});
  if (status == 408 || status == 481) return end(*leg.call, "the other dialog is gone");
  if (status == 405 || status == 501) leg.allowsUpdate = false;
  if (status == 422) leg.timer.raiseMinimum(response);
  leg.timer.postpone();
}

/// The party's answer to its own former offer: it has what it had, and so has the other one.
void Engine::onRefreshAnswered(Call& call, const std::string& body) {
  sendAck(call, "");
  Exchange& exchange = *call.exchange;
  const Side side = otherOf(exchange.from);
  Body& received = exchange.received[side];
  if (!takeIn(body, incoming_, media_ != nullptr).empty() || !parse(incoming_, received).empty())
    received = Body();
  if (!received.isSdpPresent() || received.compareSdpByBody(&call.legs[side].received) != 0)
    note(call, "refresh with another answer", {{"from", nameOf(side)}}, LogLevel::warning);
  complete(call);
}

}  // namespace b2bua
