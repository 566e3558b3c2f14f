#include "sdpModifiers.h"
#include "sdpNegotiator.h"
#include "sdpNegotiator/request.h"
#include "sdpNegotiatorTrace.h"

using sdpneg::editAndParse;

unsigned short cSdpNegotiator::sdpReplaceMode(unsigned char mode, int mediaMask) {
  cNegotTraceManager::writeTraceMsg(8, 4, "Request to set the connection mode to:%d.", mode);
  return editAndParse(*this,
                      [&](char* text) { return sdpModifications::sdpReplaceMode(text, mode, mediaMask); });
}

unsigned short cSdpNegotiator::sdpReplaceMode(unsigned char mode) {
  constexpr int kAudioAndVideo = 64;
  sdpReplaceMode(mode, kAudioAndVideo);
  return static_cast<unsigned short>(cNegotTraceManager::writeTraceMsg(
      8, 4, "Request to set the connection mode to:%d to all types of media (AUDIO and VIDEO)", mode));
}

unsigned short cSdpNegotiator::sdpInsertSilenceSuppression(unsigned char value) {
  cNegotTraceManager::writeTraceMsg(1, 1, "Request to insert  silence suppression: silence_suppression=%d",
                                    value);
  return editAndParse(*this, [&](char* text) {
    return sdpModifications::sdpInsertSilenceSuppression(text, value, parsedData);
  });
}
