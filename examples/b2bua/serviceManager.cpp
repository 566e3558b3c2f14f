#include "serviceManager.h"

#include <systemd/sd-daemon.h>

#include <cstdint>

namespace b2bua {

ServiceManager::ServiceManager() {
  std::uint64_t longest = 0;
  // Twice in its time, as sd_watchdog_enabled(3) has it.
  if (sd_watchdog_enabled(0, &longest) > 0) betweenSigns_ = std::chrono::microseconds(longest / 2);
}

void ServiceManager::ready() { sd_notify(0, "READY=1"); }

void ServiceManager::reloading() {
  const auto now = std::chrono::duration_cast<std::chrono::microseconds>(Clock::now().time_since_epoch());
  sd_notifyf(0, "RELOADING=1\nMONOTONIC_USEC=%lld", static_cast<long long>(now.count()));
}

void ServiceManager::stopping() { sd_notify(0, "STOPPING=1"); }

void ServiceManager::alive(std::size_t calls) {
  const Clock::time_point now = Clock::now();
  if (betweenSigns_.count() > 0 && now >= nextSign_) {
    nextSign_ = now + betweenSigns_;
    sd_notify(0, "WATCHDOG=1");
  }
  if (now < nextStatus_) return;
  nextStatus_ = now + std::chrono::seconds(1);
  sd_notifyf(0, "STATUS=%zu calls", calls);
}

}  // namespace b2bua
