#ifndef B2BUA_RTPENGINE_H
#define B2BUA_RTPENGINE_H

#include <chrono>
#include <map>
#include <unordered_map>

#include "mediaRelay.h"

namespace b2bua {

/// A UDP socket that talks to one address only.
class ConnectedSocket {
 public:
  /// @param endpoint  numeric HOST:PORT. Throws std::runtime_error.
  explicit ConnectedSocket(const std::string& endpoint);
  ~ConnectedSocket();
  ConnectedSocket(const ConnectedSocket&) = delete;
  ConnectedSocket& operator=(const ConnectedSocket&) = delete;

  int descriptor() const { return descriptor_; }

 private:
  int descriptor_ = -1;
};

/// rtpengine by its NG protocol: datagrams of a cookie and a bencoded dictionary, and replies with the same cookie.
///
/// Datagrams may be lost, so they are repeated; the relay knows them by their cookie and does nothing twice. When a
/// reply is missing nevertheless, the relay counts as gone, until it answers to a ping again.
class Rtpengine final : public MediaRelay {
 public:
  Rtpengine(su_root_t* root, const MediaOptions& options, Log& log, Counters& counters);
  ~Rtpengine() override;
  Rtpengine(const Rtpengine&) = delete;
  Rtpengine& operator=(const Rtpengine&) = delete;

  bool isGone() const override { return gone_; }
  void relay(Call& call, Side from, bool isAnswer, const std::string& body, Done done) override;
  void release(const Call& call) override;

 private:
  using Clock = std::chrono::steady_clock;
  using Texts = std::map<std::string, std::string>;
  /// @param reply  null when there is none
  using OnReply = std::function<void(const Texts* reply)>;
  struct Asked {
    std::string datagram;
    OnReply onReply;
    Clock::time_point since;
    std::size_t sent = 1;  ///< how often
  };

  void ask(const Texts& encodedMembers, OnReply onReply);
  void send(const std::string& datagram) const;
  void ping();
  void lose(const std::string& why);
  void onTick();
  bool readAll();
  void onDatagram(std::string_view datagram);

  const MediaOptions& options_;
  Log& log_;
  Counters& counters_;
  const ConnectedSocket socket_;
  su_root_t* const root_;
  int registration_ = -1;
  const Owned<su_timer_t> timer_;
  std::string buffer_;
  const std::string cookies_;  ///< what those of this process begin with
  unsigned long lastCookie_ = 0;
  std::unordered_map<std::string, Asked> asked_;  ///< by their cookies
  Clock::time_point nextPing_{};
  bool gone_ = false;
};

}  // namespace b2bua

#endif
