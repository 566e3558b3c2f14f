// How the program runs: what signals ask for, and how it ends.

#include "service.h"

#include <poll.h>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <set>

#include "engine.h"
#include "monitor.h"
#include "serviceManager.h"

namespace b2bua {

namespace {

using Clock = std::chrono::steady_clock;

constexpr su_duration_t kLongestWait = 100;  ///< ms; a signal may come just before the wait
constexpr std::chrono::seconds kLongestEnding{1};

volatile std::sig_atomic_t terminations = 0;
volatile std::sig_atomic_t interrupted = 0;
volatile std::sig_atomic_t countersAsked = 0;
volatile std::sig_atomic_t hungUp = 0;

void takeSignal(int signal) {
  if (signal == SIGTERM && terminations < 2) terminations = terminations + 1;
  if (signal == SIGINT) interrupted = 1;
  if (signal == SIGUSR1) countersAsked = 1;
  if (signal == SIGHUP) hungUp = 1;
}

void prepareSignals() {
  struct sigaction action {};
  action.sa_handler = takeSignal;
  for (const int signal : {SIGINT, SIGTERM, SIGUSR1, SIGHUP}) sigaction(signal, &action, nullptr);
  // Redis may go away while it is written to.
  signal(SIGPIPE, SIG_IGN);
}

/// @return the descriptors with which somebody in this process waits for others
std::set<int> waitingDescriptors() {
  std::set<int> found;
  std::error_code error;
  for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd", error)) {
    if (std::filesystem::read_symlink(entry.path(), error) == "anon_inode:[eventpoll]")
      found.insert(std::atoi(entry.path().filename().c_str()));
  }
  return found;
}

/// The stack's loop. It would wait and read in one go, so the waiting is done in front of it: nothing is read that was not
/// sifted.
class Loop {
 public:
  su_root_t* root() const { return root_.get(); }
  /// Until there is something to do.
  void wait() {
    pollfd waiting{descriptor_, POLLIN, 0};
    if (descriptor_ < 0 || next_ == 0) return;
    poll(&waiting, 1, static_cast<int>(next_ < 0 ? kLongestWait : std::min(next_, kLongestWait)));
  }
  void step() { next_ = su_root_step(root_.get(), descriptor_ < 0 ? kLongestWait : 0); }

 private:
  /// The stack does not tell it; -1 when it waits otherwise.
  static int findBeside(const std::set<int>& others) {
    for (const int descriptor : waitingDescriptors()) {
      if (!others.contains(descriptor)) return descriptor;
    }
    return -1;
  }

  const std::set<int> others_ = waitingDescriptors();
  const Owned<su_root_t> root_{su_root_create(nullptr)};
  const int descriptor_ = findBeside(others_);
  su_duration_t next_ = 0;  ///< ms, until a timer has its turn
};

class Service {
 public:
  Service(const Options& options, const ReadOptions& readAgain) : options_(options), readAgain_(readAgain) {}

  void run();

 private:
  /// Lets the engine work for a while, and does what signals asked for.
  void step();
  /// Shows how the engine is, each second.
  void show();
  void reload();
  void drain();

  const Options& options_;
  const ReadOptions& readAgain_;
  Log log_{options_.logFile, options_.trace, options_.logFormat};
  StateStore store_{options_.state};
  Loop loop_;
  Engine engine_{loop_.root(), options_, store_, log_};
  Monitor monitor_{options_.http};
  ServiceManager manager_;
  PerSecond shown_;
};

void Service::step() {
  loop_.wait();
  engine_.sift();
  loop_.step();
  engine_.tend();
  manager_.alive(engine_.calls());
  show();
  engine_.lookForSilence();
  engine_.limitConnections();
  if (countersAsked != 0) engine_.showCounters();
  countersAsked = 0;
  if (hungUp != 0) reload();
}

void Service::show() {
  if (shown_.sum() > 0) return;
  shown_.add();
  monitor_.show(engine_.snapshot());
}

/// A policy that cannot be used leaves the old one in force.
void Service::reload() {
  hungUp = 0;
  manager_.reloading();
  log_.reopen();
  Options options;
  if (const std::string error = readAgain_(options); !error.empty()) {
    log_.write("policy not read anew", {{"reason", error}}, LogLevel::warning);
  } else {
    engine_.use(options.policy);
    log_.write("policy read anew");
  }
  manager_.ready();
}

/// Running calls may end by themselves, unless somebody is in a hurry.
void Service::drain() {
  const auto end = Clock::now() + std::chrono::seconds(options_.drainSeconds);
  engine_.drain();
  monitor_.show(engine_.snapshot());
  log_.write("draining", {{"calls", std::to_string(engine_.calls())}});
  while (engine_.calls() > 0 && interrupted == 0 && terminations < 2 && Clock::now() < end) step();
}

void Service::run() {
  show();
  std::printf("ready %s\n", engine_.address().c_str());
  if (monitor_.port() != 0) std::printf("http %d\n", monitor_.port());
  std::fflush(stdout);
  manager_.ready();
  while (terminations == 0 && interrupted == 0) step();
  manager_.stopping();
  if (options_.drainSeconds > 0 && interrupted == 0) drain();
  engine_.finish();
  const auto end = Clock::now() + kLongestEnding;
  while (!engine_.idle() && Clock::now() < end) su_root_step(loop_.root(), kLongestWait);
  engine_.showCounters();
}

}  // namespace

void serve(const Options& options, const ReadOptions& readAgain) {
  prepareSignals();
  Service(options, readAgain).run();
}

}  // namespace b2bua
