// Any bytes as a HEP packet, by itself and behind its mark and a length that fits.

#include <cstddef>
#include <cstdint>

#include "captureChecks.h"
#include "captures/hep.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  fuzzing::Delivered delivered;
  tool::takeHep(bytes, 0, delivered.output);
  if (size + tool::kHepHeaderSize > 65535) return 0;
  std::string packet(tool::kHepMark);
  packet += static_cast<char>((size + tool::kHepHeaderSize) >> 8U);
  packet += static_cast<char>(size + tool::kHepHeaderSize);
  packet += bytes;
  fuzzing::require(tool::hepPacketSize(packet) == packet.size(), "a packet has another length");
  tool::takeHep(packet, 0, delivered.output);
  fuzzing::require(delivered.texts.size() <= 2, "a packet has several messages");
  return 0;
}
