#ifndef SDPNEG_OFFER_COMMANDS_H
#define SDPNEG_OFFER_COMMANDS_H

#include "commands/commandTable.h"

namespace tool {

/// `sdpneg update-answer`: brings an answer up to date with a new offer.
int runUpdateAnswer(const Arguments& arguments, Streams streams);

/// `sdpneg version-increased`: tells whether a body is the next version of another.
int runVersionIncreased(const Arguments& arguments, Streams streams);

/// `sdpneg align`: gives a body the o-line and the m-lines of an earlier one.
int runAlign(const Arguments& arguments, Streams streams);

}  // namespace tool

#endif
