#include "calls.h"

#include <algorithm>
#include <csignal>
#include <iostream>
#include <memory>
#include <sstream>

#include "../testFiles.h"

namespace {

constexpr const char* kCounters = "counters ";
constexpr milliseconds kAfterFailure{500};
constexpr std::size_t kMostShown = 6'000;

std::vector<std::string> engineArguments(const std::vector<std::string>& runner,
                                         std::vector<std::string> arguments,
                                         const std::vector<std::string>& options) {
  if (!runner.empty()) {
    arguments.insert(arguments.begin(), B2BUA_PROGRAM);
    arguments.insert(arguments.begin(), runner.begin() + 1, runner.end());
  }
  arguments.insert(arguments.end(), options.begin(), options.end());
  return arguments;
}

std::vector<std::string> sippArguments(const std::string& role, const std::string& scenario,
                                       const std::string& host, const std::string& port,
                                       const std::vector<std::string>& options) {
  const std::string address = host.front() == '[' ? host.substr(1, host.size() - 2) : host;
  std::vector<std::string> arguments = {
      "-sf",         std::string(B2BUA_TEST_FOLDER "/scenarios/") + scenario + ".xml",
      "-i",          address,
      "-p",          port,
      "-nostdin",    "-trace_err",
      "-error_file", role + ".errors"};
  arguments.insert(arguments.end(), options.begin(), options.end());
  return arguments;
}

/// The value after a header's name; 0 without that.
std::size_t contentLength(const std::string& head) {
  const std::size_t at = head.find("\r\nContent-Length:");
  return at == std::string::npos ? 0 : std::stoul(head.substr(at + 17));
}

/// The messages of a log of sipp: a line with the size, an empty one, the message.
std::vector<Received> messagesOf(const std::string& log) {
  static const std::string mark = " message received [";
  std::vector<Received> messages;
  std::string last;
  for (std::size_t at = log.find(mark); at != std::string::npos; at = log.find(mark, at)) {
    at += mark.size();
    const std::size_t size = std::stoul(log.substr(at, 10));
    at = log.find("\n\n", at) + 2;
    const std::string message = log.substr(at, size);
    at += std::min(size, log.size() - at);
    const std::size_t end = message.find("\r\n\r\n");
    if (message == last || end == std::string::npos) continue;
    messages.push_back({message.substr(0, end + 2), message.substr(end + 4)});
    EXPECT_EQ(messages.back().body.size(), contentLength(messages.back().head)) << message;
    last = message;
  }
  return messages;
}

}  // namespace

Engine::Engine(const TemporaryFolder& folder, const std::string& host, const std::string& target,
               const std::vector<std::string>& options, const std::string& listen, const std::string& name,
               const std::vector<std::string>& runner)
    : logFile_(folder.path(name + ".log")),
      process_(
          runner.empty() ? B2BUA_PROGRAM : runner.front(),
          engineArguments(
              runner, {"--listen", host + ":" + listen, "--target", host + ":" + target, "--log", logFile_},
              options),
          folder.path(), name) {
  waitUntil([this] { return process_.output().find('\n') != std::string::npos || !process_.isRunning(); },
            runner.empty() ? kLongestStart : kLongestCall);
  const std::string line = process_.output().substr(0, process_.output().find('\n'));
  EXPECT_TRUE(line.starts_with("ready ")) << line;
  if (line.starts_with("ready ")) address_ = line.substr(6);
}

std::string Engine::log() const { return readBytes(logFile_); }

std::size_t Engine::counterLines() const {
  std::istringstream lines(process_.output());
  std::size_t count = 0;
  for (std::string line; std::getline(lines, line) && !lines.eof();) {
    if (line.starts_with(kCounters)) ++count;
  }
  return count;
}

/// @param lines  of counters there were before
Counters Engine::lastCounters(std::size_t lines) {
  const bool shown = waitUntil([&] { return counterLines() > lines; }, kLongestStart);
  EXPECT_TRUE(shown) << process_.output();
  if (!shown) return {};
  const std::string output = process_.output();
  std::istringstream words(output.substr(output.rfind(kCounters)));
  Counters counters;
  std::string word;
  for (words >> word; words >> word;) {
    const std::size_t equals = word.find('=');
    counters[word.substr(0, equals)] = std::stol(word.substr(equals + 1));
  }
  return counters;
}

Counters Engine::counters() {
  const std::size_t lines = counterLines();
  process_.signal(SIGUSR1);
  return lastCounters(lines);
}

Counters Engine::stop() {
  const std::size_t lines = counterLines();
  process_.signal(SIGTERM);
  EXPECT_EQ(process_.wait(kLongestStart), 0);
  return lastCounters(lines);
}

Sipp::Sipp(const TemporaryFolder& folder, const std::string& role, const std::string& scenario,
           const std::string& host, const std::string& port, const std::vector<std::string>& options)
    : folder_(folder.path()),
      role_(role),
      process_(SIPP_PROGRAM, sippArguments(role, scenario, host, port, options), folder_, role) {
  EXPECT_TRUE(waitUntil([&] { return isTaken(port) || !process_.isRunning(); }, kLongestStart));
}

bool Sipp::finish(milliseconds longest) {
  const std::optional<int> status = process_.wait(longest);
  EXPECT_EQ(status, 0) << role_ << " did not do as it should";
  return status == 0;
}

std::vector<Received> Sipp::received() const {
  return messagesOf(readBytes(folder_ + "/" + role_ + ".messages"));
}

Sipp startTarget(const TemporaryFolder& folder, const std::string& scenario, const std::string& host,
                 const std::string& port, const std::vector<std::string>& options) {
  std::vector<std::string> all = {"-trace_msg", "-message_file", "target.messages"};
  all.insert(all.end(), options.begin(), options.end());
  return Sipp(folder, "target", scenario, host, port, all);
}

Sipp startCaller(const TemporaryFolder& folder, const std::string& scenario, const std::string& host,
                 const std::string& engine, const std::vector<std::string>& options) {
  std::vector<std::string> all = {"-trace_msg", "-message_file", "caller.messages"};
  all.insert(all.end(), options.begin(), options.end());
  all.push_back(engine);
  return Sipp(folder, "caller", scenario, host, freePort(), all);
}

Counters raised(Counters counters) {
  // That many are remembered for a while after a call, which is no event.
  counters.erase("transactions");
  std::erase_if(counters, [](const auto& counter) { return counter.second == 0; });
  return counters;
}

std::vector<std::string> bodiesOf(const std::vector<Received>& messages) {
  std::vector<std::string> bodies;
  for (const Received& message : messages) {
    if (message.body.empty()) continue;
    const std::string body = replaced(message.body, "\r\n", "\n");
    bodies.push_back(withCrLf(body) == message.body ? body : "line ends other than CR LF:\n" + body);
  }
  return bodies;
}

void Calls::writeBodies(const Plan& plan) const {
  for (const auto& [name, body] : plan.bodies) folder_.write(name + ".sdp", withCrLf(body));
}

Played Calls::play(const Plan& plan) {
  writeBodies(plan);
  const std::string port = freePort();
  Engine engine(folder_, plan.host, port, {"--policy", folder_.write("policy", plan.policy)});
  if (engine.address().empty()) return {};
  const std::unique_ptr<Sipp> target(
      plan.targetScenario.empty() ? nullptr
                                  : new Sipp(startTarget(folder_, plan.targetScenario, plan.host, port)));
  Sipp caller = startCaller(folder_, plan.callerScenario, plan.host, engine.address());
  const bool done = caller.finish();
  if (target) target->finish(done ? kLongestCall : kAfterFailure);
  Played played;
  played.counters = engine.stop();
  played.log = engine.log();
  played.callerMessages = caller.received();
  if (target) played.targetMessages = target->received();
  played.atCaller = bodiesOf(played.callerMessages);
  played.atTarget = bodiesOf(played.targetMessages);
  return played;
}

void Calls::TearDown() {
  if (!HasFailure()) return;
  for (const auto& entry : std::filesystem::directory_iterator(folder_.path())) {
    const std::string text = entry.is_regular_file() ? readBytes(entry.path()) : "";
    const std::string extension = entry.path().extension();
    if (text.empty() || (extension != ".log" && extension != ".messages" && extension != ".errors")) continue;
    std::cout << "---- " << entry.path().filename().string() << "\n"
              << text.substr(0, kMostShown) << (text.size() > kMostShown ? "\n...\n" : "\n");
  }
}
