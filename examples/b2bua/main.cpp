// A back-to-back user agent that does its SDP work with the library (README.md).

#include <sofia-sip/su_log.h>

#include <CLI/CLI.hpp>
#include <csignal>
#include <cstdio>

#include "engine.h"

namespace b2bua {

namespace {

constexpr su_duration_t kLongestWait = 100;  ///< ms; a signal may come just before the wait
constexpr std::chrono::seconds kLongestEnding{1};

volatile std::sig_atomic_t stopped = 0;
volatile std::sig_atomic_t asked = 0;
volatile std::sig_atomic_t logMoved = 0;

void takeSignal(int signal) { (signal == SIGUSR1 ? asked : signal == SIGHUP ? logMoved : stopped) = 1; }

void prepareSignals() {
  struct sigaction action {};
  action.sa_handler = takeSignal;
  for (const int signal : {SIGINT, SIGTERM, SIGUSR1, SIGHUP}) sigaction(signal, &action, nullptr);
  // Redis may go away while it is written to.
  signal(SIGPIPE, SIG_IGN);
}

void run(const Options& options) {
  prepareSignals();
  Log log(options.logFile, options.trace, options.logFormat);
  StateStore store(options.state);
  const Owned<su_root_t> root(su_root_create(nullptr));
  Engine engine(root.get(), options, store, log);
  std::printf("ready %s\n", engine.address().c_str());
  std::fflush(stdout);
  while (stopped == 0) {
    su_root_step(root.get(), kLongestWait);
    if (asked != 0) engine.showCounters();
    asked = 0;
    if (logMoved != 0) log.reopen();
    logMoved = 0;
  }
  engine.finish();
  const auto end = std::chrono::steady_clock::now() + kLongestEnding;
  while (!engine.idle() && std::chrono::steady_clock::now() < end) su_root_step(root.get(), kLongestWait);
  engine.showCounters();
}

}  // namespace

}  // namespace b2bua

int main(int count, char** arguments) {
  try {
    CLI::App app("A back-to-back user agent for SIP over UDP", "b2bua");
    b2bua::Options options;
    b2bua::addOptions(app, options);
    try {
      app.parse(count, arguments);
    } catch (const CLI::ParseError& error) {
      std::fputs(b2bua::placeOf(error, app, {arguments, arguments + count}).c_str(), stderr);
      return app.exit(error) == 0 ? 0 : 2;
    }
    su_init();
    su_log_redirect(
        nullptr, [](void*, const char*, va_list) {}, nullptr);
    b2bua::run(options);
    return 0;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "b2bua: %s\n", error.what());
    return 1;
  }
}
