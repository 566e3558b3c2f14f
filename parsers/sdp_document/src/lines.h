#ifndef SDP_DOCUMENT_LINES_H
#define SDP_DOCUMENT_LINES_H

// The index of a text: its lines, each with what it is about.

#include <cstdint>
#include <limits>
#include <string_view>

namespace sdp::core {

/// What a line is about: the kinds of lines and the attributes that the library knows.
enum class Kind : std::uint8_t {
  other,
  empty,
  version,
  media,
  connection,
  bandwidth,
  information,
  attribute,  ///< one of an unknown name; those below have known ones
  rtpmap,
  fmtp,
  rtcpFb,
  imageattr,
  framesize,
  gpmd,
  candidate,
  remoteCandidates,
  endOfCandidates,
  iceUfrag,
  icePwd,
  iceOptions,
  iceLite,
  iceMismatch,
  icePacing,
  altc,
  alt,
  ccap,
  sourceFilter,
  group,
  mid,
  bundleOnly,
  sendrecv,
  sendonly,
  recvonly,
  inactive,
  crypto,
  keyMgmt,
  fingerprint,
  setup,
  tlsId,
  rtcp,
  rtcpMux,
  rtcpRsize,
  path,
  label,
  count
};

inline constexpr std::size_t kKinds = static_cast<std::size_t>(Kind::count);
inline bool isAttribute(Kind kind) { return kind >= Kind::attribute; }

/// A set of kinds.
using Kinds = std::uint64_t;
static_assert(kKinds <= 64);
constexpr Kinds one(Kind kind) { return Kinds{1} << static_cast<unsigned>(kind); }
template <typename... Kind>
constexpr Kinds kindsOf(Kind... kinds) {
  return (one(kinds) | ...);
}
constexpr bool has(Kinds kinds, Kind kind) { return (kinds & one(kind)) != 0; }

/// Attributes that speak of a format: their value's first field is its payload type.
inline constexpr Kinds kOfFormats =
    kindsOf(Kind::rtpmap, Kind::fmtp, Kind::rtcpFb, Kind::imageattr, Kind::framesize, Kind::gpmd);
inline constexpr Kinds kDirections = kindsOf(Kind::sendrecv, Kind::sendonly, Kind::recvonly, Kind::inactive);
/// What tells where media come from or go to, or how a way there is found.
inline constexpr Kinds kOfAddresses =
    kindsOf(Kind::candidate, Kind::remoteCandidates, Kind::endOfCandidates, Kind::iceUfrag, Kind::icePwd,
            Kind::iceOptions, Kind::iceLite, Kind::iceMismatch, Kind::icePacing, Kind::altc, Kind::alt,
            Kind::ccap, Kind::sourceFilter);

/// Offsets and numbers of lines; kNone where there is none.
using Index = std::uint32_t;
inline constexpr Index kNone = std::numeric_limits<Index>::max();

/// A line: its content, and its end behind that. What they stand in does not move while lines point there.
struct Line {
  const char* begin;
  Index length;  ///< of the content
  Index next;    ///< of a chain that a table makes of lines
  /// Of an attribute the length of its name; kLongName when it is longer than this can tell. Of one that a table of
  /// formats has chained the payload type that it speaks of (see payloads.h).
  std::uint16_t detail;
  Kind kind;
  std::uint8_t endLength : 2;  ///< CR LF, LF, a CR at the text's end, or nothing
  std::uint8_t gone : 1;
  std::uint8_t added : 1;
  Index number;  ///< from 1, as the text was read; of no meaning for lines that were added

  std::string_view content() const { return {begin, length}; }
  std::string_view end() const { return {begin + length, endLength}; }
  std::string_view whole() const { return {begin, length + std::size_t{endLength}}; }
  bool endsInLf() const { return end().ends_with('\n'); }
};
inline constexpr std::uint16_t kLongName = std::numeric_limits<std::uint16_t>::max();

/// The kind of lines of a type, the letter in front of "="; Kind::attribute for all attributes.
constexpr Kind kindOfType(char type) {
  switch (type) {
    case 'a':
      return Kind::attribute;
    case 'b':
      return Kind::bandwidth;
    case 'c':
      return Kind::connection;
    case 'i':
      return Kind::information;
    case 'm':
      return Kind::media;
    case 'v':
      return Kind::version;
    default:
      return Kind::other;
  }
}

/// The known attribute of a name, Kind::attribute for others.
Kind attributeKind(std::string_view name);
/// The same without regard to the case of its letters.
Kind attributeKindNoCase(std::string_view name);
/// The spelling of a known attribute.
std::string_view nameOf(Kind kind);

/// Reads what a content is about into a line, whose place and end are known already.
/// @param line kReadAhead characters behind its content are readable
void classify(Line& line);

}  // namespace sdp::core

#endif
