#ifndef SDPNEG_LINK_LAYER_H
#define SDPNEG_LINK_LAYER_H

#include <optional>
#include <string_view>

// What a frame carries.

namespace tool {

/// Whether frames of a link type (as libpcap numbers them) are read.
bool isKnownLinkType(int linkType);

struct LinkPayload {
  bool isReadable = true;  ///< the frame's own header is there
  std::string_view ip;     ///< an IP packet; empty when the frame carries something else
};

LinkPayload linkPayload(int linkType, std::string_view frame);

}  // namespace tool

#endif
