#ifndef HOST_TRACE_H
#define HOST_TRACE_H

#include <string>

/// All calls of the trace operations so far, in their order, each ended by a semicolon.
std::string& hostTraceCalls();

#endif
