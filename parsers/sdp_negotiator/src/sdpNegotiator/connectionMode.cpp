#include "sdpModifiers/connectionMode.h"
#include "sdpNegotiator.h"
#include "sdpNegotiator/request.h"
#include "trace.h"
#include "vocabulary.h"

// The directions of session and media.

using namespace sdpneg;

unsigned short cSdpNegotiator::sdpReplaceMode(unsigned char mode, int mediaMask) {
  trace::progress("Request to set the connection mode to:%d.", mode);
  return editAndParse({*this, parsedData, rawSdp},
                      [&](SdpText& text) { return replaceMode(text, mode, mediaMask); });
}

unsigned short cSdpNegotiator::sdpReplaceMode(unsigned char mode) {
  sdpReplaceMode(mode, kAudioAndVideo);
  return asStatus(trace::progress(
      "Request to set the connection mode to:%d to all types of media (AUDIO and VIDEO)", mode));
}
