// How the program runs: what signals ask for, and how it ends.

#include "service.h"

#include <poll.h>
#include <systemd/sd-daemon.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <csignal>
#include <cstdio>
#include <filesystem>
#include <set>

#include "engine.h"
#include "monitor.h"

namespace b2bua {

namespace {

using Clock = std::chrono::steady_clock;

constexpr su_duration_t kLongestWait = 100;  ///< ms; a signal may come just before the wait
constexpr std::chrono::seconds kLongestEnding{1};

volatile std::sig_atomic_t came[NSIG];  ///< signals by their numbers: once, or more often

void takeSignal(int signal) { came[signal] = came[signal] == 0 ? 1 : 2; }

/// @return whether a signal came since this was asked before
bool hasCome(int signal) {
  if (came[signal] == 0) return false;
  came[signal] = 0;  // not before, or one that comes meanwhile would be lost
  return true;
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
      found.insert(std::stoi(entry.path().filename()));
  }
  return found;
}

/// The stack's loop. It would wait and read in one go, so the waiting is done in front of it: nothing is read that was not
/// sifted.
class Loop {
 public:
  /// The stack does not tell its descriptor.
  Loop() {
    const std::set<int> others = waitingDescriptors();
    root_.reset(su_root_create(nullptr));
    for (const int each : waitingDescriptors()) {
      if (!others.contains(each)) descriptor_ = each;
    }
  }
  su_root_t* root() const { return root_.get(); }
  /// Until there is something to do.
  void wait() {
    pollfd waiting{descriptor_, POLLIN, 0};
    if (descriptor_ < 0 || next_ == 0) return;
    poll(&waiting, 1, static_cast<int>(next_ < 0 ? kLongestWait : std::min(next_, kLongestWait)));
  }
  void step() { next_ = su_root_step(root_.get(), descriptor_ < 0 ? kLongestWait : 0); }

 private:
  Owned<su_root_t> root_;
  int descriptor_ = -1;     ///< with which the stack waits; -1 when it waits otherwise
  su_duration_t next_ = 0;  ///< ms, until a timer has its turn
};

/// @return the time between signs of life: twice in that of the watchdog, as sd_watchdog_enabled(3) has it
Clock::duration betweenSigns() {
  std::uint64_t longest = 0;
  if (sd_watchdog_enabled(0, &longest) <= 0) return std::chrono::hours(1);
  return std::chrono::microseconds(longest / 2);
}

class Service {
 public:
  Service(const Options& options, const std::vector<std::string>& words) : options_(options), words_(words) {}

  void run();

 private:
  /// Lets the engine work for a while, and does what signals asked for.
  void step();
  /// Shows how the engine is, each second.
  void show();
  /// Tells systemd that the loop works.
  void live();
  void reload();
  void drain();

  const Options& options_;
  const std::vector<std::string>& words_;
  Log log_{options_.logFile, options_.trace, options_.logFormat};
  StateStore store_{options_.state};
  Loop loop_;
  Engine engine_{loop_.root(), options_, store_, log_};
  Monitor monitor_{options_.http};
  PerSecond shown_;
  const Clock::duration betweenSigns_ = betweenSigns();
  Clock::time_point nextSign_{};
};

void Service::step() {
  loop_.wait();
  engine_.sift();
  loop_.step();
  engine_.tend();
  live();
  show();
  engine_.limitConnections();
  if (hasCome(SIGUSR1)) engine_.showCounters();
  if (hasCome(SIGHUP)) reload();
}

void Service::show() {
  if (shown_.sum() > 0) return;
  shown_.add();
  monitor_.show(engine_.snapshot());
  sd_notifyf(0, "STATUS=%zu calls", engine_.calls());
}

void Service::live() {
  if (Clock::now() < nextSign_) return;
  nextSign_ = Clock::now() + betweenSigns_;
  sd_notify(0, "WATCHDOG=1");
}

/// A policy that cannot be used leaves the old one in force.
void Service::reload() {
  const std::chrono::microseconds now =
      std::chrono::duration_cast<std::chrono::microseconds>(Clock::now().time_since_epoch());
  sd_notifyf(0, "RELOADING=1\nMONOTONIC_USEC=%lld", static_cast<long long>(now.count()));
  log_.reopen();
  Options options;
  CLI::App app;
  try {
    parseOptions(app, options, words_);
    engine_.use(options.policy);
    log_.write("policy read anew");
  } catch (const CLI::ParseError& error) {
    log_.write("policy not read anew", {{"reason", error.what()}}, LogLevel::warning);
  }
  if (!engine_.readCertificates()) log_.write("certificates not read anew", {}, LogLevel::warning);
  sd_notify(0, "READY=1");
}

/// Running calls may end by themselves, unless somebody is in a hurry.
void Service::drain() {
  const auto end = Clock::now() + std::chrono::seconds(options_.drainSeconds);
  engine_.drain();
  monitor_.show(engine_.snapshot());
  log_.write("draining", {{"calls", std::to_string(engine_.calls())}});
  while (engine_.calls() > 0 && came[SIGINT] == 0 && came[SIGTERM] < 2 && Clock::now() < end) step();
}

void Service::run() {
  monitor_.show(engine_.snapshot());
  std::printf("ready %s\n", engine_.address().c_str());
  if (monitor_.port() != 0) std::printf("http %d\n", monitor_.port());
  std::fflush(stdout);
  sd_notify(0, "READY=1");
  while (came[SIGTERM] == 0 && came[SIGINT] == 0) step();
  sd_notify(0, "STOPPING=1");
  if (options_.drainSeconds > 0 && came[SIGINT] == 0) drain();
  engine_.finish();
  const auto end = Clock::now() + kLongestEnding;
  while (!engine_.idle() && Clock::now() < end) {
    su_root_step(loop_.root(), kLongestWait);
    engine_.tend();
  }
  engine_.showCounters();
}

}  // namespace

void serve(const Options& options, const std::vector<std::string>& words) {
  prepareSignals();
  Service(options, words).run();
}

}  // namespace b2bua
