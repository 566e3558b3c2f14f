#ifndef SDPNEG_WEB_SOCKET_H
#define SDPNEG_WEB_SOCKET_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

// WebSocket frames without TLS (RFC 6455), as SIP goes in them (RFC 7118): a message each.

namespace tool {

class WebSocketReader {
 public:
  enum class Outcome : std::uint8_t {
    taken,       ///< a frame of `size` bytes
    compressed,  ///< such a frame that cannot be read
    needsMore,   ///< at least `size` bytes
    unreadable,  ///< what is no frame, or none of a size that messages have
  };
  struct Result {
    Outcome outcome;
    std::size_t size;
    std::string_view message;  ///< what is complete with this frame; serves until the next call
  };

  /// Takes the frame that some bytes begin with.
  Result take(std::string_view bytes);
  /// Forgets the frames of a message that is not complete.
  void reset();

  /// Bytes that are kept.
  std::size_t size() const { return message_.capacity(); }
  /// Whether a message is not complete.
  bool isOpen() const { return isOpen_; }

  /// Whether some bytes begin with a frame in which a SIP message begins.
  static bool holdsSip(std::string_view bytes);

 private:
  std::string message_;
  bool isOpen_ = false;
  bool isDone_ = false;        ///< the message was given out
  bool isCompressed_ = false;  ///< what is open cannot be read
};

}  // namespace tool

#endif
