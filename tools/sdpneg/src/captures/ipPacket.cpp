#include "captures/ipPacket.h"

#include <algorithm>

#include "captures/byteReader.h"

namespace tool {
namespace {

constexpr std::size_t kIp4HeaderSize = 20;
constexpr std::size_t kFragmentUnit = 8;

enum ExtensionHeader : std::uint8_t {
  hopByHop = 0,
  routing = 43,
  fragmentHeader = 44,
  authentication = 51,
  destinationOptions = 60,
  mobility = 135,
  hostIdentity = 139,
  shim = 140,
};

/// @param told what the headers say that the packet has; 0 is what a sender leaves to its network card
/// @param used what of it the headers take
/// @return whether they fit in it
bool setPayload(IpPacket& packet, std::string_view bytes, std::size_t told, std::size_t used) {
  if (told != 0 && told < used) return false;
  packet.payloadSize = told == 0 ? bytes.size() : told - used;
  packet.payload = bytes.substr(0, packet.payloadSize);  // behind it is padding
  return true;
}

std::optional<IpPacket> parseIp4(std::string_view bytes) {
  ByteReader reader(bytes);
  IpPacket packet;
  const std::size_t headerSize = (reader.u8() & 0x0FU) * std::size_t{4};
  reader.skip(1);
  const std::size_t totalSize = reader.u16();
  const std::uint32_t id = reader.u16();
  const unsigned int flagsAndOffset = reader.u16();
  reader.skip(1);
  packet.protocol = reader.u8();
  reader.skip(2);
  packet.source = addressOfBytes(reader.take(4));
  packet.destination = addressOfBytes(reader.take(4));
  if (headerSize < kIp4HeaderSize) return std::nullopt;
  reader.skip(headerSize - kIp4HeaderSize);
  if (!reader.isGood() || !setPayload(packet, reader.rest(), totalSize, headerSize)) return std::nullopt;
  const bool hasMore = (flagsAndOffset & 0x2000U) != 0;
  const std::size_t offset = (flagsAndOffset & 0x1FFFU) * kFragmentUnit;
  if (hasMore || offset != 0) packet.fragment = FragmentPlace{id, offset, !hasMore};
  return packet;
}

bool isPassedOver(std::uint8_t header) {
  return header == hopByHop || header == routing || header == authentication ||
         header == destinationOptions || header == mobility || header == hostIdentity || header == shim;
}

/// Goes behind the header that `packet.protocol` names.
void passOver(ByteReader& reader, IpPacket& packet) {
  const bool isAuthentication = packet.protocol == authentication;
  packet.protocol = reader.u8();
  const std::size_t length = reader.u8();
  reader.skip(isAuthentication ? (length + 2) * 4 - 2 : (length + 1) * 8 - 2);
}

/// Goes behind all headers that stand in front of the protocol above.
void passOverAll(ByteReader& reader, IpPacket& packet) {
  while (reader.isGood() && isPassedOver(packet.protocol)) passOver(reader, packet);
}

void takeFragmentHeader(ByteReader& reader, IpPacket& packet) {
  packet.protocol = reader.u8();
  reader.skip(1);
  const unsigned int offsetAndMore = reader.u16();
  const std::uint32_t id = reader.u32();
  const FragmentPlace place{id, offsetAndMore & 0xFFF8U, (offsetAndMore & 1U) == 0};
  if (place.offset != 0 || !place.isLast) packet.fragment = place;
}

std::optional<IpPacket> parseIp6(std::string_view bytes) {
  ByteReader reader(bytes);
  IpPacket packet;
  reader.skip(4);
  const std::size_t size = reader.u16();
  packet.protocol = reader.u8();
  reader.skip(1);
  packet.source = addressOfBytes(reader.take(16));
  packet.destination = addressOfBytes(reader.take(16));
  const std::size_t there = reader.left();
  passOverAll(reader, packet);
  if (packet.protocol == fragmentHeader) takeFragmentHeader(reader, packet);
  // What follows the header of a fragment is of the whole packet, and in the first fragment alone.
  if (!packet.fragment) passOverAll(reader, packet);
  if (!reader.isGood() || !setPayload(packet, reader.rest(), size, there - reader.left()))
    return std::nullopt;
  return packet;
}

}  // namespace

bool passOverExtensions(IpPacket& packet) {
  if (packet.source.family != AddressFamily::ip6) return true;
  ByteReader reader(packet.payload);
  passOverAll(reader, packet);
  packet.payloadSize -= packet.payload.size() - reader.left();
  packet.payload = reader.rest();
  return reader.isGood();
}

std::optional<IpPacket> parseIpPacket(std::string_view bytes) {
  if (bytes.empty()) return std::nullopt;
  const unsigned int version = static_cast<unsigned char>(bytes.front()) >> 4U;
  if (version == 4) return parseIp4(bytes);
  return version == 6 ? parseIp6(bytes) : std::nullopt;
}

}  // namespace tool
