// Answers, and offers, for yourself: when the other side has no body yet, or none at all.

#include "guide.h"

int main() {
  // An INVITE without a body: the engine needs an offer of its own until the real one is there.
  cSdpNegotiator own;
  if (own.sdpCreateRmDummyOffer(500, 1, false) != 0) return 1;
  show(own, "o=");
  show(own, "m=");
  std::printf("a dummy offer: %s\n", own.isRmDummySdp() ? "yes" : "no");

  // An offer that is to be answered before anyone else has: the offer itself, turned round and on hold.
  cSdpNegotiator answer;
  if (answer.sdpParse(kOffer, SDP_TYPE_OFFER) != 0) return 1;
  if (answer.createDummyAnswer(true, "203.0.113.5", 20000) != 0) return 1;
  show(answer, "c=");
  show(answer, "m=");
  std::printf("on hold: %s\n", answer.isHoldState() ? "yes" : "no");

  // An answer that takes nothing.
  char text[MAX_SDP_PROTOCOL_DATA_SIZE];
  int length = 0;
  cSdpNegotiator::generateDummyAnswer(text, true, length, IP_VERSION_4);
  std::printf("%d characters:\n", length);
  show(std::string_view(text), "");

  // An offer from a list of codecs, for media of the engine's own.
  if (cSdpNegotiator::sdpCreateMessage(text, "203.0.113.5", 20000, "PCMA,telephone-event", false) != 0)
    return 1;
  show(std::string_view(text), "m=");
  return 0;
}
