// The way of a call through the places that may take it.

#include <utility>

#include "engine.h"
#include "redirects.h"

namespace b2bua {

namespace {

constexpr std::string_view kTransport = ";transport=";

/// @return what stands behind "sip:" and the user
std::string placeIn(const std::string& uri) {
  const std::size_t at = uri.rfind('@');
  return uri.substr((at != std::string::npos ? at : uri.find(':')) + 1);
}

}  // namespace

/// @param user  of the Request-URI, null for none
void Engine::beginHunt(Call& call, const char* user) {
  const std::string begin = "sip:" + (user != nullptr ? std::string(user) + "@" : "");
  for (const std::string& place : targets_.order()) {
    call.hunt.uris.push_back(begin + place);
    call.hunt.known.insert(begin + place);
  }
  openTarget(call);
}

/// Makes a dialog with the next place; nothing is left of that with the one before, but the engine's own name.
void Engine::openTarget(Call& call) {
  Hunt& hunt = call.hunt;
  const std::string uri = std::move(hunt.uris.front());
  hunt.uris.pop_front();
  if (hunt.contacts > 0) --hunt.contacts;
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
  if (const std::size_t name = hunt.place.find(kTransport); name != std::string::npos)
    fresh.transport = hunt.place.substr(name + kTransport.size());
  leg = std::move(fresh);
  openDialog(leg);
}

/// A first INVITE has gone out.
void Engine::awaitTarget(Call& call) {
  targets_.tried(call.hunt.place);
  call.hunt.silence.reset(su_timer_create(su_root_task(root_), 1'000L * options_.targetSeconds));
  su_timer_set(call.hunt.silence.get(), onSilence, &call.legs[kTarget]);
}

void Engine::hearTarget(Call& call, int status) {
  call.hunt.silence.reset();
  if (status == 503) return targets_.failed(call.hunt.place);
  if (status != 408) targets_.answered(call.hunt.place);  // the stack says so when nobody does
}

void Engine::onSilence(su_root_magic_t*, su_timer_t*, void* target) {
  const Leg& leg = *static_cast<Leg*>(target);
  leg.engine->targets_.failed(leg.call->hunt.place);
  leg.engine->tryNext(*leg.call, nullptr);
}

/// Puts the contacts of a redirection in front of the other places, but for those that were there already.
void Engine::follow(Call& call, const sip_t& response) {
  Hunt& hunt = call.hunt;
  std::deque<std::string> contacts;
  for (const std::string& uri : redirectionsIn(response, options_.transports)) {
    if (hunt.redirections >= options_.followRedirects) break;
    const std::string place = placeIn(uri);
    if (transports_.isOwn(place.substr(0, place.find(';'))) || !hunt.known.insert(uri).second) continue;
    contacts.push_back(uri);
    ++hunt.redirections;
    ++counters_.redirections;
  }
  hunt.contacts += contacts.size();
  hunt.uris.insert(hunt.uris.begin(), contacts.begin(), contacts.end());
}

/// Goes on to the next place, unless there is none or the caller has a body of this one already.
/// @param response  of the last one, null when it says nothing
/// @return whether the call went on
bool Engine::tryNext(Call& call, const sip_t* response) {
  if (call.established || call.aside || !call.exchange || call.exchange->cancelled) return false;
  Exchange& exchange = *call.exchange;
  if (exchange.sent[kCaller].isSdpPresent() || exchange.waits()) return false;
  const int status = response != nullptr ? response->sip_status->st_status : 503;
  if (status >= 300 && status <= 302) follow(call, *response);
  // All contacts are tried (RFC 3261 8.1.3.4), another target only when one cannot be used.
  const bool goesOn = status == 503 || (call.hunt.contacts > 0 && status < 600);
  if (!goesOn || call.hunt.uris.empty()) return false;
  const bool silent = response == nullptr;
  note(call, "goes on to another target",
       {{"target", call.hunt.place}, {"status", silent ? "none" : std::to_string(status)}});
  if (status == 503) ++counters_.failovers;
  if (silent) abandon(call);
  openTarget(call);
  sendOffer(call);
  return true;
}

/// A place that said nothing may still take the call; it is told then that there is none any more.
void Engine::abandon(Call& call) {
  nta_outgoing_t* const transaction = call.exchange->outgoing.get();
  Leg& leg = abandoned_[transaction] = std::move(call.legs[kTarget]);
  call.legs[kTarget].local = leg.local;
  leg.call = nullptr;
  // The response to its INFO would look for it in the call.
  leg.info.reset();
  leg.passed.reset();
  leg.own = std::move(call.exchange->outgoing);
  nta_outgoing_bind(transaction, onAbandonedResponse, &leg);
  nta_outgoing_cancel(transaction);
}

int Engine::onAbandonedResponse(Leg* leg, nta_outgoing_t* transaction, const sip_t* response) {
  const int status = response->sip_status->st_status;
  if (status < 200) return 0;
  Engine& engine = *leg->engine;
  if (status < 300) {
    nta_leg_rtag(leg->dialog.get(), response->sip_to->a_tag);
    nta_leg_client_route(leg->dialog.get(), response->sip_record_route, response->sip_contact);
    const Owned<nta_outgoing_t> ack(
        engine.send(*leg, SIP_METHOD_ACK, nta_outgoing_cseq(transaction), "", nullptr, nullptr));
    engine.sendBye(*leg);
  }
  engine.abandoned_.erase(transaction);
  return 0;
}

}  // namespace b2bua
