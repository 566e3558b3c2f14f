#ifndef KV_RTT_STANDARD_ERROR_H
#define KV_RTT_STANDARD_ERROR_H

#include "kvRttLocal.h"

// Trace lines on standard error.

namespace kvrtt {

/// The default sink. As for any sink, its calls must not overlap: it keeps the line that it composes.
void writeToStandardError(void* context, const KvRttLine* line);

}  // namespace kvrtt

#endif
