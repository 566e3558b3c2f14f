#ifndef SDP_VIDEO_FORMATS_H
#define SDP_VIDEO_FORMATS_H

#include <cstdint>
#include <span>
#include <string_view>

#include "attributeKinds.h"
#include "attributeLines.h"
#include "sdpDataDefinitions.h"
#include "sessionDescription.h"
#include "vocabulary.h"

// The formats of video m-lines with their codecs.

namespace sdpneg {

/// `sdpParserMessage::convertVideoCodec` of texts.
std::uint8_t videoCodecOf(std::string_view name, std::string_view format);

/// What a format of a video or application m-line is; its codec is SDP_NO_CODEC when that is not known.
/// @param kind  of the m-line
/// @param lines its attribute lines
codecDetailStruct detailOf(unsigned int kind, std::span<const a_line::entry> lines, const char* format);

codecDetailStruct detailOf(unsigned int kind, const AttributeIndex& lines, const char* format);

inline codecDetailStruct detailOf(const mDescription& media, const char* format) {
  return detailOf(media.mLine.mediaType, entriesOf(&media.aLine), format);
}

}  // namespace sdpneg

#endif
