#ifndef SDP_NEGOTIATOR_TRACE_SWITCH_H
#define SDP_NEGOTIATOR_TRACE_SWITCH_H

namespace sdpneg {

/// Whether trace lines are written. A trace call asks that by itself; this is for loops that would do so many times.
bool isTracing();

}  // namespace sdpneg

#endif
