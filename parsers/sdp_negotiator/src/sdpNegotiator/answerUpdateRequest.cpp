#include "sdpModifiers.h"
#include "sdpNegotiator.h"
#include "trace.h"

using namespace sdpneg;

namespace {

/// Expands a text into a buffer of an SDP text's size. One that is not there or cannot be expanded whole is an empty
/// one, which the edit refuses; a part of it would be taken for the body.
void expandWhole(const cSdpNegotiator& object, char* text) {
  if (object.getSDP(text, MAX_SDP_PROTOCOL_DATA_SIZE) != 0) text[0] = '\0';
}

}  // namespace

unsigned short cSdpNegotiator::sdpUpdateAnswer(const cSdpNegotiator* offer, const cSdpNegotiator* answer) {
  trace::debug("Entered sdpUpdateAnswer()");
  if (offer == nullptr || answer == nullptr) {
    trace::error("Invalid input objects. Cannot create the update SDP. Exiting.");
    return 1;
  }
  char own[MAX_SDP_PROTOCOL_DATA_SIZE];
  char offered[MAX_SDP_PROTOCOL_DATA_SIZE];
  char answered[MAX_SDP_PROTOCOL_DATA_SIZE];
  expandWhole(*this, own);
  expandWhole(*offer, offered);
  expandWhole(*answer, answered);
  int length = 0;
  unsigned short oLineEnd = parsedData.oLineEnd;
  if (sdpModifications::sdpUpdateSdp(own, offered, answered, length, oLineEnd, true) == 1) return 1;
  return sdpParse(own, SDP_TYPE_UNKNOWN);
}
