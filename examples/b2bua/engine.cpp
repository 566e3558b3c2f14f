#include "engine.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <stdexcept>

#include "passedHeaders.h"

namespace b2bua {

namespace {

constexpr std::chrono::milliseconds kBetweenConnections{100};

/// The engine finds the dialogs of requests by itself.
int refuseAll(Leg*, nta_leg_t*, nta_incoming_t*, const sip_t*) { return 481; }

void takeAllow(Leg& leg, const sip_t& message) {
  if (message.sip_allow != nullptr)
    leg.allowsUpdate = sip_is_allowed(message.sip_allow, SIP_METHOD_UPDATE) != 0;
}

}  // namespace

Engine::Engine(su_root_t* root, const Options& options, StateStore& store, Log& log)
    : root_(root),
      options_(options),
      store_(store),
      log_(log),
      media_(makeMediaRelay(root, options.media, log, counters_)),
      connections_(store.connections()) {
  agent_ = transports_.open(root, onMessage, this);
  if (std::ranges::any_of(options.targets,
                          [this](const Target& target) { return transports_.isOwn(target.address); }))
    throw std::runtime_error("--target is the engine itself");
  everySecond_.reset(su_timer_create(su_root_task(root), 1'000));
  su_timer_set_for_ever(everySecond_.get(), onSecond, this);
  gate_.open(transports_.portOf("udp"));
  for (const Target& target : options.targets) sources_.trust(hostOf(target.address));
  for (const std::string& address : options.trusted) sources_.trust(address);
  listener_.engine = this;
  elsewhere_ = "sip:" + randomText() + ".invalid";
}

void Engine::limitConnections() {
  const auto now = std::chrono::steady_clock::now();
  if (now < nextConnections_) return;
  nextConnections_ = now + kBetweenConnections;
  counters_.closedConnections += transports_.closeSome();
}

/// A header that says why.
std::string Engine::warning(const std::string& text) const {
  return "Warning: 399 " + address() + " \"" + text + "\"";
}

void Engine::note(const Call& call, std::string_view event, const Members& members, LogLevel level) {
  log_.write(event, members, level, call.id);
}

unsigned long Engine::malformed() const {
  unsigned int malformed = 0;
  nta_agent_get_stats(agent_.get(), NTATAG_S_BAD_MESSAGE_REF(malformed), TAG_END());
  return malformed;
}

void Engine::sift() {
  counters_.of(Limit::messagesOfSource) += gate_.sift([this] { return malformed(); });
}

Snapshot Engine::snapshot() const {
  Snapshot snapshot{std::chrono::steady_clock::now(), counters_, setupTimes_};
  unsigned int messages = 0;
  nta_agent_get_stats(agent_.get(), NTATAG_S_RECV_MSG_REF(messages), TAG_END());
  snapshot.counters.malformed = malformed();
  snapshot.messages = messages;
  snapshot.calls = calls_.size();
  snapshot.transactions = transactions();
  snapshot.memory = residentMemory();
  if (isMediaGone()) snapshot.notReady = "the media relay is gone";
  if (calls_.size() >= options_.maxCalls) snapshot.notReady = "as many calls as there may be";
  if (stopping_) snapshot.notReady = "draining";
  return snapshot;
}

void Engine::showCounters() const {
  Counters all = snapshot().counters;
  std::printf("counters");
  for (const CounterName& counter : kCounterNames) std::printf(" %s=%lu", counter.name, all.*counter.value);
  std::printf(" to_keep=%zu overload=%lu active=%zu\n", toKeep_.size() + toLookAfter_.size(), all.overload(),
              calls_.size());
  std::fflush(stdout);
}

Call& Engine::addCall(const std::string& id) {
  Call& call = calls_[id];
  call.id = id;
  call.begun = std::chrono::steady_clock::now();
  for (const Side side : {kCaller, kTarget}) {
    call.legs[side].engine = this;
    call.legs[side].call = &call;
    call.legs[side].side = side;
  }
  return call;
}

/// Makes the stack's part of a dialog from what the leg holds.
///
/// Requests are kept from it by a URL that none of them has: it would keep a transaction for each, and so could be made
/// to fill the memory.
void Engine::openDialog(Leg& leg) {
  su_home_t home[1] = {SU_HOME_INIT(home)};
  const sip_contact_t* const contact = sip_contact_make(home, leg.contact.c_str());
  leg.dialog.reset(nta_leg_tcreate(agent_.get(), refuseAll, &leg, URLTAG_URL(urlOf(elsewhere_)),
                                   SIPTAG_CALL_ID_STR(leg.callId.c_str()), SIPTAG_FROM_STR(leg.local.c_str()),
                                   SIPTAG_TO_STR(leg.remote.c_str()), NTATAG_TARGET(contact), TAG_END()));
  // Not as a tag above: the stack takes that for the route of strict routers.
  if (!leg.routes.empty())
    nta_leg_server_route(leg.dialog.get(), sip_record_route_make(home, leg.routes.c_str()), contact);
  su_home_deinit(home);
}

/// A request that may change where the party wants to be reached.
void Engine::takeTarget(Leg& leg, const sip_t& request) {
  nta_leg_server_route(leg.dialog.get(), nullptr, request.sip_contact);
  takeAllow(leg, request);
}

/// The party's tag is known only now. Another one is another dialog: the INVITE was forked on its way.
void Engine::enterDialog(Leg& leg, const sip_t& response) {
  const char* const known = nta_leg_get_rtag(leg.dialog.get());
  const char* const tag = response.sip_to->a_tag;
  if (tag != nullptr && (known == nullptr || std::strcmp(known, tag) != 0)) {
    leg.remote = headerText(response.sip_to);
    if (known == nullptr) {
      nta_leg_rtag(leg.dialog.get(), tag);
    } else {
      openDialog(leg);
    }
  }
  nta_leg_client_route(leg.dialog.get(), response.sip_record_route, response.sip_contact);
  takeAllow(leg, response);
}

/// The next INVITE begins anew.
void Engine::leaveDialog(Leg& leg) {
  if (nta_leg_get_rtag(leg.dialog.get()) == nullptr) return;
  leg.remote = leg.contact;
  openDialog(leg);
}

/// Nothing more is relayed to whom cancelled; the call is forgotten when the target has answered.
void Engine::onCancel(Call& call) {
  Exchange& exchange = *call.exchange;
  if (exchange.answered || exchange.cancelled) return;
  note(call, "cancelled");
  if (!call.established) ++counters_.cancelled;
  cancel(call, 487);
  giveUp(call);
}

/// Refuses an INVITE that has no final answer yet.
void Engine::cancel(Call& call, int status) {
  answer(call, status);
  call.exchange->cancelled = true;
  // Only an INVITE that has no final response can be cancelled (RFC 3261 9.1).
  if (call.exchange->outgoing && !call.exchange->concluded && !call.exchange->acknowledged)
    nta_outgoing_cancel(call.exchange->outgoing.get());
}

/// An INVITE that was refused is over when the other side has accepted it, or was never asked; else its answer is
/// still to come.
void Engine::giveUp(Call& call) {
  if (call.exchange->outgoing && !call.exchange->concluded) return;
  leave(call);
  if (call.established) return complete(call);
  forget(call);
}

/// The other side may have accepted what comes to nothing, and is told so.
void Engine::leave(Call& call) {
  sendAck(call, "");
  if (call.exchange->concluded && !call.established && !call.aside)
    sendBye(call.legs[otherOf(call.exchange->from)]);
}

void Engine::onBye(Leg& leg, Owned<msg_t> message, const sip_t& bye) {
  Call& call = *leg.call;
  const std::string headers = passedHeaders(bye, options_.passHeaders);
  leg.remoteCseq = bye.sip_cseq->cs_seq;
  if (hasTooManyTransactions()) {
    reply(std::move(message), 200);
  } else {
    const Owned<nta_incoming_t> transaction(
        nta_incoming_create(agent_.get(), leg.dialog.get(), message.release(), nullptr, TAG_END()));
    nta_incoming_treply(transaction.get(), 200, sip_status_phrase(200), TAG_END());
  }
  abandonUpdate(call);
  if (!call.established && !call.exchange->answered) {
    if (leg.side == kCaller) return onCancel(call);
    // It has hung up while its body was on its way.
    sendAck(call, "");
    if (call.exchange->concluded) fail(call, 480);
    return;
  }
  dropExchange(call);
  note(call, "ended", {{"by", leg.side == kCaller ? "caller" : "target"}});
  ++counters_.ended;
  sendBye(call.legs[otherOf(leg.side)], headers);
  forget(call);
}

/// The call ends while an INVITE is on its way.
void Engine::dropExchange(Call& call) {
  if (!call.exchange) return;
  sendAnswer(call);
  if (!call.exchange) return;
  sendAck(call, "");
  if (!call.exchange->answered && !call.exchange->cancelled) cancel(call, 487);
}

/// Ends the call from here.
void Engine::end(Call& call, const std::string& why) {
  if (!isOwn(call)) return giveAway(call);
  note(call, "ended", {{"by", "engine"}, {"reason", why}});
  dropExchange(call);
  ++(call.established ? counters_.ended : counters_.failed);
  sendBye(call.legs[kCaller]);
  sendBye(call.legs[kTarget]);
  forget(call);
}

void Engine::forget(Call& call) {
  if (call.kept && !store_.remove(call.id, call.takenOver)) {
    note(call, "could not be removed from the store", {}, LogLevel::warning);
    lookAfter(call.id);
  }
  if (call.relayed) media_->release(call);
  calls_.erase(std::string(call.id));
}

void Engine::sendBye(Leg& leg, const std::string& headers) {
  if (send(leg, SIP_METHOD_BYE, ++leg.cseq, "", onByeResponse, &listener_, headers) != nullptr) ++openByes_;
}

int Engine::onByeResponse(Leg* listener, nta_outgoing_t* transaction, const sip_t* response) {
  if (response->sip_status->st_status < 200) return 0;
  --listener->engine->openByes_;
  nta_outgoing_destroy(transaction);
  return 0;
}

bool Engine::idle() const {
  return openByes_ == 0 && abandoned_.empty() &&
         std::ranges::all_of(calls_, [](const auto& call) { return call.second.established; });
}

void Engine::finish() {
  drain();
  keepAll();
  std::vector<Call*> calls;
  for (auto& [id, call] : calls_) calls.push_back(&call);
  for (Call* const call : calls) {
    abandonUpdate(*call);
    if (call->established ? !store_.isUsed() : call->exchange->answered) {
      end(*call, "it stops");
    } else if (!call->established) {
      cancel(*call, 503);
      giveUp(*call);
    }
  }
}

}  // namespace b2bua
