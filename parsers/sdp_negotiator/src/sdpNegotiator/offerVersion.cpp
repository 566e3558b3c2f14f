#include <limits>
#include <string_view>

#include "refusal.h"
#include "sdpModifiers.h"
#include "sdpModifiers/mediaSet.h"
#include "sdpNegotiator.h"
#include "text/search.h"
#include "trace.h"

// Whether an offer is the next version of an earlier one, and making it so.

namespace sdpneg {
namespace {

using OriginField = const char* (*)(const o_line*);

std::string_view fieldOf(const o_line& line, OriginField field) { return viewOf(field(&line)); }

bool isComplete(const o_line& line) {
  for (const OriginField field : {sdp_OgetUserName, sdp_OgetSessionId, sdp_OgetSessionVersion,
                                  sdp_OgetNetworkType, sdp_OgetAddressType, sdp_OgetAddress}) {
    if (fieldOf(line, field).empty()) return false;
  }
  return true;
}

long long versionOf(const o_line& line) {
  return numberOrZero<long long>(fieldOf(line, sdp_OgetSessionVersion));
}

bool isRaisedByOne(long long oldVersion, long long newVersion) {
  return oldVersion != std::numeric_limits<long long>::max() && newVersion == oldVersion + 1;
}

/// Whether two o-lines agree in all but the version.
bool isSameSession(const o_line& a, const o_line& b) {
  for (const OriginField field :
       {sdp_OgetUserName, sdp_OgetSessionId, sdp_OgetNetworkType, sdp_OgetAddressType, sdp_OgetAddress}) {
    if (fieldOf(a, field) != fieldOf(b, field)) return false;
  }
  return true;
}

/// Puts the o-line of an earlier body, with its version raised in both, in the place of an object's own.
unsigned short takeOverOrigin(cSdpNegotiator& object, cSdpNegotiator& earlier, const o_line& origin) {
  // A body without o-line has no version.
  const unsigned short status =
      origin.present != 0 ? earlier.sdpSetVersionNumberLong(versionOf(origin) + 1) : 0;
  return status != 0 ? status : object.copyOLine(&earlier);
}

/// Adds the m-lines of an earlier body that has more.
/// @return as `cSdpNegotiator::sdpModifyVersionAndMlines`
unsigned short addMLines(cSdpNegotiator& object, const cSdpNegotiator& earlier, bool keepOnly) {
  char earlierText[MAX_SDP_PROTOCOL_DATA_SIZE];
  char buffer[MAX_SDP_PROTOCOL_DATA_SIZE];
  if (const unsigned short status = earlier.getSDP(earlierText, sizeof earlierText); status != 0)
    return status;
  if (const unsigned short status = object.getSDP(buffer, sizeof buffer); status != 0) return status;
  const unsigned int before = toldSoFar();
  constexpr unsigned short kEarlierHasFewer = 1;
  // Of the negative results, only -1 says that there are m-lines to add.
  constexpr unsigned short kEarlierHasMore = 65535;
  const auto compared =
      static_cast<unsigned short>(sdpModifications::compareNumberOfMLines(earlierText, buffer));
  if (compared == 0) return 0;
  if (compared == kEarlierHasFewer) tell({.reason = SDP_REFUSED_FEWER_M_LINES});
  SdpText text(buffer);
  const bool added = compared == kEarlierHasMore &&
                     statusOf(correctMLines(SdpText(earlierText), text, keepOnly, false)) == 0;
  // What refuses a text without a reason of its own cannot decode it.
  if (!added) tellUnlessTold({.reason = SDP_REFUSED_STORED_NOT_DECODED}, before);
  if (compared != kEarlierHasMore) return compared;
  if (!added) return SDP_M_LINES_NOT_ADDED;
  return object.sdpParse(buffer, SDP_TYPE_UNKNOWN);
}

}  // namespace
}  // namespace sdpneg

using namespace sdpneg;

unsigned short cSdpNegotiator::isSdpVersionIncreased(const cSdpNegotiator* earlier) const {
  trace::debug("Entered isSdpVersionIncrease()");
  if (earlier == nullptr) {
    // Without an earlier offer any is a new one.
    return refuse({.reason = SDP_REFUSED_NO_EARLIER_OFFER});
  }
  if (compareSdpOLine(earlier) != 1) return 0;
  o_line before;
  o_line now;
  earlier->getOLine(before);
  getOLine(now);
  if (!isComplete(before) || !isComplete(now)) return 0;
  trace::progress("NEW BINARY sdp session version old %lld, version of new %lld", versionOf(before),
                  versionOf(now));
  return isRaisedByOne(versionOf(before), versionOf(now)) && isSameSession(before, now) ? 1 : 0;
}

unsigned short cSdpNegotiator::sdpModifyVersionAndMlines(cSdpNegotiator* earlier, bool keepOnly) {
  if (earlier == nullptr) return refuse({.reason = SDP_REFUSED_NO_EARLIER_OBJECT});
  o_line origin;
  earlier->getOLine(origin);
  if (versionOf(origin) == std::numeric_limits<long long>::max()) {
    return refuse({.reason = SDP_REFUSED_VERSION_CANNOT_BE_RAISED});
  }
  const cSdpNegotiator before = *this;
  const cSdpNegotiator earlierBefore = *earlier;
  const auto leaveBoth = [&](unsigned short status) {
    *this = before;
    *earlier = earlierBefore;
    return status;
  };
  if (const unsigned short status = takeOverOrigin(*this, *earlier, origin); status != 0)
    return leaveBoth(status);
  const unsigned short status = addMLines(*this, *earlier, keepOnly);
  return status == SDP_M_LINES_NOT_ADDED ? leaveBoth(status) : status;
}
