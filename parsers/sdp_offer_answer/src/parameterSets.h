#ifndef SDP_OFFER_ANSWER_PARAMETER_SETS_H
#define SDP_OFFER_ANSWER_PARAMETER_SETS_H

// Parameters that are sets of numbers: the modes of AMR, and telephone events.

#include <bitset>
#include <optional>
#include <string>

#include "codecs.h"

namespace sdp::exchange {

/// Modes of AMR (RFC 4867): 0 to 7, and to 8 for AMR-WB.
using ModeSet = std::bitset<16>;
/// Telephone events (RFC 4733).
using EventSet = std::bitset<256>;

/// What mode-set has; nothing where it is missing, and all modes may be used.
std::optional<ModeSet> modesOf(const Codec& codec);
/// "0,2,4".
std::string textOf(const ModeSet& modes);

/// The events of a fmtp, those from 0 to 15 without one.
EventSet eventsOf(const Codec& codec);
/// "0-15,66".
std::string textOf(const EventSet& events);

}  // namespace sdp::exchange

#endif
