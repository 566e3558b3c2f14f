// Fragments of one packet in any order and over each other, beside a plain model: three bytes tell where one stands, how
// long it is, and whether it is the last one.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>

#include "captureChecks.h"
#include "captures/byteReader.h"
#include "captures/fragments.h"

namespace {

/// Byte by byte; what came first stays.
class Model {
 public:
  /// @return the packet when it is complete with this
  std::optional<std::string> take(std::size_t offset, std::string_view bytes, bool isLast) {
    for (std::size_t i = 0; i < bytes.size(); ++i) bytes_.emplace(offset + i, bytes[i]);
    if (isLast && end_ == 0) end_ = offset + bytes.size();
    if (end_ == 0 || bytes_.size() < end_) return std::nullopt;
    std::string packet;
    for (const auto& [place, byte] : bytes_) {
      if (place != packet.size() || place == end_) break;
      packet += byte;
    }
    bytes_.clear();
    end_ = 0;
    return packet;
  }

 private:
  std::map<std::size_t, char> bytes_;
  std::size_t end_ = 0;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  tool::ByteReader reader({reinterpret_cast<const char*>(data), size});
  fuzzing::Delivered delivered;
  std::vector<std::string> packets;
  const auto keep = [&packets](const tool::IpPacket& packet, tool::CaptureTime) {
    packets.emplace_back(packet.payload);
  };
  tool::Fragments fragments(delivered.output, keep);
  Model model;
  std::vector<std::string> expected;
  // Fewer than are kept of a packet.
  for (std::size_t i = 0; i < 500 && reader.left() > 3; ++i) {
    tool::IpPacket packet;
    const std::size_t offset = std::size_t{reader.u8()} * 8;
    const std::size_t length = 1 + reader.u8() % 64U;
    const bool isLast = reader.u8() % 8 == 0;
    packet.fragment = tool::FragmentPlace{1, offset, isLast};
    packet.payload = reader.take(std::min(length, reader.left()));
    packet.payloadSize = packet.payload.size();
    fragments.take(packet, 0);
    if (const auto whole = model.take(offset, packet.payload, isLast); whole && !whole->empty()) {
      expected.push_back(*whole);
    }
  }
  fuzzing::require(packets == expected, "a packet is put together in another way");
  return 0;
}
