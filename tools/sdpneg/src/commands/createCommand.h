#ifndef SDPNEG_CREATE_COMMAND_H
#define SDPNEG_CREATE_COMMAND_H

#include "commands/commandTable.h"

namespace tool {

/// `sdpneg create`: writes a body from values.
int runCreate(const Arguments& arguments, Streams streams);

}  // namespace tool

#endif
