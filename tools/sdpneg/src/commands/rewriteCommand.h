#ifndef SDPNEG_REWRITE_COMMAND_H
#define SDPNEG_REWRITE_COMMAND_H

#include "commands/commandTable.h"

namespace tool {

/// `sdpneg rewrite`: applies requests to a body.
int runRewrite(const Arguments& arguments, Streams streams);

/// `sdpneg requests`: lists them.
int runRequests(const Arguments& arguments, Streams streams);

/// The list of the requests, one a line.
std::string requestList();

}  // namespace tool

#endif
