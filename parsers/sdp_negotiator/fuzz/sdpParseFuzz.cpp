// Parses any text, and gives it to the operations on descriptions and on raw lines.

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "sdpNegotiatorParser.h"
#include "unwritten.h"

namespace {

using P = sdpParserMessage;

void require(bool condition) {
  if (!condition) std::abort();
}

/// A text in a block of exactly its size, so that the sanitizer sees every read behind its NUL.
std::unique_ptr<char[]> exactText(const char* text, std::size_t size, std::size_t room = 0) {
  auto copy = std::make_unique<char[]>(size + 1 + room);
  if (size != 0) std::memcpy(copy.get(), text, size);
  return copy;
}

void requireSound(const sSdpParsedData& data) {
  require(data.mediaType < 64);
  require(data.oLineStart <= data.oLineEnd);
  require(data.h264Profile >= H264_PROFILE_NOT_PRESENT && data.h264Profile <= H264_LEVEL_5_1);
  require(data.sessionMode >= CONNECTION_MODE_SENDONLY && data.sessionMode <= CONNECTION_MODE_CONFRNCE);
  require(data.videoMode <= CONNECTION_MODE_CONFRNCE);
  const auto* end = std::end(data.audioCodec);
  const auto* last = std::find(std::begin(data.audioCodec), end, SDP_NO_CODEC);
  require(std::all_of(data.audioCodec, last, [](std::uint8_t codec) { return codec <= 38; }));
  require(std::all_of(last, end, [](std::uint8_t codec) { return codec == SDP_NO_CODEC; }));
}

void requireSound(const mediaStruct& media) {
  require(media.mediaType == MEDIA_VIDEO || media.mediaType == MEDIA_APPLICATION);
  require(media.mode >= CONNECTION_MODE_SENDONLY && media.mode <= CONNECTION_MODE_CONFRNCE);
  const std::uint32_t transport = media.flags & (MEDIA_FLAG_PLAIN | MEDIA_FLAG_SECURE);
  require(transport != 0);
  for (const codecDetailStruct& detail : media.codecs) require(detail.codec >= 1 && detail.codec <= 13);
}

void walkDescription(const char* text) {
  static const auto description = std::make_unique_for_overwrite<sDescription>();
  makeUnwritten(*description);
  char error[SDP_ERROR_TEXT_SIZE];
  unsigned short start = 0;
  unsigned short end = 0;
  if (sdp_decodeOpt_r(description.get(), text, SDP_TYPE_UNKNOWN, error, false, start, end) != 0) return;
  std::vector<mediaStruct> media;
  require(P::getMedia(*description, media) == 0 && media.size() <= SDP_MEDIA_CAPACITY);
  for (const mediaStruct& each : media) requireSound(each);
  std::vector<mDescription> lines;
  require(P::getMLines(*description, lines) == 0);
  const int number = sdp_getNoOfMDs(description.get());
  require(lines.size() == static_cast<std::size_t>(std::min(number, SDP_MEDIA_CAPACITY)));
}

void setPort(const char* line, std::size_t size, unsigned int port) {
  const std::size_t room = 6;
  const auto edited = exactText(line, size, room);
  char* lineEnd = nullptr;
  const unsigned short status = P::setMediaLinePort(edited.get(), lineEnd, port);
  const std::size_t length = std::strlen(edited.get());
  require(length <= size + room);
  if (status != 0) {
    require(std::memcmp(edited.get(), line, size) == 0);
    return;
  }
  require(lineEnd >= edited.get() && lineEnd < edited.get() + length && *lineEnd == '\n');
}

void walkLine(const char* line, std::size_t size) {
  unsigned short port = 0;
  const auto text = exactText(line, size);
  P::getMediaLinePort(text.get(), port);
  P::isAline4Mode(text.get());
  P::getcLineIPVersion(text.get());
  for (const char* kind : {"audio", "video", ""}) {
    const char* found = P::foundMyMline(static_cast<const char*>(text.get()), kind);
    require(found == nullptr || (found > text.get() && found[-1] == '\n' && *found == 'm'));
  }
  for (const unsigned int to : {0U, 80U, 5004U, 49170U, 4294967295U}) setPort(line, size, to);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const auto raw = exactText(reinterpret_cast<const char*>(data), size);
  const std::size_t length = std::strlen(raw.get());
  const auto text = exactText(raw.get(), length);
  sSdpParsedData parsed;
  parsed.init();
  P::sdpParse(text.get(), SDP_TYPE_OFFER, parsed);
  requireSound(parsed);
  P::sdpDumpMediaInfo(parsed);
  walkDescription(text.get());
  std::size_t lines = 0;
  for (std::size_t at = 0; at < length && lines < 200; ++lines) {
    walkLine(text.get() + at, length - at);
    const void* lineFeed = std::memchr(text.get() + at, '\n', length - at);
    at = lineFeed == nullptr ? length
                             : static_cast<std::size_t>(static_cast<const char*>(lineFeed) - text.get()) + 1;
  }
  return 0;
}
