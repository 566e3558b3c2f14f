#include "sdpNegotiatorTrace.h"

#include <cstdarg>
#include <cstddef>
#include <cstdio>
#include <cstring>
#include <iostream>  // initialises the standard streams ahead of negotTrcManager: a facility may use them
#include <string_view>

#include "kvRtt.h"

// Trace lines: their composition, and the way to the platform's facility.

const char SDP_NEGOTIATOR_RTT_STR[4][25] = {
    "SDP_NEGOTIATOR_DEBUG:",
    "SDP_NEGOTIATOR_INFO:",
    "SDP_NEGOTIATOR_ERROR:",
    "SDP_NEGOTIATOR_DETAIL:",
};

cNegotTraceManager negotTrcManager;

namespace sdpneg {
namespace {

constexpr const char* kComponent = "SDP_NEGOTIATOR";
constexpr std::size_t kLineSize = 20480;
constexpr int kLineType = 7200;
constexpr int kInfoFlag = 2;
constexpr int kDetailRow = 3;

/// Flag 8 and others point behind the table; the row for detail stands in for those.
const char* prefixOf(int flag) {
  const int row = flag / 2;
  return SDP_NEGOTIATOR_RTT_STR[row >= 0 && row < kDetailRow ? row : kDetailRow];
}

/// How much of a format that was cut can be formatted: all of it, or what stands before a conversion
/// that lost its end.
std::size_t lengthOfWholeConversions(std::string_view format) {
  std::size_t at = format.find('%');
  while (at != std::string_view::npos) {
    const std::size_t end = format.find_first_not_of("0123456789-+ #'I.*$hlqjzZtL", at + 1);
    if (end == std::string_view::npos) return at;
    at = format.find('%', end + 1);
  }
  return format.size();
}

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
// The analyzer loses sight of the va_start that all arguments here come from.
// NOLINTBEGIN(clang-analyzer-valist.Uninitialized)

/// Formats what `size` characters hold of a format that is longer. Never inlined, so that the copy takes no stack for
/// other lines.
[[gnu::noinline]] int formatCut(char* text, std::size_t size, const char* format, va_list arguments) {
  char cut[kLineSize];
  const std::size_t length = lengthOfWholeConversions({format, size - 1});
  std::memcpy(cut, format, length);
  cut[length] = '\0';
  return std::vsnprintf(text, size, cut, arguments);
}

/// @param size at most `kLineSize`
int formatInto(char* text, std::size_t size, const char* format, va_list arguments) {
  text[0] = '\0';
  if (format == nullptr) return 0;
  const bool fits = strnlen(format, size) < size;
  return fits ? std::vsnprintf(text, size, format, arguments) : formatCut(text, size, format, arguments);
}

// NOLINTEND(clang-analyzer-valist.Uninitialized)
#pragma GCC diagnostic pop

/// Never inlined, so that its buffer takes no stack while tracing is off.
[[gnu::noinline]] int writeLine(int handle, int flag, int level, const char* format, va_list arguments) {
  // Not cleared: it is written up to its NUL, and every line would pay for the rest.
  char line[kLineSize];
  const std::string_view prefix = prefixOf(flag);
  char* const message = line + prefix.copy(line, kLineSize - 1);
  if (formatInto(message, kLineSize - prefix.size(), format, arguments) < 0) *message = '\0';
  return pvxTraceRtt(handle, flag, kLineType, level, line);
}

}  // namespace

bool isTracing() { return KvRttTstFlag(negotTrcManager.handle, kInfoFlag) != 0; }

int trace::write(int flag, int level, const char* format, va_list arguments) {
  return isTracing() ? writeLine(negotTrcManager.handle, flag, level, format, arguments) : 0;
}

}  // namespace sdpneg

using namespace sdpneg;

cNegotTraceManager::cNegotTraceManager() : handle(-1) {
  if (pvxTraceRttInit(&handle) != 0) return;
  const int status = KvRttRegFacility(&handle, kComponent);
  if (status == 0) {
    KvRttRegFlag(kComponent, 1, "DEBUG");
    KvRttRegFlag(kComponent, kInfoFlag, "INFO");
    KvRttRegFlag(kComponent, 4, "ERROR");
    return;
  }
  handle = -1;
  KvLogReport("src/sdpNegotiatorTrace", 61, 0, 4, 0x390001,
              "SDP_NEGOTIATOR failed to register with kvrtt. Registration status = %s", KvRttStatus(status));
}

cNegotTraceManager::~cNegotTraceManager() = default;

int cNegotTraceManager::writeTraceMsg(int flag, int level, const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  const int result = trace::write(flag, level, format, arguments);
  va_end(arguments);
  return result;
}
