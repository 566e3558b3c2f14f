#include <algorithm>

#include "descriptionView.h"
#include "sdpNegotiatorParser.h"
#include "trace.h"
#include "vocabulary.h"

// ICE (RFC 8839): whether a text has it, full or lite, and whether a candidate matches the summary.

namespace sdpneg {
namespace {

void setBit(sSdpParsedData& data, eSdpAttribute bit, bool on) {
  const auto mask = static_cast<std::uint32_t>(bit);
  data.sdpAttributes = on ? data.sdpAttributes | mask : data.sdpAttributes & ~mask;
}

struct IceNames {
  bool lite = false;
  bool full = false;
};

bool isFullIceName(std::string_view text) {
  switch (text.empty() ? '\0' : lower(text[0])) {
    case 'c':
      return startsWithNoCase(text, "candidate:");
    case 'r':
      return startsWithNoCase(text, "remote-candidates:");
    case 'i':
      return startsWithNoCase(text, "ice-mismatch") || startsWithNoCase(text, "ice-pwd:") ||
             startsWithNoCase(text, "ice-ufrag:") || startsWithNoCase(text, "ice-options:");
    default:
      return false;
  }
}

/// Looks behind each "a=" of a text, inside lines as well, in one pass: equals signs are rarer than the
/// names' other characters.
IceNames iceNamesIn(std::string_view text) {
  IceNames found;
  for (std::size_t at = text.find('=', 1); at != npos && !found.lite; at = text.find('=', at + 1)) {
    if (lower(text[at - 1]) != 'a') continue;
    const std::string_view name = text.substr(at + 1);
    found.lite = startsWithNoCase(name, "ice-lite");
    found.full = found.full || isFullIceName(name);
  }
  return found;
}

/// Finds the next place of a piece, letters compared without regard to case. Asked with places that never
/// fall, it goes over the text once.
class NextPlace {
 public:
  NextPlace(std::string_view text, std::string_view piece) : text_(text), piece_(piece) {}

  std::size_t from(std::size_t begin) {
    if (!known_ || (place_ != npos && place_ < begin)) place_ = findNoCase(text_, piece_, begin);
    known_ = true;
    return place_;
  }

 private:
  std::string_view text_;
  std::string_view piece_;
  std::size_t place_ = npos;
  bool known_ = false;
};

/// Goes over the candidate lines of a text until one tells whether they match. The bit stays as it is when the lines
/// run out.
/// @return 0, or 1 for a line without LF, which leaves the bit as well
unsigned short matchCandidates(sSdpParsedData& data, std::string_view text, std::string_view address,
                               std::string_view port) {
  NextPlace nextPort(text, port);
  NextPlace nextAddress(text, address);
  NextPlace nextLineFeed(text, "\n");
  for (std::size_t line = text.find("a=candidate:"); line != npos;
       line = text.find("a=candidate:", line + 1)) {
    const std::size_t lineFeed = nextLineFeed.from(line);
    if (lineFeed == npos) return 1;
    const std::size_t last = std::max(nextPort.from(line), nextAddress.from(line));
    if (last == npos) {
      trace::info("Ice mismatch occurred within the SDP");
      setBit(data, SDP_ATTR_ICE_CANDIDATES_MATCH, false);
      return 0;
    }
    if (last < lineFeed) {
      setBit(data, SDP_ATTR_ICE_CANDIDATES_MATCH, true);
      return 0;
    }
  }
  return 0;
}

/// The IP version that active media indicate so far.
struct Indication {
  eIPAddressVersion candidate = kIpVersionUnknown;   ///< of the last candidate, whatever it was
  eIPAddressVersion connection = kIpVersionUnknown;  ///< of the c-lines, where IPv6 outweighs IPv4
};

/// @return true when a candidate has an IPv6 address, which decides
bool takeCandidates(Indication& indication, const a_line& line) {
  for (const a_line::entry& each : entriesOf(&line)) {
    if (lower(each.name[0]) != 'c' || !equalNoCase(each.name, "candidate")) continue;
    indication.candidate = cMsgIPAddress::getIPAddressVersion(each.value);
    if (indication.candidate == kIpVersion6) return true;
  }
  return false;
}

void takeConnection(Indication& indication, const c_line& line) {
  if (!hasConnection(line)) return;
  const bool isFirst = indication.connection == kIpVersionUnknown;
  if (cMsgIPAddress::isIPv6(sdp_CgetAddress(&line, 0))) {
    indication.connection = kIpVersion6;
  } else if (isFirst) {
    indication.connection = kIpVersion4;
  }
}

}  // namespace
}  // namespace sdpneg

using namespace sdpneg;

unsigned short sdpParserMessage::checkIce(const char* sdp, sSdpParsedData& data) {
  const IceNames found = iceNamesIn(viewOf(sdp));
  setBit(data, SDP_ATTR_ICE_LITE, found.lite);
  if (found.lite) {
    trace::progress("There is an ice-lite attribute in the SDP.");
    return 0;
  }
  setBit(data, SDP_ATTR_FULL_ICE, found.full);
  if (found.full) trace::progress("There is ice attributes in the SDP.");
  return 0;
}

unsigned short sdpParserMessage::checkFullIceAttributes(const char* sdp, sSdpParsedData& data,
                                                        const sDescription& description) {
  const auto media = mediaOf(description);
  const std::string_view address = viewOf(sdp_CgetAddress(&description.cLine, 0));
  if (media.empty() || address.empty()) return 1;
  const std::string_view port = viewOf(sdp_MgetPort(&media[0].mLine));
  if (port.empty()) return 1;
  return matchCandidates(data, viewOf(sdp), address, port);
}

unsigned int sdpParserMessage::checkMediaStreamsForIPIndication(const sDescription& description) {
  Indication indication;
  for (const mDescription& media : mediaOf(description)) {
    if (portOf(media) == 0) continue;
    if (takeCandidates(indication, media.aLine)) return kIpVersion6;
    takeConnection(indication, media.cLine);
  }
  const bool byCandidate = indication.candidate != kIpVersionUnknown;
  return static_cast<unsigned int>(byCandidate ? indication.candidate : indication.connection);
}
