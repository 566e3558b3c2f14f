#ifndef SDPNEG_REPORT_TIMES_H
#define SDPNEG_REPORT_TIMES_H

#include <string>

#include "captures/capturedMessage.h"

namespace tool {

/// "2026-11-22 10:00:00.123", of UTC; "-" where the time is not known.
std::string readableTime(CaptureTime time);

/// Seconds from one time to another with three places: "12.345"; "-" where either is not known.
std::string secondsBetween(CaptureTime from, CaptureTime to);

}  // namespace tool

#endif
