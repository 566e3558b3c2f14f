#include "sdpModifiers.h"
#include "sdpNegotiator.h"
#include "sdpNegotiatorTrace.h"

unsigned short cSdpNegotiator::sdpUpdateAnswer(const cSdpNegotiator* offer, const cSdpNegotiator* answer) {
  cNegotTraceManager::writeTraceMsg(1, 1, "Entered sdpUpdateAnswer()");
  if (offer == nullptr || answer == nullptr) {
    cNegotTraceManager::writeTraceMsg(4, 3, "Invalid input objects. Cannot create the update SDP. Exiting.");
    return 1;
  }
  // A text that is not there is an empty one, which the edit judges.
  char own[MAX_SDP_PROTOCOL_DATA_SIZE] = "";
  char offered[MAX_SDP_PROTOCOL_DATA_SIZE] = "";
  char answered[MAX_SDP_PROTOCOL_DATA_SIZE] = "";
  getSDP(own, sizeof own);
  offer->getSDP(offered, sizeof offered);
  answer->getSDP(answered, sizeof answered);
  int length = 0;
  unsigned short oLineEnd = parsedData.oLineEnd;
  if (sdpModifications::sdpUpdateSdp(own, offered, answered, length, oLineEnd, true) == 1) return 1;
  return sdpParse(own, SDP_TYPE_UNKNOWN);
}
