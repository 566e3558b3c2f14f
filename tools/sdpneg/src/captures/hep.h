#ifndef SDPNEG_HEP_H
#define SDPNEG_HEP_H

#include <cstddef>
#include <optional>
#include <string_view>

#include "captures/capturedMessage.h"

// HEP3 packets, in which agents send copies of messages to a collector.

namespace tool {

/// The mark, and with it the bytes that tell a packet's length.
inline constexpr std::string_view kHepMark = "HEP3";
inline constexpr std::size_t kHepHeaderSize = 6;

/// The length of the packet that some bytes begin with; nothing where they begin with none, or its header is cut.
std::optional<std::size_t> hepPacketSize(std::string_view bytes);

/// Delivers the SIP message of a packet; other protocols are passed over.
/// @param bytes from the mark on; of a packet that was cut, what there is
/// @param time  for a packet that tells none
void takeHep(std::string_view bytes, CaptureTime time, CaptureOutput& output);

}  // namespace tool

#endif
