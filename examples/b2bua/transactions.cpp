#include "transactions.h"

#include <algorithm>
#include <cstdio>
#include <random>

namespace b2bua {

namespace {

using std::chrono::milliseconds;

// RFC 3261 table 4
constexpr milliseconds kT1{500};
constexpr milliseconds kT2{4000};
constexpr milliseconds kLifetime = 64 * kT1;
constexpr Clock::duration kNever = Clock::duration::max();

constexpr std::size_t kMaxTransactions = 60'000;

std::string serverKey(const SipMessage& request, const std::string& method) {
  return "s|" + request.branch + "|" + request.replyTo.text() + "|" + request.fromTag + "|" + method;
}

std::string clientKey(const std::string& branch, const std::string& method) {
  return "c|" + branch + "|" + method;
}

}  // namespace

std::string randomText() {
  static std::mt19937_64 generator{std::random_device{}()};
  char text[17];
  std::snprintf(text, sizeof text, "%016llx", static_cast<unsigned long long>(generator()));
  return text;
}

Transactions::Transactions(const UdpSocket& socket, Handlers handlers)
    : socket_(socket), handlers_(std::move(handlers)) {}

std::string Transactions::viaOf(const std::string& branch) const {
  return "SIP/2.0/UDP " + socket_.local().text() + ";rport;branch=" + branch;
}

bool Transactions::idle() const { return waiting_ == 0; }

bool Transactions::full() const { return transactions_.size() >= kMaxTransactions; }

void Transactions::schedule(const std::string& key, Transaction& transaction, Clock::duration interval,
                            Clock::duration end) {
  const auto now = Clock::now();
  transaction.interval = interval;
  transaction.repeat = interval == kNever ? Clock::time_point::max() : now + interval;
  transaction.end = end == kNever ? Clock::time_point::max() : now + end;
  timers_.emplace(std::min(transaction.repeat, transaction.end), key);
}

void Transactions::receive(const SipMessage& message) {
  if (message.status != 0) {
    receiveResponse(message);
  } else if (message.method == "ACK") {
    receiveAck(message);
  } else {
    receiveRequest(message);
  }
}

void Transactions::receiveRequest(const SipMessage& request) {
  const std::string key = serverKey(request, request.method);
  if (const auto found = transactions_.find(key); found != transactions_.end()) {
    if (!found->second.text.empty()) socket_.send(found->second.destination, found->second.text);
    return;
  }
  if (full()) return respondOnce(request, {.status = 503});
  Transaction& transaction = transactions_[key];
  transaction.invite = request.method == "INVITE";
  transaction.request = request;
  transaction.request.body.clear();
  transaction.destination = request.replyTo;
  if (request.method == "CANCEL") return receiveCancel(request);
  handlers_.onRequest(request, key);
}

void Transactions::receiveCancel(const SipMessage& cancel) {
  const std::string invite = serverKey(cancel, "INVITE");
  const bool known = transactions_.contains(invite);
  respond(serverKey(cancel, "CANCEL"), {.status = known ? 200 : 481, .toTag = randomText()});
  if (known) handlers_.onCancel(invite);
}

// The ACK to a refusal belongs to the INVITE's transaction, the one to a 200 has a branch of its own.
void Transactions::receiveAck(const SipMessage& ack) {
  const auto found = transactions_.find(serverKey(ack, "INVITE"));
  if (found == transactions_.end() || found->second.status < 300) return handlers_.onRequest(ack, "");
  confirm(found->first);
}

void Transactions::confirm(const std::string& key) {
  const auto found = transactions_.find(key);
  if (found == transactions_.end()) return;
  found->second.unconfirmed = false;
  found->second.repeat = Clock::time_point::max();
}

void Transactions::respond(const std::string& key, const SipResponse& response) {
  const auto found = transactions_.find(key);
  if (found == transactions_.end() || found->second.final) return;
  Transaction& transaction = found->second;
  transaction.text = response.text(transaction.request);
  transaction.status = response.status;
  socket_.send(transaction.destination, transaction.text);
  if (response.status < 200) return;
  transaction.final = true;
  transaction.unconfirmed = transaction.invite;
  schedule(key, transaction, transaction.invite ? kT1 : kNever, kLifetime);
}

void Transactions::respondOnce(const SipMessage& request, const SipResponse& response) const {
  socket_.send(request.replyTo, response.text(request));
}

std::string Transactions::request(const SipRequest& request, ResponseHandler handler) {
  std::string branch = "z9hG4bK" + randomText();
  start(branch, request, std::move(handler));
  return branch;
}

void Transactions::start(const std::string& branch, const SipRequest& request, ResponseHandler handler) {
  const std::string key = clientKey(branch, request.method);
  Transaction& transaction = transactions_[key];
  transaction.invite = request.method == "INVITE";
  transaction.sent = request;
  transaction.sent.body.clear();
  transaction.handler = std::move(handler);
  transaction.destination = request.destination;
  transaction.text = request.text(viaOf(branch));
  ++waiting_;
  socket_.send(transaction.destination, transaction.text);
  schedule(key, transaction, kT1, kLifetime);
}

void Transactions::cancel(const std::string& branch) {
  const auto found = transactions_.find(clientKey(branch, "INVITE"));
  if (found == transactions_.end() || found->second.final || found->second.cancelled) return;
  found->second.cancelled = true;
  if (found->second.proceeding) sendCancel(found->second, branch);
}

/// The CANCEL has the INVITE's branch, and the INVITE ends soon even if nothing answers it.
void Transactions::sendCancel(Transaction& invite, const std::string& branch) {
  schedule(clientKey(branch, "INVITE"), invite, kNever, kLifetime);
  SipRequest cancel = invite.sent;
  cancel.method = "CANCEL";
  cancel.contact.clear();
  start(branch, cancel, [](const SipMessage&) {});
}

void Transactions::acknowledge(const std::string& branch, const SipRequest& ack) {
  const std::string text = ack.text(viaOf("z9hG4bK" + randomText()));
  socket_.send(ack.destination, text);
  const auto found = transactions_.find(clientKey(branch, "INVITE"));
  if (found == transactions_.end()) return;
  found->second.ack = text;
  found->second.destination = ack.destination;
}

void Transactions::receiveResponse(const SipMessage& response) {
  const std::string key = clientKey(response.branch, response.method);
  const auto found = transactions_.find(key);
  if (found == transactions_.end()) return;
  Transaction& transaction = found->second;
  if (transaction.final) {
    if (response.status >= 200 && !transaction.ack.empty()) {
      socket_.send(transaction.destination, transaction.ack);
    }
    return;
  }
  if (response.status < 200) {
    const bool first = !transaction.proceeding;
    transaction.proceeding = true;
    if (transaction.cancelled) {
      if (first) sendCancel(transaction, response.branch);
      return;
    }
    if (transaction.invite) transaction.repeat = transaction.end = Clock::time_point::max();
  } else {
    finish(found);
    if (transaction.invite && response.status >= 300) {
      SipRequest ack = transaction.sent;
      ack.method = "ACK";
      ack.to = response.to;
      ack.contact.clear();
      transaction.ack = ack.text(viaOf(response.branch));
      socket_.send(transaction.destination, transaction.ack);
    }
  }
  transaction.handler(response);
}

/// What is left of it answers repeated responses for a while.
void Transactions::finish(Map::iterator found) {
  --waiting_;
  found->second.final = true;
  found->second.text.clear();
  schedule(found->first, found->second, kNever, found->second.invite ? kLifetime : 10 * kT1);
}

Clock::time_point Transactions::nextTimer() const {
  return timers_.empty() ? Clock::time_point::max() : timers_.top().first;
}

void Transactions::runTimers(Clock::time_point now) {
  while (!timers_.empty() && timers_.top().first <= now) {
    const std::string key = timers_.top().second;
    timers_.pop();
    runTimer(key, now);
  }
}

// A timer may be out of date: what counts are the times of the transaction.
void Transactions::runTimer(const std::string& key, Clock::time_point now) {
  const auto found = transactions_.find(key);
  if (found == transactions_.end()) return;
  Transaction& transaction = found->second;
  if (transaction.end <= now) {
    const Transaction ended = std::move(transaction);
    transactions_.erase(found);
    if (ended.unconfirmed && ended.status < 300) handlers_.onNoAck(key);
    if (!ended.handler || ended.final) return;
    --waiting_;
    SipMessage timeout;
    timeout.status = 408;
    timeout.method = ended.sent.method;
    return ended.handler(timeout);
  }
  if (transaction.repeat <= now) {
    socket_.send(transaction.destination, transaction.text);
    const bool doubling = transaction.invite && !transaction.final;
    transaction.interval =
        doubling ? transaction.interval * 2 : std::min<Clock::duration>(transaction.interval * 2, kT2);
    transaction.repeat = now + transaction.interval;
  }
  const auto next = std::min(transaction.repeat, transaction.end);
  if (next != Clock::time_point::max()) timers_.emplace(next, key);
}

}  // namespace b2bua
