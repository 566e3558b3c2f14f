#include "policySteps.h"

#include <sdpDocumentRequests.h>

#include "namedRequests.h"
#include "reasons.h"

namespace b2bua {

std::string takeIn(const std::string& body, sdp::Document& document) {
  sdp::Refusal refusal = document.read(body);
  // That there is no body at all is for the parse to tell.
  if (!refusal && !body.empty()) refusal = sdp::canonicalise(document);
  return refusal ? reasonOf(refusal) : "";
}

std::string parse(const sdp::Document& document, Body& body) {
  const std::string text(document.text());
  return body.sdpParse(text.c_str(), SDP_TYPE_UNKNOWN) == 0 ? "" : withoutSecrets(lastReason(), text);
}

std::string applyBefore(const Policy& policy, Side from, bool isAnswer, Body& body, OfferChanges& changes) {
  std::string reason = applyRequests(policy, Way::from, from, isAnswer, body);
  return reason.empty() && !isAnswer ? applyToOffer(policy, body, changes) : reason;
}

std::string applyBehind(const Policy& policy, Side from, bool isAnswer, Body& body,
                        const OfferChanges& changes) {
  std::string reason = isAnswer ? applyToAnswer(policy, body, changes) : "";
  return reason.empty() ? applyRequests(policy, Way::to, otherOf(from), isAnswer, body) : reason;
}

}  // namespace b2bua
