#include "traceFakeFacility.h"

#include <gtest/gtest.h>

#include <cstdarg>
#include <cstdio>

#include "kvRtt.h"

FakeFacility& fakeFacility() {
  static FakeFacility facility;
  return facility;
}

void FakeFacility::reset() {
  initResult = 0;
  initHandle = -1;
  registerResult = 0;
  registerHandle = 5;
  flagsOn = 0;
  traceResult = 0;
  numbersLines = false;
  calls.clear();
  lines.clear();
  log.clear();
  statusTexts.clear();
  flagTests.clear();
}

namespace {

using Operation = FakeFacility::Operation;

void note(Operation operation, int* handle, int flag, const std::string& text) {
  FakeFacility& fake = fakeFacility();
  const std::lock_guard lock(fake.change);
  fake.calls.push_back({operation, handle, handle == nullptr ? 0 : *handle, flag, text});
}

/// Sets the calls made at load apart before the first test.
class LoadCalls : public testing::Environment {
 public:
  void SetUp() override {
    FakeFacility& fake = fakeFacility();
    if (isTaken_) return;
    isTaken_ = true;
    fake.callsAtLoad = fake.calls;
    fake.logEntriesAtLoad = static_cast<int>(fake.log.size());
  }

 private:
  bool isTaken_ = false;
};

const testing::Environment* const loadCalls = testing::AddGlobalTestEnvironment(new LoadCalls);

}  // namespace

int pvxTraceRttInit(int* handle) {
  note(Operation::init, handle, 0, "");
  if (fakeFacility().initHandle != -1) *handle = fakeFacility().initHandle;
  return fakeFacility().initResult;
}

int KvRttRegFacility(int* handle, const char* component) {
  note(Operation::registerFacility, handle, 0, component);
  *handle = fakeFacility().registerHandle;
  return fakeFacility().registerResult;
}

int KvRttRegFlag(const char* component, int flag, const char* name) {
  note(Operation::registerFlag, nullptr, flag, std::string(component) + "/" + name);
  return 0;
}

int KvRttTstFlag(int handle, int flag) {
  FakeFacility& fake = fakeFacility();
  const std::lock_guard lock(fake.change);
  fake.flagTests.emplace_back(handle, flag);
  return (fake.flagsOn & static_cast<unsigned>(flag)) != 0 ? 1 : 0;
}

const char* KvRttStatus(int status) {
  FakeFacility& fake = fakeFacility();
  fake.statusTexts.push_back("status text " + std::to_string(status));
  return fake.statusTexts.back().c_str();
}

int pvxTraceRtt(int handle, int flag, int type, int level, const char* line, ...) {
  FakeFacility& fake = fakeFacility();
  const std::lock_guard lock(fake.change);
  fake.lines.push_back({handle, flag, type, level, line});
  return fake.numbersLines ? static_cast<int>(fake.lines.size()) : fake.traceResult.load();
}

void KvLogReport(const char* file, int line, int kind, int severity, int code, const char* format, ...) {
  char message[512];
  va_list arguments;
  va_start(arguments, format);
  std::vsnprintf(message, sizeof message, format, arguments);
  va_end(arguments);
  note(Operation::log, nullptr, 0, message);
  fakeFacility().log.push_back({file, line, kind, severity, code, format, message});
}
