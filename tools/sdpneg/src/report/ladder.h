#ifndef SDPNEG_LADDER_H
#define SDPNEG_LADDER_H

#include <string>

#include "calls/call.h"
#include "output/colour.h"
#include "report/names.h"

// A call as a ladder of messages between its participants.

namespace tool {

struct LadderOptions {
  Names names;
  bool withBodies = false;  ///< each body behind the ladder, and what hops changed of it
};

/// The call in lines for a terminal or file, printable.
std::string ladder(const Call& call, const LadderOptions& options, const Palette& palette);

}  // namespace tool

#endif
