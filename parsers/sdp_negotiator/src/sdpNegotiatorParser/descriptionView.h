#ifndef SDP_DESCRIPTION_VIEW_H
#define SDP_DESCRIPTION_VIEW_H

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <span>
#include <string_view>

#include "attributeLines.h"
#include "sdpDataDefinitions.h"
#include "sessionDescription.h"
#include "text/search.h"

// Looking at a decoded description in place. Only what its counts name is valid, and a count may exceed what
// is held.

namespace sdpneg {

/// The media descriptions that are held, of the first `noOfMDs`.
template <typename Description>
auto mediaOf(Description& description, int noOfMDs = SDP_MEDIA_CAPACITY) {
  const int count = std::clamp(std::min(noOfMDs, sdp_getNoOfMDs(&description)), 0, SDP_MEDIA_CAPACITY);
  return std::span(description.media).first(static_cast<std::size_t>(count));
}

/// The value of an attribute line; null when it has neither a value nor a colon.
inline const char* valueOf(const a_line::entry& line) {
  return line.hasColon != 0 || line.value[0] != '\0' ? line.value : nullptr;
}

/// Whether an attribute line has exactly that name. Most lines differ in the first character.
inline bool isNamed(const a_line::entry& line, const char* name) {
  return line.name[0] == name[0] && std::strcmp(line.name, name) == 0;
}

/// The port of an m-line, at most the largest value of its type.
inline int portOf(const mDescription& media) { return numberOrZero<int>(viewOf(sdp_MgetPort(&media.mLine))); }

inline std::string_view transportOf(const mDescription& media) {
  return viewOf(sdp_MgetTransport(&media.mLine));
}

inline bool hasConnection(const c_line& line) { return sdp_CgetNoOfCs(&line) > 0; }

}  // namespace sdpneg

#endif
