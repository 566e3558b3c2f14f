// A gateway to the telephone network answers a browser: it has audio, ICE lite and DTLS, no video and no data.

#include <sdpAnswer.h>

#include "show.h"

namespace {

constexpr std::string_view kGateway = R"(v=0
o=gateway 5012 1 IN IP4 203.0.113.20
s=-
c=IN IP4 203.0.113.20
t=0 0
a=group:BUNDLE speech
a=ice-lite
a=fingerprint:sha-256 3C:5A:91:0E:77:B2:4D:F8:16:A9:C3:60:2B:E4:8D:1F:70:95:DA:3E:47:0B:C8:52:F1:6D:29:84:AE:13:57:F0
m=audio 30000 UDP/TLS/RTP/SAVPF 8 0 101
a=mid:speech
a=rtpmap:8 PCMA/8000
a=rtpmap:0 PCMU/8000
a=rtpmap:101 telephone-event/8000
a=fmtp:101 0-16
a=ptime:20
a=rtcp-mux
a=ice-ufrag:gw7k
a=ice-pwd:Vd7TkY0u3nLq5sWf9xBz2aRc
a=candidate:1 1 UDP 2130706431 203.0.113.20 30000 typ host
)";

constexpr std::string_view kBrowser = R"(v=0
o=- 7716253948820173645 2 IN IP4 127.0.0.1
s=-
t=0 0
a=group:BUNDLE 0 1 2
a=extmap-allow-mixed
m=audio 9 UDP/TLS/RTP/SAVPF 111 63 0 8 13 110 126
c=IN IP4 0.0.0.0
a=ice-ufrag:p4Lw
a=ice-pwd:mHk29sTzQe71bVxJ0rYcWn5D
a=ice-options:trickle
a=fingerprint:sha-256 88:1D:F0:42:6B:C7:39:A5:5E:90:0C:D4:21:B8:7F:E3:14:6A:9D:52:C0:3B:F7:86:E9:28:4F:71:BD:05:A2:9C
a=setup:actpass
a=mid:0
a=extmap:1 urn:ietf:params:rtp-hdrext:ssrc-audio-level
a=sendrecv
a=rtcp-mux
a=rtpmap:111 opus/48000/2
a=rtcp-fb:111 transport-cc
a=fmtp:111 minptime=10;useinbandfec=1
a=rtpmap:63 red/48000/2
a=fmtp:63 111/111
a=rtpmap:0 PCMU/8000
a=rtpmap:8 PCMA/8000
a=rtpmap:13 CN/8000
a=rtpmap:110 telephone-event/48000
a=rtpmap:126 telephone-event/8000
m=video 9 UDP/TLS/RTP/SAVPF 96 97
c=IN IP4 0.0.0.0
a=ice-ufrag:p4Lw
a=ice-pwd:mHk29sTzQe71bVxJ0rYcWn5D
a=fingerprint:sha-256 88:1D:F0:42:6B:C7:39:A5:5E:90:0C:D4:21:B8:7F:E3:14:6A:9D:52:C0:3B:F7:86:E9:28:4F:71:BD:05:A2:9C
a=setup:actpass
a=mid:1
a=sendrecv
a=rtcp-mux
a=rtpmap:96 VP8/90000
a=rtpmap:97 rtx/90000
a=fmtp:97 apt=96
m=application 9 UDP/DTLS/SCTP webrtc-datachannel
c=IN IP4 0.0.0.0
a=ice-ufrag:p4Lw
a=ice-pwd:mHk29sTzQe71bVxJ0rYcWn5D
a=fingerprint:sha-256 88:1D:F0:42:6B:C7:39:A5:5E:90:0C:D4:21:B8:7F:E3:14:6A:9D:52:C0:3B:F7:86:E9:28:4F:71:BD:05:A2:9C
a=setup:actpass
a=mid:2
a=sctp-port:5000
)";

}  // namespace

int main() {
  sdp::Document gateway;
  sdp::Document offer;
  if (gateway.read(kGateway) || offer.read(kBrowser)) return 1;
  sdp::AnswerOptions options;
  options.prefersLocal = true;  // G.711 a-law first, as its lines have it
  options.isPassive = true;     // with ICE lite, it waits for the browser
  const sdp::Answer answer = sdp::makeAnswer(offer, gateway, options);
  if (!answer) {
    std::cout << textOf(answer.failure) << '\n';  // to SIP, 488
    return 1;
  }
  show(answer.text);
  std::cout << '\n';
  for (const sdp::Section& section : offer.sections()) {
    const sdp::AnsweredSection& result = answer.sections[section.index() - 1];
    std::cout << section.media() << ": " << textOf(result.outcome) << '\n';
  }
  return 0;
}
