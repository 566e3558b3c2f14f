#ifndef B2BUA_STATE_STORE_H
#define B2BUA_STATE_STORE_H

#include <chrono>
#include <memory>
#include <string>
#include <vector>

#include "call.h"
#include "perSecond.h"

struct redisContext;

namespace b2bua {

/// Keeps established calls in Redis, one hash for each, so that another process can go on with them. Without an
/// address it keeps nothing.
class StateStore {
 public:
  /// @param address "redis://HOST:PORT", or empty. Throws std::runtime_error when there is no server.
  explicit StateStore(const std::string& address);

  bool isUsed() const { return !host_.empty(); }
  /// @return false when it could not be kept; the call goes on without
  bool save(const Call& call);
  bool remove(const std::string& id);
  /// Loads what `save` kept under the call's ID.
  /// @return false when there is no such call, or none that can be used
  bool load(Call& call);

 private:
  using Clock = std::chrono::steady_clock;
  using Command = std::vector<std::string>;

  bool connect(Clock::time_point deadline);
  /// Sends commands and waits for all their replies.
  /// @param texts receives the strings of an array reply
  bool run(const std::vector<Command>& commands, std::vector<std::string>* texts = nullptr);
  bool exchange(const std::vector<Command>& commands, std::vector<std::string>* texts,
                Clock::time_point deadline);
  bool flush(Clock::time_point deadline);
  bool takeReply(std::vector<std::string>* texts, Clock::time_point deadline);

  std::string host_;
  int port_ = 0;
  Clock::time_point nextAttempt_{};
  PerSecond milliseconds_;  ///< that were waited for the server
  std::unique_ptr<redisContext, void (*)(redisContext*)> context_;
};

}  // namespace b2bua

#endif
