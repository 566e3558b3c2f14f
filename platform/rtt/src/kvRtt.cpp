// The operations that a platform offers. They stand apart from those of kvRttLocal.h, so that a program
// with a facility of its own may still link this library statically.

#include "kvRtt.h"

#include <syslog.h>

#include <array>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "kvRttRegistry.h"
#include "kvRttSink.h"

namespace kvrtt {
namespace {

bool isSetByEnvironment(std::string_view component, std::string_view flag) {
  const char* setting = std::getenv("KVRTT");
  return setting != nullptr && kvrtt::settingNames(setting, component, flag);
}

const char* orEmpty(const char* text) { return text == nullptr ? "" : text; }

}  // namespace
}  // namespace kvrtt

using namespace kvrtt;

int pvxTraceRttInit(int* handle) { return handle == nullptr ? kvRttNullArgument : kvRttSuccess; }

int KvRttRegFacility(int* handle, const char* component) {
  if (handle == nullptr) return kvRttNullArgument;
  return registry.addComponent(nameView(component), *handle);
}

int KvRttRegFlag(const char* component, int flag, const char* name) {
  const auto owner = nameView(component);
  const auto flagName = nameView(name);
  return registry.addFlag(owner, flag, flagName, isSetByEnvironment(owner, flagName));
}

int KvRttTstFlag(int handle, int flag) { return registry.isOn(handle, flag) ? 1 : 0; }

const char* KvRttStatus(int status) {
  switch (status) {
    case kvRttSuccess:
      return "success";
    case kvRttNullArgument:
      return "null handle address";
    case kvRttBadName:
      return "name is empty, too long or holds a blank, '=', ',' or ';'";
    case kvRttBadFlag:
      return "flag is not a single bit from 1 to 0x40000000";
    case kvRttComponentsFull:
      return "no room for another component";
    case kvRttFlagsFull:
      return "no room for another flag of the component";
    case kvRttFlagTaken:
      return "flag value or name is declared otherwise already";
    case kvRttUnknownComponent:
      return "component is not registered";
    case kvRttUnknownFlag:
      return "flag is not declared";
    case kvRttUnknownHandle:
      return "handle belongs to no component";
    default:
      return "unknown status";
  }
}

int pvxTraceRtt(int handle, int flag, int type, int level, const char* line, ...) {
  const char* component = registry.componentName(handle);
  if (component == nullptr) return kvRttUnknownHandle;
  const char* text = orEmpty(line);
  writeLine({component, flag, type, level, text, std::strlen(text)});
  return kvRttSuccess;
}

void KvLogReport(const char* file, int line, int, int severity, int code, const char* format, ...) {
  std::array<char, 1024> message;
  va_list arguments;
  va_start(arguments, format);
  const int length =
      format == nullptr ? -1 : std::vsnprintf(message.data(), message.size(), format, arguments);
  va_end(arguments);
  if (length < 0) message[0] = '\0';
  const int priority = LOG_USER | (severity >= LOG_EMERG && severity <= LOG_DEBUG ? severity : LOG_ERR);
  syslog(priority, "%s(%d): [0x%x] %s", orEmpty(file), line, static_cast<unsigned>(code), message.data());
}
