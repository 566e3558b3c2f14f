#ifndef B2BUA_SERVICE_MANAGER_H
#define B2BUA_SERVICE_MANAGER_H

#include <chrono>
#include <cstddef>

namespace b2bua {

/// Tells systemd how the program is; nothing when something else started it.
class ServiceManager {
 public:
  ServiceManager();

  void ready();
  /// Between this and `ready` files are read anew.
  void reloading();
  void stopping();
  /// That the program works, as often as the watchdog wants to hear it, and once a second how many calls there are.
  void alive(std::size_t calls);

 private:
  using Clock = std::chrono::steady_clock;

  Clock::duration betweenSigns_{};  ///< of life; 0 when nobody wants them
  Clock::time_point nextSign_{};
  Clock::time_point nextStatus_{};
};

}  // namespace b2bua

#endif
