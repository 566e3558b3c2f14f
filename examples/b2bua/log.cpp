#include "log.h"

#include <kvRttLocal.h>
#include <sdpNegotiatorTrace.h>

#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <ctime>
#include <sstream>
#include <stdexcept>
#include <vector>

namespace b2bua {

namespace {

constexpr int kErrorFlag = 4;
constexpr std::size_t kLongestReason = 120;

int leaveOpen(std::FILE*) { return 0; }

void switchTrace(bool on) { KvRttSwitchFlag("SDP_NEGOTIATOR", "INFO", on); }

/// @return the text with every character that is not printable as "?"
std::string printable(const std::string& text) {
  std::string result = text;
  std::ranges::replace_if(
      result, [](char c) { return c < ' ' || c > '~'; }, '?');
  return result;
}

using Lines = std::vector<std::string>;

Lines linesOf(const std::string& body) {
  Lines lines;
  std::istringstream input(body);
  for (std::string line; std::getline(input, line);) {
    if (line.ends_with('\r')) line.pop_back();
    lines.push_back(line);
  }
  return lines;
}

void show(char mark, const std::string& line) {
  static const bool coloured = isatty(STDOUT_FILENO) == 1;
  const char* const colour = !coloured ? "" : mark == '-' ? "\033[31m" : mark == '+' ? "\033[32m" : "";
  std::printf("%s%c %s%s\n", colour, mark, printable(line).c_str(), *colour != '\0' ? "\033[0m" : "");
}

}  // namespace

Log::Log(const std::string& file, bool trace) : name_(file), file_(stderr, leaveOpen), trace_(trace) {
  if (!file.empty()) file_ = {std::fopen(file.c_str(), "ae"), std::fclose};
  if (!file_) throw std::runtime_error(file + ": cannot be written");
  KvRttSetSink(takeLine, this);
  switchTrace(trace_);
}

Log::~Log() {
  switchTrace(false);
  KvRttSetSink(nullptr, nullptr);
}

void Log::write(const std::string& line) {
  timespec now{};
  timespec_get(&now, TIME_UTC);
  tm parts{};
  gmtime_r(&now.tv_sec, &parts);
  char time[32];
  std::strftime(time, sizeof time, "%FT%T", &parts);
  std::fprintf(file_.get(), "%s.%03ldZ %s\n", time, now.tv_nsec / 1'000'000, printable(line).c_str());
  std::fflush(file_.get());
}

void Log::reopen() {
  if (name_.empty()) return;
  std::FILE* const file = std::fopen(name_.c_str(), "ae");
  if (file == nullptr) return write(name_ + ": cannot be opened anew");
  file_ = {file, std::fclose};
}

void Log::takeLine(void* context, const KvRttLine* line) {
  auto* const log = static_cast<Log*>(context);
  if (log->trace_) log->write(line->text);
  if (!log->asking_ || line->flag != kErrorFlag || !log->reason_.empty()) return;
  log->reason_ = line->text + std::min(line->length, std::strlen(SDP_NEGOTIATOR_RTT_STR[kErrorFlag / 2]));
}

std::string Log::reasonOf(const std::function<void()>& refused) {
  reason_.clear();
  asking_ = true;
  switchTrace(true);
  refused();
  switchTrace(trace_);
  asking_ = false;
  std::string reason = printable(reason_.substr(0, kLongestReason));
  std::ranges::replace_if(
      reason, [](char c) { return c == '"' || c == '\\'; }, '\'');
  return reason.empty() ? "the body is too large to be kept" : reason;
}

/// Walks through both bodies: a line that does not come any more in the other one went or came.
void showBodies(const std::string& title, const std::string& before, const std::string& after) {
  std::printf("-- %s\n", printable(title).c_str());
  const Lines old = linesOf(before);
  const Lines now = linesOf(after);
  auto next = now.begin();
  for (const std::string& line : old) {
    const auto same = std::find(next, now.end(), line);
    if (same == now.end()) {
      show('-', line);
      continue;
    }
    for (; next != same; ++next) show('+', *next);
    show(' ', *next++);
  }
  for (; next != now.end(); ++next) show('+', *next);
  std::fflush(stdout);
}

}  // namespace b2bua
