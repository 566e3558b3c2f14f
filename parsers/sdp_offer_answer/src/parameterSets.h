#ifndef SDP_OFFER_ANSWER_PARAMETER_SETS_H
#define SDP_OFFER_ANSWER_PARAMETER_SETS_H

// Parameters that are sets of numbers: the modes of AMR, and telephone events.

#include <bitset>
#include <optional>
#include <string>
#include <string_view>

#include "codecs.h"

namespace sdp::exchange {

/// What is no mode stands for itself in a set of modes.
inline constexpr std::size_t kOtherMode = 16;
/// Modes of AMR (RFC 4867): 0 to 7, and to 8 for AMR-WB.
using ModeSet = std::bitset<kOtherMode + 1>;
/// Telephone events (RFC 4733).
using EventSet = std::bitset<256>;

/// What mode-set has; nothing where it is missing, and all modes may be used.
std::optional<ModeSet> modesOf(const Codec& codec);
/// Those of a mode-set that are among others, in its order: "0,2,4".
std::string textOfCommonModes(std::string_view local, const ModeSet& others);

/// What of a fmtp lists events: up to the first semicolon.
std::string_view eventListOf(std::string_view parameters);
/// The events of a fmtp; without one, and where something else stands in it, those from 0 to 15, the keys of telephones.
EventSet eventsOf(const Codec& codec);
/// "0-15,66".
std::string textOf(const EventSet& events);

}  // namespace sdp::exchange

#endif
