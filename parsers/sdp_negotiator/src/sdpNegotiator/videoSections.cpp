#include "sdpModifiers/videoSections.h"
#include "sdpModifiers/addedVideo.h"
#include "sdpNegotiator.h"
#include "sdpNegotiator/request.h"
#include "trace.h"

// The video sections of a body as text.

using namespace sdpneg;

void cSdpNegotiator::sdpAddVideoDescriptions(const char* sections) {
  if (sections == nullptr) {
    tell({.reason = SDP_REFUSED_NO_VIDEO_GIVEN});
    return;
  }
  trace::debug("Request to add videoDescriptions: %s", sections);
  char buffer[MAX_SDP_PROTOCOL_DATA_SIZE];
  if (getSDP(buffer, sizeof buffer) != 0) return;
  SdpText text(buffer);
  if (statusOf(addVideo(text, sections)) != 0) return;
  if (keepText(*this, buffer, kWithAddedVideo) == 0) trace::debug("Updated SDP: %s", buffer);
}

unsigned short cSdpNegotiator::sdpGetVideoDescriptions(char* out, unsigned int size, bool flag) {
  trace::debug("Request to get the video descriptions");
  const unsigned int before = toldSoFar();
  const unsigned short status = editAndKeep(
      *this, kWithoutVideo, [&](SdpText& text) { return takeVideoSections(text, out, size, flag); });
  if (status == 0) return 1;
  tellUnlessTold({.reason = SDP_REFUSED_VIDEO_NOT_TAKEN}, before);
  return 0;
}
