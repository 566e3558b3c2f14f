// A back-to-back user agent judges what callees answer to a caller's offer, before it passes that on.

#include <sdpAnswerJudge.h>

#include "show.h"

namespace {

constexpr std::string_view kOffer = R"(v=0
o=caller 90210 1 IN IP4 192.0.2.30
s=-
c=IN IP4 192.0.2.30
t=0 0
m=audio 41000 RTP/SAVP 8 97 101
a=rtpmap:97 iLBC/8000
a=rtpmap:101 telephone-event/8000
a=crypto:1 AES_CM_128_HMAC_SHA1_80 inline:Zm9yIHRoZSBleGFtcGxlIGFsb25lLCBubyByZWFsIGtl
a=sendonly
m=video 41002 RTP/AVP 99
a=rtpmap:99 H264/90000
a=fmtp:99 profile-level-id=42e01f;packetization-mode=1
)";

/// An announcement server: it adds a codec that nobody asked for, which the caller may ignore.
constexpr std::string_view kAnnouncements = R"(v=0
o=media 31 1 IN IP4 198.51.100.70
s=-
c=IN IP4 198.51.100.70
t=0 0
m=audio 22000 RTP/SAVP 8 0 101
a=rtpmap:101 telephone-event/8000
a=crypto:1 AES_CM_128_HMAC_SHA1_80 inline:YW5vdGhlciBvbmUgdGhhdCBpcyBmb3IgdGhlIGRvY3Vt
a=recvonly
m=video 0 RTP/AVP 99
)";

/// A softphone that has several things wrong.
constexpr std::string_view kSoftphone = R"(v=0
o=soft 4 4 IN IP4 198.51.100.81
s=-
c=IN IP4 198.51.100.81
t=0 0
m=audio 25000 RTP/SAVP 8 97
a=rtpmap:97 telephone-event/8000
a=crypto:2 AES_CM_128_HMAC_SHA1_80 inline:YW5vdGhlciBvbmUgdGhhdCBpcyBmb3IgdGhlIGRvY3Vt
a=sendrecv
m=video 25002 RTP/AVP 99
a=rtpmap:99 H264/90000
a=fmtp:99 profile-level-id=42e028;packetization-mode=1
)";

/// Whether an answer may go on to the caller.
bool mayPass(std::string_view offerText, std::string_view answerText) {
  sdp::Document offer;
  sdp::Document answer;
  if (offer.read(offerText) || answer.read(answerText)) return false;
  const sdp::Judgement judgement = sdp::checkAnswer(offer, answer);
  bool mayPass = judgement.isComplete;
  for (const sdp::Finding& finding : judgement.findings) {
    const sdp::Severity severity = severityOf(finding.rule);
    std::cout << textOf(severity) << ": section " << finding.section << ": " << textOf(finding.rule) << ": "
              << finding.text << '\n';
    if (severity == sdp::Severity::error) mayPass = false;
  }
  return mayPass;
}

}  // namespace

int main() {
  for (const std::string_view answer : {kAnnouncements, kSoftphone}) {
    std::cout << lineOf(answer, "o=") << '\n';
    const bool isPassed = mayPass(kOffer, answer);
    std::cout << (isPassed ? "passed on\n" : "refused: ACK, then BYE, and 502 to the caller\n");
  }
  return 0;
}
