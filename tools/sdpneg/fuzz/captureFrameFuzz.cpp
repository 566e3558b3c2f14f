// Frames of a link type that the first byte chooses: two bytes of length, one of time, and the frame.

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

#include "captureChecks.h"
#include "captures/byteReader.h"
#include "captures/linkLayer.h"
#include "captures/packetReader.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  constexpr std::array<int, 8> kLinkTypes = {1, 0, 12, 108, 113, 276, 228, 229};
  tool::ByteReader reader({reinterpret_cast<const char*>(data), size});
  const int linkType = kLinkTypes[reader.u8() % kLinkTypes.size()];
  fuzzing::require(tool::isKnownLinkType(linkType), "a link type is not known");
  fuzzing::Delivered delivered;
  tool::PacketReader packets(linkType, delivered.output);
  std::int64_t time = 0;
  while (reader.left() != 0) {
    const std::size_t length = reader.u16();
    time += reader.u8() * std::int64_t{1000000};
    packets.take(reader.take(std::min(length, reader.left())), time);
    fuzzing::require(packets.streams().size() < size * 200 + 100000, "streams keep more than they should");
    fuzzing::require(packets.fragments().size() < size * 200 + 100000,
                     "fragments keep more than they should");
  }
  packets.flush();
  fuzzing::require(packets.streams().size() == 0 && packets.streams().count() == 0, "a stream stays open");
  fuzzing::require(packets.fragments().size() == 0 && packets.fragments().count() == 0, "a fragment stays");
  return 0;
}
