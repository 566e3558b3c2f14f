#ifndef SDPNEG_MULTIPART_H
#define SDPNEG_MULTIPART_H

#include <optional>
#include <string_view>

#include "input/messageHeader.h"

namespace tool {

/// A part of a multipart body (RFC 2046 5.1).
struct Part {
  Header header;
  Range body;
};

/// The first part of a multipart body that is application/sdp, or else the first that is multipart itself. A
/// body that lacks its last boundary ends with its text.
std::optional<Part> findSdpPart(std::string_view text, Range multipart, std::string_view boundary);

}  // namespace tool

#endif
