#include <algorithm>

#include "descriptionView.h"
#include "sdpNegotiatorParser.h"
#include "trace.h"
#include "vocabulary.h"

// How the media of a description are secured.

namespace sdpneg {
namespace {

bool isSecurityLine(const a_line::entry& line) {
  return isNamed(line, "crypto") || isNamed(line, "setup") || isNamed(line, "fingerprint") ||
         isNamed(line, "key-mgmt");
}

bool hasSecurityLine(const a_line& line) {
  const auto entries = entriesOf(&line);
  return std::any_of(entries.begin(), entries.end(), isSecurityLine);
}

bool hasMikeyLine(const a_line& line) {
  const auto entries = entriesOf(&line);
  return std::any_of(entries.begin(), entries.end(), [](const a_line::entry& each) {
    return textStartsWith(each.name, "key-mgmt") && each.value[0] != '\0';
  });
}

void noteMikey(sSdpParsedData& data) {
  data.sdpAttributes |= SDP_ATTR_MIKEY;
  trace::progress("Mikey attribute is found.");
}

void noteSecureMedia(sSdpParsedData& data, const mDescription& media) {
  const std::string_view transport = transportOf(media);
  if (contains(transport, kSecureTransport) && portOf(media) != 0) {
    data.sdpAttributes |= SDP_ATTR_SECURE_RTP;
    if (media.mLine.mediaType == MEDIA_VIDEO) data.sdpAttributes |= SDP_ATTR_SECURE_VIDEO;
    trace::info("Setting secure RTP call flag");
  }
  if (contains(transport, kPlainTransport) && hasSecurityLine(media.aLine)) {
    data.sdpAttributes |= SDP_ATTR_SECURE_RTP;
    trace::info("RTP/AVP media with secure line. Setting secure RTP call flag");
  }
}

}  // namespace
}  // namespace sdpneg

using namespace sdpneg;

void sdpParserMessage::containsSecureMedia(sSdpParsedData& data, const sDescription& description,
                                           int noOfMDs) {
  for (const mDescription& media : mediaOf(description, noOfMDs)) {
    noteSecureMedia(data, media);
  }
}

void sdpParserMessage::checkForMickey(sSdpParsedData& data, const sDescription& description) {
  if (hasMikeyLine(description.aLine)) return noteMikey(data);
  for (const mDescription& media : mediaOf(description)) {
    if (hasMikeyLine(media.aLine)) noteMikey(data);
  }
}
