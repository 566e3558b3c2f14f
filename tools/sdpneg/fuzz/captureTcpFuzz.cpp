// Messages that a stream has, and how it is cut into segments, in which order they come and how often: whatever the way,
// each message is delivered once and in its order. The first byte tells how many messages there are and the bytes behind
// it what they are; then two bytes tell where a segment begins and one how long it is.

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "captureChecks.h"
#include "captures/byteReader.h"
#include "captures/tcpStreams.h"

namespace {

constexpr std::size_t kMostMessages = 12;
/// Fewer than are kept behind a gap.
constexpr std::size_t kMostSegments = 200;
constexpr std::size_t kLongestSegment = 2000;

std::string messageOf(std::uint8_t kind, std::size_t number) {
  const std::string body(kind % 16U * 100U, static_cast<char>('a' + kind % 26));
  const std::string start = kind % 2 == 0 ? "SIP/2.0 200 OK\r\n" : "MESSAGE sip:b SIP/2.0\r\n";
  return start + "i: " + std::to_string(number) + "\r\nl: " + std::to_string(body.size()) + "\r\n\r\n" + body;
}

class Stream {
 public:
  Stream(std::uint32_t first, tool::TcpStreams& streams) : first_(first), streams_(streams) {
    tool::TcpSegment segment;
    segment.sequence = first - 1;
    segment.isSyn = true;
    streams_.take(segment);
  }

  void take(std::string_view all, std::size_t at, std::size_t length) {
    tool::TcpSegment segment;
    segment.sequence = first_ + static_cast<std::uint32_t>(at);
    segment.payload = all.substr(at, length);
    segment.payloadSize = segment.payload.size();
    streams_.take(segment);
  }

 private:
  std::uint32_t first_;
  tool::TcpStreams& streams_;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  tool::ByteReader reader({reinterpret_cast<const char*>(data), size});
  std::string all;
  std::vector<std::string> expected;
  const std::size_t count = reader.u8() % kMostMessages;
  for (std::size_t i = 0; i < count; ++i) {
    const std::uint8_t kind = reader.u8();
    expected.push_back(messageOf(kind, i));
    all += expected.back() + (kind % 3 == 0 ? "\r\n\r\n" : "");
  }
  fuzzing::Delivered delivered;
  tool::TcpStreams streams(delivered.output);
  Stream stream(reader.u8() * 0x01010101U, streams);
  for (std::size_t i = 0; i < kMostSegments && reader.left() != 0 && !all.empty(); ++i) {
    const std::size_t at = reader.u16() % all.size();
    stream.take(all, at, 1 + reader.u8() * std::size_t{8});
  }
  for (std::size_t at = 0; at < all.size(); at += kLongestSegment) stream.take(all, at, kLongestSegment);
  fuzzing::require(delivered.texts == expected, "a stream is put together in another way");
  streams.flush();
  fuzzing::require(delivered.texts == expected && streams.size() == 0, "something is left of a stream");
  return 0;
}
