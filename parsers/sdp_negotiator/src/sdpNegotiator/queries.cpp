#include <string_view>

#include "sdpNegotiator.h"
#include "text/search.h"
#include "trace.h"
#include "vocabulary.h"

// What the summary tells, and searches in the text.

namespace sdpneg {
namespace {

bool hasAttribute(const sSdpParsedData& data, eSdpAttribute bit) {
  return (data.sdpAttributes & static_cast<unsigned int>(bit)) != 0;
}

bool isAddress(const cMsgIPAddress& address, const char* text) {
  cIPAddress other;
  other.setIPAddress(text);
  return address == other;
}

bool isUnspecifiedAddress(const cMsgIPAddress& address) {
  switch (address.getIPAddressVersion()) {
    case kIpVersion4:
      return isAddress(address, "0.0.0.0");
    case kIpVersion6:
      return isAddress(address, "0::0");
    default:
      return false;
  }
}

}  // namespace
}  // namespace sdpneg

using namespace sdpneg;

const sSdpParsedData& cSdpNegotiator::getParsedData() const { return parsedData; }

bool cSdpNegotiator::isParsedDataInitialized() const { return parsedData.isInitialized(); }

bool cSdpNegotiator::isParsedDataPresent() const {
  if (!isSdpPresent() && isParsedDataInitialized()) return false;
  trace::progress("The isParsedDataPresent() is true.");
  return true;
}

bool cSdpNegotiator::isSecureCall() const { return hasAttribute(parsedData, SDP_ATTR_SECURE_RTP); }

bool cSdpNegotiator::isSecureVideo() const { return hasAttribute(parsedData, SDP_ATTR_SECURE_VIDEO); }

bool cSdpNegotiator::isRecvOnlyVideo() const { return hasAttribute(parsedData, SDP_ATTR_RECVONLY_VIDEO); }

bool cSdpNegotiator::isIceLitePresent() const { return hasAttribute(parsedData, SDP_ATTR_ICE_LITE); }

bool cSdpNegotiator::isFullIcePresent() const { return hasAttribute(parsedData, SDP_ATTR_FULL_ICE); }

bool cSdpNegotiator::isMikeyPresent() const { return hasAttribute(parsedData, SDP_ATTR_MIKEY); }

bool cSdpNegotiator::IceCandidatesMatch() const {
  return hasAttribute(parsedData, SDP_ATTR_ICE_CANDIDATES_MATCH);
}

bool cSdpNegotiator::isHoldState() const {
  if (parsedData.sessionMode == CONNECTION_MODE_SENDONLY ||
      parsedData.sessionMode == CONNECTION_MODE_INACTIVE) {
    return true;
  }
  return isUnspecifiedAddress(parsedData.address);
}

bool cSdpNegotiator::contains(const char* text) const {
  if (text == nullptr) return false;
  if (parsedData.storedSdpLength == 0) {
    return sdpneg::contains({rawSdp, strnlen(rawSdp, sizeof rawSdp)}, text);
  }
  char expanded[MAX_SDP_PROTOCOL_DATA_SIZE + 1];  // a damaged text is searched as far as it goes
  getRawSDP(expanded, sizeof expanded);
  return sdpneg::contains(expanded, text);
}

bool cSdpNegotiator::isSDESPresent() const { return contains(kAnyCrypto); }

bool cSdpNegotiator::isAnatPresent() const { return contains(kAnat); }

bool cSdpNegotiator::isRmDummySdp() const { return contains("o=IRM "); }
