#include "sdpModifiers/mediaAttributes.h"
#include "sdpNegotiator.h"
#include "sdpNegotiator/request.h"
#include "trace.h"

// Silence suppression and echo cancellation.

using namespace sdpneg;

unsigned short cSdpNegotiator::sdpInsertSilenceSuppression(unsigned char value) {
  trace::debug("Request to insert  silence suppression: silence_suppression=%d", value);
  return editAndParse({*this, parsedData, rawSdp},
                      [&](SdpText& text) { return insertSilenceSuppression(text, value, parsedData); });
}

unsigned short cSdpNegotiator::sdpInsertEchoCancellation(unsigned char echoCancellation,
                                                         unsigned char direction) {
  trace::debug("Request to insert  echo cancellation: echo_cancellation=%d, direction=%d", echoCancellation,
               direction);
  return editAndParse({*this, parsedData, rawSdp}, [&](SdpText& text) {
    return insertEchoCancellation(text, echoCancellation, direction);
  });
}
