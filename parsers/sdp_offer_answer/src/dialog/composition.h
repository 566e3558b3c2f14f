#ifndef SDP_OFFER_ANSWER_COMPOSITION_H
#define SDP_OFFER_ANSWER_COMPOSITION_H

// Making the text of an offer of a description.

#include <string>

#include "arrangement.h"
#include "payloads.h"

namespace sdp::exchange {

/// The lines of a description in the places that its sections go to, with the mids of these places and the payload
/// numbers of the dialog; without its empty lines. Each ends with CR LF. A place for which there is no section is as
/// it was when it was disabled, else an m-line with port 0.
std::string composed(const Document& wanted, const Arrangement& places, const KnownPayloads& known);

}  // namespace sdp::exchange

#endif
