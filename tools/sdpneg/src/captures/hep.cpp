#include "captures/hep.h"

#include <algorithm>
#include <cstdint>

#include "captures/byteReader.h"
#include "captures/sipStart.h"

namespace tool {
namespace {

/// The chunks of the generic kind that matter here.
enum Chunk : std::uint16_t {
  protocol = 2,
  ip4Source = 3,
  ip4Destination = 4,
  ip6Source = 5,
  ip6Destination = 6,
  sourcePort = 7,
  destinationPort = 8,
  seconds = 9,
  microseconds = 10,
  payload = 15,
  compressedPayload = 16,
};

constexpr std::uint16_t kGeneric = 0;
constexpr std::size_t kChunkHeaderSize = 6;
constexpr unsigned int kTcp = 6;
constexpr unsigned int kUdp = 17;

struct Packet {
  CapturedMessage message;
  std::optional<std::uint32_t> seconds;
  std::uint32_t microseconds = 0;
  bool isCompressed = false;
};

Transport transportOf(unsigned int protocol) {
  if (protocol == kUdp) return Transport::udp;
  return protocol == kTcp ? Transport::tcp : Transport::unknown;
}

void takeChunk(std::uint16_t type, std::string_view content, Packet& packet) {
  ByteReader reader(content);
  switch (type) {
    case Chunk::protocol:
      packet.message.transport = transportOf(reader.u8());
      break;
    case ip4Source:
    case ip6Source:
      packet.message.flow.source.address = addressOfBytes(content);
      break;
    case ip4Destination:
    case ip6Destination:
      packet.message.flow.destination.address = addressOfBytes(content);
      break;
    case sourcePort:
      packet.message.flow.source.port = reader.u16();
      break;
    case destinationPort:
      packet.message.flow.destination.port = reader.u16();
      break;
    case Chunk::seconds:
      if (content.size() == 4) packet.seconds = reader.u32();
      break;
    case Chunk::microseconds:
      packet.microseconds = reader.u32();
      break;
    case payload:
      packet.message.text = content;
      break;
    case compressedPayload:
      packet.isCompressed = true;
      break;
    default:
      break;
  }
}

/// @return whether all chunks are whole
bool takeChunks(std::string_view bytes, Packet& packet) {
  ByteReader reader(bytes);
  while (reader.left() != 0) {
    const std::uint16_t vendor = reader.u16();
    const std::uint16_t type = reader.u16();
    const std::size_t size = reader.u16();
    if (!reader.isGood() || size < kChunkHeaderSize) return false;
    const std::size_t there = std::min(size - kChunkHeaderSize, reader.left());
    packet.message.isCut = there < size - kChunkHeaderSize;
    const std::string_view content = reader.take(there);
    // Of what is cut, the payload alone is of use.
    if (vendor == kGeneric && (!packet.message.isCut || type == payload)) takeChunk(type, content, packet);
  }
  return true;
}

}  // namespace

std::optional<std::size_t> hepPacketSize(std::string_view bytes) {
  ByteReader reader(bytes);
  const bool hasMark = reader.take(kHepMark.size()) == kHepMark;
  const std::size_t size = reader.u16();
  if (!hasMark || !reader.isGood() || size < kHepHeaderSize) return std::nullopt;
  return size;
}

void takeHep(std::string_view bytes, CaptureTime time, CaptureOutput& output) {
  Packet packet;
  const std::optional<std::size_t> size = hepPacketSize(bytes);
  if (!size || !takeChunks(bytes.substr(kHepHeaderSize, *size - kHepHeaderSize), packet) ||
      packet.isCompressed) {
    output.note(CaptureTrouble::hepUnreadable);
  }
  packet.message.time = time;
  if (packet.seconds) packet.message.time = std::int64_t{*packet.seconds} * 1000000 + packet.microseconds;
  std::string_view& text = packet.message.text;
  text.remove_prefix(std::min(text.find_first_not_of("\r\n"), text.size()));
  if (beginningOf(text) == Beginning::whole) output.deliver(packet.message);
}

}  // namespace tool
