#ifndef B2BUA_TEST_CALLS_H
#define B2BUA_TEST_CALLS_H

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "../../tools/sdpneg/test/process.h"
#include "processes.h"

// Calls through the engine: sipp as the caller, the engine, sipp as the target, all on loopback.

constexpr milliseconds kLongestStart{5'000};
constexpr milliseconds kLongestCall{20'000};

using Counters = std::map<std::string, long>;

/// The engine in a process of its own. Its log is NAME.log, its output NAME.out in the folder.
class Engine {
 public:
  /// @param target  port of the target, on the same host
  /// @param listen  port of the engine, 0 for a free one
  /// @param runner  program and options that run it; empty for none
  Engine(const TemporaryFolder& folder, const std::string& host, const std::string& target,
         const std::vector<std::string>& options = {}, const std::string& listen = "0",
         const std::string& name = "engine", const std::vector<std::string>& runner = {});

  /// HOST:PORT; empty when it did not start.
  const std::string& address() const { return address_; }
  std::string port() const { return address_.substr(address_.rfind(':') + 1); }
  Process& process() { return process_; }
  std::string log() const;

  /// Its counters, asked for with SIGUSR1.
  Counters counters();
  /// Ends it as a service manager does, and expects that it ends well.
  Counters stop();

 private:
  Counters lastCounters(std::size_t lines);
  std::size_t counterLines() const;

  std::string logFile_;
  Process process_;
  std::string address_;
};

/// A message that sipp received.
struct Received {
  std::string head;  ///< start line and headers
  std::string body;
};

/// sipp with one of the scenarios, in a folder with the bodies that the scenario names.
class Sipp {
 public:
  /// @param role  names its files
  /// @param options  further ones; the address that it calls is the last
  Sipp(const TemporaryFolder& folder, const std::string& role, const std::string& scenario,
       const std::string& host, const std::string& port, const std::vector<std::string>& options);

  /// Expects that all its calls go as the scenario says.
  /// @return whether they did
  bool finish(milliseconds longest = kLongestCall);
  /// What arrived, repetitions left out.
  std::vector<Received> received() const;
  Process& process() { return process_; }

 private:
  std::string folder_;
  std::string role_;
  Process process_;
};

/// Starts a target and waits until it listens.
Sipp startTarget(const TemporaryFolder& folder, const std::string& scenario, const std::string& host,
                 const std::string& port, const std::vector<std::string>& options = {"-m", "1"});

Sipp startCaller(const TemporaryFolder& folder, const std::string& scenario, const std::string& host,
                 const std::string& engine, const std::vector<std::string>& options = {"-m", "1"});

/// One call, and the files of its scenarios: the name without ".sdp", and the body with LF.
struct Plan {
  std::string callerScenario = "call-caller";
  std::string targetScenario = "call-target";  ///< none when empty: the engine refuses the call
  std::string policy = "";
  std::vector<std::pair<std::string, std::string>> bodies = {};
  std::string host = "127.0.0.1";
};

/// What a call gave; bodies with LF, in the order of their arrival.
struct Played {
  std::vector<std::string> atCaller;
  std::vector<std::string> atTarget;
  std::vector<Received> callerMessages;
  std::vector<Received> targetMessages;
  Counters counters;
  std::string log;
};

/// A test with a folder of its own, whose files are shown when it fails.
class Calls : public testing::Test {
 protected:
  Played play(const Plan& plan);
  void writeBodies(const Plan& plan) const;
  void TearDown() override;

  const TemporaryFolder folder_;
};

/// What has happened: the counters of events that are not 0.
Counters raised(Counters counters);

/// The bodies of messages, with LF. One without CR LF throughout is marked.
std::vector<std::string> bodiesOf(const std::vector<Received>& messages);

#endif
