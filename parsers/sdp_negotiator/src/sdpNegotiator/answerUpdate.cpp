#include "sdpModifiers/answerUpdate.h"
#include "refusal.h"
#include "sdpNegotiator.h"
#include "trace.h"

// An answer, brought up to date with a new offer.

namespace sdpneg {
namespace {

/// Expands a text into a buffer of an SDP text's size. One that is not there or cannot be expanded whole is an empty
/// one, which the edit refuses; a part of it would be taken for the body.
void expandWhole(const cSdpNegotiator& object, char* text) {
  if (object.getSDP(text, MAX_SDP_PROTOCOL_DATA_SIZE) != 0) text[0] = '\0';
}

}  // namespace
}  // namespace sdpneg

using namespace sdpneg;

unsigned short cSdpNegotiator::sdpUpdateAnswer(const cSdpNegotiator* offer, const cSdpNegotiator* answer) {
  trace::debug("Entered sdpUpdateAnswer()");
  if (offer == nullptr || answer == nullptr) return refuse({.reason = SDP_REFUSED_NO_OBJECTS_TO_UPDATE});
  char own[MAX_SDP_PROTOCOL_DATA_SIZE];
  char offered[MAX_SDP_PROTOCOL_DATA_SIZE];
  char answered[MAX_SDP_PROTOCOL_DATA_SIZE];
  expandWhole(*this, own);
  expandWhole(*offer, offered);
  expandWhole(*answer, answered);
  unsigned short oLineEnd = parsedData.oLineEnd;
  SdpText text(own);
  if (statusOf(updateAnswer(text, SdpText(offered), SdpText(answered), oLineEnd, true)) != 0) return 1;
  return sdpParse(own, SDP_TYPE_UNKNOWN);
}
