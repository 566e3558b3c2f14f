// What comes to the engine, and what becomes a transaction. Only INVITE and BYE of a call do, and UPDATE with a body:
// the stack remembers each transaction for 32 seconds, so all else is answered and forgotten.

#include <algorithm>
#include <cstdio>
#include <random>

#include "engine.h"
#include "multipart.h"
#include "redirects.h"

namespace b2bua {

namespace {

constexpr std::array kExtensions = {k100rel, kTimer};
constexpr std::size_t kMostUnsupported = 32;  ///< extensions that are told
constexpr std::size_t kIdSize = 16;
constexpr unsigned long kMostUnknownTags = 5;  ///< asked for in the store within a second

/// A call, and one of its sides.
struct Place {
  std::string id;
  Side side = kCaller;
};

/// @return what the engine's tag in a request names; none when it is none of the engine's
std::optional<Place> placeIn(const sip_t& request) {
  const std::string tag = request.sip_to->a_tag != nullptr ? request.sip_to->a_tag : "";
  const Place place{tag.substr(0, kIdSize), tag.ends_with("-c") ? kCaller : kTarget};
  return place.id.size() == kIdSize && tag == tagOf(place.id, place.side) ? std::optional(place)
                                                                          : std::nullopt;
}

/// @return whether a request belongs to a dialog; the party's tag may be unknown yet
bool isOf(const Leg& leg, const sip_t& request) {
  if (!leg.dialog || leg.callId != request.sip_call_id->i_id) return false;
  const char* const party = nta_leg_get_rtag(leg.dialog.get());
  return party == nullptr ||
         (request.sip_from->a_tag != nullptr && std::string_view(party) == request.sip_from->a_tag);
}

/// @return a header with extensions that the other side insists on and that are none here (RFC 3261 8.2.2.3); some of
///   them when there are many
std::string unsupportedIn(const sip_t& request) {
  std::string header;
  std::size_t count = 0;
  const msg_param_t* each = request.sip_require != nullptr ? request.sip_require->k_items : nullptr;
  for (; each != nullptr && *each != nullptr && count < kMostUnsupported; ++each) {
    if (std::ranges::any_of(kExtensions, [each](const char* own) { return su_casematch(*each, own) != 0; }))
      continue;
    header += (count++ == 0 ? "Unsupported: " : ", ") + std::string(*each);
  }
  return header;
}

/// @return a header that tells when to try again, at a time that others do not choose, too
std::string retryAfter() {
  return "Retry-After: " + std::to_string(std::stoul(randomText(), nullptr, 16) % 11);
}

/// @return headers that tell what the engine takes (RFC 3261 11.2)
std::string abilities() {
  return std::string(kAllow) + "\r\nAccept: application/sdp, multipart/mixed\r\nSupported: 100rel, timer";
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
  if (content->sip_request == nullptr) return 0;
  if (content->sip_request->rq_method == sip_method_ack) {
    // The 200 of its call came from another process, and it is the other party's, too.
    engine->takeOver(*content);
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
  if (!options && method != sip_method_invite && method != sip_method_bye && method != sip_method_update &&
      method != sip_method_info)
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
  if (leg == nullptr) {
    // It may be of a call in the store, and is repeated; an answer would end that call.
    if (takeOver(request) == Found::unknown) return;
    leg = find(request);
  }
  if (leg == nullptr) return reply(std::move(message), 481);
  onRequestInDialog(*leg, std::move(message), request);
}

void Engine::onRequestInDialog(Leg& leg, Owned<msg_t> message, const sip_t& request) {
  const sip_method_t method = request.sip_request->rq_method;
  Call& call = *leg.call;
  if (request.sip_cseq->cs_seq < leg.remoteCseq) return reply(std::move(message), 500);
  // As a sign that the call is there it says enough; its number is that of no other request.
  if (method == sip_method_options) return reply(std::move(message), 200, abilities());
  if (method == sip_method_bye) return onBye(leg, std::move(message), request);
  if (method == sip_method_info) return onInfo(leg, std::move(message), request);
  const bool update = method == sip_method_update;
  const std::optional<std::string> body = sdpOf(request);
  if (update && !body) return reply(std::move(message), 415, "Accept: application/sdp");
  if (update && body->empty()) return onSignOfLife(leg, std::move(message), request);
  if (call.exchange && !(update && mayUpdateEarly(call, leg))) {
    // An offer of its own that has no answer yet, or one that the party has not answered.
    const bool own = update && call.exchange->incoming && call.exchange->from == leg.side;
    return own ? reply(std::move(message), 500, retryAfter()) : reply(std::move(message), 491);
  }
  if (const auto limit = limitOfReoffers()) return turnAway(std::move(message), *limit);
  ++counters_.reoffers;
  onOffer(leg, std::move(message), request);
}

void Engine::onFirstInvite(Owned<msg_t> message, const sip_t& invite) {
  const char* const user = invite.sip_request->rq_url->url_user;
  if (invite.sip_contact == nullptr || invite.sip_from->a_tag == nullptr ||
      (user != nullptr && !isUser(user)))
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
  caller.transport = transports_.of(message.get());
  openDialog(caller);
  nta_leg_server_route(caller.dialog.get(), invite.sip_record_route, invite.sip_contact);

  sip_from_t from = *invite.sip_from;
  from.a_params = nullptr;
  call.legs[kTarget].local = headerText(&from) + ";tag=" + tagOf(id, kTarget);
  beginHunt(call, user);
  sip_from_t named = *invite.sip_from;
  named.a_url->url_password = nullptr;
  note(call, "invited", {{"by", headerText(&named)}});
  onOffer(caller, std::move(message), invite);
}

Leg* Engine::find(const sip_t& request) {
  const std::optional<Place> place = placeIn(request);
  const auto call = place ? calls_.find(place->id) : calls_.end();
  if (call == calls_.end()) return nullptr;
  Leg& leg = call->second.legs[place->side];
  return isOf(leg, request) ? &leg : nullptr;
}

/// Goes on with the call of a request that only the store knows.
Found Engine::takeOver(const sip_t& request) {
  const std::optional<Place> place = placeIn(request);
  if (!store_.isUsed() || !place || calls_.contains(place->id)) return Found::no;
  if (unknownTags_.sum() >= kMostUnknownTags || calls_.size() >= options_.maxCalls) {
    ++counters_.of(calls_.size() >= options_.maxCalls ? Limit::calls : Limit::unknownTags);
    return Found::unknown;
  }
  Call& call = addCall(place->id);
  Found found = store_.load(call);
  if (found == Found::yes) {
    for (Leg& leg : call.legs) openDialog(leg);
    if (!call.legs[otherOf(place->side)].dialog || !isOf(call.legs[place->side], request)) found = Found::no;
  }
  if (found == Found::no) unknownTags_.add();
  if (found == Found::yes && !store_.claim(call)) found = Found::unknown;
  if (found != Found::yes) {
    calls_.erase(place->id);
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
