// Decodes any bytes, whole and line by line, and walks all that the getters give.

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>

#include "sessionDescription.h"
#include "unwritten.h"

namespace {

std::size_t lengthOf(const char* text) { return text != nullptr ? std::strlen(text) : 0; }

std::size_t walkMedia(const mDescription& media) {
  std::size_t sum = lengthOf(sdp_MgetPort(&media.mLine)) + lengthOf(sdp_MgetTransport(&media.mLine));
  for (int i = -1; i <= sdp_MgetNoOfFormats(&media.mLine); ++i)
    sum += lengthOf(sdp_MgetFormat(&media.mLine, i));
  for (int i = -1; i <= sdp_AgetNoOfAs(&media.aLine); ++i) {
    sum +=
        lengthOf(sdp_AgetAttributeField(&media.aLine, i)) + lengthOf(sdp_AgetAttributeValue(&media.aLine, i));
  }
  for (int i = -1; i <= sdp_CgetNoOfCs(&media.cLine); ++i) sum += lengthOf(sdp_CgetAddress(&media.cLine, i));
  return sum + lengthOf(sdp_AfindAttribute(&media.aLine, "rtpmap")) + sdp_BgetBandwidthValue(&media.bLine);
}

void require(bool condition) {
  if (!condition) std::abort();
}

template <typename Record, typename Decode>
void decodeLine(Record& record, const std::string& text, Decode decode) {
  char error[SDP_ERROR_TEXT_SIZE];
  int line = -1;
  int column = -1;
  const char* position = text.c_str();
  const unsigned short status = decode(&record, position, error, line, column);
  require(position >= text.c_str() && position <= text.c_str() + text.size());
  require(std::memchr(error, 0, sizeof error) != nullptr && (status == 0) == (error[0] == '\0'));
  require(status == 0 ? line == 0 && column == 0 : line == 1 && column >= 1 && position == text.c_str());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const auto description = std::make_unique_for_overwrite<sDescription>();
  makeUnwritten(*description);
  // An exactly sized copy lets the sanitizer see every read behind the NUL.
  const auto text = std::make_unique<char[]>(size + 1);
  if (size != 0) std::memcpy(text.get(), data, size);
  text[size] = '\0';
  char error[SDP_ERROR_TEXT_SIZE];
  unsigned short start = 1;
  unsigned short end = 1;
  const unsigned short status =
      sdp_decodeOpt_r(description.get(), text.get(), SDP_TYPE_UNKNOWN, error, false, start, end);
  // The message is a text within its buffer, and the record is empty after a failure.
  require(std::memchr(error, 0, sizeof error) != nullptr && (status == 0) == (error[0] == '\0'));
  require(start <= end && end <= std::strlen(text.get()));
  require(status == 0 || description->noOfMDs == 0);
  std::size_t sum = 0;
  for (int i = 0; i < sdp_getNoOfMDs(description.get()) && i < SDP_MEDIA_CAPACITY; ++i) {
    sum += walkMedia(description->media[i]);
  }
  const std::string body(text.get());
  m_line media;
  decodeLine(media, "m=" + body, sdp_Mdecode_r);
  b_line bandwidth;
  decodeLine(bandwidth, "b=" + body, sdp_Bdecode_r);
  return sum == SIZE_MAX ? 1 : 0;
}
