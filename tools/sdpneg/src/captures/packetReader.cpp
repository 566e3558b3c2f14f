#include "captures/packetReader.h"

#include <algorithm>
#include <optional>

#include "captures/byteReader.h"
#include "captures/hep.h"
#include "captures/linkLayer.h"
#include "captures/sipStart.h"
#include "text/search.h"

namespace tool {
namespace {

constexpr std::size_t kUdpHeaderSize = 8;
constexpr std::size_t kTcpHeaderSize = 20;

enum TcpFlag : unsigned int { fin = 0x01, syn = 0x02, reset = 0x04 };

}  // namespace

PacketReader::PacketReader(int linkType, CaptureOutput& output)
    : linkType_(linkType),
      output_(output),
      fragments_(output, [this](const IpPacket& packet, CaptureTime time) { takeJoined(packet, time); }),
      streams_(output) {}

void PacketReader::take(std::string_view bytes, CaptureTime time) {
  const LinkPayload frame = linkPayload(linkType_, bytes);
  if (!frame.isReadable) return output_.note(CaptureTrouble::badPacket);
  if (frame.ip.empty()) return;
  const std::optional<IpPacket> packet = parseIpPacket(frame.ip);
  if (!packet) return output_.note(CaptureTrouble::badPacket);
  if (packet->fragment) {
    fragments_.take(*packet, time);
  } else {
    takeWhole(*packet, time);
  }
}

void PacketReader::flush() {
  fragments_.flush();
  streams_.flush();
}

void PacketReader::takeJoined(IpPacket packet, CaptureTime time) {
  if (!passOverExtensions(packet)) return output_.note(CaptureTrouble::badPacket);
  takeWhole(packet, time);
}

void PacketReader::takeWhole(const IpPacket& packet, CaptureTime time) {
  if (packet.protocol == kProtocolUdp) takeUdp(packet, time);
  if (packet.protocol == kProtocolTcp) takeTcp(packet, time);
}

void PacketReader::takeUdp(const IpPacket& packet, CaptureTime time) {
  ByteReader reader(packet.payload);
  CapturedMessage message;
  message.flow.source = {packet.source, reader.u16()};
  message.flow.destination = {packet.destination, reader.u16()};
  const std::size_t size = reader.u16();
  reader.skip(2);
  if (!reader.isGood() || (size != 0 && size < kUdpHeaderSize))
    return output_.note(CaptureTrouble::badPacket);
  std::string_view datagram = reader.rest();
  message.isCut = packet.isCut();
  if (size != 0) {
    message.isCut = datagram.size() < size - kUdpHeaderSize;
    datagram = datagram.substr(0, size - kUdpHeaderSize);
  }
  if (sdpneg::startsWith(datagram, kHepMark)) return takeHep(datagram, time, output_);
  datagram.remove_prefix(std::min(datagram.find_first_not_of("\r\n"), datagram.size()));
  if (beginningOf(datagram) != Beginning::whole) return;
  message.time = time;
  message.transport = Transport::udp;
  message.text = datagram;
  output_.deliver(message);
}

void PacketReader::takeTcp(const IpPacket& packet, CaptureTime time) {
  ByteReader reader(packet.payload);
  TcpSegment segment;
  segment.flow.source = {packet.source, reader.u16()};
  segment.flow.destination = {packet.destination, reader.u16()};
  segment.sequence = reader.u32();
  reader.skip(4);
  const std::size_t headerSize = (reader.u8() >> 4U) * std::size_t{4};
  const unsigned int flags = reader.u8();
  reader.skip(6);
  if (headerSize < kTcpHeaderSize || packet.payloadSize < headerSize) {
    return output_.note(CaptureTrouble::badPacket);
  }
  reader.skip(headerSize - kTcpHeaderSize);
  if (!reader.isGood()) return output_.note(CaptureTrouble::badPacket);
  segment.isFin = (flags & fin) != 0;
  segment.isSyn = (flags & syn) != 0;
  segment.isReset = (flags & reset) != 0;
  segment.payload = reader.rest();
  segment.payloadSize = packet.payloadSize - headerSize;
  segment.time = time;
  streams_.take(segment);
}

}  // namespace tool
