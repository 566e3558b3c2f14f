#ifndef SDP_OFFER_ANSWER_DIRECTION_H
#define SDP_OFFER_ANSWER_DIRECTION_H

// The direction of what is answered.

#include "bundles.h"
#include "sdpDocumentViews.h"

namespace sdp::exchange {

/// The direction of an answer (RFC 3264, section 6.1): never more than either side does.
Direction answeredDirection(Direction offered, Direction local);

/// The direction that an offered section has for its answer: an unspecified address is hold of old (RFC 2543), but not
/// with what browsers write before they know their address.
Direction offeredDirection(const Section& offered, const Bundles& bundles);

}  // namespace sdp::exchange

#endif
