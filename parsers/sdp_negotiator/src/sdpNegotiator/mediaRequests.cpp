#include "sdpModifiers.h"
#include "sdpNegotiator.h"
#include "sdpNegotiator/request.h"
#include "trace.h"
#include "vocabulary.h"

// Requests that edit the media of the text: each traces, runs one edit, and parses what comes of it.

using namespace sdpneg;

using sdpneg::editAndParse;
using M = sdpModifications;

namespace {

unsigned short disablePorts(cSdpNegotiator& object, M::eMediaSecurityType security) {
  constexpr int kAnyMedia = -1;
  return editAndParse(object, [&](char* text) {
    return M::sdpSetMediaPort(text, kAnyMedia, sdpneg::kIpVersionUnknown, security, 0);
  });
}

}  // namespace

unsigned short cSdpNegotiator::sdpReplaceMode(unsigned char mode, int mediaMask) {
  trace::progress("Request to set the connection mode to:%d.", mode);
  return editAndParse(*this, [&](char* text) { return M::sdpReplaceMode(text, mode, mediaMask); });
}

unsigned short cSdpNegotiator::sdpReplaceMode(unsigned char mode) {
  constexpr int kAudioAndVideo = 64;
  sdpReplaceMode(mode, kAudioAndVideo);
  return sdpneg::asStatus(trace::progress(
      "Request to set the connection mode to:%d to all types of media (AUDIO and VIDEO)", mode));
}

unsigned short cSdpNegotiator::sdpInsertSilenceSuppression(unsigned char value) {
  trace::debug("Request to insert  silence suppression: silence_suppression=%d", value);
  return editAndParse(*this,
                      [&](char* text) { return M::sdpInsertSilenceSuppression(text, value, parsedData); });
}

unsigned short cSdpNegotiator::sdpInsertEchoCancellation(unsigned char echoCancellation,
                                                         unsigned char direction) {
  trace::debug("Request to insert  echo cancellation: echo_cancellation=%d, direction=%d", echoCancellation,
               direction);
  return editAndParse(
      *this, [&](char* text) { return M::sdpInsertEchoCancellation(text, echoCancellation, direction); });
}

unsigned short cSdpNegotiator::sdpReplaceCxIP(const char* ip) {
  trace::progress("Request to replace the IP to:%s.", ip != nullptr ? ip : "");
  return editAndParse(*this, [&](char* text) { return M::sdpReplaceCxIP(text, ip); });
}

unsigned short cSdpNegotiator::sdpDisablePort(unsigned int mediaMask) {
  trace::debug("Request to disable the port of (%d) media type.", static_cast<int>(mediaMask));
  if ((mediaMask & MEDIA_VIDEO) != 0) {
    mediaMask |= MEDIA_APPLICATION;
    trace::debug("Request to disable video media: application media will also be disabled");
  }
  trace::debug("Request to disable the port of media type (0x%x)", mediaMask);
  return editAndParse(*this, [&](char* text) {
    return M::sdpDisablePort(text, static_cast<int>(mediaMask), sdpneg::kIpVersionUnknown);
  });
}

unsigned short cSdpNegotiator::sdpDisableSAVPPorts() {
  trace::progress("Request to disable the secure media ports.");
  return disablePorts(*this, M::MEDIA_SECURITY_SECURE);
}

unsigned short cSdpNegotiator::sdpDisableAVPPorts() {
  trace::progress("Request to disable the non-secure media ports.");
  return disablePorts(*this, M::MEDIA_SECURITY_NON_SECURE);
}

unsigned short cSdpNegotiator::sdpRemoveAllVideoMedia() {
  trace::debug("Request to remove ALL video media.");
  return editAndParse(*this, [](char* text) { return M::sdpRemoveVideoMedia(text, true); });
}

unsigned short cSdpNegotiator::sdpRemoveVideoMedia() {
  trace::debug("Request to remove video media.");
  return editAndParse(*this, [](char* text) { return M::sdpRemoveVideoMedia(text, false); });
}

unsigned short cSdpNegotiator::sdpBuild2mLineSDP() {
  trace::debug("Request to build 2mLine SDP.");
  return sdpneg::editAnywayAndParse(*this, M::sdpBuild2mLineSDP);
}
