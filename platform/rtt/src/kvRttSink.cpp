#include "kvRttSink.h"

#include <pthread.h>
#include <sys/uio.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <ctime>
#include <mutex>
#include <type_traits>

namespace kvrtt {
namespace {

/// Standard error may be a terminal or a pipe that takes a line in pieces only; what follows then comes
/// at once behind it. Where it takes nothing, the rest of the line is lost rather than waited for.
void writeAll(int file, iovec* parts, int count) {
  while (count > 0) {
    const ssize_t result = writev(file, parts, count);
    if (result < 0 && errno == EINTR) continue;
    if (result < 0) return;
    auto written = static_cast<std::size_t>(result);
    while (count > 0 && written >= parts->iov_len) {
      written -= parts->iov_len;
      ++parts;
      --count;
    }
    if (count > 0) {
      parts->iov_base = static_cast<char*>(parts->iov_base) + written;
      parts->iov_len -= written;
    }
  }
}

/// "2024-05-01T12:34:56.123456Z SDP_NEGOTIATOR flag 8 level 4: "; returns its length.
std::size_t formatHead(std::array<char, 160>& head, const KvRttLine& line) {
  timespec now{};
  tm utc{};
  clock_gettime(CLOCK_REALTIME, &now);
  gmtime_r(&now.tv_sec, &utc);
  const std::size_t length = std::strftime(head.data(), head.size(), "%Y-%m-%dT%H:%M:%S", &utc);
  const std::size_t room = head.size() - length;
  const int rest =
      std::snprintf(head.data() + length, room, ".%06ldZ %s flag %d level %d: ", now.tv_nsec / 1000,
                    line.component, line.flag, line.level);
  return rest < 0 || static_cast<std::size_t>(rest) >= room ? length
                                                            : length + static_cast<std::size_t>(rest);
}

void writeToStandardError(void*, const KvRttLine* line) {
  std::array<char, 160> head;
  char lineEnd[] = "\n";
  const std::size_t headLength = formatHead(head, *line);
  // writev does not change what it writes, but its records hold plain pointers.
  iovec parts[] = {{head.data(), headLength}, {const_cast<char*>(line->text), line->length}, {lineEnd, 1}};
  writeAll(STDERR_FILENO, parts, 3);
}

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

int writeLine(const KvRttLine& line) {
  if (insideSink) return kvRttInsideSink;
  const int formerError = errno;
  {
    const NoCancellation guard;
    const std::lock_guard lock(output.use);
    callSink(line);
  }
  errno = formerError;
  return kvRttSuccess;
}

void setSink(KvRttSink sink, void* context) {
  std::unique_lock lock(output.use, std::defer_lock);
  if (!insideSink) lock.lock();
  output.sink = sink == nullptr ? writeToStandardError : sink;
  output.context = context;
}

}  // namespace kvrtt
