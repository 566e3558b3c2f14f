#ifndef SDPNEG_SECTIONS_COMMAND_H
#define SDPNEG_SECTIONS_COMMAND_H

#include "commands/commandTable.h"

namespace tool {

/// `sdpneg sections`: lists the sections of bodies of any kind.
int runSections(const Arguments& arguments, Streams streams);

}  // namespace tool

#endif
