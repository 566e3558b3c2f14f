#ifndef SDP_OFFER_ANSWER_EXCHANGE_H
#define SDP_OFFER_ANSWER_EXCHANGE_H

// What the calls of a dialog do to its data. All throw std::bad_alloc and std::length_error, and leave data of which
// only the result counts when they tell no failure.

#include "dialogData.h"
#include "sdpDocument.h"

namespace sdp::exchange {

LocalBody offerDescription(DialogData& data, std::string_view description);
LocalBody offerFinished(DialogData& data, std::string_view body);
/// Offers the current body with or without hold.
LocalBody offerAgain(DialogData& data, bool isHeld);
ReceivedOffer takeOffer(DialogData& data, std::string_view body);
LocalBody answerDescription(DialogData& data, std::string_view description, const AnswerOptions& options);
LocalBody answerFinished(DialogData& data, std::string_view body);
DialogStatus takeAnswer(DialogData& data, std::string_view body);
DialogStatus dropOffer(DialogData& data);

/// What an offer changes, next to the current body of the peer.
ReceivedOffer changesOf(const Document& offer, const Document& current);

AgreedMedia agreedMedia(const DialogData& data);
AgreedSection agreedSection(const DialogData& data, std::uint32_t section);

std::string bytesOf(const DialogData& data);
/// @param data is only changed when nothing fails
DialogFailure readBytes(std::string_view bytes, DialogData& data);

}  // namespace sdp::exchange

#endif
