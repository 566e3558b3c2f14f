#ifndef SDP_VIDEO_FORMATS_H
#define SDP_VIDEO_FORMATS_H

#include "sdpNegotiatorParser.h"
#include "vocabulary.h"

// The formats of video m-lines with their codecs.

namespace sdpneg {

/// The name that tells a format's codec: its encoding name, or a static payload type itself.
/// @param buffer receives an encoding name
/// @return null when there is neither
inline const char* codecNameOf(const mDescription& media, const char* format,
                               char (&buffer)[SDP_ENCODING_NAME_SIZE]) {
  if (sdpParserMessage::getEncodingName(&media, format, buffer, sizeof buffer)) return buffer;
  return sdpParserMessage::isStaticPayload(format) ? format : nullptr;
}

/// What a format of a video or application m-line is; its codec is SDP_NO_CODEC when that is not known.
inline codecDetailStruct detailOf(const mDescription& media, const char* format) {
  char buffer[SDP_ENCODING_NAME_SIZE];
  codecDetailStruct detail;
  detail.kind = media.mLine.mediaType == MEDIA_VIDEO ? CODEC_DETAIL_VIDEO : CODEC_DETAIL_APPLICATION;
  detail.codec = sdpParserMessage::convertVideoCodec(codecNameOf(media, format, buffer), format);
  if (detail.codec == kCodecH264)
    detail.profile = sdpParserMessage::decodeH264ProfileId(&media.aLine, format);
  return detail;
}

}  // namespace sdpneg

#endif
