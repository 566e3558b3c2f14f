#include <utility>
#include <vector>

#include "sdpModifiers.h"
#include "sdpModifiers/bestEffort.h"
#include "sdpModifiers/bestEffortChange.h"
#include "sdpModifiers/mediaSet.h"
#include "sdpNegotiator.h"
#include "sdpNegotiator/request.h"
#include "trace.h"

// Best-effort SRTP: which of its forms a body has, and the change from one to another.

using M = sdpModifications;

namespace sdpneg {
namespace {

constexpr std::size_t kTypeChangeRecordSize = 32;

}  // namespace
}  // namespace sdpneg

using namespace sdpneg;

eSecurityType cSdpNegotiator::getSdpBestEffortSrtpType() const {
  trace::info("Entering getSdpBestEffortSrtpType()");
  const eSecurityType security = getSdpSecurityType();
  std::vector<mDescription> mLines;
  char text[MAX_SDP_PROTOCOL_DATA_SIZE];
  const unsigned int before = toldSoFar();
  if (getSDP(text, sizeof text) == 0 && readMLines(SdpText(text), mLines) == 1) {
    tellUnlessTold({.reason = SDP_REFUSED_STORED_NOT_DECODED}, before);
    return SRTP_UKNOWN;
  }
  switch (security) {
    case SECURITY_RTP_ONLY:
      return M::is1mLineBeSrtp(std::move(mLines)) == BE_SRTP_1m_LINE ? BE_SRTP_1m_LINE : SECURITY_RTP_ONLY;
    case SECURITY_SRTP_ONLY:
      return isSDESPresent() ? SECURITY_SRTP_ONLY : SRTP_UKNOWN;
    case SECURITY_BOTH:
      return M::is2mLineBeSrtp(std::move(mLines)) == BE_SRTP_2m_LINE ? BE_SRTP_2m_LINE : SRTP_UKNOWN;
    default:
      return SRTP_UKNOWN;
  }
}

unsigned short cSdpNegotiator::sdpChangeSdpType(eSecurityType from, eSecurityType to, char* removed) {
  trace::info("Entering sdpChangeSrtpType()");
  clearRecord(removed, kTypeChangeRecordSize);
  unsigned short status = 1;
  editWithOLineAndParse(*this, [&](SdpText& text, unsigned short& oLineEnd) {
    status = statusOf(changeSrtpType(text, from, to, removed, oLineEnd));
  });
  return status;
}

bool cSdpNegotiator::isSingleLineSDP() const {
  trace::error("Entering isSingleLineSDP.");  // an error by its pair of numbers alone
  char text[MAX_SDP_PROTOCOL_DATA_SIZE];
  return getSDP(text, sizeof text) == 0 && hasSingleMLine(SdpText(text));
}
