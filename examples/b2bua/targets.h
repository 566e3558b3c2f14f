#ifndef B2BUA_TARGETS_H
#define B2BUA_TARGETS_H

#include <chrono>
#include <map>
#include <optional>
#include <random>
#include <string>
#include <vector>

namespace b2bua {

/// One of the places where calls go.
struct Target {
  std::string address;    ///< HOST:PORT
  std::string transport;  ///< udp, tcp or tls; empty for UDP, and TCP for what is too large for it
  unsigned int weight = 1;
  unsigned int priority = 0;  ///< low numbers come first

  /// What stands behind "sip:" and the user in its URI.
  std::string place() const { return address + (transport.empty() ? "" : ";transport=" + transport); }
};

/// @param text  HOST:PORT[;transport=udp|tcp|tls][;weight=N][;priority=N]; HOST:PORT is not looked at
/// @return none when something else stands in it
std::optional<Target> readTarget(const std::string& text);

/// Which of the targets answer, and in which order the next call tries them.
class Targets {
 public:
  explicit Targets(std::vector<Target> all);

  /// @return their places, by priority, those of one priority at random by their weights; those that rest come last
  std::vector<std::string> order();
  /// What becomes of a call that went to a place; those that are no target's are left alone.
  void tried(const std::string& place);
  void answered(const std::string& place);
  void failed(const std::string& place);

 private:
  using Clock = std::chrono::steady_clock;

  const std::vector<Target> all_;
  std::map<std::string, Clock::time_point> restsUntil_;  ///< by place; those that answered last have none
  std::mt19937 random_{std::random_device()()};
};

}  // namespace b2bua

#endif
