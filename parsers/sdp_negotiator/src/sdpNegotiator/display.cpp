#include "sdpNegotiator.h"
#include "sdpNegotiatorParser.h"
#include "sdpNegotiatorTrace.h"

void cSdpNegotiator::displaySDPRawData() const {
  if (!isSdpPresent()) {
    cNegotTraceManager::writeTraceMsg(8, 4, "The raw SDP buffer is empty.");
    return;
  }
  char text[MAX_SDP_PROTOCOL_DATA_SIZE + 1];
  getSDP(text, sizeof text);
  cNegotTraceManager::writeTraceMsg(8, 4, "The raw SDP buffer is\n%s", text);
}

void cSdpNegotiator::displaySDPData() const { displaySDPData(parsedData); }

void cSdpNegotiator::displaySDPData(const sSdpParsedData& data) { sdpParserMessage::sdpDumpMediaInfo(data); }
