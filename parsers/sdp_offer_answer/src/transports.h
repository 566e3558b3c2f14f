#ifndef SDP_OFFER_ANSWER_TRANSPORTS_H
#define SDP_OFFER_ANSWER_TRANSPORTS_H

// What a transport's name says of its security.

#include <string_view>

#include "text/search.h"

namespace sdp::exchange {

/// Whether a transport has TLS or DTLS.
inline bool hasTls(std::string_view transport) { return sdpneg::contains(transport, "TLS"); }

}  // namespace sdp::exchange

#endif
