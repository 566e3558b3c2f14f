#include "sdpModifiers/videoCodecs.h"

#include "sdpModifiers/codecLists.h"
#include "sdpNegotiator.h"
#include "sdpNegotiator/request.h"
#include "trace.h"

// Which video codecs a body offers.

using namespace sdpneg;

unsigned short cSdpNegotiator::sdpRestrictVideoCodecsTo(const unsigned char* allowed, int count) {
  trace::debug("Request to restrict video codecs from the SDP. Given %i allowed video codecs", count);
  char buffer[MAX_SDP_PROTOCOL_DATA_SIZE];
  if (getSDP(buffer, sizeof buffer) != 0) return 0;
  SdpText text(buffer);
  std::span<const unsigned char> codecs;
  if (allowed != nullptr) codecs = valuesOf(allowed, count);
  bool changed = false;
  if (const Refusal refusal = restrictVideo(text, codecs, changed)) {
    tell(refusal);
    return 0;
  }
  return !changed || keepText(*this, buffer, kWithRestrictedVideo) == 0 ? 1 : 0;
}
