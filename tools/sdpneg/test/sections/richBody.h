#ifndef SDPNEG_TEST_RICH_BODY_H
#define SDPNEG_TEST_RICH_BODY_H

#include <string>

// A body with what sections can have, which no object takes.

inline const std::string richBody =
    "v=0\r\n"
    "o=- 1 2 IN IP4 192.0.2.1\r\n"
    "s=-\r\n"
    "c=IN IP4 relay.example.com\r\n"
    "b=AS:256\r\n"
    "b=AS:512\r\n"
    "b=X-y:lots\r\n"
    "t=0 0\r\n"
    "a=group:BUNDLE a v\r\n"
    "a=group:LS a v\r\n"
    "a=ice-lite\r\n"
    "a=ice-options:trickle ice2\r\n"
    "a=setup:actpass\r\n"
    "a=recvonly\r\n"
    "m=audio 9/2 UDP/TLS/RTP/SAVPF 111 0 63 110 96\r\n"
    "c=IN IP6 2001:db8::7/3\r\n"
    "b=TIAS:64000\r\n"
    "a=mid:a\r\n"
    "a=label:first\r\n"
    "a=rtcp:53021 IN IP4 192.0.2.9\r\n"
    "a=rtcp-mux\r\n"
    "a=fingerprint:sha-256 AB:CD\r\n"
    "a=ice-ufrag:abcd\r\n"
    "a=candidate:1 1 udp 1 192.0.2.1 9 typ host\r\n"
    "a=candidate:2 1 udp 1 192.0.2.1 9 typ host\r\n"
    "a=sendonly\r\n"
    "a=rtpmap:111 opus/48000/2\r\n"
    "a=rtcp-fb:111 transport-cc\r\n"
    "a=rtcp-fb:* nack  pli\r\n"
    "a=fmtp:111 minptime=10; useinbandfec=1\r\n"
    "a=fmtp:111 second\r\n"
    "a=rtpmap:63 red/48000/2\r\n"
    "a=rtpmap:110 telephone-event/8000\r\n"
    "m=video 0 RTP/AVP 97\n"
    "a=mid:v\n"
    "a=bundle-only\n"
    "a=crypto:1 AES_CM_128_HMAC_SHA1_80 inline:AAAA\n"
    "a=rtcp:none\n"
    "a=rtpmap:97 rtx/90000\n"
    "a=fmtp:97 rtx-time=1;apt=96\n"
    "m=audio 9\n"
    "a=mid:lost\n"
    "m=application 0 UDP/DTLS/SCTP webrtc-datachannel\n"
    "a=mid:d\xff";

#endif
