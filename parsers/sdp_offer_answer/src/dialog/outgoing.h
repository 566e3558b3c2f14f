#ifndef SDP_OFFER_ANSWER_OUTGOING_H
#define SDP_OFFER_ANSWER_OUTGOING_H

// What offers and answers of one's own have in common.

#include <string>
#include <string_view>

#include "dialogData.h"
#include "sdpDocument.h"

namespace sdp::exchange {

LocalBody refused(DialogFailure failure, std::uint32_t section = 0);

/// Puts what is known of the dialog's bodies up to date with one that goes out.
void rememberSent(DialogData& data, const Document& body);

/// A text as it goes out: the current body again when nothing but the o-line differs, else with the o-line of the last
/// body that went out and a version of its own.
std::string versioned(const DialogData& data, std::string_view text);

/// What the engine wants by a body that it made itself. Hold ends when it receives in any section. Where a direction is
/// what the peer's offer left of the one wanted before, that is still wanted.
/// @param offer that the body answers; empty for an offer
Intent finishedIntent(const Intent& before, const Document& body, const Document& offer);

}  // namespace sdp::exchange

#endif
