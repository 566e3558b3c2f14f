#include "output/newFile.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <utility>

namespace tool {
namespace {

constexpr int kEndingSignals[] = {SIGINT, SIGTERM, SIGHUP};

/// The names of the files that there are; null for none. Written only while the signals are blocked.
const char* volatile pendingNames[NewFile::kMost] = {};

/// Puts a name in the place of another one, null for a free place.
/// @return whether there was such a place
bool exchangePending(const char* before, const char* after) {
  for (const char* volatile& name : pendingNames) {
    if (name != before) continue;
    name = after;
    return true;
  }
  return false;
}

/// Removes the files and ends the process by the signal itself, so that its status tells which it was. The default
/// takes effect when this returns, as a signal is blocked while it is handled.
void removeAndEnd(int signal) {
  for (const char* const name : pendingNames) {
    if (name != nullptr) ::unlink(name);
  }
  std::signal(signal, SIG_DFL);
  std::raise(signal);
}

sigset_t endingSet() {
  sigset_t set;
  sigemptyset(&set);
  for (const int signal : kEndingSignals) sigaddset(&set, signal);
  return set;
}

/// Keeps the signals waiting as long as it lives.
class SignalsBlocked {
 public:
  SignalsBlocked() {
    const sigset_t set = endingSet();
    sigprocmask(SIG_BLOCK, &set, &before_);
  }
  ~SignalsBlocked() {
    const int error = errno;
    sigprocmask(SIG_SETMASK, &before_, nullptr);
    errno = error;
  }
  SignalsBlocked(const SignalsBlocked&) = delete;
  SignalsBlocked& operator=(const SignalsBlocked&) = delete;

 private:
  sigset_t before_{};
};

/// Has the signals remove the file, but those that are ignored or handled otherwise.
void handleSignals() {
  for (const int signal : kEndingSignals) {
    struct sigaction action {};
    if (sigaction(signal, nullptr, &action) != 0 || action.sa_handler != SIG_DFL) continue;
    action.sa_handler = removeAndEnd;
    action.sa_mask = endingSet();
    sigaction(signal, &action, nullptr);
  }
}

}  // namespace

NewFile::NewFile(const std::filesystem::path& target)
    : path_((target.parent_path() / ".sdpnegXXXXXX").string()), number_(-1), created_(false) {
  handleSignals();
  const SignalsBlocked blocked;
  number_ = mkostemp(path_.data(), O_CLOEXEC);
  created_ = number_ >= 0;
  if (created_) exchangePending(nullptr, path_.c_str());
}

NewFile::~NewFile() {
  const SignalsBlocked blocked;
  if (created_) exchangePending(path_.c_str(), nullptr);
  if (number_ >= 0) ::close(number_);
  if (created_) ::unlink(path_.c_str());
}

bool NewFile::close() { return ::close(std::exchange(number_, -1)) == 0; }

bool NewFile::takePlaceOf(const std::filesystem::path& target) {
  const SignalsBlocked blocked;
  if (::rename(path_.c_str(), target.c_str()) != 0) return false;
  exchangePending(path_.c_str(), nullptr);
  created_ = false;
  return true;
}

}  // namespace tool
