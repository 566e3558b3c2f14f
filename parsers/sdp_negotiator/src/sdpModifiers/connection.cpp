#include "sdpModifiers/connection.h"

#include "cMsgIPAddress.h"
#include "sdpModifiers.h"
#include "sdpModifiers/adopt.h"
#include "text/fixedText.h"
#include "text/lines.h"
#include "trace.h"
#include "vocabulary.h"

// The address of one connection line.

namespace sdpneg {

Refusal replaceConnection(SdpText& text, std::size_t from, const char* ip) {
  constexpr const char* kOperation = "sdpReplaceCxIP";
  trace::progress("Entering sdpReplaceCxIP() method. ip=[%s]", ip != nullptr ? ip : "(null)");
  const int version = cMsgIPAddress::getIPAddressVersion(ip);
  if (version == kIpVersionUnknown) return {.reason = SDP_REFUSED_MALFORMED_ADDRESS};
  if (const Refusal refusal = refusalOfBuffer(text, kOperation)) return refusal;
  if (const Refusal refusal = refusalOfLineTexts({viewOf(ip)}, kOperation)) return refusal;
  const std::size_t found = findAnywhere(text.view(), kCLine, from);
  if (found == npos) return {.reason = SDP_REFUSED_NO_C_LINE};
  const Line cLine = lineAt(text.view(), found);
  if (!cLine.terminated) return {.reason = SDP_REFUSED_UNENDED_C_LINE};
  FixedText<255> line;
  line.add("c=IN ").add(addressTypeOf(version)).add(" ").add(ip).add("\r\n");
  if (text.replace({cLine.begin, cLine.next()}, line.view()) != Edit::done) {
    return {.reason = SDP_REFUSED_NO_ROOM, .operation = kOperation, .what = "new c-line"};
  }
  trace::progress("The IP address has been changed to %s. Exiting.", ip);
  return {};
}

}  // namespace sdpneg

using namespace sdpneg;

unsigned short sdpModifications::sdpReplaceCxIP(char* sdp, const char* ip) {
  SdpText text(sdp);
  return statusOf(replaceConnection(text, 0, ip));
}
