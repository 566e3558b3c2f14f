#include "log.h"

#include <kvRttLocal.h>

#include <unistd.h>

#include <algorithm>
#include <ctime>
#include <nlohmann/json.hpp>
#include <sstream>
#include <stdexcept>

#include "reasons.h"

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

/// @return what stands in front of a member's value in a line of text
std::string jointOf(std::string_view name) {
  if (name == "reason") return ": ";
  if (name == "finding") return ", ";
  if (name == "status") return " with ";
  return " " + std::string(name) + (name == "from" ? " the " : " ");
}

std::string textLine(const std::string& time, std::string_view event, const Members& members,
                     const std::string& call) {
  std::string line = time + (call.empty() ? " " : " call " + call + " ") + withoutKeys(event);
  for (const auto& [name, value] : members) line += jointOf(name) + withoutKeys(value);
  return printable(line);
}

/// What is no UTF-8 is replaced, and all but ASCII escaped.
std::string jsonLine(const std::string& time, std::string_view event, const Members& members, LogLevel level,
                     const std::string& call) {
  constexpr const char* kLevels[] = {"trace", "info", "warning"};
  nlohmann::ordered_json line = {{"time", time}, {"level", kLevels[static_cast<int>(level)]}};
  if (!call.empty()) line["call"] = call;
  line["event"] = withoutKeys(event);
  for (const auto& [name, value] : members) line[std::string(name)] = withoutKeys(value);
  return line.dump(-1, ' ', true, nlohmann::ordered_json::error_handler_t::replace);
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
  std::printf("%s%c %s%s\n", colour, mark, printable(withoutKeys(line)).c_str(),
              *colour != '\0' ? "\033[0m" : "");
}

}  // namespace

Log::Log(const std::string& file, bool trace, LogFormat format)
    : name_(file), format_(format), file_(stderr, leaveOpen) {
  if (!file.empty()) file_ = {std::fopen(file.c_str(), "ae"), std::fclose};
  if (!file_) throw std::runtime_error(file + ": cannot be written");
  KvRttSetSink(takeLine, this);
  switchTrace(trace);
}

Log::~Log() {
  switchTrace(false);
  KvRttSetSink(nullptr, nullptr);
}

void Log::write(std::string_view event, const Members& members, LogLevel level, const std::string& call) {
  timespec now{};
  timespec_get(&now, TIME_UTC);
  tm parts{};
  gmtime_r(&now.tv_sec, &parts);
  char seconds[32];
  std::strftime(seconds, sizeof seconds, "%FT%T", &parts);
  char time[48];
  std::snprintf(time, sizeof time, "%s.%03ldZ", seconds, now.tv_nsec / 1'000'000);
  const std::string line = format_ == LogFormat::json ? jsonLine(time, event, members, level, call)
                                                      : textLine(time, event, members, call);
  std::fprintf(file_.get(), "%s\n", line.c_str());
  std::fflush(file_.get());
}

void Log::reopen() {
  if (name_.empty()) return;
  std::FILE* const file = std::fopen(name_.c_str(), "ae");
  if (file == nullptr) return write("log cannot be opened anew", {{"reason", name_}}, LogLevel::warning);
  file_ = {file, std::fclose};
}

/// What was found in a line may be a part of a key.
void Log::takeLine(void* context, const KvRttLine* line) {
  static_cast<Log*>(context)->write(withoutFound(line->text), {}, LogLevel::trace);
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
