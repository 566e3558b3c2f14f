#ifndef B2BUA_ENGINE_H
#define B2BUA_ENGINE_H

#include <sdpDocument.h>

#include <deque>
#include <unordered_map>

#include "call.h"
#include "gate.h"
#include "log.h"
#include "mediaRelay.h"
#include "multipart.h"
#include "options.h"
#include "perSecond.h"
#include "snapshot.h"
#include "stateStore.h"
#include "targets.h"
#include "transports.h"

namespace b2bua {

/// The back-to-back user agent: two dialogs for every call, and the bodies on their way between them.
class Engine {
 public:
  /// Listens. Throws std::runtime_error when it cannot.
  Engine(su_root_t* root, const Options& options, StateStore& store, Log& log);

  /// HOST:PORT
  std::string address() const { return transports_.address(); }
  /// Applies a policy from now on; an exchange of bodies that is under way keeps its own.
  void use(const Policy& policy) { policy_ = std::make_shared<const Policy>(policy); }
  /// @return false when they cannot be used, and the old ones stay
  bool readCertificates() const { return transports_.readCertificates(); }
  std::size_t calls() const { return calls_.size(); }
  /// Takes no further calls.
  void drain() { stopping_ = true; }
  bool isMediaGone() const { return media_ && media_->isGone(); }
  /// Ends all calls, unless another process is to go on with them.
  void finish();
  /// @return whether each BYE has its answer, and each INVITE that was given up, too
  bool idle() const;
  /// Closes connections when there are too many; to be called often.
  void limitConnections();
  void showCounters() const;
  /// Looks after what the store has of the calls; to be called often.
  void tend();
  Snapshot snapshot() const;
  /// Drops what has come and is beyond the limits of its source; to be called whenever messages may have come.
  void sift();

 private:
  // requests (requests.cpp)
  static int onMessage(Engine* engine, nta_agent_t* agent, msg_t* message, sip_t* content);
  void onRequest(Owned<msg_t> message, const sip_t& request);
  void onFirstInvite(Owned<msg_t> message, const sip_t& invite);
  void onRequestInDialog(Leg& leg, Owned<msg_t> message, const sip_t& request);
  /// @param header  a line with its name; none when empty
  void reply(Owned<msg_t> message, int status, const std::string& header = "");
  std::size_t transactions() const;
  bool hasTooManyTransactions() const { return transactions() >= options_.maxTransactions; }
  unsigned long malformed() const;
  /// @return why no INVITE of a new call is taken now; none when one is
  std::optional<Limit> limitOfCalls(const sockaddr& source);
  /// @return why no INVITE within a call is taken now
  std::optional<Limit> limitOfReoffers();
  bool hasTooMuchMemory();
  /// Refuses a request because of a limit, and tells when to try again.
  void turnAway(Owned<msg_t> message, Limit limit);
  /// @return the dialog of a request, null when there is none
  Leg* find(const sip_t& request);
  Found takeOver(const sip_t& request);

  // calls and dialogs (engine.cpp)
  static int onByeResponse(Leg* listener, nta_outgoing_t* transaction, const sip_t* response);
  Call& addCall(const std::string& id);
  void openDialog(Leg& leg);
  static void takeTarget(Leg& leg, const sip_t& request);
  void enterDialog(Leg& leg, const sip_t& response);
  void leaveDialog(Leg& leg);
  void onBye(Leg& leg, Owned<msg_t> message, const sip_t& bye);
  void onCancel(Call& call);
  void cancel(Call& call, int status);
  void giveUp(Call& call);
  void leave(Call& call);
  void sendBye(Leg& leg, const std::string& headers = "");
  void dropExchange(Call& call);
  void end(Call& call, const std::string& why);
  void forget(Call& call);
  /// Writes an event of a call into the log.
  void note(const Call& call, std::string_view event, const Members& members = {},
            LogLevel level = LogLevel::info);

  std::string warning(const std::string& text) const;

  // from target to target (hunt.cpp)
  static int onAbandonedResponse(Leg* leg, nta_outgoing_t* transaction, const sip_t* response);
  void beginHunt(Call& call, const char* user);
  void openTarget(Call& call);
  void awaitTarget(Call& call);
  void hearTarget(Call& call, int status);
  static void onSilence(su_root_magic_t*, su_timer_t*, void* target);
  void follow(Call& call, const sip_t& response);
  bool tryNext(Call& call, const sip_t* response);
  void abandon(Call& call);

  // exchanges of bodies (exchange.cpp)
  static int onAckOrCancel(Leg* leg, nta_incoming_t* transaction, const sip_t* request);
  static int onInviteResponse(Leg* leg, nta_outgoing_t* transaction, const sip_t* response);
  Exchange& beginExchange(Call& call, Kind kind);
  void onOffer(Leg& leg, Owned<msg_t> message, const sip_t& request);
  void onAck(Leg& leg, const std::string& body);
  void onSuccess(Call& call, const sip_t& response);
  void takeAnswer(Call& call, const sip_t& response);
  void onFailure(Call& call, const sip_t& response);
  void replaceDummy(Call& call);
  void onDummyReplaced(Call& call, const std::string& body);
  void relayOffer(Call& call);
  void sendOffer(Call& call);
  nta_outgoing_t* send(Leg& leg, sip_method_t method, const char* name, unsigned int cseq,
                       const std::string& body, nta_response_f* onResponse, Leg* receiver,
                       const std::string& header = "", const char* type = kSdp);
  void sendAck(Call& call, const std::string& body);
  /// Answers the request of the exchange.
  void answer(Call& call, int status, const std::string& body = "", const std::string& header = "");
  void sendAnswer(Call& call);
  /// Refuses it, and ends the call when it is the first one.
  void fail(Call& call, int status, const std::string& header = "");
  void refuse(Call& call, const BodyRefusal& refusal);
  void noteRefused(Call& call);
  void agree(Call& call);
  void complete(Call& call);

  // provisional responses (earlyMedia.cpp)
  void onProgress(Call& call, const sip_t& response);
  bool sendPrack(Call& call, const sip_t& response);
  void passOn(Call& call, const sip_t& response);
  void goOn(Call& call);
  static int onPrack(nta_reliable_magic_t* leg, nta_reliable_t* response, nta_incoming_t* prack,
                     const sip_t* request);
  void onNoPrack(Call& call);

  // UPDATE (update.cpp)
  static bool mayUpdateEarly(const Call& call, const Leg& leg);
  static void putAside(Call& call);
  void abandonUpdate(Call& call);
  void conclude(Call& call);
  void onSignOfLife(Leg& leg, Owned<msg_t> message, const sip_t& update);

  // INFO (info.cpp)
  void onInfo(Leg& leg, Owned<msg_t> message, const sip_t& info);
  static int onInfoResponse(Leg* leg, nta_outgoing_t* transaction, const sip_t* response);

  // session timers (sessionRefresh.cpp)
  static void onSecond(su_root_magic_t*, su_timer_t*, void* engine);
  void lookAfterSession(Leg& leg);
  static int onRefreshResponse(Leg* leg, nta_outgoing_t* transaction, const sip_t* response);
  void onRefreshRefused(Leg& leg, const sip_t& response);
  void onRefreshAnswered(Call& call, const std::string& body);

  // bodies on their way (bodies.cpp)
  bool answerFromStore(Call& call, Exchange& exchange);
  /// Brings a body from a side to the other one: its result is in `sent` of the exchange when `then` is called.
  void takeBody(Call& call, Side from, const std::string& body, bool isAnswer, const BodyTaken& then);
  /// Its steps; @return why the body cannot be used; empty when it can
  std::string readBody(Call& call, Side from, const std::string& body, bool isAnswer);
  Call* callWith(const std::string& id, unsigned long exchange);
  void restoreMedia(Call& call);
  BodyRefusal takeRelayed(Call& call, Side from, const std::string& relayed);
  std::string finishBody(Call& call, Side from, const std::string& body, bool isAnswer);
  /// Writes into the log what is wrong with an answer.
  /// @param offer   what the party was sent
  /// @param answer  what it said, before anything is done to it
  void judge(const Call& call, Side party, const Body& offer, const std::string& answer);

  // what the store has of the calls (keeping.cpp)
  void keep(Call& call);
  void keepAll();
  bool save(const std::vector<Call*>& calls);
  void announceInvite(Leg& leg);
  void lookAfter(Call& call);
  void lookAfter(const std::string& id);
  bool isOwn(const Call& call);
  void giveAway(Call& call);
  void acknowledge(Leg& leg);
  void tendPortion();

  su_root_t* const root_;
  const Options& options_;
  std::shared_ptr<const Policy> policy_ = std::make_shared<const Policy>(options_.policy);
  StateStore& store_;
  Log& log_;
  Counters counters_;  ///< but for what the stack counts
  SetupTimes setupTimes_;
  const std::unique_ptr<MediaRelay> media_;
  Transports transports_{options_.listen, options_.transports};
  std::chrono::steady_clock::time_point nextConnections_{};
  Owned<nta_agent_t> agent_;
  Owned<su_timer_t> everySecond_;
  Leg listener_;  ///< for responses outside of the calls
  std::unordered_map<std::string, Call> calls_;
  Targets targets_{options_.targets};
  std::unordered_map<const nta_outgoing_t*, Leg>
      abandoned_;  ///< by their INVITEs, which have no final response
  unsigned long exchanges_ = 0;
  unsigned long openByes_ = 0;
  bool stopping_ = false;
  std::string elsewhere_;   ///< a URL to which nobody sends
  sdp::Document incoming_;  ///< the last body from outside
  PerSecond invites_;
  PerSecond reoffers_;
  PerSecond infos_;
  PerSecond memoryReads_;
  std::size_t memory_ = 0;  ///< resident, read within the last second
  Sources sources_;
  Gate gate_{sources_, options_.maxMessagesPerSource};
  PerSecond unknownTags_;                                           ///< asked for in the store, in vain
  std::deque<std::string> toKeep_;                                  ///< IDs of calls
  std::optional<std::chrono::steady_clock::time_point> awaySince_;  ///< the store, when calls were to be kept
  std::deque<std::string>
      toLookAfter_;  ///< IDs of calls that the store may not have, or of ended ones that it may have
  std::vector<std::string> acknowledged_;  ///< IDs of calls; the store is still to hear of their ACKs
  unsigned long connections_ = 0;          ///< of the store, when all that it has was looked after last
  std::chrono::steady_clock::time_point nextPortion_{}, nextLook_{}, nextPing_{};
};

}  // namespace b2bua

#endif
