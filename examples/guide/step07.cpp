// Plain, secure and best effort; and m-lines that are removed and come back.

#include "guide.h"

namespace {

// Plain and secure audio to choose from, in two m-lines.
constexpr const char* kBestEffort =
    "v=0\r\n"
    "o=carol 300 1 IN IP4 192.0.2.20\r\n"
    "s=-\r\n"
    "c=IN IP4 192.0.2.20\r\n"
    "t=0 0\r\n"
    "m=audio 5004 RTP/AVP 0 8\r\n"
    "m=audio 5004 RTP/SAVP 0 8\r\n"
    "a=crypto:1 AES_CM_128_HMAC_SHA1_80 inline:MDEyMzQ1Njc4OWFiY2RlZjAxMjM0NTY3ODlhYmNk\r\n";

constexpr std::size_t kRecordSize = 32;  // large enough for every request that writes a record

void showMedia(const char* title, const cSdpNegotiator& object) {
  std::printf("%s:\n", title);
  show(object, "m=");
}

}  // namespace

int main() {
  cSdpNegotiator offer;
  if (offer.sdpParse(kBestEffort, SDP_TYPE_OFFER) != 0) return 1;
  const bool both = offer.getSdpSecurityType() == SECURITY_BOTH;
  const bool twoLines = offer.getSdpBestEffortSrtpType() == BE_SRTP_2m_LINE;
  std::printf("both: %s, best effort in two m-lines: %s\n", both ? "yes" : "no", twoLines ? "yes" : "no");

  cSdpNegotiator secure = offer;
  char removed[kRecordSize];
  if (secure.sdpChangeSdpType(BE_SRTP_2m_LINE, SECURITY_SRTP_ONLY, removed) != 0) return 1;
  showMedia("secure only", secure);

  cSdpNegotiator oneLine = offer;
  if (oneLine.sdpChangeSdpType(BE_SRTP_2m_LINE, BE_SRTP_1m_LINE, removed) != 0) return 1;
  showMedia("best effort in one m-line", oneLine);
  show(oneLine, "a=crypto:1 AES_CM_128_HMAC_SHA1_80");

  cSdpNegotiator plain = offer;
  if (plain.sdpDisableSRTPMedia(removed, NON_SUPPORTED_ALL_SECURE) != 0) return 1;
  showMedia("plain only", plain);
  std::printf("removed: m-line %d\n", removed[0]);

  // The answer to the plain offer has one m-line. The offerer sent two and must get two back.
  cSdpNegotiator answer;
  const char* const body =
      "v=0\r\no=- 1 1 IN IP4 192.0.2.30\r\ns=-\r\nc=IN IP4 192.0.2.30\r\nt=0 0\r\nm=audio 7000 RTP/AVP 0\r\n";
  if (answer.sdpParse(body, SDP_TYPE_ANSWER) != 0) return 1;
  if (answer.sdpReplaceTransportProtocol(removed, false) != 0) return 1;
  showMedia("the answer for the offerer", answer);
  return 0;
}
