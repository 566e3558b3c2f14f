#ifndef SDPNEG_CALL_TABLE_H
#define SDPNEG_CALL_TABLE_H

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "calls/call.h"
#include "calls/messageFacts.h"

// Puts the messages of a capture together to calls, and gives a call away as soon as nothing more is expected of it.

namespace tool {

struct CallOptions {
  std::vector<std::string> joinHeaders;  ///< headers whose equal values join legs, the strongest first
  std::size_t mostOpenCalls = 100000;    ///< then the one that was silent for longest is given away
  std::size_t mostOpenBytes = std::size_t{512} * 1024 * 1024;  ///< of the open calls' texts, as well
  std::size_t mostCallBytes = std::size_t{128} * 1024 * 1024;  ///< of one call, which is given away then
};

/// A message with what is asked of its text.
struct ReadMessage {
  CapturedMessage message;
  SipView view;
  std::optional<MessageFacts> facts;

  /// @param captured whose text must stay where it is
  void read(const CapturedMessage& captured);
};

struct OpenCall;

/// A call that is over, whose messages were put together and nothing else. It has all to itself, so that another thread may
/// have it.
class ClosedCall {
 public:
  ClosedCall(std::unique_ptr<OpenCall> open, bool isGivenUp);
  ClosedCall(ClosedCall&& other) noexcept;
  ClosedCall& operator=(ClosedCall&& other) noexcept;
  ~ClosedCall();

  std::size_t bytes() const;  ///< of its messages
  /// Finds what the messages are to each other. To be called once.
  Call analysed();

 private:
  std::unique_ptr<OpenCall> open_;
  bool isGivenUp_;
};

using ClosedCallSink = std::function<void(ClosedCall&&)>;

/// Gets each call once, complete: messages, legs, exchanges, hops, state. Media and troubles are not looked at yet.
using CallSink = std::function<void(Call&&)>;

class CallTable {
 public:
  CallTable(CallOptions options, CallSink sink);
  /// One that leaves it to others to analyse calls, and counts no retransmissions.
  CallTable(CallOptions options, ClosedCallSink sink);
  ~CallTable();
  CallTable(const CallTable&) = delete;
  CallTable& operator=(const CallTable&) = delete;

  /// Takes a message, whose text is copied. Messages come nearly in the order of their times.
  void take(const CapturedMessage& message);
  /// Takes one that was read by another thread perhaps. Its facts are taken away.
  void take(ReadMessage& message);
  /// Gives away what is over, where no message tells that time passes. It is counted from the last message on, as the
  /// clock of a capture may be another one.
  /// @param elapsed microseconds, not negative
  /// @param nowOfEnded the time for calls that have ended, in microseconds since 1970; 0 where it passes like the other
  void passTime(std::int64_t elapsed, std::int64_t nowOfEnded = 0);
  /// Gives away what is open.
  void finish();

  std::size_t messages() const;         ///< that were taken
  std::size_t retransmissions() const;  ///< of the calls that were given away
  std::size_t otherMessages() const;    ///< that belong to no call: REGISTER, OPTIONS and the like
  std::size_t openCalls() const;
  /// The lowest number of an open call; the largest value without any.
  std::size_t lowestOpen() const;

 private:
  class Impl;
  std::size_t retransmissions_ = 0;
  std::unique_ptr<Impl> impl_;
};

}  // namespace tool

#endif
