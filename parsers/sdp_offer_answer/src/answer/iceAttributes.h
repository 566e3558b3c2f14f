#ifndef SDP_OFFER_ANSWER_ICE_ATTRIBUTES_H
#define SDP_OFFER_ANSWER_ICE_ATTRIBUTES_H

// The attributes of ICE (RFC 8839).

#include <algorithm>
#include <array>
#include <string_view>

namespace sdp::exchange {

inline constexpr std::array<std::string_view, 9> kIceAttributes{
    "candidate",   "remote-candidates", "end-of-candidates", "ice-ufrag", "ice-pwd",
    "ice-options", "ice-lite",          "ice-mismatch",      "ice-pacing"};

inline bool isIceAttribute(std::string_view name) {
  return std::find(kIceAttributes.begin(), kIceAttributes.end(), name) != kIceAttributes.end();
}

}  // namespace sdp::exchange

#endif
