#ifndef SDP_NEGOTIATOR_TRACE_VERBS_H
#define SDP_NEGOTIATOR_TRACE_VERBS_H

#include "sdpNegotiatorTrace.h"  // isTracing

// Trace lines by what they tell. Each verb stands for the flag and level that the facility gets; the message is as
// for printf. A few messages have another verb than their words suggest: readers of traces rely on the pair.

namespace sdpneg::trace {

/// A failure: flag 4, level 3.
/// @return as `cNegotTraceManager::writeTraceMsg`, like all of these
int error(const char* format, ...) __attribute__((format(printf, 1, 2)));
/// A notable outcome or a soft failure: flag 2, level 2.
int info(const char* format, ...) __attribute__((format(printf, 1, 2)));
/// Entry, exit and progress: flag 8, level 4.
int progress(const char* format, ...) __attribute__((format(printf, 1, 2)));
/// Detail inside loops: flag 1, level 1.
int debug(const char* format, ...) __attribute__((format(printf, 1, 2)));
/// An argument of an edit that cannot be: flag 2, level 3.
int invalidArgument(const char* format, ...) __attribute__((format(printf, 1, 2)));

}  // namespace sdpneg::trace

#endif
