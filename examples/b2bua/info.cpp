// INFO within a call (RFC 2976): digits go on to the other side as they are, one INFO of a party at a time.

#include <algorithm>

#include "engine.h"

namespace b2bua {

namespace {

constexpr std::array kTypes = {"application/dtmf-relay", "application/dtmf"};
constexpr std::size_t kLongest = 1'024;

}  // namespace

void Engine::onInfo(Leg& leg, Owned<msg_t> message, const sip_t& info) {
  Leg& other = leg.call->legs[otherOf(leg.side)];
  const std::string body = bodyOf(info);
  const sip_content_type_t* const type = info.sip_content_type;
  const auto isType = [type](const char* each) {
    return type != nullptr && su_casematch(type->c_type, each) != 0;
  };
  const auto found = std::ranges::find_if(kTypes, isType);
  if (!body.empty() && found == kTypes.end())
    return reply(std::move(message), 415, std::string("Accept: ") + kTypes[0] + ", " + kTypes[1]);
  if (body.size() > kLongest) return reply(std::move(message), 413);
  // It would have to wait for the one before, or for a dialog with the other side.
  if (leg.info || nta_leg_get_rtag(other.dialog.get()) == nullptr) return reply(std::move(message), 491);
  if (infos_.sum() >= options_.maxInvites || hasTooManyTransactions())
    return turnAway(std::move(message), Limit::transactions);
  infos_.add();
  leg.remoteCseq = info.sip_cseq->cs_seq;
  leg.info.reset(nta_incoming_create(agent_.get(), leg.dialog.get(), message.release(), nullptr, TAG_END()));
  leg.passed.reset(send(other, SIP_METHOD_INFO, ++other.cseq, body, onInfoResponse, &leg, "",
                        body.empty() ? nullptr : *found));
  if (!leg.passed) leg.info.reset();  // The stack refuses it.
}

int Engine::onInfoResponse(Leg* leg, nta_outgoing_t* transaction, const sip_t* response) {
  const int status = response->sip_status->st_status;
  if (status < 200 || leg->passed.get() != transaction) return 0;
  nta_incoming_treply(leg->info.get(), status, sip_status_phrase(status), TAG_END());
  leg->info.reset();
  leg->passed.reset();
  return 0;
}

}  // namespace b2bua
