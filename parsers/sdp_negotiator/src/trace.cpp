#include "trace.h"

#include <cstdarg>

// The flags and levels of the trace verbs.

namespace sdpneg::trace {

namespace {

/// The flag and level of a verb.
struct Pair {
  int flag;
  int level;
};

constexpr Pair kError = {4, 3};
constexpr Pair kInfo = {2, 2};
constexpr Pair kProgress = {8, 4};
constexpr Pair kDebug = {1, 1};
constexpr Pair kInvalidArgument = {2, 3};

}  // namespace

int error(const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  const int result = write(kError.flag, kError.level, format, arguments);
  va_end(arguments);
  return result;
}

int info(const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  const int result = write(kInfo.flag, kInfo.level, format, arguments);
  va_end(arguments);
  return result;
}

int progress(const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  const int result = write(kProgress.flag, kProgress.level, format, arguments);
  va_end(arguments);
  return result;
}

int debug(const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  const int result = write(kDebug.flag, kDebug.level, format, arguments);
  va_end(arguments);
  return result;
}

int invalidArgument(const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  const int result = write(kInvalidArgument.flag, kInvalidArgument.level, format, arguments);
  va_end(arguments);
  return result;
}

}  // namespace sdpneg::trace
