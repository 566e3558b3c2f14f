#include "kvRttStandardError.h"

#include <pthread.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstddef>
#include <cstdio>
#include <ctime>
#include <span>
#include <string_view>

// Trace lines on standard error, with what is in them made safe to show.

namespace kvrtt {
namespace {

constexpr std::size_t kHeadSize = 160;

/// The former line's missing end, the head, the text and the line end.
using LineBuffer = std::array<char, 1 + kHeadSize + kvRttMaxShownLength + 1>;

// Static rather than on the stack of a thread that traces: it is larger than all else that a trace line
// needs. Calls of a sink do not overlap.
constinit LineBuffer buffer{};

/// Whether standard error took the beginning of a line and then no more.
constinit bool isInsideLine = false;

/// A control character of ISO/IEC 6429 beyond ASCII, in UTF-8: some terminals obey those as they do ESC.
bool isTwoByteControl(std::string_view text, std::size_t at) {
  return at + 1 < text.size() && text[at] == '\xC2' && static_cast<unsigned char>(text[at + 1]) >= 0x80 &&
         static_cast<unsigned char>(text[at + 1]) <= 0x9F;
}

bool isControl(std::string_view text, std::size_t at) {
  const auto byte = static_cast<unsigned char>(text[at]);
  if (byte < 0x20) return byte != '\t';
  return byte == 0x7F || isTwoByteControl(text, at) || (at > 0 && isTwoByteControl(text, at - 1));
}

/// The form in which a control character is shown.
std::string_view escaped(char control, std::array<char, 4>& space) {
  if (control == '\n') return "\\n";
  if (control == '\r') return "\\r";
  constexpr std::string_view digits = "0123456789ABCDEF";
  const auto byte = static_cast<unsigned char>(control);
  space = {'\\', 'x', digits[byte >> 4], digits[byte & 0xF]};
  return {space.data(), space.size()};
}

/// A line comes from the network: its line ends must not begin lines that nobody wrote, nor its control
/// characters reach a terminal. What does not fit is cut. Returns how much was written.
std::size_t showText(std::span<char> to, std::string_view text) {
  std::array<char, 4> space;
  std::size_t length = 0;
  for (std::size_t at = 0; at < text.size(); ++at) {
    const auto shown = isControl(text, at) ? escaped(text[at], space) : text.substr(at, 1);
    if (shown.size() > to.size() - length) break;
    length += shown.copy(to.data() + length, shown.size());
  }
  return length;
}

/// "2024-05-01T12:34:56.123456Z SDP_NEGOTIATOR flag 8 level 4: "; returns its length.
std::size_t formatHead(std::span<char, kHeadSize> head, const KvRttLine& line) {
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

/// The whole line, in the buffer.
std::string_view compose(const KvRttLine& line) {
  std::size_t length = 0;
  if (isInsideLine) buffer[length++] = '\n';
  length += formatHead(std::span(buffer).subspan(length).first<kHeadSize>(), line);
  length += showText(std::span(buffer).subspan(length, kvRttMaxShownLength), {line.text, line.length});
  buffer[length++] = '\n';
  return {buffer.data(), length};
}

sigset_t brokenPipe() {
  sigset_t set;
  sigemptyset(&set);
  sigaddset(&set, SIGPIPE);
  return set;
}

bool isBrokenPipePending() {
  sigset_t pending;
  sigemptyset(&pending);
  sigpending(&pending);
  return sigismember(&pending, SIGPIPE) == 1;
}

/// Keeps the signal of a pipe that nobody reads any more from the program: that its trace lines are lost
/// must not end it. A signal that was pending before stays so.
class NoBrokenPipeSignal {
 public:
  NoBrokenPipeSignal() : wasPending_(isBrokenPipePending()) {
    const sigset_t set = brokenPipe();
    pthread_sigmask(SIG_BLOCK, &set, &former_);
  }
  ~NoBrokenPipeSignal() { pthread_sigmask(SIG_SETMASK, &former_, nullptr); }
  NoBrokenPipeSignal(const NoBrokenPipeSignal&) = delete;
  NoBrokenPipeSignal& operator=(const NoBrokenPipeSignal&) = delete;

  /// Removes the signal that a write has left pending.
  void discard() const {
    if (wasPending_) return;
    const sigset_t set = brokenPipe();
    const timespec noTime{};
    while (sigtimedwait(&set, nullptr, &noTime) < 0 && errno == EINTR) {
    }
  }

 private:
  bool wasPending_;
  sigset_t former_{};
};

/// Standard error may be a terminal or a pipe that takes a line in pieces only; what follows then comes
/// at once behind it. Where it takes nothing, the rest of the line is lost rather than waited for.
/// Returns how much was written.
std::size_t writeAll(int file, std::string_view text) {
  const NoBrokenPipeSignal guard;
  std::size_t length = 0;
  while (length < text.size()) {
    const ssize_t result = write(file, text.data() + length, text.size() - length);
    if (result < 0 && errno == EINTR) continue;
    if (result < 0 && errno == EPIPE) guard.discard();
    if (result <= 0) break;
    length += static_cast<std::size_t>(result);
  }
  return length;
}

}  // namespace

void writeToStandardError(void*, const KvRttLine* line) {
  const auto text = compose(*line);
  const std::size_t written = writeAll(STDERR_FILENO, text);
  if (written > 0) isInsideLine = text[written - 1] != '\n';
}

}  // namespace kvrtt
