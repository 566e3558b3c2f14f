#ifndef REQUEST_PROPERTY_H
#define REQUEST_PROPERTY_H

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

#include "requestTable.h"
#include "sdpNegotiatorParser/withDescription.h"
#include "sessionDescription.h"

// What holds behind every request, on any body: an object whose text is parsed is as a fresh parse of its text, and
// one whose text is only stored keeps its summary.

namespace requestProperty {

inline bool areSame(const cSdpNegotiator& a, const cSdpNegotiator& b) {
  return std::memcmp(&a, &b, sizeof a) == 0;
}

/// The text of an object, if it can be expanded.
struct Text {
  explicit Text(const cSdpNegotiator& object) : whole(object.getRawSDP(characters, sizeof characters) == 0) {}
  char characters[MAX_SDP_PROTOCOL_DATA_SIZE];
  bool whole;
};

inline void copyBits(std::uint32_t& to, std::uint32_t from, std::uint32_t bits) {
  to = (to & ~bits) | (from & bits);
}

inline void copyMedia(sSdpParsedData& to, const sSdpParsedData& from) {
  to.address = from.address;
  to.port = from.port;
  to.mediaType = from.mediaType;
  to.sdpAttributes = from.sdpAttributes;
  to.T38MaxBitRate = from.T38MaxBitRate;
  to.gainControl = from.gainControl;
  to.silenceSuppression = from.silenceSuppression;
  to.sessionMode = from.sessionMode;
  to.videoMode = from.videoMode;
}

inline void copyParts(sSdpParsedData& to, const sSdpParsedData& from, unsigned int parts) {
  const auto has = [parts](unsigned int part) { return (parts & part) != 0; };
  if (parts == kWhole) to = from;
  if (has(kOLineStart)) to.oLineStart = from.oLineStart;
  if (has(kOLineEnd)) to.oLineEnd = from.oLineEnd;
  if (has(kAudioCodecs)) std::memcpy(to.audioCodec, from.audioCodec, sizeof to.audioCodec);
  if (has(kPeriods)) {
    std::memcpy(to.packetizationPeriod, from.packetizationPeriod, sizeof to.packetizationPeriod);
  }
  constexpr std::uint32_t ice = SDP_ATTR_ICE_LITE | SDP_ATTR_FULL_ICE;
  constexpr std::uint32_t candidates = SDP_ATTR_IPV6 | SDP_ATTR_ICE_CANDIDATES_MATCH;
  if (has(kIceFlags)) copyBits(to.sdpAttributes, from.sdpAttributes, ice);
  if (has(kCandidates)) copyBits(to.sdpAttributes, from.sdpAttributes, candidates);
  if (has(kVideoBandwidth)) to.videoBandwidth = from.videoBandwidth;
  if (has(kH264Level)) to.h264Profile = from.h264Profile;
  if (has(kMedia)) copyMedia(to, from);
}

/// Whether two summaries are the same but for some parts and the form of the stored text.
inline bool sameBut(const sSdpParsedData& a, sSdpParsedData b, unsigned int parts) {
  copyParts(b, a, parts);
  b.storedSdpLength = a.storedSdpLength;
  return std::memcmp(&a, &b, sizeof a) == 0;
}

/// The object of a fresh parse of a text; an empty one when it does not parse.
inline cSdpNegotiator parseOf(const Text& text) {
  cSdpNegotiator object;
  object.sdpParse(text.whole ? text.characters : "", SDP_TYPE_UNKNOWN);
  return object;
}

/// Whether a body begins with the lines v, o and s as RFC 4566 has them, ends in a line feed, and fits a description.
inline bool isOrdinary(const std::string& text) {
  const std::size_t session = text.find("\ns=");
  const bool begins = text.rfind("v=0\r\no=", 0) == 0 || text.rfind("v=0\no=", 0) == 0;
  if (!begins || session == std::string::npos || text.back() != '\n') return false;
  const std::string_view front = std::string_view(text).substr(0, session);
  if (std::count(front.begin(), front.end(), '\n') != 1) return false;
  if (std::count(front.begin(), front.end(), ' ') != 5) return false;
  return sdpneg::withDescription([&](sDescription& description) {
    unsigned short start = 0;
    unsigned short end = 0;
    return sdp_decodeOpt_r(&description, text.c_str(), SDP_TYPE_UNKNOWN, nullptr, false, start, end) == 0 &&
           sdp_isComplete(&description);
  });
}

inline bool saysUnchanged(const RequestRow& request, unsigned short status) {
  return (request.unchanged == Unchanged::byZero && status == 0) ||
         (request.unchanged == Unchanged::byOthers && status != 0);
}

/// @param object   an object that was parsed
/// @param ordinary the body is one of usual form and the values are valid: what was stored parses too
/// @return what does not hold behind a request; empty when all does
inline std::string complaint(const RequestRow& request, const cSdpNegotiator& before,
                             const cSdpNegotiator& object, unsigned short status, bool ordinary) {
  const bool unchanged = areSame(object, before);
  if (saysUnchanged(request, status) && !unchanged) return "the object has changed in spite of the result";
  if (unchanged) return "";
  const bool mayStore = request.summary != Summary::parsed;
  // The text of an o-line request that cannot be stored is destroyed.
  if (mayStore && status == 2) return "";
  const Text text(object);
  if (!text.whole) return "the text cannot be expanded";
  const cSdpNegotiator fresh = parseOf(text);
  if (request.summary != Summary::stored && areSame(object, fresh)) return "";
  if (!mayStore) return "the object is not that of a parse of its text";
  if (!sameBut(object.getParsedData(), before.getParsedData(), request.sets)) {
    return "the summary has changed in more than what the request sets";
  }
  if (!ordinary || request.stale == kWhole) return "";
  if (!fresh.isSdpPresent()) return "the stored text does not parse";
  if (!sameBut(object.getParsedData(), fresh.getParsedData(), request.stale)) {
    return "the summary tells something else than the stored text";
  }
  return "";
}

}  // namespace requestProperty

#endif
