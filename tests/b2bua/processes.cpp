#include "processes.h"

#include <fcntl.h>
#include <netinet/in.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <thread>

#include "../testFiles.h"

namespace {

constexpr milliseconds kBetweenLooks{5};

/// A dual-stack socket of one type and port, closed at the end.
class Probe {
 public:
  Probe(int type, in_port_t port) : descriptor_(socket(AF_INET6, type | SOCK_CLOEXEC, 0)) {
    const int off = 0;
    setsockopt(descriptor_, IPPROTO_IPV6, IPV6_V6ONLY, &off, sizeof off);
    sockaddr_in6 any{};
    any.sin6_family = AF_INET6;
    any.sin6_port = htons(port);
    bound_ = bind(descriptor_, reinterpret_cast<const sockaddr*>(&any), sizeof any) == 0;
  }
  ~Probe() { close(descriptor_); }
  Probe(const Probe&) = delete;
  Probe& operator=(const Probe&) = delete;

  bool isBound() const { return bound_; }
  in_port_t port() const {
    sockaddr_in6 name{};
    socklen_t length = sizeof name;
    getsockname(descriptor_, reinterpret_cast<sockaddr*>(&name), &length);
    return ntohs(name.sin6_port);
  }

 private:
  int descriptor_;
  bool bound_ = false;
};

void redirect(int descriptor, const std::string& file, int flags) {
  const int opened = open(file.c_str(), flags, 0600);
  if (opened >= 0) dup2(opened, descriptor);
}

[[noreturn]] void become(std::vector<std::string> words, const std::string& folder,
                         const std::string& outputFile, pid_t parent) {
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  if (getppid() != parent || chdir(folder.c_str()) != 0) _exit(126);
  redirect(STDIN_FILENO, "/dev/null", O_RDONLY);
  redirect(STDOUT_FILENO, outputFile, O_WRONLY | O_CREAT | O_TRUNC | O_APPEND);
  dup2(STDOUT_FILENO, STDERR_FILENO);
  setenv("TERM", "xterm", 1);
  std::vector<char*> argv;
  for (std::string& word : words) argv.push_back(word.data());
  argv.push_back(nullptr);
  execv(argv.front(), argv.data());
  _exit(127);
}

}  // namespace

Process::Process(const std::string& program, const std::vector<std::string>& arguments,
                 const std::string& folder, const std::string& name)
    : outputFile_(folder + "/" + name + ".out") {
  std::vector<std::string> words = {program};
  words.insert(words.end(), arguments.begin(), arguments.end());
  const pid_t self = getpid();
  child_ = fork();
  if (child_ < 0) throw std::runtime_error("fork");
  if (child_ == 0) become(std::move(words), folder, outputFile_, self);
}

Process::~Process() {
  if (status_) return;
  kill(child_, SIGKILL);
  waitpid(child_, nullptr, 0);
}

std::optional<int> Process::wait(milliseconds longest) {
  waitUntil([this] { return !isRunning(); }, longest);
  return status_;
}

bool Process::isRunning() {
  int status = 0;
  if (!status_ && waitpid(child_, &status, WNOHANG) == child_) {
    status_ = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
  }
  return !status_;
}

// Only while it is ours: the number may be another program's once it has been waited for.
void Process::signal(int number) const {
  if (!status_) kill(child_, number);
}

std::string Process::output() const { return readBytes(outputFile_); }

long Process::residentMemory() const {
  std::ifstream status("/proc/" + std::to_string(child_) + "/status");
  for (std::string word; status >> word;) {
    long size = 0;
    if (word == "VmRSS:" && status >> size) return size;
  }
  return -1;
}

bool waitUntil(const std::function<bool()>& condition, milliseconds longest) {
  const auto end = std::chrono::steady_clock::now() + longest;
  while (!condition()) {
    if (std::chrono::steady_clock::now() > end) return condition();
    std::this_thread::sleep_for(kBetweenLooks);
  }
  return true;
}

std::string freePort() {
  for (int attempt = 0; attempt < 100; ++attempt) {
    const Probe datagrams(SOCK_DGRAM, 0);
    if (datagrams.isBound() && Probe(SOCK_STREAM, datagrams.port()).isBound())
      return std::to_string(datagrams.port());
  }
  throw std::runtime_error("no free port");
}

std::string freePortPair() {
  const auto isFree = [](in_port_t port) {
    return Probe(SOCK_DGRAM, port).isBound() && Probe(SOCK_STREAM, port).isBound();
  };
  for (int attempt = 0; attempt < 100; ++attempt) {
    const std::string port = freePort();
    if (isFree(static_cast<in_port_t>(std::stoi(port) + 1))) return port;
  }
  throw std::runtime_error("no free ports");
}

// Binding it to find out would take it from the program that is about to have it.
bool isTaken(const std::string& port) {
  for (const char* table : {"/proc/net/udp", "/proc/net/udp6", "/proc/net/tcp"}) {
    std::ifstream lines(table);
    for (std::string line; std::getline(lines, line);) {
      std::istringstream words(line);
      std::string number;
      std::string local;
      words >> number >> local;
      const std::size_t colon = local.rfind(':');
      if (colon != std::string::npos &&
          std::to_string(std::strtoul(local.c_str() + colon + 1, nullptr, 16)) == port)
        return true;
    }
  }
  return false;
}
