#include <string_view>

#include "refusal.h"
#include "sdpNegotiator.h"
#include "text/search.h"
#include "trace.h"
#include "vocabulary.h"

// Whether two bodies are the same but for their o-lines.

namespace sdpneg {
namespace {

/// What follows the v- and o-lines: the text from its first "s=" on, empty when it has none.
std::string_view bodyOf(std::string_view text) {
  const std::size_t at = text.find(kSessionNameLine);
  return at != npos ? text.substr(at) : std::string_view();
}

}  // namespace
}  // namespace sdpneg

using namespace sdpneg;

unsigned short cSdpNegotiator::compareSdpByBody(const char* sdp) const {
  if (sdp == nullptr || !isSdpPresent()) {
    return refuse({.reason = SDP_REFUSED_NO_TEXT_TO_COMPARE});
  }
  char text[MAX_SDP_PROTOCOL_DATA_SIZE + 1];
  getSDP(text, sizeof text);
  const std::string_view own = bodyOf(text);
  const std::string_view given = bodyOf(sdp);
  if (own.empty() || given.empty()) return 1;
  if (own == given) {
    trace::progress("The SDP messages are same.");
    return 0;
  }
  trace::info("Different SDP messages.");
  return 1;
}

unsigned short cSdpNegotiator::compareSdpByBody(const cSdpNegotiator* other) const {
  if (other == nullptr) return refuse({.reason = SDP_REFUSED_NO_BUFFER});
  char text[MAX_SDP_PROTOCOL_DATA_SIZE + 1];
  text[0] = '\0';  // an empty object writes nothing
  other->getSDP(text, sizeof text);
  return compareSdpByBody(text);
}
