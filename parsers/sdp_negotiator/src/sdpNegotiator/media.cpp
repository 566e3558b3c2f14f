#include <algorithm>

#include "refusal.h"
#include "sdpModifiers/codecText.h"
#include "sdpNegotiator.h"
#include "sdpNegotiatorParser.h"
#include "sdpNegotiatorParser/descriptionView.h"
#include "sdpNegotiatorParser/videoFormats.h"
#include "sdpNegotiatorParser/withDescription.h"

// The media of a body and their video codecs.

namespace sdpneg {
namespace {

/// Decodes a text and calls `work` with its description.
/// @return what `work` returns, or the codec's status when it refuses the text, which is told
template <typename Work>
unsigned short withDecoded(const char* text, Work work) {
  return withDescription([&](sDescription& description) {
    const unsigned short status = decodeText(description, text);
    if (status == 0) return work(description);
    tell({.reason = SDP_REFUSED_STORED_NOT_DECODED});
    return status;
  });
}

bool isInactive(const mDescription& media) {
  const auto attributes = entriesOf(&media.aLine);
  return std::any_of(attributes.begin(), attributes.end(),
                     [](const a_line::entry& line) { return equalNoCase(line.name, "inactive"); });
}

bool isActiveVideo(const mDescription& media) {
  return media.mLine.mediaType == MEDIA_VIDEO && portOf(media) != 0 && !isInactive(media);
}

void listCodecs(const mDescription& media, unsigned char* codecs, int& h264Profile) {
  int listed = 0;
  const int formats = sdp_MgetNoOfFormats(&media.mLine);
  for (int i = 0; i < formats && listed < SDP_VIDEO_CODEC_LIST_SIZE; ++i) {
    const codecDetailStruct detail = detailOf(media, sdp_MgetFormat(&media.mLine, i));
    if (detail.codec == SDP_NO_CODEC) continue;
    if (detail.codec == kCodecH264) h264Profile = detail.profile;
    codecs[listed++] = detail.codec;
  }
}

}  // namespace
}  // namespace sdpneg

using namespace sdpneg;

unsigned short cSdpNegotiator::getMedia(std::vector<mediaStruct>& media) const {
  char text[MAX_SDP_PROTOCOL_DATA_SIZE];
  const unsigned short status = getSDP(text, sizeof text);
  if (status != 0) return status;
  return withDecoded(
      text, [&](const sDescription& description) { return sdpParserMessage::getMedia(description, media); });
}

unsigned short cSdpNegotiator::getVideoCodecs(unsigned char* codecs, unsigned int& attributes,
                                              int& h264Profile) const {
  if (codecs == nullptr) {
    return refuse({.reason = SDP_REFUSED_NULL, .operation = "getVideoCodecs"});
  }
  std::fill_n(codecs, SDP_VIDEO_CODEC_LIST_SIZE, SDP_NO_CODEC);
  char text[MAX_SDP_PROTOCOL_DATA_SIZE];
  const unsigned short status = getRawSDP(text, sizeof text);
  if (status != 0) return status;
  return withDecoded(text, [&](const sDescription& description) -> unsigned short {
    const auto all = mediaOf(description);
    const auto video = std::find_if(all.begin(), all.end(), isActiveVideo);
    if (video != all.end()) listCodecs(*video, codecs, h264Profile);
    attributes = parsedData.sdpAttributes;
    return 0;
  });
}

unsigned short cSdpNegotiator::getVideoCodecs(unsigned char* codecs, unsigned int& attributes) const {
  int h264Profile = H264_PROFILE_NOT_PRESENT;
  return getVideoCodecs(codecs, attributes, h264Profile);
}
