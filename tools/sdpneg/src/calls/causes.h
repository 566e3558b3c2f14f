#ifndef SDPNEG_CAUSES_H
#define SDPNEG_CAUSES_H

#include <cstdint>
#include <string>

#include "calls/troubleFinder.h"

// Which ways media go in a section, and which message of a call made them go so.

namespace tool {

enum class Way : std::uint8_t { missing, refused, inactive, sendonly, recvonly, sendrecv };

/// What a body has a section do, as its writer means it; held as of old counts.
Way wayOf(const sdp::Document& body, std::uint32_t section);

/// What an exchange comes to in a section.
struct Ways {
  Way offered = Way::missing;
  Way answered = Way::missing;

  bool isBothWays() const { return offered == Way::sendrecv && answered == Way::sendrecv; }
  bool isAccepted() const { return offered > Way::refused && answered > Way::refused; }
};

/// A message that made it so.
struct Cause {
  TroublePlace place;
  bool isHop = false;  ///< it did not come so
  Way before = Way::missing;
  Way after = Way::missing;
};

/// Goes back from an answer to the message that first had the section go as it does: to the offer where the answer only
/// follows that, and to what came to a hop where the hop left it as it was.
Cause causeOf(TroubleFinder& finder, std::size_t answer, std::uint32_t section);

/// "audio is sendonly: 192.0.2.1 does not send".
std::string textOf(const TroubleFinder& finder, const Cause& cause, std::string_view media);

}  // namespace tool

#endif
