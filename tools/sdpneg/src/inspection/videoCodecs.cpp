#include "inspection/videoCodecs.h"

#include <algorithm>

#include "inspection/heldMedia.h"
#include "sdpNegotiator.h"
#include "sdpNegotiatorParser.h"

namespace tool {
namespace {

bool isInUse(const mDescription& media) {
  return media.mLine.mediaType == MEDIA_VIDEO && portOf(media) != 0 && !hasAttribute(media.aLine, "inactive");
}

unsigned char codecOf(const mDescription& media, const char* format) {
  char name[SDP_ENCODING_NAME_SIZE];
  if (sdpParserMessage::getEncodingName(&media, format, name, sizeof name)) {
    return sdpParserMessage::convertVideoCodec(name, format);
  }
  return sdpParserMessage::isStaticPayload(format) ? sdpParserMessage::convertVideoCodec(format, format)
                                                   : SDP_NO_CODEC;
}

}  // namespace

std::vector<unsigned char> videoCodecsOf(const sDescription& description) {
  constexpr std::size_t kMost = SDP_VIDEO_CODEC_LIST_SIZE;
  std::vector<unsigned char> codecs;
  const auto media = heldMedia(description);
  const auto video = std::find_if(media.begin(), media.end(), isInUse);
  if (video == media.end()) return codecs;
  for (int i = 0; i < sdp_MgetNoOfFormats(&video->mLine) && codecs.size() < kMost; ++i) {
    const unsigned char codec = codecOf(*video, sdp_MgetFormat(&video->mLine, i));
    if (codec != SDP_NO_CODEC) codecs.push_back(codec);
  }
  return codecs;
}

}  // namespace tool
