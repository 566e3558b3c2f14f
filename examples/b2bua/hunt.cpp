// The way of a call through the places that may take it.

#include <utility>

#include "engine.h"

namespace b2bua {

namespace {

/// @return what stands behind "sip:" and the user
std::string placeIn(const std::string& uri) {
  const std::size_t at = uri.rfind('@');
  return uri.substr((at != std::string::npos ? at : uri.find(':')) + 1);
}

}  // namespace

/// @param user  of the Request-URI, null for none
void Engine::beginHunt(Call& call, const char* user) {
  const std::string begin = "sip:" + (user != nullptr ? std::string(user) + "@" : "");
  for (const std::string& place : targets_.order()) call.hunt.uris.push_back(begin + place);
  openTarget(call);
}

/// Makes a dialog with the next place; nothing is left of that with the one before, but the engine's own name.
void Engine::openTarget(Call& call) {
  Hunt& hunt = call.hunt;
  const std::string uri = std::move(hunt.uris.front());
  hunt.uris.pop_front();
  hunt.place = placeIn(uri);
  Leg& leg = call.legs[kTarget];
  Leg fresh;
  fresh.engine = this;
  fresh.call = &call;
  fresh.side = kTarget;
  fresh.callId = randomText();
  fresh.local = std::move(leg.local);
  fresh.contact = "<" + uri + ">";
  fresh.remote = "<" + uri.substr(0, uri.find(';', uri.size() - hunt.place.size())) + ">";
  leg = std::move(fresh);
  openDialog(leg);
}

/// A first INVITE has gone out.
void Engine::awaitTarget(Call& call) {
  targets_.tried(call.hunt.place);
  call.hunt.heard = false;
  call.hunt.number = ++tries_;
  silences_.push_back(
      {std::chrono::steady_clock::now() + std::chrono::seconds(options_.targetSeconds), call.id, tries_});
}

void Engine::hearTarget(Call& call, int status) {
  call.hunt.heard = true;
  if (status == 503) return targets_.failed(call.hunt.place);
  if (status != 408) targets_.answered(call.hunt.place);  // the stack says so when nobody does
}

void Engine::lookForSilence() {
  while (!silences_.empty() && silences_.front().end <= std::chrono::steady_clock::now()) {
    const Silence silence = std::move(silences_.front());
    silences_.pop_front();
    const auto found = calls_.find(silence.call);
    if (found == calls_.end() || found->second.hunt.number != silence.number || found->second.hunt.heard)
      continue;
    targets_.failed(found->second.hunt.place);
    tryNext(found->second, 408);
  }
}

/// Goes on to the next place, unless there is none or the caller has a body of this one already.
/// @param status  that the last one came to
/// @return whether the call went on
bool Engine::tryNext(Call& call, int status) {
  if (call.established || !call.exchange || call.exchange->cancelled || call.hunt.uris.empty()) return false;
  Exchange& exchange = *call.exchange;
  const bool silent = !exchange.concluded;
  if (exchange.sent[kCaller].isSdpPresent() || exchange.waits() || (!silent && status != 503)) return false;
  note(call, "goes on to another target",
       {{"target", call.hunt.place}, {"status", silent ? "none" : std::to_string(status)}});
  ++counters_.failovers;
  if (silent) abandon(call);
  exchange.outgoing.reset();
  exchange.concluded = false;
  exchange.reliable.clear();
  exchange.waiting.reset();
  openTarget(call);
  sendInvite(call, kTarget, textOf(exchange.sent[kTarget]));
  return true;
}

/// A place that said nothing may still take the call; it is told then that there is none any more.
void Engine::abandon(Call& call) {
  nta_outgoing_t* const transaction = call.exchange->outgoing.get();
  Abandoned& abandoned = abandoned_[transaction];
  abandoned.leg = std::move(call.legs[kTarget]);
  abandoned.leg.call = nullptr;
  call.legs[kTarget].local = abandoned.leg.local;
  abandoned.outgoing = std::move(call.exchange->outgoing);
  nta_outgoing_bind(transaction, onAbandonedResponse, &abandoned.leg);
  nta_outgoing_cancel(transaction);
}

int Engine::onAbandonedResponse(Leg* leg, nta_outgoing_t* transaction, const sip_t* response) {
  const int status = response != nullptr ? response->sip_status->st_status : 408;
  if (status < 200) return 0;
  Engine& engine = *leg->engine;
  if (status < 300) {
    nta_leg_rtag(leg->dialog.get(), response->sip_to->a_tag);
    nta_leg_client_route(leg->dialog.get(), response->sip_record_route, response->sip_contact);
    Owned<nta_outgoing_t>(
        engine.send(*leg, SIP_METHOD_ACK, nta_outgoing_cseq(transaction), "", nullptr, nullptr));
    engine.sendBye(*leg);
  }
  engine.abandoned_.erase(transaction);
  return 0;
}

}  // namespace b2bua
