#ifndef SDPNEG_TRANSFER_COMMANDS_H
#define SDPNEG_TRANSFER_COMMANDS_H

#include "commands/commandTable.h"

namespace tool {

/// `sdpneg pack`: writes the transfer form of a body.
int runPack(const Arguments& arguments, Streams streams);

/// `sdpneg unpack`: writes the body of a transfer form.
int runUnpack(const Arguments& arguments, Streams streams);

}  // namespace tool

#endif
