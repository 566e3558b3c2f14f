#ifndef SDPNEG_VIDEO_CODECS_H
#define SDPNEG_VIDEO_CODECS_H

#include <vector>

#include "sessionDescription.h"

namespace tool {

/// The codecs of the video that is in use, in the order of its m-line: what the object answers to getVideoCodecs(), which
/// decodes its body for it.
std::vector<unsigned char> videoCodecsOf(const sDescription& description);

}  // namespace tool

#endif
