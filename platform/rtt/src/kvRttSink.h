#ifndef KV_RTT_SINK_H
#define KV_RTT_SINK_H

#include "kvRttLocal.h"

// Where trace lines go.

namespace kvrtt {

/// Hands a line to the current sink, one line at a time; drops one that a sink traces. The value of errno
/// stays as it was.
void writeLine(const KvRttLine& line);

/// Sets the sink; null sets the default one. Waits until the former sink has returned from its line.
void setSink(KvRttSink sink, void* context);

}  // namespace kvrtt

#endif
