#include "engine.h"

#include <algorithm>
#include <cstdio>
#include <random>
#include <stdexcept>

namespace b2bua {

namespace {

constexpr int kLongestDatagram = 65'507;
constexpr unsigned int kLongestRinging = 180'000;  ///< ms; the stack has no limit of its own for a user agent
constexpr const char* kAllow = "INVITE, ACK, CANCEL, BYE, OPTIONS";

std::string randomText() {
  static std::random_device random;
  char text[17];
  std::snprintf(text, sizeof text, "%08x%08x", random(), random());
  return text;
}

/// The engine's tag in a dialog names the call and the side, so that any process finds them.
std::string tagOf(const std::string& id, Side side) { return id + (side == kCaller ? "-c" : "-t"); }

const url_string_t* urlOf(const std::string& text) { return URL_STRING_MAKE(text.c_str()); }

}  // namespace

Engine::Engine(su_root_t* root, const Options& options, StateStore& store, Log& log)
    : options_(options), store_(store), log_(log) {
  std::string listen = "sip:" + options.listen + ";transport=udp";
  if (const std::size_t anyPort = listen.find(":0;"); anyPort != std::string::npos) listen[anyPort + 1] = '*';
  agent_.reset(nta_agent_create(root, urlOf(listen), nullptr, nullptr, NTATAG_UA(1),
                                NTATAG_UDP_MTU(kLongestDatagram), NTATAG_TIMER_C(kLongestRinging),
                                TAG_END()));
  if (!agent_) throw std::runtime_error("cannot listen at " + options.listen);
  if (address() == options.target) throw std::runtime_error("--target is the engine itself");
  listener_.engine = this;
  listener_.dialog.reset(
      nta_leg_tcreate(agent_.get(), onRequest, &listener_, NTATAG_NO_DIALOG(1), TAG_END()));
}

std::string Engine::address() const {
  const url_t& url = *nta_agent_contact(agent_.get())->m_url;
  return std::string(url.url_host) + ":" + (url.url_port != nullptr ? url.url_port : "5060");
}

void Engine::note(const Call& call, const std::string& event) { log_.write("call " + call.id + " " + event); }

void Engine::showCounters() const {
  const Counters& c = counters_;
  unsigned int malformed = 0;
  nta_agent_get_stats(agent_.get(), NTATAG_S_BAD_MESSAGE_REF(malformed), TAG_END());
  std::printf(
      "counters calls=%lu established=%lu ended=%lu failed=%lu cancelled=%lu reoffers=%lu refused_bodies=%lu "
      "malformed=%u taken_over=%lu active=%zu\n",
      c.calls, c.established, c.ended, c.failed, c.cancelled, c.reoffers, c.refusedBodies, malformed,
      c.takenOver, calls_.size());
  std::fflush(stdout);
}

int Engine::onRequest(Leg* leg, nta_leg_t*, nta_incoming_t* transaction, const sip_t* request) {
  Engine& engine = *leg->engine;
  const sip_method_t method = request->sip_request->rq_method;
  if (method != sip_method_invite && method != sip_method_bye && method != sip_method_ack) {
    const int status = method == sip_method_options ? 200 : 405;
    nta_incoming_treply(transaction, status, sip_status_phrase(status), SIPTAG_ALLOW_STR(kAllow), TAG_END());
    return status;
  }
  // Extensions that the other side insists on: there are none here (RFC 3261 8.2.2.3).
  const int refusal =
      method == sip_method_ack ? 0 : nta_check_required(transaction, request, nullptr, TAG_END());
  if (refusal != 0) return refusal;
  if (leg->call == nullptr && request->sip_to->a_tag != nullptr) leg = engine.takeOver(*request);
  if (leg == nullptr || method == sip_method_ack) return 481;
  if (leg->call == nullptr)
    return method == sip_method_invite ? engine.onFirstInvite(transaction, *request) : 481;
  return method == sip_method_bye ? engine.onBye(*leg) : engine.onInvite(*leg, transaction, *request);
}

Call& Engine::addCall(const std::string& id) {
  Call& call = calls_[id];
  call.id = id;
  for (const Side side : {kCaller, kTarget}) {
    call.legs[side].engine = this;
    call.legs[side].call = &call;
    call.legs[side].side = side;
  }
  return call;
}

/// Makes the stack's part of a dialog from what the leg holds.
void Engine::openDialog(Leg& leg, unsigned int remoteCseq) {
  su_home_t home[1] = {SU_HOME_INIT(home)};
  const sip_contact_t* const contact = sip_contact_make(home, leg.contact.c_str());
  leg.dialog.reset(nta_leg_tcreate(agent_.get(), onRequest, &leg, SIPTAG_CALL_ID_STR(leg.callId.c_str()),
                                   SIPTAG_FROM_STR(leg.local.c_str()), SIPTAG_TO_STR(leg.remote.c_str()),
                                   NTATAG_TARGET(contact), NTATAG_REMOTE_CSEQ(remoteCseq), TAG_END()));
  // Not as a tag above: the stack takes that for the route of strict routers.
  if (!leg.routes.empty())
    nta_leg_server_route(leg.dialog.get(), sip_record_route_make(home, leg.routes.c_str()), contact);
  su_home_deinit(home);
}

int Engine::onFirstInvite(nta_incoming_t* transaction, const sip_t& invite) {
  if (invite.sip_contact == nullptr || invite.sip_from->a_tag == nullptr) return 400;
  if (stopping_ || calls_.size() >= options_.maxCalls) return 503;
  ++counters_.calls;
  const std::string id = randomText();
  Call& call = addCall(id);
  Leg& caller = call.legs[kCaller];
  caller.callId = invite.sip_call_id->i_id;
  caller.local = headerText(invite.sip_to) + ";tag=" + tagOf(id, kCaller);
  caller.remote = headerText(invite.sip_from);
  caller.contact = headerText(invite.sip_contact);
  openDialog(caller, invite.sip_cseq->cs_seq);
  nta_leg_server_route(caller.dialog.get(), invite.sip_record_route, invite.sip_contact);
  nta_incoming_tag(transaction, tagOf(id, kCaller).c_str());

  Leg& target = call.legs[kTarget];
  sip_from_t from = *invite.sip_from;
  from.a_params = nullptr;
  const char* const user = invite.sip_request->rq_url->url_user;
  target.callId = randomText();
  target.local = headerText(&from) + ";tag=" + tagOf(id, kTarget);
  target.contact = "<sip:" + (user != nullptr ? std::string(user) + "@" : "") + options_.target + ">";
  target.remote = target.contact;
  openDialog(target, 0);
  note(call, "invited by " + caller.remote);
  return onInvite(caller, transaction, invite);
}

/// @return the dialog of a request that only the store knows
Leg* Engine::takeOver(const sip_t& request) {
  const std::string tag = request.sip_to->a_tag;
  const std::string id = tag.substr(0, tag.rfind('-'));
  const Side side = tag == tagOf(id, kCaller) ? kCaller : kTarget;
  if (tag != tagOf(id, side) || calls_.contains(id) || calls_.size() >= options_.maxCalls) return nullptr;
  Call& call = addCall(id);
  Leg& leg = call.legs[side];
  if (store_.load(call)) {
    openDialog(call.legs[otherOf(side)], 0);
    openDialog(leg, request.sip_cseq->cs_seq);
  }
  const char* const party = nta_leg_get_rtag(leg.dialog.get());
  if (!call.legs[otherOf(side)].dialog || leg.callId != request.sip_call_id->i_id || party == nullptr ||
      request.sip_from->a_tag == nullptr || std::string_view(party) != request.sip_from->a_tag) {
    calls_.erase(id);
    return nullptr;
  }
  call.established = true;
  ++counters_.takenOver;
  note(call, "taken over from store");
  return &leg;
}

/// Nothing more is relayed to whom cancelled; the call is forgotten when the target has answered.
void Engine::onCancel(Call& call) {
  Exchange& exchange = *call.exchange;
  if (exchange.answered || exchange.cancelled) return;
  note(call, "cancelled");
  if (!call.established) ++counters_.cancelled;
  cancel(call, 487);
}

/// Gives up an INVITE that has no final answer yet.
void Engine::cancel(Call& call, int status) {
  answer(call, status);
  call.exchange->cancelled = true;
  if (call.exchange->outgoing) nta_outgoing_cancel(call.exchange->outgoing.get());
}

int Engine::onBye(Leg& leg) {
  Call& call = *leg.call;
  if (!call.established && !call.exchange->answered) {
    if (leg.side == kCaller) onCancel(call);
    return 200;
  }
  dropExchange(call);
  note(call, leg.side == kCaller ? "ended by caller" : "ended by target");
  ++counters_.ended;
  sendBye(call, otherOf(leg.side));
  forget(call);
  return 200;
}

/// The call ends while an INVITE is on its way.
void Engine::dropExchange(Call& call) {
  if (!call.exchange) return;
  if (call.exchange->answered && !call.exchange->acknowledged) sendAck(call, "");
  if (!call.exchange->answered && !call.exchange->cancelled) cancel(call, 487);
}

/// Ends the call from here.
void Engine::end(Call& call, const std::string& why) {
  note(call, "ended by " + why);
  dropExchange(call);
  ++(call.established ? counters_.ended : counters_.failed);
  sendBye(call, kCaller);
  sendBye(call, kTarget);
  forget(call);
}

void Engine::forget(Call& call) {
  if (call.established && !store_.remove(call.id)) note(call, "could not be removed from the store");
  calls_.erase(std::string(call.id));
}

void Engine::sendBye(Call& call, Side to) {
  Leg& leg = call.legs[to];
  if (send(leg, SIP_METHOD_BYE, ++leg.cseq, "", onByeResponse, &listener_) != nullptr) ++openByes_;
}

int Engine::onByeResponse(Leg* listener, nta_outgoing_t* transaction, const sip_t* response) {
  if (response != nullptr && response->sip_status->st_status < 200) return 0;
  --listener->engine->openByes_;
  nta_outgoing_destroy(transaction);
  return 0;
}

bool Engine::idle() const {
  return openByes_ == 0 &&
         std::ranges::all_of(calls_, [](const auto& call) { return call.second.established; });
}

void Engine::finish() {
  stopping_ = true;
  std::vector<Call*> calls;
  for (auto& [id, call] : calls_) calls.push_back(&call);
  for (Call* const call : calls) {
    if (call->established ? !store_.isUsed() : call->exchange->answered) {
      end(*call, "engine: it stops");
    } else if (!call->established) {
      cancel(*call, 503);
    }
  }
}

}  // namespace b2bua
