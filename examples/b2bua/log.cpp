#include "log.h"

#include <kvRttLocal.h>

#include <unistd.h>

#include <algorithm>
#include <ctime>
#include <sstream>
#include <stdexcept>
#include <vector>

namespace b2bua {

namespace {

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

Log::Log(const std::string& file, bool trace) : name_(file), file_(stderr, leaveOpen) {
  if (!file.empty()) file_ = {std::fopen(file.c_str(), "ae"), std::fclose};
  if (!file_) throw std::runtime_error(file + ": cannot be written");
  KvRttSetSink(takeLine, this);
  switchTrace(trace);
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

void Log::takeLine(void* context, const KvRttLine* line) { static_cast<Log*>(context)->write(line->text); }

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
