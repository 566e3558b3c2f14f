#include "hostTrace.h"

#include "kvRtt.h"

std::string& hostTraceCalls() {
  static std::string calls;  // in use before main(): other libraries register while they are loaded
  return calls;
}

namespace {

constexpr int hostHandle = 77;

void note(const std::string& call) { hostTraceCalls() += call + ";"; }

}  // namespace

int pvxTraceRttInit(int* /*handle*/) {
  note("init");
  return 0;
}

int KvRttRegFacility(int* handle, const char* component) {
  *handle = hostHandle;
  note(std::string("facility ") + component);
  return 0;
}

int KvRttRegFlag(const char* component, int flag, const char* name) {
  note(std::string("flag ") + component + " " + std::to_string(flag) + " " + name);
  return 0;
}

int KvRttTstFlag(int handle, int flag) {
  note("test " + std::to_string(handle) + " " + std::to_string(flag));
  return 1;
}

const char* KvRttStatus(int /*status*/) { return "host status"; }

int pvxTraceRtt(int handle, int flag, int /*kind*/, int level, const char* line, ...) {
  note("line " + std::to_string(handle) + " " + std::to_string(flag) + " " + std::to_string(level) + " " +
       line);
  return 0;
}

void KvLogReport(const char* /*file*/, int /*line*/, int /*first*/, int /*second*/, int /*code*/,
                 const char* /*format*/, ...) {
  note("report");
}
