#ifndef SDP_MODIFIERS_MEDIA_TRANSPORT_H
#define SDP_MODIFIERS_MEDIA_TRANSPORT_H

#include <span>
#include <string>
#include <string_view>

#include "refusal.h"
#include "text/sdpText.h"

// The transport of the m-lines of chosen media.

namespace sdpneg {

/// `sdpModifications::sdpSetMediaTransportType`. Goes on behind an m-line that is refused.
/// @return the last refusal; all have been told
Refusal setMediaTransport(SdpText& text, const char* from, const char* to,
                          std::span<const std::string_view> names);
Refusal setMediaTransport(SdpText& text, const char* from, const char* to,
                          std::span<const std::string> names);

}  // namespace sdpneg

#endif
