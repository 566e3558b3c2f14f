#include "sdpNegotiator.h"
#include "sdpNegotiatorParser.h"
#include "trace.h"

// Text and summary as trace lines.

using namespace sdpneg;

void cSdpNegotiator::displaySDPRawData() const {
  if (!isSdpPresent()) {
    trace::progress("The raw SDP buffer is empty.");
    return;
  }
  char text[MAX_SDP_PROTOCOL_DATA_SIZE + 1];
  getSDP(text, sizeof text);
  trace::progress("The raw SDP buffer is\n%s", text);
}

void cSdpNegotiator::displaySDPData() const { displaySDPData(parsedData); }

void cSdpNegotiator::displaySDPData(const sSdpParsedData& data) { sdpParserMessage::sdpDumpMediaInfo(data); }
