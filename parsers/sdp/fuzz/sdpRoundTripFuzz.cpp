// What was decoded is written so that decoding it again gives the same text: a fixed point.

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>

#include "sessionDescription.h"
#include "unwritten.h"

namespace {

bool decode(const std::string& text, sDescription& description) {
  unsigned short start = 0;
  unsigned short end = 0;
  return sdp_decodeOpt_r(&description, text.c_str(), SDP_TYPE_UNKNOWN, nullptr, false, start, end) == 0;
}

std::string encode(const sDescription& description) {
  char* text = nullptr;
  int length = 0;
  int size = 0;
  if (sdp_encode_r(&description, SDP_TYPE_UNKNOWN, text, length, size) != 0) std::abort();
  std::string result(text, static_cast<std::size_t>(length));
  std::free(text);
  return result;
}

// The lines of a text that are not empty. It was decoded, so a CR that is not in front of an LF must end it.
std::size_t countLines(std::string_view text) {
  text = text.substr(0, text.find('\0'));
  std::size_t lines = 0;
  for (std::size_t at = 0; at < text.size(); ++at) {
    if (text[at] == '\r' && at + 1 < text.size() && text[at + 1] != '\n') std::abort();
    const bool lineEnd = text[at] == '\r' || text[at] == '\n';
    if (!lineEnd && (at == 0 || text[at - 1] == '\n')) ++lines;
  }
  return lines;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const auto first = std::make_unique_for_overwrite<sDescription>();
  static const auto second = std::make_unique_for_overwrite<sDescription>();
  makeUnwritten(*first);
  makeUnwritten(*second);
  const std::string text(reinterpret_cast<const char*>(data), size);
  if (!decode(text, *first)) return 0;
  const std::string written = encode(*first);
  if (!decode(written, *second) || encode(*second) != written) std::abort();
  if (first->noOfMDs <= SDP_MEDIA_CAPACITY && second->noOfMDs != first->noOfMDs) std::abort();
  if (sdp_isComplete(first.get()) &&
      (!sdp_isComplete(second.get()) || countLines(text) != countLines(written)))
    std::abort();
  sdp_copyDescription(second.get(), first.get());
  if (encode(*second) != written) std::abort();
  return 0;
}
