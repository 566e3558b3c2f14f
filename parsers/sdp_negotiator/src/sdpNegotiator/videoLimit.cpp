#include "sdpModifiers.h"
#include "sdpNegotiator.h"
#include "sdpNegotiator/request.h"
#include "trace.h"

// Limits of the video that a body asks for.

using namespace sdpneg;

namespace {

/// Why an H.264 level is not applied; null when it is.
const char* refusalOfLevel(eH264_profile_id level, int current) {
  if (current == H264_PROFILE_NOT_PRESENT)
    return "Request to update the profile level id while H264 codec is not present. Ignoring.";
  if (level < 0 || level > H264_LEVEL_5_1) return "Wrong profile level id input.";
  if (level >= current)
    return "The given H264 profile level is larger than the current value. Nothing to do.";
  return nullptr;
}

}  // namespace

unsigned short cSdpNegotiator::sdpLimitVideoMediaBandwidth(unsigned int bandwidth, eH264_profile_id profile) {
  trace::debug("Request to limit video bandwidth to %u and H264 profile to %d", bandwidth,
               static_cast<int>(profile));
  trace::debug("Max b-line bandwidth in video media is %u and max H264 profile is %d",
               parsedData.videoBandwidth, parsedData.h264Profile);
  int refused = 0;
  const auto refuse = [&](const char* why) { refused = trace::error("%s", why); };
  const bool limitsBandwidth = bandwidth < parsedData.videoBandwidth;
  if (!limitsBandwidth)
    refuse("The given bandwidth is larger than the current value. b-lines will not be modified.");
  const char* const levelRefusal = refusalOfLevel(profile, parsedData.h264Profile);
  if (levelRefusal != nullptr) refuse(levelRefusal);
  if (!limitsBandwidth && levelRefusal != nullptr) return sdpneg::asStatus(refused);

  const auto limit = [&](char* text) -> unsigned short {
    if (limitsBandwidth) sdpModifications::sdpApplyBLine(text, bandwidth);
    if (levelRefusal == nullptr) sdpModifications::sdpModifyProfileId(text, profile);
    return 0;
  };
  const unsigned short status = sdpneg::editAndStoreOrStay(*this, limit);
  if (status != 0) return status;
  if (limitsBandwidth) parsedData.videoBandwidth = bandwidth;
  if (levelRefusal == nullptr) parsedData.h264Profile = profile;
  return 0;
}
