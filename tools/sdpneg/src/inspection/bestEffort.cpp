#include "inspection/bestEffort.h"

#include <algorithm>
#include <iterator>
#include <span>
#include <string_view>
#include <utility>
#include <vector>

#include "inspection/heldMedia.h"
#include "sdpModifiers.h"
#include "sdpNegotiatorParser.h"
#include "text/search.h"

namespace tool {
namespace {

constexpr std::string_view kPlain[] = {"RTP/AVP", "RTP/AVPF"};
constexpr std::string_view kSecure[] = {"RTP/SAVP", "RTP/SAVPF"};

/// Whether there is a key or where it comes from: SDES, DTLS-SRTP, MIKEY or ZRTP.
bool hasKeys(const a_line& attributes) {
  constexpr std::string_view names[] = {"crypto", "fingerprint", "key-mgmt", "zrtp-hash"};
  return std::any_of(std::begin(names), std::end(names),
                     [&](std::string_view name) { return hasAttribute(attributes, name); });
}

bool isPlain(std::string_view transport) {
  return std::any_of(std::begin(kPlain), std::end(kPlain),
                     [&](std::string_view name) { return sdpneg::equalNoCase(transport, name); });
}

/// What the object answers to getSdpBestEffortSrtpType(), which decodes its body for it.
eSecurityType typeOf(const cSdpNegotiator& object, eSecurityType security, std::vector<mDescription> mLines) {
  switch (security) {
    case SECURITY_RTP_ONLY: {
      const eSecurityType form = sdpModifications::is1mLineBeSrtp(std::move(mLines));
      return form == BE_SRTP_1m_LINE ? form : SECURITY_RTP_ONLY;
    }
    case SECURITY_SRTP_ONLY:
      return object.isSDESPresent() ? SECURITY_SRTP_ONLY : SRTP_UKNOWN;
    case SECURITY_BOTH:
      return sdpModifications::is2mLineBeSrtp(std::move(mLines));
    default:
      return SRTP_UKNOWN;
  }
}

/// Whether an m-line has a transport, with feedback or without; in capitals, as the library pairs them.
bool isTransport(const mDescription& media, const std::string_view (&names)[2]) {
  return std::find(std::begin(names), std::end(names), transportOf(media)) != std::end(names);
}

bool isSameFormat(const mDescription& a, const mDescription& b, std::size_t index) {
  const auto format = [index](const mDescription& media) {
    return sdpneg::viewOf(sdp_MgetFormat(&media.mLine, static_cast<int>(index)));
  };
  return format(a) == format(b);
}

/// Why two m-lines, of which the first has that index, are no plain and secure form of one medium; null when they may
/// be. As the library does, it compares the formats at the first one's index.
const char* whyNoPair(const mDescription& first, const mDescription& second, std::size_t index) {
  if (first.mLine.mediaType != second.mLine.mediaType)
    return "two m-lines of a pair are of different media types";
  if (!isSameFormat(first, second, index)) return "two m-lines of a pair have different codecs";
  const bool plainFirst = isTransport(first, kPlain);
  if (!plainFirst && !isTransport(first, kSecure)) return "a pair begins with neither RTP/AVP nor RTP/SAVP";
  return isTransport(second, plainFirst ? kSecure : kPlain)
             ? nullptr
             : "the transports of two m-lines do not pair: one plain, one secure";
}

/// Why m-lines are not pairs of a plain and a secure one. The first pair that does not fit ends the library's look at
/// them, and it asks the first pair alone for a crypto line.
std::string whyNoPairs(std::span<const mDescription> media) {
  if (media.size() % 2 != 0) return "odd number of m-lines";
  for (std::size_t i = 0; i < media.size(); i += 2) {
    if (const char* const why = whyNoPair(media[i], media[i + 1], i)) return why;
    const mDescription& secure = isTransport(media[i], kSecure) ? media[i] : media[i + 1];
    if (i == 0 && !hasAttribute(secure.aLine, "crypto"))
      return "no crypto line in the secure m-line of the first pair";
  }
  return "the m-lines cannot be read";
}

std::string whyUnknown(eSecurityType security, std::span<const mDescription> media) {
  if (security == SECURITY_NONE) return "neither RTP/AVP nor RTP/SAVP";
  return security == SECURITY_SRTP_ONLY ? "secure without SDES" : whyNoPairs(media);
}

struct Words {
  eSecurityType type;
  const char* text;
  const char* name;  ///< in the JSON output
};

constexpr Words kTypes[] = {{BE_SRTP_2m_LINE, "two m-lines per medium", "twoMLines"},
                            {BE_SRTP_1m_LINE, "one m-line per medium", "oneMLine"},
                            {SECURITY_RTP_ONLY, "no: plain RTP only", "plain"},
                            {SECURITY_SRTP_ONLY, "no: secure RTP only", "secure"}};
constexpr Words kUnknown = {SRTP_UKNOWN, "unknown: ", "unknown"};
constexpr Words kOpportunistic = {SRTP_UKNOWN, "opportunistic: RTP/AVP with keys", "opportunistic"};

const Words& wordsOf(const BestEffort& bestEffort) {
  if (bestEffort.isOpportunistic) return kOpportunistic;
  const auto* const row = std::find_if(std::begin(kTypes), std::end(kTypes),
                                       [&](const Words& each) { return each.type == bestEffort.type; });
  return row != std::end(kTypes) ? *row : kUnknown;
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
  // A text that requests do not take has no m-lines for them either.
  std::vector<mDescription> mLines;
  if (object.getRawSdpSize() != 0) sdpParserMessage::getMLines(description, mLines);
  const auto media = heldMedia(description).first(mLines.size());
  const eSecurityType security = object.getSdpSecurityType();
  const eSecurityType type = typeOf(object, security, std::move(mLines));
  const bool hasForm = type == BE_SRTP_2m_LINE || type == BE_SRTP_1m_LINE;
  return {type, type == SRTP_UKNOWN ? whyUnknown(security, media) : std::string(),
          !hasForm && hasKeysOnPlainMedia(description)};
}

std::string bestEffortText(const BestEffort& bestEffort) {
  const Words& words = wordsOf(bestEffort);
  return &words == &kUnknown ? words.text + bestEffort.reason : words.text;
}

const char* bestEffortName(const BestEffort& bestEffort) { return wordsOf(bestEffort).name; }

}  // namespace tool
