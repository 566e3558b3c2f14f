#ifndef SDPNEG_HELD_MEDIA_H
#define SDPNEG_HELD_MEDIA_H

#include <algorithm>
#include <cstddef>
#include <span>
#include <string_view>

#include "sessionDescription.h"
#include "text/search.h"

// Looking at the media of a decoded description in place.

namespace tool {

/// The media that a description holds; its count names those that were left out too.
inline std::span<const mDescription> heldMedia(const sDescription& description) {
  const int held = std::clamp(sdp_getNoOfMDs(&description), 0, SDP_MEDIA_CAPACITY);
  return std::span(description.media).first(static_cast<std::size_t>(held));
}

/// The port of an m-line; the largest of its type for one that is beyond it.
inline int portOf(const mDescription& media) {
  return sdpneg::numberOrZero<int>(sdpneg::viewOf(sdp_MgetPort(&media.mLine)));
}

inline std::string_view transportOf(const mDescription& media) {
  return sdpneg::viewOf(sdp_MgetTransport(&media.mLine));
}

/// Whether a block has an attribute of that name, in any case.
inline bool hasAttribute(const a_line& attributes, std::string_view name) {
  const auto lines =
      std::span(attributes.entries).first(static_cast<std::size_t>(sdp_AgetNoOfAs(&attributes)));
  return std::any_of(lines.begin(), lines.end(),
                     [&](const a_line::entry& line) { return sdpneg::equalNoCase(line.name, name); });
}

inline bool hasConnection(const c_line& line) { return sdp_CgetNoOfCs(&line) > 0; }

}  // namespace tool

#endif
