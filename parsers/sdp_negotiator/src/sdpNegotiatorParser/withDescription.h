#ifndef SDP_WITH_DESCRIPTION_H
#define SDP_WITH_DESCRIPTION_H

#include <cstddef>
#include <memory>
#include <new>
#include <type_traits>

#include "refusal.h"
#include "sdpNegotiatorParser/descriptionStack.h"
#include "sessionDescription.h"

// A place for a description, which is large.

namespace sdpneg {

/// The largest description that is put on the stack; with the smallest attribute capacity it has 570 kB.
inline constexpr std::size_t kDescriptionStackLimit = 1U << 20U;

/// Calls `work` with a description of its own. The description is not cleared: the decoder sets what is
/// valid, and clearing several hundred kilobytes would take longer than a whole parse.
/// @param work gives a status or a refusal
/// @return what `work` returns; without memory for the description that refusal, or 1 when it has been told
template <typename Work>
auto withDescription(Work work) -> std::invoke_result_t<Work, sDescription&> {
  using Result = std::invoke_result_t<Work, sDescription&>;
  if constexpr (sizeof(sDescription) <= kDescriptionStackLimit) {
    struct Call {
      Work& work;
      Result result{};
    } call{work};
    withDescriptionOfStack(
        [](void* context, sDescription& description) {
          auto& own = *static_cast<Call*>(context);
          own.result = own.work(description);
        },
        &call);
    return call.result;
  } else {
    const std::unique_ptr<sDescription> description(new (std::nothrow) sDescription);
    if (description != nullptr) return work(*description);
    const Refusal refusal{.reason = SDP_REFUSED_NO_MEMORY_FOR_DESCRIPTION};
    if constexpr (std::is_same_v<Result, Refusal>) {
      return refusal;
    } else {
      return refuse(refusal);
    }
  }
}

}  // namespace sdpneg

#endif
