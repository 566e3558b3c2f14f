#include "sdpModifiers/connection.h"

#include "sdpModifiers.h"
#include "sdpModifiers/adopt.h"
#include "text/lines.h"
#include "trace.h"
#include "vocabulary.h"

// The address of one connection line.

namespace sdpneg {

namespace {

constexpr const char* kOperation = "sdpReplaceCxIP";

const SdpText& textOf(const SdpText& text) { return text; }
const SdpText& textOf(const NotedText& text) { return text.text(); }

bool isTracingOf(const SdpText& /*text*/) { return isTracing(); }
bool isTracingOf(const NotedText& text) { return text.tracing(); }

}  // namespace

NewConnection::NewConnection(const GivenAddress& address) : ip_(address.text) {
  if (address.version == kIpVersionUnknown) {
    refusal_ = {.reason = SDP_REFUSED_MALFORMED_ADDRESS};
  } else {
    refusal_ = refusalOfLineTexts({viewOf(ip_)}, kOperation);
    line_.add("c=IN ").add(addressTypeOf(address.version)).add(" ").add(ip_).add("\r\n");
  }
}

template <typename Text>
Refusal NewConnection::replaceIn(Text& text, std::size_t from) const {
  const bool tracing = isTracingOf(text);
  if (tracing) trace::progress("Entering sdpReplaceCxIP() method. ip=[%s]", ip_ != nullptr ? ip_ : "(null)");
  if (refusal_.reason == SDP_REFUSED_MALFORMED_ADDRESS) return refusal_;
  if (const Refusal refusal = refusalOfBuffer(textOf(text), kOperation)) return refusal;
  if (refusal_) return refusal_;
  const std::size_t found = findAnywhere(text.view(), kCLine, from);
  if (found == npos) return {.reason = SDP_REFUSED_NO_C_LINE};
  const Line cLine = lineAt(text.view(), found);
  if (!cLine.terminated) return {.reason = SDP_REFUSED_UNENDED_C_LINE};
  if (text.replace({cLine.begin, cLine.next()}, line_.view()) != Edit::done) {
    return {.reason = SDP_REFUSED_NO_ROOM, .operation = kOperation, .what = "new c-line"};
  }
  if (tracing) trace::progress("The IP address has been changed to %s. Exiting.", ip_);
  return {};
}

template Refusal NewConnection::replaceIn(SdpText& text, std::size_t from) const;
template Refusal NewConnection::replaceIn(NotedText& text, std::size_t from) const;

}  // namespace sdpneg

using namespace sdpneg;

unsigned short sdpModifications::sdpReplaceCxIP(char* sdp, const char* ip) {
  SdpText text(sdp);
  return statusOf(NewConnection(GivenAddress(ip)).replaceIn(text, 0));
}
