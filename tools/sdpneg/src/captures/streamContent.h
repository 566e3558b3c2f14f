#ifndef SDPNEG_STREAM_CONTENT_H
#define SDPNEG_STREAM_CONTENT_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "captures/capturedMessage.h"
#include "captures/webSocket.h"

// What goes one way of a TCP connection, in order: SIP, SIP in WebSocket frames, or HEP packets.

namespace tool {

class StreamContent {
 public:
  StreamContent(const Flow& flow, CaptureOutput& output) : flow_(flow), output_(&output) {}

  /// Takes what follows, and delivers the messages that are complete with it.
  void take(std::string_view bytes, CaptureTime time);
  /// What follows does not join what came before: bytes are missing, or the stream ends.
  void breakOff(CaptureTime time);

  /// Whether some bytes would be understood with nothing in front of them.
  static bool isBeginning(std::string_view bytes);

  /// Bytes that are kept.
  std::size_t size() const { return buffer_.size() + webSocket_.size(); }

 private:
  enum class Mode : std::uint8_t { sip, http, webSocket, hep, encrypted };

  /// What became of the front of some bytes.
  struct Step {
    std::size_t size;  ///< so much is done with
    bool needsMore;    ///< what follows is not there yet
  };
  Step step(std::string_view bytes, CaptureTime time);
  Step stepSip(std::string_view bytes, CaptureTime time);
  Step stepMessage(std::string_view bytes, CaptureTime time);
  Step stepHttp(std::string_view bytes);
  Step stepWebSocket(std::string_view bytes, CaptureTime time);
  Step stepHep(std::string_view bytes, CaptureTime time);
  Step skipToBeginning(std::string_view bytes);
  Step needMore(std::size_t wanted = 0, std::size_t searched = 0);
  std::size_t takeSteps(std::string_view bytes, CaptureTime time);
  void deliver(std::string_view text, CaptureTime time, Transport transport, bool isCut);
  bool startOther(std::string_view bytes);

  Flow flow_;
  CaptureOutput* output_;
  Mode mode_ = Mode::sip;
  bool isAtStart_ = true;   ///< of what a sender wrote at once, as far as packets show that
  bool hasUnits_ = false;   ///< something was understood, and what follows should be as well
  std::string buffer_;      ///< begins with what is not complete yet
  std::size_t wanted_ = 0;  ///< bytes that the buffer must have before it is worth while to look at it again
  std::size_t searched_ = 0;  ///< bytes of the buffer that hold no end of a header
  WebSocketReader webSocket_;
};

}  // namespace tool

#endif
