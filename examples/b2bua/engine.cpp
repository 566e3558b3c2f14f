#include "engine.h"

#include <cstdio>

namespace b2bua {

namespace {

constexpr std::chrono::seconds kSweepEvery{1};
constexpr std::chrono::minutes kLongestRinging{3};
constexpr std::chrono::hours kLongestCall{12};

constexpr unsigned long kMalformedLogged = 100;  ///< more are only counted
constexpr const char* kAllow = "Allow: INVITE, ACK, CANCEL, BYE, OPTIONS\r\n";

/// The engine's tag in a dialog names the call and the side, so that any process finds them.
std::string tagOf(const std::string& id, Side side) { return id + (side == kCaller ? "-c" : "-t"); }

}  // namespace

Engine::Engine(const Options& options, const Policy& policy, const UdpSocket& socket, StateStore& store,
               Log& log)
    : options_(options),
      policy_(policy),
      socket_(socket),
      store_(store),
      log_(log),
      transactions_(socket,
                    {[this](const SipMessage& request, const std::string& key) { onRequest(request, key); },
                     [this](const std::string& key) { onCancel(key); },
                     [this](const std::string& key) { onNoAck(key); }}) {}

void Engine::note(const Call& call, const std::string& event) { log_.write("call " + call.id + " " + event); }

void Engine::showCounters() const {
  const Counters& c = counters_;
  std::printf(
      "counters calls=%lu established=%lu ended=%lu failed=%lu cancelled=%lu reoffers=%lu refused_bodies=%lu "
      "malformed=%lu taken_over=%lu active=%zu transactions=%zu\n",
      c.calls, c.established, c.ended, c.failed, c.cancelled, c.reoffers, c.refusedBodies, c.malformed,
      c.takenOver, calls_.size(), transactions_.count());
  std::fflush(stdout);
}

void Engine::receive(std::string_view datagram, const Endpoint& source) {
  if (datagram.find_first_not_of("\r\n") == std::string_view::npos) return;  // a keep-alive
  const auto message = parseSip(datagram, source);
  if (message) return transactions_.receive(*message);
  if (++counters_.malformed > kMalformedLogged) return;
  log_.write("malformed message of " + std::to_string(datagram.size()) + " bytes from " + source.text());
}

/// @return the call of a request within a dialog, taken over from the store if need be
Call* Engine::findDialog(const SipMessage& request, Side& side) {
  const std::size_t dash = request.toTag.rfind('-');
  const std::string id = request.toTag.substr(0, dash);
  if (dash == std::string::npos || id.empty()) return nullptr;
  side = request.toTag == tagOf(id, kCaller) ? kCaller : kTarget;
  auto found = calls_.find(id);
  if (found == calls_.end()) {
    Call loaded;
    if (calls_.size() >= options_.maxCalls || !store_.load(id, loaded)) return nullptr;
    found = calls_.emplace(id, std::move(loaded)).first;
    ++counters_.takenOver;
    note(found->second, "taken over from store");
  }
  const Leg& leg = found->second.legs[side];
  return leg.callId == request.callId && leg.remoteTag == request.fromTag ? &found->second : nullptr;
}

void Engine::onRequest(const SipMessage& request, const std::string& key) {
  const bool invite = request.method == "INVITE";
  if (invite && request.toTag.empty()) return onFirstInvite(request, key);
  if (request.method == "OPTIONS") return transactions_.respond(key, {.status = 200, .headers = kAllow});
  if (!invite && request.method != "BYE" && request.method != "ACK") {
    return transactions_.respond(key, {.status = 405, .headers = kAllow});
  }
  Side side = kCaller;
  Call* const call = findDialog(request, side);
  if (call == nullptr) return transactions_.respond(key, {.status = 481});
  if (request.method == "ACK") return onAck(*call, side, request);
  Leg& leg = call->legs[side];
  if (request.cseq <= leg.remoteCseq) return transactions_.respond(key, {.status = 500});
  leg.remoteCseq = request.cseq;
  leg.peer = request.replyTo;
  if (invite) return onInvite(*call, side, request, key);
  onBye(*call, side, key);
}

void Engine::onFirstInvite(const SipMessage& invite, const std::string& key) {
  if (invite.contact.empty() || invite.fromTag.empty()) {
    return transactions_.respond(key, {.status = 400, .toTag = randomText()});
  }
  if (stopping_ || calls_.size() >= options_.maxCalls) {
    return transactions_.respond(key, {.status = 503, .toTag = randomText()});
  }
  ++counters_.calls;
  const std::string id = randomText();
  Call& call = calls_[id];
  call.id = id;
  Leg& caller = call.legs[kCaller];
  caller.callId = invite.callId;
  caller.local = invite.to + ";tag=" + tagOf(id, kCaller);
  caller.remote = invite.from;
  caller.remoteTag = invite.fromTag;
  caller.contact = invite.contact;
  caller.routes = routesOf(invite.recordRoutes);
  caller.peer = invite.replyTo;
  caller.remoteCseq = invite.cseq;
  Leg& target = call.legs[kTarget];
  const std::string user = invite.requestUser.empty() ? "" : invite.requestUser + "@";
  target.callId = randomText();
  target.contact = "sip:" + user + options_.target.text();
  target.local = invite.fromAddress + ";tag=" + tagOf(id, kTarget);
  target.remote = "<" + target.contact + ">";
  target.peer = options_.target;
  note(call, "invited by " + invite.from);
  onInvite(call, kCaller, invite, key);
}

/// Nothing more is relayed to whom cancelled; the call is forgotten when the target has answered.
void Engine::onCancel(const std::string& key) {
  const auto found = invites_.find(key);
  if (found == invites_.end()) return;
  Call& call = calls_.at(found->second);
  Exchange& exchange = *call.exchange;
  if (exchange.answered || exchange.cancelled) return;
  note(call, "cancelled");
  if (exchange.first) ++counters_.cancelled;
  answer(call, {.status = 487});
  exchange.cancelled = true;
  transactions_.cancel(exchange.branch);
}

void Engine::onNoAck(const std::string& key) {
  const auto found = invites_.find(key);
  if (found != invites_.end()) end(calls_.at(found->second), "engine: no ACK");
}

void Engine::onBye(Call& call, Side side, const std::string& key) {
  transactions_.respond(key, {.status = 200});
  if (call.exchange && call.exchange->first && !call.exchange->answered) {
    if (side == kCaller) onCancel(call.exchange->key);
    return;
  }
  dropExchange(call);
  note(call, side == kCaller ? "ended by caller" : "ended by target");
  ++counters_.ended;
  sendBye(call, otherOf(side));
  forget(call);
}

/// The call ends while an INVITE is on its way.
void Engine::dropExchange(Call& call) {
  if (!call.exchange) return;
  if (call.exchange->answered && !call.exchange->acknowledged) sendAck(call, "");
  answer(call, {.status = 487});
  transactions_.cancel(call.exchange->branch);
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
  if (call.exchange) invites_.erase(call.exchange->key);
  if (call.established && !store_.remove(call.id)) note(call, "could not be removed from the store");
  calls_.erase(std::string(call.id));
}

SipRequest Engine::requestOn(const Leg& leg, const std::string& method, unsigned int cseq) {
  SipRequest request;
  request.method = method;
  request.uri = leg.contact;
  request.callId = leg.callId;
  request.from = leg.local;
  request.to = leg.remote;
  request.cseq = cseq;
  request.routes = leg.routes;
  const std::size_t bracket = leg.routes.find('<') + 1;
  const std::string next =
      bracket == 0 ? leg.contact : leg.routes.substr(bracket, leg.routes.find('>') - bracket);
  request.destination = endpointOfUri(next, leg.peer);
  return request;
}

void Engine::sendBye(Call& call, Side to) {
  Leg& leg = call.legs[to];
  transactions_.request(requestOn(leg, "BYE", ++leg.localCseq), [](const SipMessage&) {});
}

void Engine::runTimers(Clock::time_point now) {
  transactions_.runTimers(now);
  if (now < nextSweep_) return;
  nextSweep_ = now + kSweepEvery;
  sweep(now);
}

/// What rings or talks for too long ends, so that lost calls do not fill the engine.
void Engine::sweep(Clock::time_point now) {
  std::vector<std::string> ringing;
  std::vector<std::string> talking;
  for (const auto& [id, call] : calls_) {
    if (call.established && now - call.since > kLongestCall) talking.push_back(id);
    if (!call.established && call.exchange && !call.exchange->cancelled &&
        now - call.since > kLongestRinging) {
      ringing.push_back(id);
    }
  }
  for (const std::string& id : ringing) {
    Call& call = calls_.at(id);
    if (call.exchange->answered) continue;
    note(call, "failed with 408");
    ++counters_.failed;
    answer(call, {.status = 408});
    call.exchange->cancelled = true;
    transactions_.cancel(call.exchange->branch);
  }
  for (const std::string& id : talking) end(calls_.at(id), "engine: too long");
}

void Engine::finish() {
  stopping_ = true;
  std::vector<std::string> ids;
  for (const auto& [id, call] : calls_) ids.push_back(id);
  for (const std::string& id : ids) {
    Call& call = calls_.at(id);
    if (call.established && !store_.isUsed()) {
      end(call, "engine: it stops");
    } else if (!call.established && call.exchange) {
      answer(call, {.status = 503});
      call.exchange->cancelled = true;
      transactions_.cancel(call.exchange->branch);
    }
  }
}

}  // namespace b2bua
