// What the target says before its final response: passed on with its body, reliably where the caller knows that
// (RFC 3262). One body is on its way at a time, and one response waits for its PRACK; of what comes meanwhile the last
// one waits.

#include <utility>

#include "engine.h"
#include "multipart.h"
#include "passedHeaders.h"

namespace b2bua {

namespace {

constexpr unsigned int kMostProvisional = 100;  ///< responses to an INVITE that go on
constexpr std::size_t kMostForks = 8;           ///< whose reliable responses are acknowledged

bool isReliable(const sip_t& response) {
  return response.sip_rseq != nullptr && sip_has_feature(response.sip_require, k100rel) != 0;
}

}  // namespace

void Engine::onProgress(Call& call, const sip_t& response) {
  Exchange& exchange = *call.exchange;
  if (exchange.cancelled || ++exchange.provisional > kMostProvisional) return;
  if (isReliable(response) && !sendPrack(call, response)) return;
  if (exchange.waits()) {
    exchange.waiting.reset(nta_outgoing_getresponse(exchange.outgoing.get()));
  } else {
    passOn(call, response);
  }
}

/// @return false for a response that is repeated or ahead of its turn, and is left to be repeated
bool Engine::sendPrack(Call& call, const sip_t& response) {
  Exchange& exchange = *call.exchange;
  const unsigned long number = response.sip_rseq->rs_response;
  if (response.sip_to->a_tag == nullptr || number == 0 || hasTooManyTransactions()) return false;
  const std::string tag = response.sip_to->a_tag;
  const auto last = exchange.reliable.find(tag);
  if (last == exchange.reliable.end() ? exchange.reliable.size() >= kMostForks : number != last->second + 1)
    return false;
  exchange.reliable[tag] = number;
  Leg& leg = call.legs[otherOf(exchange.from)];
  enterDialog(leg, response);
  const std::string invite = std::to_string(nta_outgoing_cseq(exchange.outgoing.get())) + " INVITE";
  const Owned<nta_outgoing_t> prack(
      send(leg, SIP_METHOD_PRACK, ++leg.cseq, "", nullptr, nullptr,
           "RAck: " + std::to_string(number) + " " + invite));  // The stack repeats it.
  return true;
}

void Engine::passOn(Call& call, const sip_t& response) {
  Exchange& exchange = *call.exchange;
  const int status = response.sip_status->st_status;
  if (exchange.updated) return answer(call, status);
  // The caller has no offer yet that a body could answer.
  const std::string body = exchange.kind == Kind::relayed ? sdpOf(response).value_or("") : "";
  if (body.empty() || exchange.isKnown(body))
    return answer(call, status, body.empty() ? "" : textOf(exchange.sent[exchange.from]));
  exchange.early = body;
  exchange.bodyOnWay = true;
  exchange.answeredReliably = isReliable(response);
  takeBody(call, otherOf(exchange.from), body, true, [this, status](Call& taken, const BodyRefusal& refusal) {
    Exchange& current = *taken.exchange;
    Body& sent = current.sent[current.from];
    current.bodyOnWay = false;
    if (refusal) {
      note(taken, "body before the answer refused", {{"reason", refusal.reason}}, LogLevel::warning);
      ++counters_.refusedBodies;
      current.early.clear();
      sent = Body();
    } else {
      taken.legs[current.from].give(sent);
    }
    answer(taken, status, refusal ? "" : textOf(sent));
    goOn(taken);
  });
}

/// What came meanwhile has its turn.
void Engine::goOn(Call& call) {
  Exchange& exchange = *call.exchange;
  if (!exchange.waiting || exchange.waits() || exchange.cancelled) return;
  const Owned<msg_t> next = std::move(exchange.waiting);
  const sip_t& response = *sip_object(next.get());
  const int status = response.sip_status->st_status;
  exchange.headers[exchange.from] = passedHeaders(response, options_.passHeaders);
  if (status < 200) {
    passOn(call, response);
  } else if (!std::exchange(exchange.concluded, true)) {  // it came while the INVITE was put aside
    status < 300 ? onSuccess(call, response) : onFailure(call, response);
  } else {
    takeAnswer(call, response);
  }
}

/// @param prack  null when none is awaited any more
int Engine::onPrack(nta_reliable_magic_t* leg, nta_reliable_t* response, nta_incoming_t* prack,
                    const sip_t* request) {
  nta_reliable_destroy(response);  // A further PRACK for it belongs to nothing.
  if (prack == nullptr) return 0;
  // An offer in it cannot be refused otherwise; the response has arrived all the same.
  const int status = request->sip_payload != nullptr ? 488 : 200;
  nta_incoming_treply(prack, status, sip_status_phrase(status), TAG_END());
  nta_incoming_destroy(prack);
  Call& call = *leg->call;
  leg->remoteCseq = std::max(leg->remoteCseq, request->sip_cseq->cs_seq);
  if (!call.exchange) return 0;
  Exchange& exchange = *call.exchange;
  exchange.unacknowledged = false;
  exchange.settled = exchange.answeredReliably && !exchange.early.empty();
  leg->engine->goOn(call);
  return 0;
}

/// The response was repeated long enough (RFC 3262 3).
void Engine::onNoPrack(Call& call) {
  note(call, "no PRACK");
  ++counters_.failed;
  cancel(call, 504);
  giveUp(call);
}

}  // namespace b2bua
