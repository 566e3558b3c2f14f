#include "snapshot.h"

#include <unistd.h>

#include <charconv>
#include <fstream>

namespace b2bua {

namespace {

std::string numberOf(double value) {
  char text[32];
  const auto [end, error] = std::to_chars(text, text + sizeof text, value);
  return {text, end};
}

void begin(std::string& text, const std::string& name, const char* type, const char* help) {
  text += "# HELP " + name + " " + help + "\n# TYPE " + name + " " + type + "\n";
}

void add(std::string& text, const std::string& name, const char* type, const char* help,
         unsigned long value) {
  begin(text, name, type, help);
  text += name + " " + std::to_string(value) + "\n";
}

void addSetupTimes(std::string& text, const SetupTimes& times) {
  const std::string name = "b2bua_setup_seconds";
  begin(text, name, "histogram", "Time from a first INVITE to its established call.");
  for (std::size_t i = 0; i < SetupTimes::kBounds.size(); ++i) {
    text += name + "_bucket{le=\"" + numberOf(SetupTimes::kBounds[i]) + "\"} " +
            std::to_string(times.within(i)) + "\n";
  }
  text += name + "_bucket{le=\"+Inf\"} " + std::to_string(times.count()) + "\n" + name + "_sum " +
          numberOf(times.sum()) + "\n" + name + "_count " + std::to_string(times.count()) + "\n";
}

}  // namespace

std::size_t residentMemory() {
  std::ifstream pages("/proc/self/statm");
  std::size_t all = 0;
  std::size_t resident = 0;
  return pages >> all >> resident ? resident * static_cast<std::size_t>(sysconf(_SC_PAGESIZE)) : 0;
}

std::string metricsOf(const Snapshot& snapshot) {
  std::string text;
  for (const CounterName& counter : kCounterNames) {
    add(text, std::string("b2bua_") + counter.name + "_total", "counter", counter.help,
        snapshot.counters.*counter.value);
  }
  const std::string notTaken = "b2bua_not_taken_total";
  begin(text, notTaken, "counter", "What was refused or dropped because of a limit.");
  for (std::size_t i = 0; i < kLimitNames.size(); ++i) {
    text += notTaken + "{limit=\"" + kLimitNames[i] + "\"} " + std::to_string(snapshot.counters.notTaken[i]) +
            "\n";
  }
  add(text, "b2bua_messages_total", "counter", "Messages that came.", snapshot.messages);
  add(text, "b2bua_active_calls", "gauge", "Calls at this time.", snapshot.calls);
  add(text, "b2bua_transactions", "gauge", "Transactions, with those that are only remembered.",
      snapshot.transactions);
  add(text, "b2bua_ready", "gauge", "1 when calls are taken.", snapshot.notReady.empty() ? 1 : 0);
  add(text, "process_resident_memory_bytes", "gauge", "Resident memory size in bytes.", snapshot.memory);
  addSetupTimes(text, snapshot.setupTimes);
  return text;
}

}  // namespace b2bua
