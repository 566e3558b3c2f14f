#ifndef B2BUA_CALL_H
#define B2BUA_CALL_H

#include <array>
#include <chrono>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>

#include "mediaPolicy.h"
#include "sessionTimer.h"
#include "side.h"
#include "sip.h"

namespace b2bua {

class Engine;
struct Call;

/// 16 random characters.
std::string randomText();

/// The engine's tag in a dialog names the call and the side, so that any process finds them.
std::string tagOf(const std::string& id, Side side);

/// Ports that a side was told, two for each pair.
struct PortRun {
  unsigned short first = 0;
  unsigned short pairs = 0;
};

/// A dialog with one of the two parties (RFC 3261 12), and the bodies that count in it.
struct Leg {
  Engine* engine = nullptr;
  Call* call = nullptr;
  Side side = kCaller;
  std::string callId;
  std::string local;              ///< From of what the engine sends, with the engine's tag
  std::string remote;             ///< To of what the engine sends, with the party's tag
  std::string contact;            ///< where the party wants to be reached
  std::string transport = "udp";  ///< over which the engine wants to be reached
  std::string routes;             ///< Route value of what the engine sends
  unsigned int cseq = 0;          ///< of the last request that the engine sent
  unsigned int remoteCseq = 0;    ///< of the last one that the party sent
  unsigned int keptCseq = 0;      ///< the store has it that as many may have been sent; 0 when it has nothing
  unsigned int unacknowledged = 0;  ///< number of the INVITE to the party whose 200 has no ACK yet
  Owned<nta_leg_t> dialog;          ///< the stack's part of it
  bool answered = false;            ///< the body sent last was an answer
  bool allowsUpdate = false;
  SessionTimer timer;
  Owned<nta_incoming_t> info;    ///< an INFO of the party, while it waits for the other side
  Owned<nta_outgoing_t> passed;  ///< the same at the other side
  Owned<nta_outgoing_t> own;     ///< an UPDATE without body or a given-up INVITE, unanswered
  Body sent;                     ///< the body that the party has of the other one
  Body received;                 ///< the party's own body
  /// An offer that the party did not take; what it gets next has a version of its own.
  std::unique_ptr<Body> refused;
  std::vector<PortRun> ports;  ///< of the media relay, as long as the call lasts

  /// The party has a body, be it the one that it has already.
  void give(const Body& body) {
    if (sent.isSdpPresent() && body.compareSdpOLine(&sent) == 0) return;
    sent = body;
    refused.reset();
  }
  const Body& last() const { return refused ? *refused : sent; }
};

/// What an exchange does with its bodies.
enum class Kind {
  relayed,        ///< offer in the INVITE, answer in the 200
  late,           ///< offer in the 200, answer in the ACK
  dummy,          ///< a first INVITE without body: the target has a dummy offer
  dummyReplaced,  ///< the engine's own INVITE to the target, with the offer that replaces the dummy
  local,          ///< answered by the engine
  refresh         ///< the engine's own INVITE, with the body that the party has
};

/// What a request is answered with.
struct Response {
  int status = 0;
  std::string body;
  std::string headers;  ///< lines
};

/// An INVITE or UPDATE on its way, and what is to be kept of it when it succeeds.
struct Exchange {
  Kind kind = Kind::relayed;
  unsigned long number = 0;              ///< none has that of another one
  std::shared_ptr<const Policy> policy;  ///< for all of its bodies, whatever is read anew meanwhile
  Side from = kCaller;
  Owned<nta_incoming_t> incoming;  ///< the request that came
  Owned<nta_outgoing_t> outgoing;  ///< the request that went out
  bool concluded = false;          ///< the one that went out has its final response
  bool answered = false;           ///< its 200 went back and waits for the ACK
  bool acknowledged = false;       ///< the 200 that came has its ACK
  bool ackCame = false;            ///< the one for the 200 that went back
  bool cancelled = false;
  bool update = false;           ///< what came is an UPDATE, and what goes out where the party allows that
  bool agreed = false;           ///< its bodies are those of the dialogs now
  unsigned int repetitions = 0;  ///< of the INVITE that went out, since the session was to last longer
  unsigned int provisional = 0;  ///< responses that came
  std::map<std::string, unsigned long>
      reliable;                      ///< number of the last one of each early dialog that had a PRACK
  std::string early;                 ///< body of one, when it could be used
  bool bodyOnWay = false;            ///< that of a provisional response
  bool answeredReliably = false;     ///< the target has its PRACK for it
  bool settled = false;              ///< and from the caller the engine has one
  bool updated = false;              ///< by an UPDATE since
  bool unacknowledged = false;       ///< the one that went back waits for its PRACK
  Owned<msg_t> waiting;              ///< the response that came last meanwhile
  bool relayed = false;              ///< the media relay was asked about its bodies
  std::optional<Response> response;  ///< a 200 that goes out when the store has the call
  OfferChanges changes{};
  std::array<Body, 2> received;        ///< from each side
  std::array<Body, 2> sent;            ///< to each side
  std::array<std::string, 2> headers;  ///< lines that go on to each side with the next message

  bool waits() const { return bodyOnWay || unacknowledged; }
  /// @return whether the body of a final response says no more than the early one
  bool isKnown(const std::string& body) const { return !early.empty() && (body.empty() || body == early); }
};

/// Why a body cannot be used, and what its sender gets for it.
struct BodyRefusal {
  std::string reason;  ///< empty when it can
  int status = 488;

  explicit operator bool() const { return !reason.empty(); }
};

/// What follows when a body is taken. It is not called for an exchange that has ended meanwhile.
using BodyTaken = std::function<void(Call& call, const BodyRefusal& refusal)>;

/// Where the first INVITE of a call is, and where it may go yet.
struct Hunt {
  std::deque<std::string> uris;   ///< still to be tried
  std::set<std::string> known;    ///< all that were ever among them
  std::size_t contacts = 0;       ///< the first of them are those of a redirection
  unsigned int redirections = 0;  ///< contacts that were followed
  std::string place;              ///< of the one that is tried, or has the call
  Owned<su_timer_t> silence;      ///< while there is no response
};

struct Call {
  std::string id;
  std::chrono::steady_clock::time_point begun;
  std::array<Leg, 2> legs;
  bool relayed = false;  ///< the media relay knows it
  Hunt hunt;
  bool established = false;  ///< the first exchange is complete; before, there always is one
  bool kept = false;         ///< the store has it, or is to have it
  bool outdated = false;     ///< but what it has is not the last state
  std::chrono::steady_clock::time_point keptAt{};  ///< the last time
  bool lookedAfter = false;                        ///< it is in the queue for that
  bool takenOver = false;                          ///< from another process
  unsigned int turn = 0;                           ///< how many other ones have had it
  /// As large as all else, so an established call has none.
  std::unique_ptr<Exchange> exchange;
  /// That of the first INVITE, while one of an UPDATE is in its place.
  std::unique_ptr<Exchange> aside;
};

}  // namespace b2bua

#endif
