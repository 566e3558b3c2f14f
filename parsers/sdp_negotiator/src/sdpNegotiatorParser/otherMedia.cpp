#include <algorithm>
#include <iterator>

#include "mediaAddress.h"
#include "refusal.h"
#include "sdpNegotiatorParser.h"
#include "vocabulary.h"

// Media other than audio: video, fax, messages, text.

namespace sdpneg {
namespace {

/// The first video m-line in use that is not inactive. Each one in use up to it leaves its direction.
const mDescription* chooseVideo(sSdpParsedData& data, sDescription& description, int noOfMDs) {
  const unsigned char session =
      firstGiven(sdpParserMessage::getConnectionMode(&description.aLine), CONNECTION_MODE_SENDRECV);
  for (const mDescription& media : mediaOf(description, noOfMDs)) {
    if (media.mLine.mediaType != MEDIA_VIDEO) continue;
    description.mediaKinds |= MEDIA_VIDEO;
    if (portOf(media) == 0) continue;
    data.videoMode = firstGiven(sdpParserMessage::getConnectionMode(&media.aLine), session);
    if (data.videoMode != CONNECTION_MODE_INACTIVE) return &media;
  }
  return nullptr;
}

/// The first m-line of a kind; null when there is none.
const mDescription* firstOf(const sDescription& description, int noOfMDs, eMediaType kind) {
  for (const mDescription& media : mediaOf(description, noOfMDs)) {
    if (media.mLine.mediaType == kind) return &media;
  }
  return nullptr;
}

/// Notes a kind whose first m-line is in use; those behind it do not count.
unsigned short noteFirst(sSdpParsedData& data, sDescription& description, int noOfMDs, eMediaType kind) {
  const mDescription* first = firstOf(description, noOfMDs, kind);
  if (first == nullptr) return 0;
  description.mediaKinds |= kind;
  if (portOf(*first) != 0) data.mediaType |= kind;
  return 0;
}

bool hasT38Format(const m_line& line) {
  const int count = std::min(sdp_MgetNoOfFormats(&line), MAX_SDP_NEGOTIATOR_AUDIO_CODECS);
  for (int i = 0; i < count; ++i) {
    if (viewOf(sdp_MgetFormat(&line, i)) == "t38") return true;
  }
  return false;
}

void takeT38(sSdpParsedData& data, const mDescription& image) {
  for (const a_line::entry& line : entriesOf(&image.aLine)) {
    const std::string_view value = line.value;
    if (!isNamed(line, "T38MaxBitRate") || value.empty()) continue;
    data.T38MaxBitRate = numberOrZero<std::uint32_t>(value);
  }
  if (!hasT38Format(image.mLine)) return;
  std::uint8_t* const end = std::end(data.audioCodec);
  std::uint8_t* const place = std::find(data.audioCodec, end, SDP_NO_CODEC);
  if (place != end) *place = kCodecT38Image;
}

}  // namespace
}  // namespace sdpneg

using namespace sdpneg;

unsigned short sdpParserMessage::findFirstVideo(sSdpParsedData& data, sDescription& description,
                                                int noOfMDs) {
  const mDescription* video = chooseVideo(data, description, noOfMDs);
  if (video == nullptr) return 0;
  data.mediaType |= MEDIA_VIDEO;
  if (data.port == 0) data.mediaType &= ~static_cast<std::uint32_t>(MEDIA_AUDIO);
  if (data.videoMode == CONNECTION_MODE_RECVONLY) data.sdpAttributes |= SDP_ATTR_RECVONLY_VIDEO;
  return statusOf(addressWithoutAudio(data, description, *video, "video"));
}

unsigned short sdpParserMessage::findFirstMsg(sSdpParsedData& data, sDescription& description, int noOfMDs) {
  return noteFirst(data, description, noOfMDs, MEDIA_MESSAGE);
}

unsigned short sdpParserMessage::findFirstTxt(sSdpParsedData& data, sDescription& description, int noOfMDs) {
  return noteFirst(data, description, noOfMDs, MEDIA_TEXT);
}

unsigned short sdpParserMessage::findFirstImage(sSdpParsedData& data, sDescription& description,
                                                int noOfMDs) {
  const mDescription* image = firstOf(description, noOfMDs, MEDIA_IMAGE);
  if (image == nullptr || portOf(*image) == 0) return 0;
  description.mediaKinds |= MEDIA_IMAGE;
  data.mediaType |= MEDIA_IMAGE;
  takeT38(data, *image);
  return statusOf(addressWithoutAudio(data, description, *image, "image"));
}

unsigned short sdpParserMessage::findApplication(sSdpParsedData& data, sDescription& description,
                                                 int noOfMDs) {
  for (const mDescription& media : mediaOf(description, noOfMDs)) {
    if (media.mLine.mediaType != MEDIA_APPLICATION) continue;
    description.mediaKinds |= MEDIA_APPLICATION;
    if (portOf(media) == 0) continue;
    data.mediaType |= MEDIA_APPLICATION;
    break;
  }
  return 0;
}
