#ifndef SDP_OFFER_ANSWER_AGREED_PARTS_H
#define SDP_OFFER_ANSWER_AGREED_PARTS_H

// Parts of what was agreed of a section.

#include "bundles.h"
#include "sdpAgreed.h"
#include "sdpDocument.h"

namespace sdp::exchange {

/// A section of a body.
struct SidePart {
  const Document& body;
  const Bundles& bundles;
  std::uint32_t section;
  std::uint32_t transportSection = 0;
  bool usesRtcpMux = false;
};

/// All of a side that stands in its own body alone.
void fillSide(AgreedSide& side, const SidePart& part);

/// The formats that both have, on each side by its own numbers and in its order.
void fillCodecs(AgreedSection& agreed, const Section& local, const Section& remote);

/// The keys that were chosen, and what protects the media by them.
/// @param isOfferLocal the offer was one's own
void chooseKeys(AgreedSection& agreed, const SidePart& local, const SidePart& remote, bool isOfferLocal);

}  // namespace sdp::exchange

#endif
