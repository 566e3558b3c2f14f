#ifndef SDP_MODIFIERS_SDES_H
#define SDP_MODIFIERS_SDES_H

#include <cstddef>

#include "text/sdpText.h"

namespace sdpneg {

/// Gives the first usable crypto attribute of a media section a key of its own and removes the others; see
/// sdpModifications::addSDESLine.
/// @param mediaStart the LF in front of the section's m-line
/// @return as addSDESLine; the text grows within its capacity
unsigned short addSdesLine(SdpText& text, std::size_t mediaStart);

}  // namespace sdpneg

#endif
