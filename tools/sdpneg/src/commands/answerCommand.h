#ifndef SDPNEG_ANSWER_COMMAND_H
#define SDPNEG_ANSWER_COMMAND_H

#include "commands/commandTable.h"

namespace tool {

/// `sdpneg answer`: answers an offer from a local description.
int runAnswer(const Arguments& arguments, Streams streams);

}  // namespace tool

#endif
