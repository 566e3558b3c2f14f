#ifndef B2BUA_MULTIPART_H
#define B2BUA_MULTIPART_H

#include <optional>
#include <string>
#include <string_view>

#include "sip.h"

namespace b2bua {

/// The SDP part of a multipart body (RFC 2046 5.1).
/// @return none when there is no such part, when it is encoded, or when another part insists on being understood
std::optional<std::string> sdpPartOf(std::string_view body, std::string_view boundary);

constexpr const char* kSdp = "application/sdp";

/// @return the SDP body of a message, empty when it has no body at all; none when that is something else
std::optional<std::string> sdpOf(const sip_t& message);

}  // namespace b2bua

#endif
