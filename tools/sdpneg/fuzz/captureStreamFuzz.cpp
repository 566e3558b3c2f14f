// What goes one way of a connection, in pieces of a size that the first byte tells: SIP, WebSocket, HEP, or anything. Frames
// by themselves are the same however they are cut.

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "captureChecks.h"
#include "captures/streamContent.h"
#include "captures/webSocket.h"

namespace {

using tool::WebSocketReader;

/// The messages of frames that come in pieces.
std::vector<std::string> framesOf(std::string_view bytes, std::size_t piece) {
  std::vector<std::string> messages;
  WebSocketReader reader;
  std::size_t there = std::min(piece, bytes.size());
  for (;;) {
    const WebSocketReader::Result result = reader.take(bytes.substr(0, there));
    if (result.outcome == WebSocketReader::Outcome::unreadable) break;
    if (result.outcome == WebSocketReader::Outcome::needsMore) {
      fuzzing::require(result.size > there, "no more is wanted than there is");
      if (there == bytes.size()) break;
      there = std::min(there + piece, bytes.size());
      continue;
    }
    fuzzing::require(result.size > 0 && result.size <= there, "a frame is longer than what there is");
    if (!result.message.empty()) messages.emplace_back(result.message);
    bytes.remove_prefix(result.size);
    there -= result.size;
  }
  return messages;
}

void takeContent(std::string_view bytes, std::size_t piece) {
  fuzzing::Delivered delivered;
  tool::StreamContent content({}, delivered.output);
  for (std::size_t at = 0; at < bytes.size(); at += piece) {
    content.take(bytes.substr(at, piece), static_cast<std::int64_t>(at));
    fuzzing::require(content.size() <= 4 * bytes.size() + 20000, "more is kept than came");
  }
  content.breakOff(0);
  fuzzing::require(content.size() < 5000, "something is kept behind the end");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  const std::string_view bytes(reinterpret_cast<const char*>(data) + 1, size - 1);
  const std::size_t piece = std::size_t{data[0]} + 1;
  takeContent(bytes, piece);
  takeContent(bytes, bytes.size() + 1);
  fuzzing::require(framesOf(bytes, piece) == framesOf(bytes, bytes.size() + 1),
                   "frames are read in another way");
  return 0;
}
