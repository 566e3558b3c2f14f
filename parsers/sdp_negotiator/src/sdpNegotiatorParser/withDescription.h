#ifndef SDP_WITH_DESCRIPTION_H
#define SDP_WITH_DESCRIPTION_H

#include <cstddef>
#include <memory>
#include <new>

#include "sessionDescription.h"
#include "trace.h"

namespace sdpneg {

/// The largest description that is put on the stack; with the smallest attribute capacity it has 570 kB.
inline constexpr std::size_t descriptionStackLimit = 1U << 20U;

/// Calls `work` with a description of its own. The description is not cleared: the decoder sets what is
/// valid, and clearing several hundred kilobytes would take longer than a whole parse.
/// @return what `work` returns; 1 with a trace when there is no memory for the description
template <typename Work>
unsigned short withDescription(Work work) {
  if constexpr (sizeof(sDescription) <= descriptionStackLimit) {
    sDescription description;
    return work(description);
  } else {
    const std::unique_ptr<sDescription> description(new (std::nothrow) sDescription);
    if (description != nullptr) return work(*description);
    trace::error("There is no memory for the description of the SDP.");
    return 1;
  }
}

}  // namespace sdpneg

#endif
