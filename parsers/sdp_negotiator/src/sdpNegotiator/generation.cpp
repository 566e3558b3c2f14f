#include <string_view>

#include "cMsgIPAddress.h"
#include "refusal.h"
#include "sdpModifiers.h"
#include "sdpModifiers/adopt.h"
#include "sdpNegotiator.h"
#include "trace.h"
#include "vocabulary.h"

// Texts written from values.

namespace sdpneg {
namespace {

/// Two disabled audio m-lines with the same payloads, the secure profile first.
constexpr std::string_view kDisabledMedia =
    "m=audio 0 RTP/SAVP 8 0 18 4 96 98 99\r\n"
    "a=rtpmap:8 PCMA/8000\r\na=rtpmap:0 PCMU/8000\r\na=rtpmap:18 G729/8000\r\na=rtpmap:4 G723/8000\r\n"
    "a=rtpmap:96 CLEARMODE/8000\r\na=rtpmap:98 telephone-event/8000\r\na=rtpmap:99 red/8000\r\n"
    "a=silenceSupp:off - - - -\r\na=fmtp:18 annexb=yes\r\na=fmtp:4 annexa=no\r\na=fmtp:98 0-15,32-36,49\r\n"
    "a=fmtp:99 98\r\n"
    "m=audio 0 RTP/AVP 8 0 18 4 96 98 99\r\n"
    "a=rtpmap:8 PCMA/8000\r\na=rtpmap:0 PCMU/8000\r\na=rtpmap:18 G729/8000\r\na=rtpmap:4 G723/8000\r\n"
    "a=rtpmap:96 CLEARMODE/8000\r\na=rtpmap:98 telephone-event/8000\r\na=rtpmap:99 red/8000\r\n"
    "a=silenceSupp:off - - - -\r\na=fmtp:18 annexb=yes\r\na=fmtp:4 annexa=no\r\na=fmtp:98 0-15,32-36,49\r\n"
    "a=fmtp:99 98\r\n";

}  // namespace
}  // namespace sdpneg

using namespace sdpneg;

unsigned short cSdpNegotiator::sdpEncode(char* out, int version, int& length) const {
  trace::progress("Entering sdpEncode() method.");
  return sdpModifications::sdpEncoder(out, parsedData, version, length);
}

unsigned short cSdpNegotiator::sdpCreateMessage(char* out, const char* ip, unsigned int port,
                                                const char* codecs, bool inactive) {
  if (ip == nullptr || !cMsgIPAddress::isValid(ip)) {
    return refuse({.reason = SDP_REFUSED_MESSAGE_ADDRESS, .field = SDP_REFUSAL_FIELD_ADDRESS});
  }
  if (!isMediaPort(port)) {
    return refuse({.reason = SDP_REFUSED_MESSAGE_PORT,
                   .number = static_cast<int>(port),
                   .field = SDP_REFUSAL_FIELD_PORT});
  }
  if (!areLineTexts({ip}, "sdpCreateMessage")) return 1;
  sdpModifications::createSDPUserRequest(out, ip, port, codecs, inactive);
  return 0;
}

unsigned short cSdpNegotiator::generateDummyAnswer(char* out, bool sessionOnly, int& length,
                                                   eIPAddressVersion version) {
  const std::string_view address = version == kIpVersion6 ? "IP6 ::" : "IP4 0.0.0.0";
  SdpText text = emptied(out);
  for (const std::string_view piece :
       {std::string_view("v=0\r\no=QnSIP 0 1 IN "), address, std::string_view("\r\ns=SIP Call\r\nc=IN "),
        address, std::string_view("\r\nt=0 0\r\n")}) {
    text.append(piece);
  }
  if (!sessionOnly) text.append(kDisabledMedia);
  length = static_cast<int>(text.size());
  trace::progress("A dummy SDP message has been created.");
  return 0;
}
