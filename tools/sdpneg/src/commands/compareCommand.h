#ifndef SDPNEG_COMPARE_COMMAND_H
#define SDPNEG_COMPARE_COMMAND_H

#include "commands/commandTable.h"

namespace tool {

/// `sdpneg compare`: says how two bodies differ.
int runCompare(const Arguments& arguments, Streams streams);

}  // namespace tool

#endif
