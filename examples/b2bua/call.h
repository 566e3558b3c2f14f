#ifndef B2BUA_CALL_H
#define B2BUA_CALL_H

#include <array>
#include <optional>
#include <string>

#include "mediaPolicy.h"
#include "transactions.h"

namespace b2bua {

enum Side : std::size_t { kCaller = 0, kTarget = 1 };

inline Side otherOf(Side side) { return side == kCaller ? kTarget : kCaller; }

/// A dialog with one of the two parties (RFC 3261 12), and the bodies that count in it.
struct Leg {
  std::string callId;
  std::string local;   ///< From of what the engine sends, with the engine's tag
  std::string remote;  ///< To of what the engine sends, with the party's tag
  std::string remoteTag;
  std::string contact;  ///< URI of the party
  std::string routes;   ///< Route value of what the engine sends
  Endpoint peer;        ///< where the party was met last
  unsigned int localCseq = 0;
  unsigned int remoteCseq = 0;
  bool answered = false;    ///< the body sent last was an answer
  cSdpNegotiator sent;      ///< the body that the party has of the other one
  cSdpNegotiator received;  ///< the party's own body

  Leg() {
    sent.sdpParse("", SDP_TYPE_UNKNOWN);
    received.sdpParse("", SDP_TYPE_UNKNOWN);
  }
};

/// What an exchange does with its bodies.
enum class Kind {
  relayed,        ///< offer in the INVITE, answer in the 200
  late,           ///< offer in the 200, answer in the ACK
  dummy,          ///< a first INVITE without body: the target has a dummy offer
  dummyReplaced,  ///< the engine's own INVITE to the target, with the offer that replaces the dummy
  local           ///< answered by the engine
};

/// An INVITE on its way, and what is to be kept of it when it succeeds.
struct Exchange {
  Kind kind = Kind::relayed;
  Side from = kCaller;
  std::string key;            ///< of the INVITE that came
  unsigned int cseq = 0;      ///< of that
  std::string branch;         ///< of the INVITE that went out
  unsigned int sentCseq = 0;  ///< of that
  bool first = false;         ///< it sets the call up
  bool answered = false;      ///< its 200 went back and waits for the ACK
  bool acknowledged = false;  ///< the 200 that came has its ACK
  bool cancelled = false;
  OfferChanges changes{};
  std::array<cSdpNegotiator, 2> received;  ///< from each side
  std::array<cSdpNegotiator, 2> sent;      ///< to each side

  Exchange() {
    for (auto* bodies : {&received, &sent}) {
      for (cSdpNegotiator& body : *bodies) body.sdpParse("", SDP_TYPE_UNKNOWN);
    }
  }
};

struct Call {
  std::string id;
  std::array<Leg, 2> legs;
  bool established = false;
  Clock::time_point since = Clock::now();
  std::optional<Exchange> exchange;
};

}  // namespace b2bua

#endif
