// Tells what a new offer means by its o-line, and updates the stored answer.

#include "guide.h"

namespace {

enum class Offered { again, oneVersionOn, somethingElse };

Offered compare(const cSdpNegotiator& offer, const cSdpNegotiator& stored) {
  if (offer.compareSdpOLine(&stored) == 0) return Offered::again;
  return offer.isSdpVersionIncreased(&stored) == 1 ? Offered::oneVersionOn : Offered::somethingElse;
}

/// Brings an answer up to date. That gives it a new session id; a dialog keeps its own, one version on.
unsigned short update(cSdpNegotiator& answer, const cSdpNegotiator& oldOffer,
                      const cSdpNegotiator& newOffer) {
  const cSdpNegotiator before = answer;
  unsigned short status = answer.sdpUpdateAnswer(&oldOffer, &newOffer);
  if (status == 0) status = answer.copyOLine(&before);
  if (status == 0) status = answer.sdpIncVersion();
  if (status != 0) answer = before;
  return status;
}

}  // namespace

int main() {
  cSdpNegotiator stored;
  cSdpNegotiator answer;
  if (stored.sdpParse(kOffer, SDP_TYPE_OFFER) != 0 || answer.sdpParse(kAnswer, SDP_TYPE_ANSWER) != 0)
    return 1;

  const cSdpNegotiator repeated = stored;
  if (compare(repeated, stored) == Offered::again) std::printf("again: send the stored answer\n");

  // A new offer without PCMU.
  cSdpNegotiator offer = stored;
  const unsigned char pcma = cSdpNegotiator::getRtpMapAudioCodecValue("PCMA");
  if (offer.sdpRestrictAudioCodecsTo(&pcma, 1, false) != 1 || offer.sdpIncVersion() != 0) return 1;
  if (compare(offer, stored) == Offered::oneVersionOn) std::printf("one version on: update the answer\n");
  if (update(answer, stored, offer) != 0) return 1;
  show(answer, "o=");
  show(answer, "m=");

  // Two versions on: an offer was missed, or this is another session. The other side has to answer it.
  if (offer.sdpIncVersion() != 0) return 1;
  if (compare(offer, stored) == Offered::somethingElse) std::printf("something else: ask the other side\n");
  return 0;
}
