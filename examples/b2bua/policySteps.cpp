#include "policySteps.h"

#include <sdpDocumentRequests.h>

#include "namedRequests.h"
#include "options.h"
#include "reasons.h"

namespace b2bua {

namespace {

/// Browsers have port 9 where ICE tells the address, which the library takes for a mistake; the relay goes by ICE.
sdp::Refusal setIcePorts(sdp::Document& body) {
  constexpr std::uint16_t kUnknownYet = 9;
  for (std::uint32_t i = 1; i <= body.sectionCount(); ++i) {
    if (body.section(i).port() != kUnknownYet || !body.section(i).hasIce()) continue;
    if (sdp::Refusal refusal = body.setPort(i, kLowestPort)) return refusal;
  }
  return {};
}

}  // namespace

std::string takeIn(const std::string& body, sdp::Document& document, bool isRelayed) {
  sdp::Refusal refusal = document.read(body);
  // That there is no body at all is for the parse to tell.
  if (!refusal && !body.empty()) refusal = sdp::canonicalise(document);
  if (!refusal && isRelayed) refusal = setIcePorts(document);
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
