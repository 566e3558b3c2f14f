#ifndef B2BUA_REDIS_LINK_H
#define B2BUA_REDIS_LINK_H

#include <chrono>
#include <memory>
#include <string>
#include <vector>

#include "perSecond.h"

struct redisContext;

namespace b2bua {

/// A connection to a Redis server: to the one that is named, or to the one that Sentinels name as the primary, which
/// they are asked for whenever the connection is lost.
class RedisLink {
 public:
  using Command = std::vector<std::string>;
  /// The text of a string, the texts of an array; none for "there is no such thing" and for other replies.
  using Reply = std::vector<std::string>;

  /// @param address "redis://HOST:PORT", "redis+sentinel://HOST:PORT,HOST:PORT,.../NAME", or empty. Throws
  ///                std::runtime_error when it is neither, or there is no such server.
  explicit RedisLink(const std::string& address);

  bool isUsed() const { return !servers_.empty(); }
  /// @return whether `run` would ask: not for a second after it was in vain, nor when the engine has waited for long
  bool isAskable() { return Clock::now() >= nextAttempt_ && milliseconds_.sum() < kMostPerSecond; }
  /// Sends commands and waits for all their replies; not for long.
  /// @return false when a reply is missing or says that the command failed
  bool run(const std::vector<Command>& commands, std::vector<Reply>* replies = nullptr);
  /// Sends commands and does not wait: their replies are dropped when others are read.
  /// @return false when there is no connection
  bool post(const std::vector<Command>& commands);
  /// How often it has connected: what was kept before may be unknown to the server that is there now.
  unsigned long connections() const { return connections_; }

 private:
  using Clock = std::chrono::steady_clock;
  static constexpr unsigned long kMostPerSecond = 500;  ///< ms that the engine waits for replies

  struct Server {
    std::string host;
    int port = 0;
  };

  static Server serverOf(const std::string& endpoint);
  bool connect(Clock::time_point deadline);
  bool connectToPrimary(const Server& sentinel, Clock::time_point limit, Clock::time_point deadline);
  bool open(const Server& server, Clock::time_point deadline);
  bool exchange(const std::vector<Command>& commands, std::vector<Reply>* replies,
                Clock::time_point deadline);
  void append(const std::vector<Command>& commands);
  bool flush(Clock::time_point deadline);
  bool takeReply(std::vector<Reply>* replies, Clock::time_point deadline);

  std::vector<Server> servers_;  ///< the server itself, or the Sentinels
  std::string primary_;          ///< its name among the Sentinels; empty without them
  std::size_t firstAsked_ = 0;   ///< the Sentinel that answered last
  unsigned long connections_ = 0;
  std::size_t unread_ = 0;  ///< replies that nobody waits for
  Clock::time_point nextAttempt_{};
  PerSecond milliseconds_;  ///< that were waited for the server
  std::unique_ptr<redisContext, void (*)(redisContext*)> context_;
};

}  // namespace b2bua

#endif
