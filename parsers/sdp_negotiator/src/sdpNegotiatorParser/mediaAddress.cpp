#include "mediaAddress.h"

#include <algorithm>

#include "sdpNegotiatorParser.h"
#include "vocabulary.h"

// Ports and addresses of chosen media.

namespace sdpneg {

namespace {

bool holdsAudio(const sDescription& description) {
  const auto media = mediaOf(description);
  return std::any_of(media.begin(), media.end(),
                     [](const mDescription& each) { return each.mLine.mediaType == MEDIA_AUDIO; });
}

}  // namespace

Refusal checkPort(const char* kind, const sDescription& description, const mDescription& media) {
  const int port = portOf(media);
  if (isMediaPort(port)) return {};
  return {.reason = SDP_REFUSED_INVALID_PORT,
          .what = kind,
          .number = port,
          .section = sectionOf(description, media),
          .field = SDP_REFUSAL_FIELD_PORT};
}

Refusal takeAddress(sSdpParsedData& data, const c_line& line, int section) {
  const char* const address = sdp_CgetAddress(&line, 0);
  if (!cMsgIPAddress::isValid(address)) {
    return {.reason = SDP_REFUSED_INVALID_ADDRESS,
            .what = viewOf(address),
            .section = section,
            .field = SDP_REFUSAL_FIELD_ADDRESS};
  }
  data.address.setIPAddress(address);
  return {};
}

Refusal takeAddressOf(sSdpParsedData& data, const sDescription& description, const mDescription& media) {
  return takeAddress(data, media.cLine, sectionOf(description, media));
}

Refusal addressWithoutAudio(sSdpParsedData& data, const sDescription& description, const mDescription& media,
                            const char* kind) {
  if (holdsAudio(description) || !hasConnection(media.cLine)) return {};
  if (const Refusal refusal = checkPort(kind, description, media)) return refusal;
  data.port = static_cast<std::uint32_t>(portOf(media));
  return takeAddressOf(data, description, media);
}

}  // namespace sdpneg

using namespace sdpneg;

unsigned short sdpParserMessage::getIpAddr(sSdpParsedData& data, const c_line& line) {
  return statusOf(takeAddress(data, line, 0));
}
