#include "sdpModifiers/videoLimits.h"
#include "sdpNegotiator.h"
#include "sdpNegotiator/request.h"
#include "trace.h"

// Limits of the video that a body asks for.

namespace sdpneg {
namespace {

/// Why a bandwidth is not applied.
Refusal refusalOfBandwidth(unsigned int bandwidth, unsigned int current) {
  if (bandwidth < current) return {};
  return {.reason = SDP_REFUSED_BANDWIDTH_NOT_LOWER};
}

/// Why an H.264 level is not applied.
Refusal refusalOfLevel(eH264_profile_id level, int current) {
  if (current == H264_PROFILE_NOT_PRESENT) return {.reason = SDP_REFUSED_NO_H264};
  if (level < 0 || level > H264_LEVEL_5_1) return {.reason = SDP_REFUSED_UNKNOWN_H264_LEVEL};
  if (level >= current) return {.reason = SDP_REFUSED_H264_LEVEL_NOT_LOWER};
  return {};
}

}  // namespace
}  // namespace sdpneg

using namespace sdpneg;

unsigned short cSdpNegotiator::sdpLimitVideoMediaBandwidth(unsigned int bandwidth, eH264_profile_id profile) {
  trace::debug("Request to limit video bandwidth to %u and H264 profile to %d", bandwidth,
               static_cast<int>(profile));
  trace::debug("Max b-line bandwidth in video media is %u and max H264 profile is %d",
               parsedData.videoBandwidth, parsedData.h264Profile);
  const Refusal ofBandwidth = refusalOfBandwidth(bandwidth, parsedData.videoBandwidth);
  const Refusal ofLevel = refusalOfLevel(profile, parsedData.h264Profile);
  // With one of the two to be lowered, the other is no reason to refuse the request.
  const auto say = ofBandwidth && ofLevel ? tell : mention;
  if (ofBandwidth) say(ofBandwidth);
  const int traced = ofLevel ? say(ofLevel) : 0;
  if (ofBandwidth && ofLevel) return asStatus(traced);

  const auto limit = [&](SdpText& text) {
    if (!ofBandwidth) lowerBandwidths(text, bandwidth);
    if (!ofLevel) statusOf(lowerH264Levels(text, profile));
  };
  const unsigned short status = editAndKeep(*this, kStoredOrAsBefore, limit);
  if (status != 0) return status;
  if (!ofBandwidth) parsedData.videoBandwidth = bandwidth;
  if (!ofLevel) parsedData.h264Profile = profile;
  return 0;
}
