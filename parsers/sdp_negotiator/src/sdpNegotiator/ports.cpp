#include "sdpModifiers.h"
#include "sdpNegotiator.h"
#include "sdpNegotiator/request.h"
#include "trace.h"
#include "vocabulary.h"

// Port 0 for media: by their kind, or by whether they are secure.

namespace sdpneg {
namespace {

using M = sdpModifications;

unsigned short disablePorts(cSdpNegotiator& object, M::eMediaSecurityType security) {
  return editAndKeep(object, kParsed, [&](char* text) {
    return M::sdpSetMediaPort(text, kAnyMedia, kIpVersionUnknown, security, 0);
  });
}

}  // namespace
}  // namespace sdpneg

using namespace sdpneg;

unsigned short cSdpNegotiator::sdpDisablePort(unsigned int mediaMask) {
  trace::debug("Request to disable the port of (%d) media type.", static_cast<int>(mediaMask));
  if ((mediaMask & MEDIA_VIDEO) != 0) {
    mediaMask |= MEDIA_APPLICATION;
    trace::debug("Request to disable video media: application media will also be disabled");
  }
  trace::debug("Request to disable the port of media type (0x%x)", mediaMask);
  return editAndKeep(*this, kParsed, [&](char* text) {
    return M::sdpDisablePort(text, static_cast<int>(mediaMask), kIpVersionUnknown);
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
