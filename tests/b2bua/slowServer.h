#ifndef B2BUA_TEST_SLOW_SERVER_H
#define B2BUA_TEST_SLOW_SERVER_H

#include <atomic>
#include <string>
#include <thread>

/// A server that answers the first request at once, and the others as it is told.
class SlowServer {
 public:
  /// @param first  reply to the first request
  /// @param later  to each further one; when empty, one byte after the other without an end
  explicit SlowServer(std::string first, std::string later = "");
  ~SlowServer();
  SlowServer(const SlowServer&) = delete;
  SlowServer& operator=(const SlowServer&) = delete;

  const std::string& port() const { return port_; }
  int requests() const { return requests_; }

 private:
  void serve();
  void answer(int connection);

  const std::string first_;
  const std::string later_;
  int listener_ = -1;
  std::string port_;
  std::atomic<int> requests_ = 0;
  std::atomic<bool> stopped_ = false;
  std::thread thread_;
};

#endif
