// A back-to-back user agent that does its SDP work with the library (README.md).

#include <poll.h>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <stdexcept>

#include "engine.h"

namespace b2bua {

namespace {

using std::chrono::milliseconds;

constexpr milliseconds kLongestWait{1000};
constexpr milliseconds kLongestEnding{1000};
constexpr int kMostAtOnce = 200;  ///< datagrams between two looks at the timers

volatile std::sig_atomic_t stopped = 0;
volatile std::sig_atomic_t asked = 0;

void takeSignal(int signal) { (signal == SIGUSR1 ? asked : stopped) = 1; }

/// The signals wait while the engine works, and arrive in `waitFor` alone.
sigset_t prepareSignals() {
  struct sigaction action {};
  action.sa_handler = takeSignal;
  sigset_t taken;
  sigset_t before;
  sigemptyset(&taken);
  for (const int signal : {SIGINT, SIGTERM, SIGUSR1}) {
    sigaction(signal, &action, nullptr);
    sigaddset(&taken, signal);
  }
  // Redis may go away while it is written to.
  signal(SIGPIPE, SIG_IGN);
  sigprocmask(SIG_BLOCK, &taken, &before);
  return before;
}

void waitFor(const UdpSocket& socket, Clock::time_point next, const sigset_t& signals) {
  const auto left = std::clamp<Clock::duration>(next - Clock::now(), Clock::duration::zero(), kLongestWait);
  const timespec time{left / std::chrono::seconds(1),
                      (left % std::chrono::seconds(1)) / std::chrono::nanoseconds(1)};
  pollfd wanted{socket.descriptor(), POLLIN, 0};
  ppoll(&wanted, 1, &time, &signals);
}

void runOnce(UdpSocket& socket, Engine& engine, const sigset_t& signals) {
  waitFor(socket, std::min(engine.nextTimer(), Clock::now() + kLongestWait), signals);
  Endpoint source;
  for (int i = 0; i < kMostAtOnce; ++i) {
    const auto datagram = socket.receive(source);
    if (!datagram) break;
    engine.receive(*datagram, source);
  }
  engine.runTimers(Clock::now());
  if (asked == 0) return;
  asked = 0;
  engine.showCounters();
}

void run(const Options& options) {
  const sigset_t signals = prepareSignals();
  Log log(options.logFile, options.trace);
  const Policy policy = options.policyFile.empty() ? Policy{} : readPolicy(options.policyFile);
  StateStore store(options.state);
  UdpSocket socket(options.listen);
  if (socket.local().text() == options.target.text())
    throw std::runtime_error("--target is the engine itself");
  Engine engine(options, policy, socket, store, log);
  std::printf("ready %s\n", socket.local().text().c_str());
  std::fflush(stdout);
  while (stopped == 0) runOnce(socket, engine, signals);
  engine.finish();
  const auto end = Clock::now() + kLongestEnding;
  while (!engine.idle() && Clock::now() < end) runOnce(socket, engine, signals);
  engine.showCounters();
}

}  // namespace

}  // namespace b2bua

int main(int count, char** arguments) {
  try {
    b2bua::prepareSip();
    const b2bua::Options options = b2bua::readOptions(count, arguments);
    if (options.help) {
      std::fputs(b2bua::kUsage, stdout);
      return 0;
    }
    b2bua::run(options);
    return 0;
  } catch (const std::invalid_argument& error) {
    std::fprintf(stderr, "b2bua: %s\n%s", error.what(), b2bua::kUsage);
    return 2;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "b2bua: %s\n", error.what());
    return 1;
  }
}
