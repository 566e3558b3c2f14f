#ifndef SDP_DESCRIPTION_STACK_H
#define SDP_DESCRIPTION_STACK_H

#include "sessionDescription.h"

// A description in the calling thread's stack. Its frame is larger than the guard below the stack, so a compiler that
// protects the stack touches each of its pages, which takes longer than decoding a body. Where the stack is known to have
// room for all of it, nothing has to be touched.

namespace sdpneg {

using DescriptionWork = void (*)(void* context, sDescription& description);

/// Calls `work` with a description that is not cleared. On a stack that is too small for it a hardened build ends the
/// process at the stack's guard.
void withDescriptionOfStack(DescriptionWork work, void* context);

/// The same without a look at the stack: a frame that is set up without touching its pages. Only for a stack that has the
/// room.
void withDescriptionUntouched(DescriptionWork work, void* context);

}  // namespace sdpneg

#endif
