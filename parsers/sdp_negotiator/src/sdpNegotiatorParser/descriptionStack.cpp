#include "sdpNegotiatorParser/descriptionStack.h"

#include <pthread.h>

#include <cstddef>
#include <cstdint>

// Which frame a description gets: by what is known of the thread's stack.

namespace sdpneg {
namespace {

/// What a call below the description takes at once before it touches the stack, and the largest guard that the system may
/// have rounded up to. Larger frames below touch their pages.
constexpr std::size_t kMargin = std::size_t{128} << 10U;

/// The addresses of the stack that a thread was started with; none where the system does not tell.
struct StackBounds {
  std::uintptr_t lowest = 0;
  std::uintptr_t behind = 0;
};

StackBounds boundsOfThread() {
  pthread_attr_t attributes;
  if (pthread_getattr_np(pthread_self(), &attributes) != 0) return {};
  void* lowest = nullptr;
  std::size_t size = 0;
  std::size_t guard = 0;
  const bool told = pthread_attr_getstack(&attributes, &lowest, &size) == 0 &&
                    pthread_attr_getguardsize(&attributes, &guard) == 0;
  pthread_attr_destroy(&attributes);
  if (!told || guard > size) return {};
  // The guard counts as part of the stack.
  const auto begin = reinterpret_cast<std::uintptr_t>(lowest);
  return {begin + guard, begin + size};
}

/// Asked once for each thread. A thread that runs on another stack, as coroutines do, is not within the bounds.
bool hasRoom(std::uintptr_t here) {
  constinit thread_local StackBounds bounds;
  constinit thread_local bool known = false;
  if (!known) {
    bounds = boundsOfThread();
    known = true;
  }
  return here < bounds.behind && here > bounds.lowest &&
         here - bounds.lowest > sizeof(sDescription) + kMargin;
}

/// The compiler touches each page of this frame, where the build is hardened.
[[gnu::noinline]] void withDescriptionTouched(DescriptionWork work, void* context) {
  sDescription description;
  work(context, description);
}

}  // namespace

void withDescriptionOfStack(DescriptionWork work, void* context) {
  const char here = 0;
  if (hasRoom(reinterpret_cast<std::uintptr_t>(&here))) {
    withDescriptionUntouched(work, context);
  } else {
    withDescriptionTouched(work, context);
  }
}

}  // namespace sdpneg
