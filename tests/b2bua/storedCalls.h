#ifndef B2BUA_TEST_STORED_CALLS_H
#define B2BUA_TEST_STORED_CALLS_H

#include <memory>

#include "calls.h"
#include "rawParty.h"

// Calls that several engines share by way of Redis.

/// A Redis server of its own, and a connection to it.
class RedisServer {
 public:
  RedisServer(const std::string& folder, const std::string& port,
              const std::vector<std::string>& options = {});

  bool isReady() const;
  const std::string& port() const { return port_; }
  Process& process() { return process_; }
  /// @return the reply as text, the elements of an array with a blank behind each
  std::string ask(const std::vector<std::string>& words) const;
  /// @return how often a command was asked for
  long count(const std::string& command) const;

 private:
  std::string port_;
  Process process_;
};

/// Engines that share a store, with a caller and a target.
class StoredCalls : public Calls {
 protected:
  void startStore();
  std::unique_ptr<Engine> startEngine(const std::string& name, const std::string& listen = "0");
  /// @return the 200
  std::string invite(const Engine& engine, int call = 1) const;
  /// A call that is established at an engine.
  /// @return the engine's tag, with ";tag="
  std::string establish(const Engine& engine, int call = 1) const;
  /// The caller offers something new, and the target takes it.
  /// @return the INVITE that the target got
  std::string reoffer(const Engine& engine, const std::string& tag, int cseq, int call = 1) const;
  /// The caller hangs up.
  /// @return the BYE that the target got
  std::string hangUp(const Engine& engine, const std::string& tag, int cseq, int call = 1) const;
  std::string received(const RawParty& party, const std::string& start) const;
  static void kill(Engine& engine);

  std::unique_ptr<RedisServer> redis_;
  std::string store_;
  const RawParty caller_;
  const RawParty target_;
};

/// @return bodies of the caller and of the target
std::string offerOf(int version);
std::string answerOf(int version);

/// @return a TCP port of the loopback interface that nobody has, and that no connection is given
std::string freeServerPort();

/// @return the number in the CSeq header
int cseqOf(const std::string& message);

#endif
