#ifndef B2BUA_TEST_FAKE_RELAY_H
#define B2BUA_TEST_FAKE_RELAY_H

#include <atomic>
#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "rawParty.h"

/// What the engine asks of rtpengine.
struct RelayRequest {
  std::string cookie;
  std::map<std::string, std::string> texts;  ///< members that are texts
  std::string bytes;                         ///< behind the cookie
};

/// Something that is taken for rtpengine, and answers as the test wants: as the real one does not.
class FakeRelay {
 public:
  /// Datagrams that answer to an offer or an answer.
  using Replies = std::function<std::vector<std::string>(const RelayRequest&)>;

  FakeRelay();
  ~FakeRelay();
  FakeRelay(const FakeRelay&) = delete;
  FakeRelay& operator=(const FakeRelay&) = delete;

  std::string address() const { return party_.address(); }
  void answerWith(Replies replies);
  /// Answers to pings, or to nothing at all.
  void beSilent(bool silent) { silent_ = silent; }
  /// Keeps replies to the command until they are let go.
  void hold(const std::string& command);
  void letGo();
  /// Commands so far, pings left out; repetitions are there once.
  std::vector<RelayRequest> requests() const;
  /// How often a datagram came, those for pings left out.
  int datagrams() const { return datagrams_; }
  /// Waits for a request.
  bool waitFor(const std::string& command, std::size_t count = 1) const;

 private:
  void serve();
  void answer(const std::string& datagram);

  const RawParty party_;
  std::atomic<bool> silent_ = false;
  std::atomic<bool> stopped_ = false;
  std::atomic<int> datagrams_ = 0;
  mutable std::mutex mutex_;
  Replies replies_;
  std::string held_;
  std::vector<std::string> kept_;
  std::vector<RelayRequest> requests_;
  std::string engine_;
  std::thread thread_;
};

/// The body with another connection address, as a relay would send it.
std::string okReply(const RelayRequest& request);

#endif
