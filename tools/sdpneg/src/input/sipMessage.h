#ifndef SDPNEG_SIP_MESSAGE_H
#define SDPNEG_SIP_MESSAGE_H

#include <optional>
#include <string_view>
#include <vector>

#include "input/messageHeader.h"
#include "input/place.h"

namespace tool {

/// A body with the SDP body in it, or that itself, and the numbers of its Content-Length fields.
struct Enclosing {
  Range body;
  std::vector<Range> lengths;  ///< the digits; none where there is no such field
};

/// Where the SDP body of an input stands.
struct BodyRange {
  Range range;
  std::vector<Enclosing> around;   ///< a SIP message's body first, then the parts inside it
  std::optional<Problem> problem;  ///< why there is none
  std::vector<Problem> notes;      ///< what its reader should know
};

/// Whether a text begins with the start line of a SIP message (RFC 3261 7.1, 7.2).
bool isSipMessage(std::string_view text);

/// Finds the SDP body: the whole text, or what a SIP message carries as application/sdp. Of a multipart body
/// (RFC 2046) it is the first part of that type, also inside further multipart bodies.
BodyRange findSdpBody(std::string_view text);

}  // namespace tool

#endif
