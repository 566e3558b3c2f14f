#ifndef SDPNEG_PACKET_READER_H
#define SDPNEG_PACKET_READER_H

#include <cstddef>
#include <string_view>

#include "captures/capturedMessage.h"
#include "captures/fragments.h"
#include "captures/tcpStreams.h"

// From captured frames to messages.

namespace tool {

class PacketReader {
 public:
  /// @param linkType one that isKnownLinkType() knows
  PacketReader(int linkType, CaptureOutput& output);
  PacketReader(const PacketReader&) = delete;
  PacketReader& operator=(const PacketReader&) = delete;

  /// Takes the next frame.
  /// @param bytes what was captured of it
  void take(std::string_view bytes, CaptureTime time);
  /// There is no further frame.
  void flush();

  const Fragments& fragments() const { return fragments_; }
  const TcpStreams& streams() const { return streams_; }

 private:
  void takeJoined(IpPacket packet, CaptureTime time);
  void takeWhole(const IpPacket& packet, CaptureTime time);
  void takeUdp(const IpPacket& packet, CaptureTime time);
  void takeTcp(const IpPacket& packet, CaptureTime time);

  int linkType_;
  CaptureOutput& output_;
  Fragments fragments_;
  TcpStreams streams_;
};

}  // namespace tool

#endif
