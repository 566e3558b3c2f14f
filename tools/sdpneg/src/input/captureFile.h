#ifndef SDPNEG_CAPTURE_FILE_H
#define SDPNEG_CAPTURE_FILE_H

#include <optional>
#include <string_view>

#include "input/place.h"

namespace tool {

/// The name of the capture format that some bytes begin with: "pcap", "pcapng" or "snoop"; null for other bytes.
const char* captureFormat(std::string_view bytes);

/// Tells a capture of network traffic by its first bytes: what is wrong with it as an input; nothing for other bytes.
std::optional<Problem> captureProblem(std::string_view bytes);

}  // namespace tool

#endif
