// What comes to the engine, and what becomes a transaction. Only INVITE and BYE of a call do, and UPDATE with a body:
// the stack remembers each transaction for 32 seconds, so all else is answered and forgotten.

#include <algorithm>
#include <cstdio>
#include <random>

#include "engine.h"
#include "passedHeaders.h"

namespace b2bua {

namespace {

constexpr const char* kExtensions = "100rel, timer";
constexpr std::size_t kIdSize = 16;
constexpr unsigned long kMostUnknownTags = 5;  ///< asked for in the store within a second

Side sideOf(const std::string& tag) { return tag.ends_with("-c") ? kCaller : kTarget; }

std::string tagIn(const sip_t& request) {
  return request.sip_to->a_tag != nullptr ? request.sip_to->a_tag : "";
}

std::string idOf(const std::string& tag) { return tag.substr(0, tag.rfind('-')); }

/// @return whether a request belongs to a dialog; the party's tag may be unknown yet
bool isOf(const Leg& leg, const sip_t& request) {
  if (!leg.dialog || leg.callId != request.sip_call_id->i_id) return false;
  const char* const party = nta_leg_get_rtag(leg.dialog.get());
  return party == nullptr ||
         (request.sip_from->a_tag != nullptr && std::string_view(party) == request.sip_from->a_tag);
}

/// @return a header with the extensions that the other side insists on and that are none here (RFC 3261 8.2.2.3)
std::string unsupportedIn(const sip_t& request) {
  if (request.sip_require == nullptr) return "";
  su_home_t home[1] = {SU_HOME_INIT(home)};
  const sip_supported_t* const supported = sip_supported_make(home, kExtensions);
  const sip_unsupported_t* const unsupported = sip_has_unsupported(home, supported, request.sip_require);
  std::string header = unsupported == nullptr ? "" : "Unsupported: " + headerText(unsupported);
  su_home_deinit(home);
  return header;
}

/// @return headers that tell what the engine takes (RFC 3261 11.2)
std::string abilities() {
  return std::string(kAllow) + "\r\nAccept: application/sdp, multipart/mixed\r\nSupported: " + kExtensions;
}

}  // namespace

std::string tagOf(const std::string& id, Side side) { return id + (side == kCaller ? "-c" : "-t"); }

std::string randomText() {
  static std::random_device random;
  char text[kIdSize + 1];
  std::snprintf(text, sizeof text, "%08x%08x", random(), random());
  return text;
}

/// What belongs to no transaction.
int Engine::onMessage(Engine* engine, nta_agent_t*, msg_t* message, sip_t* content) {
  Owned<msg_t> owner(message);
  if (engine->transports_.of(message) != "udp" && engine->gate_.isBeyond(msg_addr(message)->su_sa)) {
    ++engine->counters_.of(Limit::messagesOfSource);
    return 0;
  }
  // Responses come too late.
  if (content == nullptr || content->sip_request == nullptr) return 0;
  if (content->sip_request->rq_method == sip_method_ack) {
    engine->onStrayAck(*content);
  } else {
    engine->onRequest(std::move(owner), *content);
  }
  return 0;
}

void Engine::reply(Owned<msg_t> message, int status, const std::string& header) {
  nta_msg_treply(agent_.get(), message.release(), status, sip_status_phrase(status),
                 TAG_IF(!header.empty(), SIPTAG_HEADER_STR(header.c_str())), TAG_END());
}

std::size_t Engine::transactions() const {
  usize_t incoming = 0;
  usize_t outgoing = 0;
  nta_agent_get_stats(agent_.get(), NTATAG_S_IRQ_HASH_USED_REF(incoming),
                      NTATAG_S_ORQ_HASH_USED_REF(outgoing), TAG_END());
  return incoming + outgoing;
}

bool Engine::hasTooMuchMemory() {
  constexpr std::size_t kMegabyte = 1 << 20;
  if (options_.maxMemory == 0) return false;
  if (memoryReads_.sum() == 0) {
    memoryReads_.add();
    memory_ = residentMemory();
  }
  return memory_ > options_.maxMemory * kMegabyte;
}

/// The last tenth of the transactions is for calls that are there.
std::optional<Limit> Engine::limitOfCalls(const sockaddr& source) {
  if (stopping_) return Limit::draining;
  if (isMediaGone()) return Limit::mediaGone;
  SourceCounts* const counts = sources_.of(source);
  if (counts != nullptr && options_.maxCallsPerSource != 0 && counts->calls >= options_.maxCallsPerSource)
    return Limit::callsOfSource;
  if (calls_.size() >= options_.maxCalls) return Limit::calls;
  if (invites_.sum() >= options_.maxInvites) return Limit::invites;
  if (transactions() >= options_.maxTransactions - options_.maxTransactions / 10) return Limit::transactions;
  if (hasTooMuchMemory()) return Limit::memory;
  if (counts != nullptr) ++counts->calls;
  invites_.add();
  return std::nullopt;
}

/// However many calls somebody begins, those that are there have their own share.
std::optional<Limit> Engine::limitOfReoffers() {
  if (reoffers_.sum() >= options_.maxInvites) return Limit::invites;
  if (hasTooManyTransactions()) return Limit::transactions;
  reoffers_.add();
  return std::nullopt;
}

void Engine::turnAway(Owned<msg_t> message, Limit limit) {
  ++counters_.of(limit);
  const bool soon = limit == Limit::invites || limit == Limit::callsOfSource || limit == Limit::mediaGone;
  std::string header = std::string("Retry-After: ") + (soon ? "1" : "10");
  if (limit == Limit::mediaGone) header += "\r\n" + warning("the media relay is gone");
  reply(std::move(message), 503, header);
}

void Engine::onRequest(Owned<msg_t> message, const sip_t& request) {
  const sip_method_t method = request.sip_request->rq_method;
  const bool outside = request.sip_to->a_tag == nullptr;
  const bool options = method == sip_method_options;
  if (options && outside && stopping_) return turnAway(std::move(message), Limit::draining);
  if (method == sip_method_cancel || method == sip_method_prack) return reply(std::move(message), 481);
  if (!options && method != sip_method_invite && method != sip_method_bye && method != sip_method_update)
    return reply(std::move(message), 405, kAllow);
  if (const std::string header = unsupportedIn(request); !header.empty())
    return reply(std::move(message), 420, header);
  if (const std::string header = tooShortSession(options_.session, request); !header.empty())
    return reply(std::move(message), 422, header);
  if (options && outside) return reply(std::move(message), 200, abilities());
  if (outside && method == sip_method_invite) return onFirstInvite(std::move(message), request);
  Leg* leg = find(request);
  if (leg != nullptr && !isOwn(*leg->call)) {
    giveAway(*leg->call);
    leg = nullptr;
  }
  if (leg == nullptr && mayBeStored(request)) {
    // It may be of a call in the store, and is repeated; an answer would end that call.
    if (takeOver(request) == Found::unknown) return;
    leg = find(request);
  }
  if (leg == nullptr) return reply(std::move(message), 481);
  onRequestInDialog(*leg, std::move(message), request);
}

nta_incoming_t* Engine::openTransaction(const Leg& leg, Owned<msg_t> message) {
  return nta_incoming_create(agent_.get(), leg.dialog.get(), message.release(), nullptr, TAG_END());
}

void Engine::onRequestInDialog(Leg& leg, Owned<msg_t> message, const sip_t& request) {
  const bool bye = request.sip_request->rq_method == sip_method_bye;
  if (request.sip_cseq->cs_seq < leg.remoteCseq) return reply(std::move(message), 500);
  // As a sign that the call is there it says enough; its number is that of no other request.
  if (request.sip_request->rq_method == sip_method_options)
    return reply(std::move(message), 200, abilities());
  if (request.sip_request->rq_method == sip_method_update) return onUpdate(leg, std::move(message), request);
  if (!bye && leg.call->exchange) return reply(std::move(message), 491);
  if (const auto limit = bye ? std::nullopt : limitOfReoffers()) return turnAway(std::move(message), *limit);
  leg.remoteCseq = request.sip_cseq->cs_seq;
  const std::string passed = bye ? passedHeaders(request, options_.passHeaders) : "";
  if (bye && hasTooManyTransactions()) {
    reply(std::move(message), 200);
    return onBye(leg, passed);
  }
  const Owned<msg_t> kept(
      msg_ref_create(message.get()));  // the request is read while its transaction may end
  nta_incoming_t* const transaction = openTransaction(leg, std::move(message));
  if (transaction == nullptr) return;
  if (!bye) return onInvite(leg, transaction, request);
  nta_incoming_treply(transaction, 200, sip_status_phrase(200), TAG_END());
  nta_incoming_destroy(transaction);
  onBye(leg, passed);
}

void Engine::onFirstInvite(Owned<msg_t> message, const sip_t& invite) {
  if (invite.sip_contact == nullptr || invite.sip_from->a_tag == nullptr)
    return reply(std::move(message), 400);
  if (const auto limit = limitOfCalls(msg_addr(message.get())->su_sa))
    return turnAway(std::move(message), *limit);
  ++counters_.calls;
  const std::string id = randomText();
  Call& call = addCall(id);
  Leg& caller = call.legs[kCaller];
  caller.callId = invite.sip_call_id->i_id;
  caller.local = headerText(invite.sip_to) + ";tag=" + tagOf(id, kCaller);
  caller.remote = headerText(invite.sip_from);
  caller.contact = headerText(invite.sip_contact);
  caller.remoteCseq = invite.sip_cseq->cs_seq;
  caller.transport = transports_.of(message.get());
  openDialog(caller);
  nta_leg_server_route(caller.dialog.get(), invite.sip_record_route, invite.sip_contact);

  Leg& target = call.legs[kTarget];
  sip_from_t from = *invite.sip_from;
  from.a_params = nullptr;
  target.local = headerText(&from) + ";tag=" + tagOf(id, kTarget);
  beginHunt(call, invite.sip_request->rq_url->url_user);
  sip_from_t named = *invite.sip_from;
  named.a_url->url_password = nullptr;
  note(call, "invited", {{"by", headerText(&named)}});
  const Owned<msg_t> kept(msg_ref_create(message.get()));
  nta_incoming_t* const transaction = openTransaction(caller, std::move(message));
  if (transaction == nullptr) {
    calls_.erase(id);
    return;
  }
  onInvite(caller, transaction, invite);
}

Leg* Engine::find(const sip_t& request) {
  const std::string tag = tagIn(request);
  const auto call = calls_.find(idOf(tag));
  if (call == calls_.end() || tag != tagOf(call->first, sideOf(tag))) return nullptr;
  Leg& leg = call->second.legs[sideOf(tag)];
  return isOf(leg, request) ? &leg : nullptr;
}

/// @return whether a request names a call that a former process may have kept
bool Engine::mayBeStored(const sip_t& request) const {
  const std::string tag = tagIn(request);
  const std::string id = idOf(tag);
  return store_.isUsed() && id.size() == kIdSize && tag == tagOf(id, sideOf(tag)) && !calls_.contains(id);
}

/// The 200 of this call came from another process, and its ACK is the other party's.
void Engine::onStrayAck(const sip_t& ack) {
  if (ack.sip_to != nullptr && mayBeStored(ack)) takeOver(ack);
}

/// Goes on with the call of a request that only the store knows.
Found Engine::takeOver(const sip_t& request) {
  if (unknownTags_.sum() >= kMostUnknownTags || calls_.size() >= options_.maxCalls) {
    ++counters_.of(calls_.size() >= options_.maxCalls ? Limit::calls : Limit::unknownTags);
    return Found::unknown;
  }
  const std::string tag = tagIn(request);
  const std::string id = idOf(tag);
  const Side side = sideOf(tag);
  Call& call = addCall(id);
  Found found = store_.load(call);
  if (found == Found::yes) {
    for (Leg& leg : call.legs) openDialog(leg);
    if (!call.legs[otherOf(side)].dialog || !isOf(call.legs[side], request)) found = Found::no;
  }
  if (found == Found::no) unknownTags_.add();
  if (found == Found::yes && !store_.claim(call)) found = Found::unknown;
  if (found != Found::yes) {
    calls_.erase(id);
    return found;
  }
  call.established = call.kept = call.takenOver = true;
  call.keptAt = std::chrono::steady_clock::now();
  call.relayed = media_ != nullptr;
  if (media_) media_->resume(call);
  ++counters_.takenOver;
  note(call, "taken over from store");
  for (Leg& leg : call.legs) acknowledge(leg);
  return Found::yes;
}

}  // namespace b2bua
