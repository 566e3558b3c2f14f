#include "sdpModifiers/ports.h"
#include "sdpModifiers.h"
#include "sdpNegotiator.h"
#include "sdpNegotiator/request.h"
#include "trace.h"
#include "vocabulary.h"

// Port 0 for media: by their kind, or by whether they are secure.

namespace sdpneg {
namespace {

using M = sdpModifications;

unsigned short disablePortsOf(cSdpNegotiator& object, M::eMediaSecurityType security) {
  return editAndKeep(object, kParsed, [&](SdpText& text) {
    return setMediaPort(text, kAnyMedia, kIpVersionUnknown, security, 0);
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
  return editAndParse({*this, parsedData, rawSdp}, [&](SdpText& text) -> unsigned short {
    return disablePorts(text, static_cast<int>(mediaMask), kIpVersionUnknown) ? 1 : 0;
  });
}

unsigned short cSdpNegotiator::sdpDisableSAVPPorts() {
  trace::progress("Request to disable the secure media ports.");
  return disablePortsOf(*this, M::MEDIA_SECURITY_SECURE);
}

unsigned short cSdpNegotiator::sdpDisableAVPPorts() {
  trace::progress("Request to disable the non-secure media ports.");
  return disablePortsOf(*this, M::MEDIA_SECURITY_NON_SECURE);
}
