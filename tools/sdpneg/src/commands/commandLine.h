#ifndef SDPNEG_COMMAND_LINE_H
#define SDPNEG_COMMAND_LINE_H

#include "commands/commandTable.h"

namespace tool {

/// Parses a command line by the command table and runs its command.
/// @param arguments without the program's name
/// @return the exit status
int runCommandLine(std::vector<std::string> arguments, Streams streams);

}  // namespace tool

#endif
