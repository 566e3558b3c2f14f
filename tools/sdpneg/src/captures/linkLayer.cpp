#include "captures/linkLayer.h"

#include <pcap/dlt.h>

#include <cstdint>

#include "captures/byteReader.h"

namespace tool {
namespace {

// The names are libpcap's; this one is missing in older ones of its headers.
#ifdef DLT_LINUX_SLL2
constexpr int kLinuxCooked2 = DLT_LINUX_SLL2;
#else
constexpr int kLinuxCooked2 = 276;
#endif

constexpr std::uint16_t kIp4 = 0x0800;
constexpr std::uint16_t kIp6 = 0x86DD;

bool isVlanTag(std::uint16_t type) { return type == 0x8100 || type == 0x88A8 || type == 0x9100; }

/// What stands behind the type of a frame, VLAN tags in front of it.
LinkPayload byEtherType(ByteReader& reader) {
  std::uint16_t type = reader.u16();
  while (isVlanTag(type)) {
    reader.skip(2);
    type = reader.u16();
  }
  const bool isIp = type == kIp4 || type == kIp6;
  return {reader.isGood(), isIp ? reader.rest() : std::string_view()};
}

LinkPayload ofEthernet(ByteReader& reader) {
  reader.skip(12);
  return byEtherType(reader);
}

LinkPayload ofLinuxCooked(ByteReader& reader) {
  reader.skip(14);
  return byEtherType(reader);
}

/// The second version has the type in front, and tags stand behind the whole header.
LinkPayload ofLinuxCooked2(ByteReader& reader) {
  const std::uint16_t type = reader.u16();
  reader.skip(18);
  const bool isIp = type == kIp4 || type == kIp6;
  if (!isVlanTag(type)) return {reader.isGood(), isIp ? reader.rest() : std::string_view()};
  reader.skip(2);
  return byEtherType(reader);
}

/// The family of addresses in whichever byte order, as systems number them.
LinkPayload ofLoopback(ByteReader& reader) {
  std::uint32_t family = reader.u32();
  if (family > 0xFFFF) family >>= 24U;
  const bool isIp = family == 2 || family == 10 || family == 24 || family == 28 || family == 30;
  return {reader.isGood(), isIp ? reader.rest() : std::string_view()};
}

}  // namespace

bool isKnownLinkType(int linkType) {
  switch (linkType) {
    case DLT_EN10MB:
    case DLT_NULL:
    case DLT_LOOP:
    case DLT_RAW:
    case DLT_IPV4:
    case DLT_IPV6:
    case DLT_LINUX_SLL:
    case kLinuxCooked2:
      return true;
    default:
      return false;
  }
}

LinkPayload linkPayload(int linkType, std::string_view frame) {
  ByteReader reader(frame);
  switch (linkType) {
    case DLT_EN10MB:
      return ofEthernet(reader);
    case DLT_NULL:
    case DLT_LOOP:
      return ofLoopback(reader);
    case DLT_LINUX_SLL:
      return ofLinuxCooked(reader);
    case kLinuxCooked2:
      return ofLinuxCooked2(reader);
    case DLT_RAW:
    case DLT_IPV4:
    case DLT_IPV6:
      return {true, frame};
    default:
      return {false, {}};
  }
}

}  // namespace tool
