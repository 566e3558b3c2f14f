#ifndef SDPNEG_INSPECT_COMMAND_H
#define SDPNEG_INSPECT_COMMAND_H

#include "commands/commandTable.h"

namespace tool {

/// `sdpneg inspect`: shows what bodies say.
int runInspect(const Arguments& arguments, Streams streams);

}  // namespace tool

#endif
