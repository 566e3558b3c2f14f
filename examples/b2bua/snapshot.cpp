#include "snapshot.h"

#include <unistd.h>

#include <charconv>
#include <fstream>
#include <utility>
#include <vector>

namespace b2bua {

namespace {

/// Numbers by what stands behind the name of their metric.
using Samples = std::vector<std::pair<std::string, double>>;

std::string numberOf(double value) {
  char text[400];  // for any
  return {text, std::to_chars(text, text + sizeof text, value, std::chars_format::fixed).ptr};
}

void add(std::string& text, const std::string& name, const std::string& type, const std::string& help,
         const Samples& samples) {
  text += "# HELP " + name + " " + help + "\n# TYPE " + name + " " + type + "\n";
  for (const auto& [label, value] : samples) text += name + label + " " + numberOf(value) + "\n";
}

}  // namespace

std::size_t residentMemory() {
  std::ifstream pages("/proc/self/statm");
  std::size_t all = 0;
  std::size_t resident = 0;
  return pages >> all >> resident ? resident * static_cast<std::size_t>(sysconf(_SC_PAGESIZE)) : 0;
}

std::string metricsOf(const Snapshot& now) {
  std::string text;
  const auto one = [&](const std::string& name, const char* type, const char* help, auto value) {
    add(text, name, type, help, {{"", static_cast<double>(value)}});
  };
  for (const CounterName& each : kCounterNames)
    one(std::string("b2bua_") + each.name + "_total", "counter", each.help, now.counters.*each.value);
  one("b2bua_messages_total", "counter", "Messages that came.", now.messages);
  one("b2bua_active_calls", "gauge", "Calls at this time.", now.calls);
  one("b2bua_transactions", "gauge", "Transactions, with those that are only remembered.", now.transactions);
  one("b2bua_ready", "gauge", "1 when calls are taken.", now.notReady.empty() ? 1 : 0);
  one("process_resident_memory_bytes", "gauge", "Resident memory size in bytes.", now.memory);
  Samples notTaken;
  for (std::size_t i = 0; i < kLimitNames.size(); ++i)
    notTaken.emplace_back("{limit=\"" + std::string(kLimitNames[i]) + "\"}", now.counters.notTaken[i]);
  add(text, "b2bua_not_taken_total", "counter", "What was refused or dropped because of a limit.", notTaken);
  Samples times;
  for (std::size_t i = 0; i < SetupTimes::kBounds.size(); ++i)
    times.emplace_back("_bucket{le=\"" + numberOf(SetupTimes::kBounds[i]) + "\"}", now.setupTimes.within[i]);
  times.emplace_back("_bucket{le=\"+Inf\"}", now.setupTimes.count);
  times.emplace_back("_sum", now.setupTimes.sum);
  times.emplace_back("_count", now.setupTimes.count);
  add(text, "b2bua_setup_seconds", "histogram", "Time from a first INVITE to its established call.", times);
  return text;
}

}  // namespace b2bua
