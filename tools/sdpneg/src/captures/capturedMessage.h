#ifndef SDPNEG_CAPTURED_MESSAGE_H
#define SDPNEG_CAPTURED_MESSAGE_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string_view>
#include <utility>

#include "captures/endpoint.h"

// What comes out of a capture: SIP messages one by one, and counts of what could not be read.

namespace tool {

enum class Transport : std::uint8_t { unknown, udp, tcp, webSocket };

/// "UDP", "TCP", "WS" or "unknown".
std::string_view textOf(Transport transport);

/// Microseconds since 1970 began in UTC; nothing where they are not known.
using CaptureTime = std::optional<std::int64_t>;

struct CapturedMessage {
  std::size_t number = 0;  ///< counted from 1, over all inputs that have one output
  CaptureTime time;        ///< of its last byte
  Transport transport = Transport::unknown;
  Flow flow;
  std::string_view text;  ///< from the start line on; serves until the call that brought it ends
  bool isCut = false;     ///< its end was not captured
};

/// What of a capture could not be read, or was given up.
enum class CaptureTrouble : std::uint8_t {
  badPacket,
  fragmentsMissing,
  fragmentsDropped,
  bytesMissing,
  streamsDropped,
  streamUnreadable,
  streamEncrypted,
  messageCut,
  messageTooLong,
  frameCompressed,
  hepUnreadable,
};
inline constexpr std::size_t kCaptureTroubles = static_cast<std::size_t>(CaptureTrouble::hepUnreadable) + 1;

/// In words that follow a number: "packets with ...".
std::string_view textOf(CaptureTrouble trouble);

using MessageSink = std::function<void(const CapturedMessage&)>;

/// Where readers put what they find.
class CaptureOutput {
 public:
  explicit CaptureOutput(MessageSink sink) : sink_(std::move(sink)) {}

  void deliver(CapturedMessage message) {
    message.number = ++messages_;
    if (message.isCut) note(CaptureTrouble::messageCut);
    sink_(message);
  }
  void note(CaptureTrouble trouble) { ++troubles_[static_cast<std::size_t>(trouble)]; }

  std::size_t messages() const { return messages_; }
  std::size_t count(CaptureTrouble trouble) const { return troubles_[static_cast<std::size_t>(trouble)]; }

 private:
  MessageSink sink_;
  std::size_t messages_ = 0;
  std::array<std::size_t, kCaptureTroubles> troubles_{};
};

/// Bytes that a message may have; longer ones are no messages.
inline constexpr std::size_t kMaxMessageSize = std::size_t{1024} * 1024;

}  // namespace tool

#endif
