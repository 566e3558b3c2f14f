#include "process.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <fstream>
#include <stdexcept>

namespace {

/// A descriptor that is closed at the end.
class Handle {
 public:
  explicit Handle(int number = -1) : number_(number) {}
  ~Handle() { close(); }
  Handle(Handle&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
  Handle& operator=(Handle&& other) noexcept {
    std::swap(number_, other.number_);
    return *this;
  }

  int number() const { return number_; }
  bool isOpen() const { return number_ >= 0; }
  void close() {
    if (number_ >= 0) ::close(std::exchange(number_, -1));
  }

 private:
  int number_;
};

/// Both ends of what a process writes to.
struct Channel {
  Handle ours;
  Handle theirs;
};

Channel openPipe() {
  int ends[2];
  if (pipe2(ends, O_CLOEXEC) != 0) throw std::runtime_error("pipe2");
  return {Handle(ends[0]), Handle(ends[1])};
}

Channel openTerminal() {
  Handle master(posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC));
  char name[256];
  if (!master.isOpen() || grantpt(master.number()) != 0 || unlockpt(master.number()) != 0 ||
      ptsname_r(master.number(), name, sizeof name) != 0) {
    throw std::runtime_error("no pseudo terminal");
  }
  Handle terminal(open(name, O_RDWR | O_NOCTTY | O_CLOEXEC));
  return {std::move(master), std::move(terminal)};
}

Channel openOutput(const Surroundings& surroundings) {
  if (!surroundings.outputFile) return surroundings.outputToTerminal ? openTerminal() : openPipe();
  return {Handle(), Handle(open(surroundings.outputFile->c_str(), O_WRONLY | O_CLOEXEC))};
}

Handle openInput(const TemporaryFolder& folder, const std::string& input) {
  return Handle(open(folder.write("input", input).c_str(), O_RDONLY | O_CLOEXEC));
}

[[noreturn]] void become(const std::vector<std::string>& arguments, const Surroundings& surroundings) {
  std::vector<char*> argv;
  std::string program = SDPNEG_PROGRAM;
  std::vector<std::string> owned = arguments;
  argv.push_back(program.data());
  for (std::string& argument : owned) argv.push_back(argument.data());
  argv.push_back(nullptr);
  unsetenv("NO_COLOR");
  setenv("TERM", "xterm", 1);
  for (const auto& [name, value] : surroundings.environment) setenv(name.c_str(), value.c_str(), 1);
  if (surroundings.fileSizeLimit) {
    const rlimit limit{*surroundings.fileSizeLimit, *surroundings.fileSizeLimit};
    setrlimit(RLIMIT_FSIZE, &limit);
  }
  execv(program.c_str(), argv.data());
  _exit(127);
}

/// Takes what a channel has.
/// @return false at its end, which is an error for a terminal's
bool take(Handle& from, std::string& text) {
  char buffer[4096];
  const ssize_t length = read(from.number(), buffer, sizeof buffer);
  if (length <= 0) return false;
  text.append(buffer, static_cast<std::size_t>(length));
  return true;
}

void collect(Handle out, Handle err, bool oneLine, Outcome& outcome) {
  while (out.isOpen() || err.isOpen()) {
    pollfd waiting[] = {{out.number(), POLLIN, 0}, {err.number(), POLLIN, 0}};
    if (poll(waiting, 2, -1) < 0) continue;
    if (waiting[0].revents != 0 && !take(out, outcome.out)) out.close();
    if (waiting[1].revents != 0 && !take(err, outcome.err)) err.close();
    if (oneLine && outcome.out.find('\n') != std::string::npos) out.close();
  }
}

}  // namespace

Outcome runSdpneg(const std::vector<std::string>& arguments, const Surroundings& surroundings) {
  const TemporaryFolder folder;
  Handle in = openInput(folder, surroundings.input);
  Channel out = openOutput(surroundings);
  Channel err = surroundings.errorsToTerminal ? openTerminal() : openPipe();
  const pid_t child = fork();
  if (child < 0) throw std::runtime_error("fork");
  if (child == 0) {
    dup2(in.number(), STDIN_FILENO);
    dup2(out.theirs.number(), STDOUT_FILENO);
    dup2(err.theirs.number(), STDERR_FILENO);
    become(arguments, surroundings);
  }
  out.theirs.close();
  err.theirs.close();
  Outcome outcome;
  collect(std::move(out.ours), std::move(err.ours), surroundings.readOneLine, outcome);
  int status = 0;
  waitpid(child, &status, 0);
  outcome.status = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
  return outcome;
}

TemporaryFolder::TemporaryFolder() {
  std::string name = testing::TempDir() + "sdpnegXXXXXX";
  if (mkdtemp(name.data()) == nullptr) throw std::runtime_error("mkdtemp");
  folder_ = name;
}

TemporaryFolder::~TemporaryFolder() {
  std::error_code ignored;
  std::filesystem::remove_all(folder_, ignored);
}

std::string TemporaryFolder::write(const std::string& name, std::string_view bytes) const {
  const std::filesystem::path file = folder_ / name;
  std::filesystem::create_directories(file.parent_path());
  std::ofstream(file, std::ios::binary) << bytes;
  return file.string();
}

std::string TemporaryFolder::path(const std::string& name) const {
  return name.empty() ? folder_.string() : (folder_ / name).string();
}

std::string withCrLf(std::string_view text) { return replaced(std::string(text), "\n", "\r\n"); }

std::string replaced(std::string text, std::string_view from, std::string_view to) {
  for (std::size_t at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size())) {
    text.replace(at, from.size(), to);
  }
  return text;
}
