#ifndef SDPNEG_CALL_H
#define SDPNEG_CALL_H

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "calls/callKeys.h"
#include "captures/capturedMessage.h"

// A call of a capture: its legs, its messages, what they offer and answer, what hops made of bodies, and what is wrong.
// Indices are those of the lists of the same call.

namespace tool {

/// What an SDP body is to a call's offers and answers (RFC 3264, RFC 6337).
enum class BodyRole : std::uint8_t {
  none,  ///< there is no SDP body
  offer,
  answer,
  sdp  ///< neither, or it cannot be told
};

/// A message of a call, in the order of time.
struct CallMessage {
  std::size_t number = 0;  ///< of the capture, from 1
  CaptureTime time;
  Transport transport = Transport::unknown;
  Flow flow;
  bool isCut = false;
  std::string text;  ///< as it was captured, keys included until they are masked
  std::size_t sdpBegin = 0;
  std::size_t sdpSize = 0;  ///< 0 where there is no SDP body

  std::size_t leg = 0;
  std::string method;      ///< of a request, and of a response that of its CSeq: "INVITE"
  int status = 0;          ///< 0 for a request
  std::uint64_t cseq = 0;  ///< cut at its largest value
  std::string fromTag;
  std::string toTag;                            ///< empty without one
  std::optional<std::size_t> retransmissionOf;  ///< the first message that it repeats
  BodyRole body = BodyRole::none;
  std::optional<std::size_t> exchange;  ///< of which it is the offer or an answer

  std::string_view sdp() const { return std::string_view(text).substr(sdpBegin, sdpSize); }
  /// Method or status: "INVITE", "200".
  std::string first() const { return status == 0 ? method : std::to_string(status); }
};

/// By what a leg came to its call.
enum class JoinedBy : std::uint8_t {
  first,         ///< it is the first leg, or was never alone
  joinHeader,    ///< a header that the user named
  callIdHeader,  ///< X-Call-ID and its like
  origin,        ///< session id of the o-line with the first media address
  timeAndNumbers
};
/// "", "join-header", "call-id-header", "origin", "time-and-numbers".
std::string_view textOf(JoinedBy by);

/// What has one Call-ID: a dialog, with the forks that it has.
struct Leg {
  std::string callId;
  JoinedBy joinedBy = JoinedBy::first;
  std::string joinDetail;    ///< the header's name and value, the o-line, the numbers: for people
  std::size_t joinedTo = 0;  ///< the leg that it was joined to
};

/// An offer and its answer between two parties.
struct Exchange {
  std::size_t offer = 0;              ///< a message
  std::optional<std::size_t> answer;  ///< a message; nothing where none came
  /// The response that ended the offer's transaction: 200, 488; 0 where none came.
  int finalStatus = 0;
  /// Whether it is the first one of its leg between these parties.
  bool isFirst = false;
};

/// A message that a participant sent for one that came to it: the same request or response, in the same or another leg.
struct Hop {
  std::size_t before = 0;  ///< the message that came in
  std::size_t after = 0;   ///< what went out for it
};

/// Something that is wrong.
struct Trouble {
  std::string rule;           ///< "one-way", or a rule of the judge: "section-count"
  std::size_t message = 0;    ///< a message of the call
  std::uint32_t section = 0;  ///< of its body, from 1; 0 for the session or a message without
  std::size_t line = 0;       ///< of the message's text, from 1; 0 where none is meant
  bool isWarning = false;     ///< calls usually work all the same
  std::string text;           ///< for people: one line, without keys
};

enum class CallState : std::uint8_t {
  ringing,   ///< no final response yet
  up,        ///< answered, and not ended
  ended,     ///< answered, and ended by a BYE
  failed,    ///< a final response of 300 and more
  cancelled  ///< ended by its caller before it was answered: 487
};
/// "ringing", "up", "ended", "failed", "cancelled".
std::string_view textOf(CallState state);

struct Call {
  std::size_t number = 0;  ///< from 1, in the order in which calls begin
  std::vector<Leg> legs;   ///< in the order in which they begin
  std::vector<CallMessage> messages;
  std::vector<Exchange> exchanges;
  std::vector<Hop> hops;
  std::vector<Trouble> troubles;  ///< by message

  CaptureTime start;
  CaptureTime end;
  CallState state = CallState::ringing;
  int result = 0;    ///< the last final status of the first INVITE; 0 for none
  std::string from;  ///< URI of the first INVITE's From, without parameters: "sip:alice@example.org"
  std::string to;
  std::vector<std::string> codecs;  ///< names of what was agreed last, "PCMA"; without what serves codecs
  std::string security;             ///< of what was agreed last: "plain", "sdes", "dtls"; several with "/"
  bool isGivenUp = false;           ///< there were too many open ones: what came later is another call

  std::size_t retransmissions() const;
};

/// The names of the joins: "call-id-header, origin"; empty for one leg.
std::string joinsOf(const Call& call);

/// The participants of a call in the order in which they appear. Those at one address are one, but where messages go from
/// an address to itself, ports tell them apart.
class Participants {
 public:
  explicit Participants(const Call& call);

  std::size_t size() const { return ends_.size(); }
  /// The participant that an endpoint belongs to.
  std::size_t indexOf(const Endpoint& endpoint) const;
  /// Its address, with a port (not 0) where that tells it apart.
  const Endpoint& at(std::size_t index) const { return ends_[index]; }

 private:
  /// Hashes of addresses can be made to collide.
  struct Order {
    bool operator()(const Endpoint& one, const Endpoint& other) const;
  };

  NumberedKeys<Endpoint, Order> ends_;
  bool haveNoPorts_ = true;
};

}  // namespace tool

#endif
