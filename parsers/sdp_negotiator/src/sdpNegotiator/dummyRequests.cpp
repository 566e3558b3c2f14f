#include "sdpNegotiator.h"
#include "sdpNegotiatorTrace.h"
#include "text/fixedText.h"

// Bodies that stand in for the real one.

unsigned short cSdpNegotiator::sdpCreateRmDummyOffer(unsigned int sessionId, unsigned int version,
                                                     bool ipv6) {
  cNegotTraceManager::writeTraceMsg(8, 4, "Creating a RM dummy SDP.");
  const char* const address = ipv6 ? "IP6 FD00:127::1" : "IP4 127.0.0.1";
  sdpneg::FixedText<256> text;
  text.add("v=0\r\no=IRM ").add(sessionId).add(" ").add(version).add(" IN ").add(address);
  text.add("\r\ns=IRM\r\nc=IN ").add(address).add("\r\nt=0 0\r\nm=audio 5004 RTP/SAVP 0 8 9 4 18\r\n");
  return sdpParse(text.text(), SDP_TYPE_UNKNOWN);
}
