// Loaded into an engine in front of the system's library: as long as a file is there, its clock is hours ahead.

#include <dlfcn.h>
#include <unistd.h>

#include <cstdlib>
#include <ctime>

extern "C" int clock_gettime(clockid_t clock, timespec* time) noexcept {
  static const auto own = reinterpret_cast<int (*)(clockid_t, timespec*)>(dlsym(RTLD_NEXT, "clock_gettime"));
  static const char* const file = std::getenv("B2BUA_LATER");
  constexpr time_t kAhead = 25'200;
  const int status = own(clock, time);
  if (status == 0 && clock == CLOCK_MONOTONIC && file != nullptr && access(file, F_OK) == 0)
    time->tv_sec += kAhead;
  return status;
}
