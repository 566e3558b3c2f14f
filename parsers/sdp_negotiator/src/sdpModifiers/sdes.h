#ifndef SDP_MODIFIERS_SDES_H
#define SDP_MODIFIERS_SDES_H

#include <cstddef>

#include "refusal.h"
#include "sdpModifiers/notes.h"

// Crypto attributes of SDES (RFC 4568).

namespace sdpneg {

/// Gives the first usable crypto attribute of a media section a key of its own and removes the others; see
/// `sdpModifications::addSDESLine`. What was edited before a refusal stays.
/// @param mediaStart the LF in front of the section's m-line
Refusal addSdesLine(SdpText& text, std::size_t mediaStart);

/// `sdpModifications::isSDESonly`.
bool isSdesOnly(std::string_view text, const Notes& notes);

}  // namespace sdpneg

#endif
