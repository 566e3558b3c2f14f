#include "captures/webSocket.h"

#include <algorithm>
#include <optional>

#include "captures/byteReader.h"
#include "captures/capturedMessage.h"
#include "captures/sipStart.h"

namespace tool {
namespace {

constexpr unsigned int kFinal = 0x80;
constexpr unsigned int kCompressed = 0x40;
constexpr unsigned int kReserved = 0x30;
constexpr unsigned int kMasked = 0x80;
constexpr std::size_t kMaxControlPayload = 125;

enum Opcode : std::uint8_t { continuation = 0, text = 1, binary = 2, close = 8, ping = 9, pong = 10 };

struct FrameHeader {
  unsigned int flags = 0;
  unsigned int opcode = 0;
  std::size_t size = 0;  ///< of the header itself
  std::uint64_t payload = 0;
  std::string_view mask;  ///< empty where there is none

  bool isControl() const { return opcode >= close; }
  bool isFinal() const { return (flags & kFinal) != 0; }
};

/// Nothing where the header is not complete.
std::optional<FrameHeader> parseHeader(std::string_view bytes) {
  ByteReader reader(bytes);
  FrameHeader header;
  const unsigned int first = reader.u8();
  header.flags = first & 0xF0U;
  header.opcode = first & 0x0FU;
  const unsigned int second = reader.u8();
  const unsigned int length = second & 0x7FU;
  header.payload = length == 126 ? reader.u16() : length == 127 ? reader.u64() : length;
  if ((second & kMasked) != 0) header.mask = reader.take(4);
  header.size = bytes.size() - reader.left();
  if (!reader.isGood()) return std::nullopt;
  return header;
}

bool isFrame(const FrameHeader& header) {
  if ((header.flags & kReserved) != 0 || header.payload > kMaxMessageSize) return false;
  if (!header.isControl()) return header.opcode <= binary;
  return header.opcode <= pong && header.isFinal() && header.payload <= kMaxControlPayload;
}

void appendUnmasked(std::string& message, std::string_view payload, std::string_view mask) {
  if (mask.empty()) {
    message.append(payload);
    return;
  }
  const std::size_t begin = message.size();
  message.append(payload);
  for (std::size_t i = 0; i < payload.size(); ++i) {
    message[begin + i] = static_cast<char>(message[begin + i] ^ mask[i % 4]);
  }
}

}  // namespace

WebSocketReader::Result WebSocketReader::take(std::string_view bytes) {
  if (isDone_) reset();
  const std::optional<FrameHeader> header = parseHeader(bytes);
  if (!header) return {Outcome::needsMore, bytes.size() + 1, {}};
  const bool continues = header->opcode == continuation;
  if (!isFrame(*header) || (!header->isControl() && continues != isOpen_)) {
    return {Outcome::unreadable, 0, {}};
  }
  const std::size_t size = header->size + static_cast<std::size_t>(header->payload);
  if (bytes.size() < size) return {Outcome::needsMore, size, {}};
  if (header->isControl()) return {Outcome::taken, size, {}};
  if (!continues) isCompressed_ = (header->flags & kCompressed) != 0;
  isOpen_ = !header->isFinal();
  if (isCompressed_) return {Outcome::compressed, size, {}};
  if (message_.size() + header->payload > kMaxMessageSize) return {Outcome::unreadable, 0, {}};
  appendUnmasked(message_, bytes.substr(header->size, static_cast<std::size_t>(header->payload)),
                 header->mask);
  isDone_ = header->isFinal();
  return {Outcome::taken, size, isDone_ ? std::string_view(message_) : std::string_view()};
}

void WebSocketReader::reset() {
  constexpr std::size_t kUsualSize = 4096;
  if (message_.capacity() > kUsualSize) std::string().swap(message_);
  message_.clear();
  isOpen_ = isDone_ = isCompressed_ = false;
}

bool WebSocketReader::holdsSip(std::string_view bytes) {
  constexpr std::size_t kTelling = 12;  // as many as "SIP/2.0 200 " has
  constexpr std::size_t kLookedAt = 512;
  const std::optional<FrameHeader> header = parseHeader(bytes.substr(0, kLookedAt));
  if (!header || !isFrame(*header) || header->isControl() || header->opcode == continuation) return false;
  if ((header->flags & kCompressed) != 0 || header->payload < kTelling) return false;
  const std::size_t there = std::min<std::uint64_t>(header->payload, kLookedAt);
  std::string front;
  appendUnmasked(front, bytes.substr(header->size, there), header->mask);
  return front.size() >= kTelling && beginningOf(front) != Beginning::none;
}

}  // namespace tool
