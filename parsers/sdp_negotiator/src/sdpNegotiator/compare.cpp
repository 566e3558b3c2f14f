#include <string_view>

#include "sdpNegotiator.h"
#include "text/search.h"
#include "trace.h"

using namespace sdpneg;

namespace sdpneg {
namespace {

/// What follows the v- and o-lines: the text from its first "s=" on, empty when it has none.
std::string_view bodyOf(std::string_view text) {
  const std::size_t at = text.find("s=");
  return at != npos ? text.substr(at) : std::string_view();
}

}  // namespace
}  // namespace sdpneg

unsigned short cSdpNegotiator::compareSdpByBody(const char* sdp) const {
  if (sdp == nullptr || !isSdpPresent()) {
    trace::error("Empty Buffer! Exiting...");
    return 1;
  }
  char text[MAX_SDP_PROTOCOL_DATA_SIZE + 1];
  getSDP(text, sizeof text);
  const std::string_view own = sdpneg::bodyOf(text);
  const std::string_view given = sdpneg::bodyOf(sdp);
  if (own.empty() || given.empty()) return 1;
  if (own == given) {
    trace::progress("The SDP messages are same.");
    return 0;
  }
  trace::info("Different SDP messages.");
  return 1;
}

unsigned short cSdpNegotiator::compareSdpByBody(const cSdpNegotiator* other) const {
  if (other == nullptr) {
    trace::error("The SDP buffer is NULL.");
    return 1;
  }
  char text[MAX_SDP_PROTOCOL_DATA_SIZE + 1];
  text[0] = '\0';  // an empty object writes nothing
  other->getSDP(text, sizeof text);
  return compareSdpByBody(text);
}
