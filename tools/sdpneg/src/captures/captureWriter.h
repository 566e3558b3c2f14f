#ifndef SDPNEG_CAPTURE_WRITER_H
#define SDPNEG_CAPTURE_WRITER_H

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string_view>

#include "captures/capturedMessage.h"

// Messages as a capture that any program reads: pcap of raw IP packets.

namespace tool {

/// Composes packets around messages:
/// - what came over UDP, or nobody knows how, is a datagram; what does not fit into one is TCP;
/// - what came over TCP or WebSocket is TCP, a connection's messages one behind the other, and each a stream of its own
///   where its Content-Length does not say where the next one begins;
/// - an address that is not known is 0.0.0.0 or ::, a port 5060, and a time that of the message before.
class CaptureWriter {
 public:
  /// @param write gets the file piece by piece, its header at once and each message when it is written
  explicit CaptureWriter(std::function<void(std::string_view bytes)> write);
  ~CaptureWriter();
  CaptureWriter(const CaptureWriter&) = delete;
  CaptureWriter& operator=(const CaptureWriter&) = delete;

  void write(const CapturedMessage& message);

 private:
  class File;
  /// Hashes of addresses can be made to collide.
  struct Order {
    bool operator()(const Flow& one, const Flow& other) const;
  };

  void writeStream(const Flow& flow, std::string_view text, bool isFramed);

  std::unique_ptr<File> file_;
  std::map<Flow, std::uint32_t, Order> sequences_;  ///< of each stream's next byte
  std::int64_t time_ = 0;
};

}  // namespace tool

#endif
