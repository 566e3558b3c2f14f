#include "inspection/bestEffort.h"

#include <algorithm>
#include <iterator>
#include <span>
#include <string_view>

#include "inspection/heldMedia.h"
#include "inspection/traceLines.h"
#include "text/search.h"

namespace tool {
namespace {

struct Reason {
  std::string_view trace;  ///< what a line of the trace contains
  const char* words;
};

/// The first pair that does not fit ends the library's look at m-lines two by two.
constexpr Reason kReasons[] = {
    {"due to different media types", "two m-lines of a pair are of different media types"},
    {"due to non odd number of m-lines", "odd number of m-lines"},
    {"due to different codecs", "two m-lines of a pair have different codecs"},
    {"no crypto line", "no crypto line in the secure m-line of the first pair"},
    {"no RTP/AVP for the RTP/SAVP", "the transports of two m-lines do not pair: one plain, one secure"},
    {"No chance to be here", "a pair begins with neither RTP/AVP nor RTP/SAVP"}};

std::string reasonOf(eSecurityType security, std::span<const TraceLine> trace) {
  if (security == SECURITY_NONE) return "neither RTP/AVP nor RTP/SAVP";
  if (security == SECURITY_SRTP_ONLY) return "secure without SDES";
  for (const TraceLine& line : trace) {
    for (const Reason& each : kReasons) {
      if (sdpneg::contains(line.text, each.trace)) return each.words;
    }
  }
  return "the m-lines cannot be read";
}

/// Whether there is a key or where it comes from: SDES, DTLS-SRTP, MIKEY or ZRTP.
bool hasKeys(const a_line& attributes) {
  constexpr std::string_view names[] = {"crypto", "fingerprint", "key-mgmt", "zrtp-hash"};
  const auto lines =
      std::span(attributes.entries).first(static_cast<std::size_t>(sdp_AgetNoOfAs(&attributes)));
  return std::any_of(lines.begin(), lines.end(), [&](const a_line::entry& line) {
    return std::any_of(std::begin(names), std::end(names),
                       [&](std::string_view name) { return sdpneg::equalNoCase(line.name, name); });
  });
}

bool isPlain(std::string_view transport) {
  return sdpneg::equalNoCase(transport, "RTP/AVP") || sdpneg::equalNoCase(transport, "RTP/AVPF");
}

}  // namespace

bool hasKeysOnPlainMedia(const sDescription& description) {
  const bool ofSession = hasKeys(description.aLine);
  bool found = false;
  for (const mDescription& media : heldMedia(description)) {
    if (portOf(media) == 0) continue;
    const std::string_view transport = transportOf(media);
    if (sdpneg::findNoCase(transport, "SAVP") != sdpneg::npos) return false;
    found = found || (isPlain(transport) && (ofSession || hasKeys(media.aLine)));
  }
  return found;
}

BestEffort bestEffortOf(const cSdpNegotiator& object, const sDescription& description) {
  const TraceLines trace;
  const eSecurityType type = object.getSdpBestEffortSrtpType();
  const eSecurityType security = object.getSdpSecurityType();
  const bool hasForm = type == BE_SRTP_2m_LINE || type == BE_SRTP_1m_LINE;
  return {type, type == SRTP_UKNOWN ? reasonOf(security, trace.lines()) : std::string(),
          !hasForm && hasKeysOnPlainMedia(description)};
}

std::string bestEffortText(const BestEffort& bestEffort) {
  if (bestEffort.isOpportunistic) return "opportunistic: RTP/AVP with keys";
  switch (bestEffort.type) {
    case BE_SRTP_2m_LINE:
      return "two m-lines per medium";
    case BE_SRTP_1m_LINE:
      return "one m-line per medium";
    case SECURITY_RTP_ONLY:
      return "no: plain RTP only";
    case SECURITY_SRTP_ONLY:
      return "no: secure RTP only";
    default:
      return "unknown: " + bestEffort.reason;
  }
}

const char* bestEffortName(const BestEffort& bestEffort) {
  if (bestEffort.isOpportunistic) return "opportunistic";
  switch (bestEffort.type) {
    case BE_SRTP_2m_LINE:
      return "twoMLines";
    case BE_SRTP_1m_LINE:
      return "oneMLine";
    case SECURITY_RTP_ONLY:
      return "plain";
    case SECURITY_SRTP_ONLY:
      return "secure";
    default:
      return "unknown";
  }
}

}  // namespace tool
