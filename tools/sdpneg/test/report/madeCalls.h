#ifndef SDPNEG_TEST_MADE_CALLS_H
#define SDPNEG_TEST_MADE_CALLS_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

#include "calls/call.h"

// Calls put together by hand, for what is written about calls.

namespace made {

using namespace tool;

inline Endpoint at(std::string_view text) { return parseEndpoint(text).value_or(Endpoint()); }

/// An SDP body of one audio section. Lines may follow.
inline std::string audioBody(const std::string& address, int port, const std::string& more = {},
                             const std::string& transport = "RTP/AVP") {
  return "v=0\r\no=- 3901 1 IN IP4 " + address + "\r\ns=-\r\nc=IN IP4 " + address + "\r\nt=0 0\r\nm=audio " +
         std::to_string(port) + " " + transport + " 8 0 101\r\na=rtpmap:101 telephone-event/8000\r\n" + more;
}

/// Builds a call message by message; numbers and times go on from the last.
class CallMaker {
 public:
  explicit CallMaker(std::size_t number, std::size_t firstMessage = 1, std::int64_t start = 0)
      : nextMessage_(firstMessage), time_(start) {
    call.number = number;
    call.start = start;
    call.end = start;
    call.from = "sip:alice@example.org";
    call.to = "sip:bob@example.net";
  }

  std::size_t addLeg(std::string callId, JoinedBy joinedBy = JoinedBy::first, std::string detail = {},
                     std::size_t joinedTo = 0) {
    call.legs.push_back({std::move(callId), joinedBy, std::move(detail), joinedTo});
    return call.legs.size() - 1;
  }

  /// @param first "INVITE sip:bob@example.net" or "200 OK"
  /// @return      its place
  std::size_t add(std::size_t leg, std::string_view from, std::string_view to, const std::string& first,
                  std::string_view method, const std::string& sdp = {}, BodyRole role = BodyRole::none) {
    CallMessage message;
    message.number = nextMessage_++;
    message.time = time_;
    message.transport = Transport::udp;
    message.flow = {at(from), at(to)};
    message.leg = leg;
    message.method = method;
    const bool isResponse = first[0] >= '1' && first[0] <= '6';
    if (isResponse) message.status = std::stoi(first.substr(0, 3));
    message.cseq = method == "BYE" ? 2 : 1;
    message.text = (isResponse ? "SIP/2.0 " + first : first + " SIP/2.0") + "\r\n" + headers(leg, message) +
                   (sdp.empty() ? "" : "Content-Type: application/sdp\r\n") +
                   "Content-Length: " + std::to_string(sdp.size()) + "\r\n\r\n";
    message.sdpBegin = message.text.size();
    message.sdpSize = sdp.size();
    message.text += sdp;
    message.body = role;
    call.messages.push_back(std::move(message));
    call.end = time_;
    return call.messages.size() - 1;
  }

  /// The last message again.
  std::size_t addAgain(std::size_t of) {
    CallMessage message = call.messages[of];
    message.number = nextMessage_++;
    message.time = time_;
    message.retransmissionOf = of;
    call.messages.push_back(std::move(message));
    call.end = time_;
    return call.messages.size() - 1;
  }

  void addHop(std::size_t before, std::size_t after) { call.hops.push_back({before, after}); }
  void addExchange(std::size_t offer, std::size_t answer, int status) {
    call.messages[offer].exchange = call.messages[answer].exchange = call.exchanges.size();
    call.exchanges.push_back({offer, answer, status, call.exchanges.empty()});
  }
  void addTrouble(std::string rule, std::size_t message, std::size_t line, bool isWarning, std::string text,
                  std::uint32_t section = 1) {
    call.troubles.push_back({std::move(rule), message, section, line, isWarning, std::move(text)});
  }
  void wait(std::int64_t micros) { time_ += micros; }
  std::size_t nextMessage() const { return nextMessage_; }

  Call call;

 private:
  std::string headers(std::size_t leg, const CallMessage& message) const {
    return "Via: SIP/2.0/UDP " + message.flow.source.text() + ";branch=z9hG4bK" +
           std::to_string(message.number) + "\r\nFrom: <" + call.from + ">;tag=a1\r\nTo: <" + call.to +
           ">\r\nCall-ID: " + call.legs[leg].callId + "\r\nCSeq: " + std::to_string(message.cseq) + " " +
           message.method + "\r\n";
  }

  std::size_t nextMessage_;
  std::int64_t time_;
};

}  // namespace made

#endif
