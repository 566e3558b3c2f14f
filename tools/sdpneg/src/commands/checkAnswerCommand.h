#ifndef SDPNEG_CHECK_ANSWER_COMMAND_H
#define SDPNEG_CHECK_ANSWER_COMMAND_H

#include "commands/commandTable.h"

namespace tool {

/// `sdpneg check-answer`: lists what is wrong with an answer to an offer.
int runCheckAnswer(const Arguments& arguments, Streams streams);

}  // namespace tool

#endif
