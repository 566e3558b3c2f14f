#ifndef B2BUA_ENGINE_H
#define B2BUA_ENGINE_H

#include <string>
#include <unordered_map>

#include "call.h"
#include "config.h"
#include "log.h"
#include "stateStore.h"

namespace b2bua {

struct Counters {
  unsigned long calls = 0;
  unsigned long established = 0;
  unsigned long ended = 0;
  unsigned long failed = 0;
  unsigned long cancelled = 0;
  unsigned long reoffers = 0;
  unsigned long refusedBodies = 0;
  unsigned long malformed = 0;
  unsigned long takenOver = 0;
};

/// The back-to-back user agent: two dialogs for every call, and the bodies on their way between them.
class Engine {
 public:
  Engine(const Options& options, const Policy& policy, const UdpSocket& socket, StateStore& store, Log& log);

  void receive(std::string_view datagram, const Endpoint& source);
  Clock::time_point nextTimer() const { return transactions_.nextTimer(); }
  void runTimers(Clock::time_point now);
  /// Ends all calls, unless another process is to go on with them.
  void finish();
  bool idle() const { return transactions_.idle(); }
  void showCounters() const;

 private:
  // requests (engine.cpp)
  void onRequest(const SipMessage& request, const std::string& key);
  void onFirstInvite(const SipMessage& invite, const std::string& key);
  void onCancel(const std::string& key);
  void onNoAck(const std::string& key);
  void onBye(Call& call, Side side, const std::string& key);
  void sweep(Clock::time_point now);
  Call* findDialog(const SipMessage& request, Side& side);

  // exchanges (exchange.cpp)
  void onInvite(Call& call, Side side, const SipMessage& invite, const std::string& key);
  void onAck(Call& call, Side side, const SipMessage& ack);
  void onInviteResponse(const std::string& id, const std::string& branch, const SipMessage& response);
  void onProvisional(Call& call, const SipMessage& response);
  void onSuccess(Call& call, const SipMessage& response);
  void onFailure(Call& call, const SipMessage& response);
  bool answerFromStore(Call& call, Exchange& exchange);
  void relayInvite(Call& call, bool withBody);
  void replaceDummy(Call& call);
  void sendAck(Call& call, const std::string& body);
  void onDummyReplaced(Call& call, const SipMessage& response);
  void answer(Call& call, SipResponse response);
  void fail(Call& call, const SipResponse& response);
  void answerWithBody(Call& call, const std::string& body);
  void refuse(Call& call, const std::string& reason);
  void complete(Call& call);

  /// Parses a body from a side, applies the policy and gives the result that side's dialog of the other.
  /// @return why it cannot be used; empty when it can
  std::string takeBody(Call& call, Side from, const std::string& body, bool isAnswer);

  static SipRequest requestOn(const Leg& leg, const std::string& method, unsigned int cseq);
  void sendInvite(Call& call, Side to, const std::string& body);
  void sendBye(Call& call, Side to);
  void dropExchange(Call& call);
  void end(Call& call, const std::string& why);
  void forget(Call& call);
  void note(const Call& call, const std::string& event);
  std::string contact() const { return "sip:" + socket_.local().text(); }

  const Options& options_;
  const Policy& policy_;
  const UdpSocket& socket_;
  StateStore& store_;
  Log& log_;
  Counters counters_;
  Transactions transactions_;
  std::unordered_map<std::string, Call> calls_;
  std::unordered_map<std::string, std::string> invites_;  ///< the calls of INVITEs that are not done with
  Clock::time_point nextSweep_{};
  bool stopping_ = false;
};

}  // namespace b2bua

#endif
