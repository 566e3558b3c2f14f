#ifndef B2BUA_TRANSACTIONS_H
#define B2BUA_TRANSACTIONS_H

#include <chrono>
#include <functional>
#include <queue>
#include <string>
#include <unordered_map>
#include <vector>

#include "sipMessage.h"

namespace b2bua {

using Clock = std::chrono::steady_clock;

/// What repeats and matches messages over UDP (RFC 3261 17), for both sides of the engine. An INVITE's 200 is
/// repeated here too, until `confirm`.
class Transactions {
 public:
  using RequestHandler = std::function<void(const SipMessage& request, const std::string& key)>;
  using ResponseHandler = std::function<void(const SipMessage& response)>;
  using KeyHandler = std::function<void(const std::string& key)>;

  struct Handlers {
    RequestHandler onRequest;  ///< a new request, or an ACK to a 200, whose key is empty
    KeyHandler onCancel;       ///< with the key of the INVITE
    KeyHandler onNoAck;        ///< a 200 that was never acknowledged, with the key of the INVITE
  };

  Transactions(const UdpSocket& socket, Handlers handlers);

  void receive(const SipMessage& message);

  /// Answers a request by its key; nothing happens after a final answer.
  void respond(const std::string& key, const SipResponse& response);
  /// Answers without a transaction: the same request would be answered anew.
  void respondOnce(const SipMessage& request, const SipResponse& response) const;
  /// An INVITE's 200 was acknowledged.
  void confirm(const std::string& key);

  /// Sends a request. The handler gets its responses, and a 408 of the engine's own when there is none.
  /// @return its branch
  std::string request(const SipRequest& request, ResponseHandler handler);
  /// Cancels an INVITE, as soon as there is a provisional response.
  void cancel(const std::string& branch);
  /// Sends the ACK to an INVITE's 200, now and whenever the 200 is repeated.
  void acknowledge(const std::string& branch, const SipRequest& ack);

  Clock::time_point nextTimer() const;
  void runTimers(Clock::time_point now);
  bool idle() const;  ///< whether no request waits for its final response
  bool full() const;
  std::size_t count() const { return transactions_.size(); }

 private:
  struct Transaction {
    bool invite = false;
    bool final = false;        ///< a final response was sent or received
    bool proceeding = false;   ///< client: a provisional response was received
    bool cancelled = false;    ///< client: a CANCEL was sent or is due
    bool unconfirmed = false;  ///< server: the final response to an INVITE waits for its ACK
    SipMessage request;        ///< server
    SipRequest sent;           ///< client
    ResponseHandler handler;   ///< client
    Endpoint destination;
    std::string text;  ///< what is repeated
    std::string ack;   ///< client: what answers a repeated final response
    Clock::duration interval{};
    Clock::time_point repeat = Clock::time_point::max();
    Clock::time_point end = Clock::time_point::max();
    int status = 0;
  };
  using Map = std::unordered_map<std::string, Transaction>;
  using Due = std::pair<Clock::time_point, std::string>;

  void receiveRequest(const SipMessage& request);
  void receiveResponse(const SipMessage& response);
  void receiveAck(const SipMessage& ack);
  void receiveCancel(const SipMessage& cancel);
  void start(const std::string& branch, const SipRequest& request, ResponseHandler handler);
  void sendCancel(Transaction& invite, const std::string& branch);
  void schedule(const std::string& key, Transaction& transaction, Clock::duration interval,
                Clock::duration end);
  void runTimer(const std::string& key, Clock::time_point now);
  void finish(Map::iterator found);
  std::string viaOf(const std::string& branch) const;

  const UdpSocket& socket_;
  Handlers handlers_;
  Map transactions_;  ///< servers by branch, sender and method; clients by branch and method
  std::priority_queue<Due, std::vector<Due>, std::greater<>> timers_;
  std::size_t waiting_ = 0;  ///< clients without a final response
};

/// @return a random hexadecimal text of 16 characters
std::string randomText();

}  // namespace b2bua

#endif
