// Takes a good offer and refuses bad ones with the reason.

#include <sdpRefusal.h>

#include <string>

#include "guide.h"

namespace {

std::string lastReason() {
  std::string reason = sdpLastRefusal().text;
  for (char& c : reason) {
    // It quotes the body. Nothing of that may break out of a header or a log line.
    if (c < ' ' || c > '~' || c == '"' || c == '\\') c = '?';
  }
  return reason;
}

bool accept(cSdpNegotiator& offer, const char* body) {
  if (offer.sdpParse(body, SDP_TYPE_OFFER) == 0) {
    std::printf("taken, audio at port %u\n", offer.getParsedData().port);
    return true;
  }
  std::printf("488, Warning: 399 engine \"%s\"\n", lastReason().c_str());
  return false;
}

}  // namespace

int main() {
  cSdpNegotiator offer;
  accept(offer, kOffer);
  accept(offer, "");
  accept(
      offer,
      "v=0\r\no=- 1 1 IN IP4 192.0.2.10\r\ns=-\r\nc=IN IP4 192.0.2.10\r\nt=0 0\r\nm=audio 80 RTP/AVP 0\r\n");
  std::printf("after a refusal the object is %s\n", offer.isSdpPresent() ? "full" : "empty");
  return 0;
}
