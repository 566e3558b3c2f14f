#include "mediaAddress.h"

#include <algorithm>

#include "descriptionView.h"
#include "sdpNegotiatorParser.h"
#include "trace.h"

using namespace sdpneg;

namespace sdpneg {

namespace {

constexpr int smallestPort = 1024;
constexpr int largestPort = 65535;

bool holdsAudio(const sDescription& description) {
  const auto media = mediaOf(description);
  return std::any_of(media.begin(), media.end(),
                     [](const mDescription& each) { return each.mLine.mediaType == MEDIA_AUDIO; });
}

}  // namespace

unsigned short checkPort(const char* kind, int port) {
  if (port == 0 || (port >= smallestPort && port <= largestPort)) return 0;
  trace::error("Invalid port number found in m=%s: %d", kind, port);
  return 1;
}

unsigned short addressWithoutAudio(sSdpParsedData& data, const sDescription& description,
                                   const mDescription& media, const char* kind) {
  if (holdsAudio(description) || !hasConnection(media.cLine)) return 0;
  const int port = portOf(media);
  if (checkPort(kind, port) != 0) return 1;
  data.port = static_cast<std::uint32_t>(port);
  return sdpParserMessage::getIpAddr(data, media.cLine);
}

}  // namespace sdpneg

unsigned short sdpParserMessage::getIpAddr(sSdpParsedData& data, const c_line& line) {
  const char* address = sdp_CgetAddress(&line, 0);
  if (!cMsgIPAddress::isValid(address)) {
    trace::error("Invalid ip address (%s) found in c-line", address != nullptr ? address : "");
    return 1;
  }
  data.address.setIPAddress(address);
  return 0;
}
