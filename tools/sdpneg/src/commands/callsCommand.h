#ifndef SDPNEG_CALLS_COMMAND_H
#define SDPNEG_CALLS_COMMAND_H

#include "commands/commandTable.h"

namespace tool {

/// Shows the calls of captures and logs.
int runCalls(const Arguments& arguments, Streams streams);

}  // namespace tool

#endif
