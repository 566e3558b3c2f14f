#include "output/streams.h"

#include <poll.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <system_error>

#include "output/printable.h"

namespace tool {
namespace {

/// Waits until a descriptor that does not block takes more.
void waitForRoom(int descriptor) {
  pollfd waiting{descriptor, POLLOUT, 0};
  poll(&waiting, 1, -1);
}

}  // namespace

void Output::write(std::string_view text) {
  while (good() && !text.empty()) {
    const ssize_t written = ::write(descriptor_, text.data(), text.size());
    if (written >= 0) {
      text.remove_prefix(static_cast<std::size_t>(written));
    } else if (errno == EAGAIN) {
      waitForRoom(descriptor_);
    } else if (errno != EINTR) {
      error_ = errno;
    }
  }
}

bool Output::closedByReader() const { return error_ == EPIPE; }

std::string Output::failure() const { return std::generic_category().message(error_); }

bool Output::isTerminal() const { return isatty(descriptor_) == 1; }

void writeText(Output& out, std::string_view text) {
  if (out.isTerminal()) {
    out.write(printableLines(text));
  } else {
    out.write(text);
  }
}

void writeProblem(Output& err, std::string_view name, const Problem& problem) {
  std::string line = "sdpneg: ";
  if (!name.empty()) line += printable(name) + ":";
  if (problem.place.line != 0) {
    line += std::to_string(problem.place.line) + ":";
    if (problem.place.column != 0) line += std::to_string(problem.place.column) + ":";
  }
  if (!name.empty()) line += ' ';
  err.write(line + printable(problem.reason) + "\n");
}

bool isCapableTerminal(const Output& output) {
  const char* terminal = std::getenv("TERM");
  return output.isTerminal() && terminal != nullptr && std::string_view(terminal) != "dumb";
}

}  // namespace tool
