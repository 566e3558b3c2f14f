#include "sdpModifiers/connection.h"
#include "sdpNegotiator.h"
#include "sdpNegotiator/request.h"
#include "trace.h"

// The address of session and audio.

using namespace sdpneg;

unsigned short cSdpNegotiator::sdpReplaceCxIP(const char* ip) {
  trace::progress("Request to replace the IP to:%s.", ip != nullptr ? ip : "");
  return editAndParse({*this, parsedData, rawSdp},
                      [&](SdpText& text) { return NewConnection(GivenAddress(ip)).replaceIn(text, 0); });
}
