#ifndef SDP_DESCRIPTION_VIEW_H
#define SDP_DESCRIPTION_VIEW_H

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <span>
#include <string_view>

#include "attributeLines.h"
#include "fieldNumbers.h"
#include "sdpDataDefinitions.h"
#include "sessionDescription.h"
#include "text/search.h"

// Looking at a decoded description in place. Only what its counts name is valid, and a count may exceed what
// is held.

namespace sdpneg {

/// The media descriptions that are held, of the first `noOfMDs`.
template <typename Description>
auto mediaOf(Description& description, int noOfMDs = SDP_MEDIA_CAPACITY) {
  const int count = std::clamp(std::min(noOfMDs, description.noOfMDs), 0, SDP_MEDIA_CAPACITY);
  return std::span(description.media).first(static_cast<std::size_t>(count));
}

/// Notes a kind of media that the description has among its first `noOfMDs`.
inline void noteKind(sDescription& description, int noOfMDs, eMediaType kind) {
  const auto media = mediaOf(description, noOfMDs);
  const auto isOfKind = [kind](const mDescription& each) { return each.mLine.mediaType == kind; };
  if (std::any_of(media.begin(), media.end(), isOfKind)) description.mediaKinds |= kind;
}

/// The value of an attribute line; null when it has neither a value nor a colon.
inline const char* valueOf(const a_line::entry& line) {
  return line.hasColon != 0 || line.value[0] != '\0' ? line.value : nullptr;
}

/// Whether an attribute line has exactly that name. Most lines differ in the first character.
inline bool isNamed(const a_line::entry& line, const char* name) {
  return line.name[0] == name[0] && std::strcmp(line.name, name) == 0;
}

/// The formats of an m-line that are held.
inline std::span<const char[SDP_FORMAT_SIZE]> formatsOf(const m_line& line) {
  return {line.formats, static_cast<std::size_t>(std::clamp(line.formatCount, 0, SDP_FORMAT_CAPACITY))};
}

/// The port of an m-line, at most the largest value of its type.
inline int portOf(const mDescription& media) {
  const Leading<int> number = shortNumberOf<kPortDigits>(media.mLine.port);
  return number.length != 0 ? number.value : numberOrZeroOf<int>(media.mLine.port);
}

inline std::string_view transportOf(const mDescription& media) { return media.mLine.transport; }

inline bool hasConnection(const c_line& line) { return line.count > 0; }

/// The first address of a c-line; null when it has none.
inline const char* addressOf(const c_line& line) {
  return hasConnection(line) ? line.entries[0].address : nullptr;
}

/// The type of that address; null when it has none.
inline const char* addressTypeOf(const c_line& line) {
  return hasConnection(line) ? line.entries[0].addressType : nullptr;
}

/// What media may have from a session: eSdpLinePresence bits.
inline unsigned int inheritedLines(const sDescription& session) {
  const unsigned int connection = hasConnection(session.cLine) ? SDP_HAS_C_LINE : 0U;
  return session.linePresence & (SDP_HAS_A_LINE | connection);
}

/// What of it a media description lacks.
/// @param inherited `inheritedLines` of the session
inline unsigned int missingLines(unsigned int inherited, const mDescription& media) {
  return inherited & ~media.linePresence;
}

}  // namespace sdpneg

#endif
