#include "kvRttSink.h"

#include <pthread.h>

#include <cerrno>
#include <mutex>
#include <type_traits>

#include "kvRttStandardError.h"

// Where trace lines go.

namespace kvrtt {
namespace {

/// A cancelled thread would leave a line in pieces and unwind through the sink.
class NoCancellation {
 public:
  NoCancellation() { pthread_setcancelstate(PTHREAD_CANCEL_DISABLE, &former_); }
  ~NoCancellation() { pthread_setcancelstate(former_, nullptr); }
  NoCancellation(const NoCancellation&) = delete;
  NoCancellation& operator=(const NoCancellation&) = delete;

 private:
  int former_ = PTHREAD_CANCEL_ENABLE;
};

struct Output {
  std::mutex use;
  KvRttSink sink = writeToStandardError;
  void* context = nullptr;
};

static_assert(std::is_trivially_destructible_v<Output>);
constinit Output output;

/// Set while this thread is in the sink, and so holds the lock.
constinit thread_local bool insideSink = false;

void callSink(const KvRttLine& line) {
  insideSink = true;
  try {
    output.sink(output.context, &line);
  } catch (...) {
    // The component that traces has no part in what goes wrong in a sink.
  }
  insideSink = false;
}

}  // namespace

void writeLine(const KvRttLine& line) {
  if (insideSink) return;
  const int formerError = errno;
  {
    const NoCancellation guard;
    const std::lock_guard lock(output.use);
    callSink(line);
  }
  errno = formerError;
}

void setSink(KvRttSink sink, void* context) {
  std::unique_lock lock(output.use, std::defer_lock);
  if (!insideSink) lock.lock();
  output.sink = sink == nullptr ? writeToStandardError : sink;
  output.context = context;
}

}  // namespace kvrtt
