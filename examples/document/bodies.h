// What the tasks share: two offers, and a way to show a document.

#ifndef BODIES_H
#define BODIES_H

#include <sdpDocumentRequests.h>

#include <iostream>
#include <string_view>

/// As a browser writes it, shortened: one port for audio, video and data, told later by ICE; keys by DTLS.
inline constexpr std::string_view kBrowserOffer =
    "v=0\r\n"
    "o=- 4611731400430051336 2 IN IP4 127.0.0.1\r\n"
    "s=-\r\n"
    "t=0 0\r\n"
    "a=group:BUNDLE 0 1 2\r\n"
    "m=audio 9 UDP/TLS/RTP/SAVPF 111 63 0 8 13 110 126\r\n"
    "c=IN IP4 0.0.0.0\r\n"
    "a=rtcp:9 IN IP4 0.0.0.0\r\n"
    "a=ice-ufrag:Qx1z\r\n"
    "a=ice-pwd:iyyuBsvhJDY2cTg2Jj7rJjmz\r\n"
    "a=ice-options:trickle\r\n"
    "a=fingerprint:sha-256 19:E2:1C:3B:4B:9F:81:E6:B8:5C:F4:A5:A8:D8:73:04:"
    "BB:05:2F:70:9F:04:A9:0E:05:E9:26:33:E8:70:88:A2\r\n"
    "a=setup:actpass\r\n"
    "a=mid:0\r\n"
    "a=sendrecv\r\n"
    "a=rtcp-mux\r\n"
    "a=rtpmap:111 opus/48000/2\r\n"
    "a=rtcp-fb:111 transport-cc\r\n"
    "a=fmtp:111 minptime=10;useinbandfec=1\r\n"
    "a=rtpmap:63 red/48000/2\r\n"
    "a=fmtp:63 111/111\r\n"
    "a=rtpmap:0 PCMU/8000\r\n"
    "a=rtpmap:8 PCMA/8000\r\n"
    "a=rtpmap:13 CN/8000\r\n"
    "a=rtpmap:110 telephone-event/48000\r\n"
    "a=rtpmap:126 telephone-event/8000\r\n"
    "m=video 9 UDP/TLS/RTP/SAVPF 96 97\r\n"
    "c=IN IP4 0.0.0.0\r\n"
    "a=ice-ufrag:Qx1z\r\n"
    "a=ice-pwd:iyyuBsvhJDY2cTg2Jj7rJjmz\r\n"
    "a=fingerprint:sha-256 19:E2:1C:3B:4B:9F:81:E6:B8:5C:F4:A5:A8:D8:73:04:"
    "BB:05:2F:70:9F:04:A9:0E:05:E9:26:33:E8:70:88:A2\r\n"
    "a=setup:actpass\r\n"
    "a=mid:1\r\n"
    "a=sendrecv\r\n"
    "a=rtcp-mux\r\n"
    "a=rtpmap:96 VP8/90000\r\n"
    "a=rtcp-fb:96 nack pli\r\n"
    "a=rtpmap:97 rtx/90000\r\n"
    "a=fmtp:97 apt=96\r\n"
    "m=application 9 UDP/DTLS/SCTP webrtc-datachannel\r\n"
    "c=IN IP4 0.0.0.0\r\n"
    "a=ice-ufrag:Qx1z\r\n"
    "a=ice-pwd:iyyuBsvhJDY2cTg2Jj7rJjmz\r\n"
    "a=fingerprint:sha-256 19:E2:1C:3B:4B:9F:81:E6:B8:5C:F4:A5:A8:D8:73:04:"
    "BB:05:2F:70:9F:04:A9:0E:05:E9:26:33:E8:70:88:A2\r\n"
    "a=setup:actpass\r\n"
    "a=mid:2\r\n"
    "a=sctp-port:5000\r\n";

/// As a phone writes it, with keys in the body (SDES) and a remark of its own.
inline constexpr std::string_view kPhoneOffer =
    "v=0\r\n"
    "o=phone 7 1 IN IP4 192.0.2.20\r\n"
    "s=-\r\n"
    "c=IN IP4 192.0.2.20\r\n"
    "t=0 0\r\n"
    "m=audio 40000 RTP/SAVP 8 18 101\r\n"
    "a=rtpmap:101 telephone-event/8000\r\n"
    "a=crypto:1 AES_CM_128_HMAC_SHA1_80 inline:WVNfX19zZW1jdGwgKCkgewkyMjA7fQp9CnVubGVz\r\n"
    "a=crypto:2 AES_256_CM_HMAC_SHA1_80 inline:"
    "WVNfX19zZW1jdGwgKCkgewkyMjA7fQp9CnVubGVzWVNfX19zZW1jdGwgKCkgew==\r\n"
    "a=x-line:desk 4\r\n"
    "m=video 40002 RTP/AVP 99\r\n"
    "a=rtpmap:99 H264/90000\r\n"
    "a=recvonly\r\n";

/// Prints the lines of a document.
inline void show(const sdp::Document& document) {
  for (const sdp::Line& line : document.session().lines()) std::cout << line.content << '\n';
  for (const sdp::Section& section : document.sections()) {
    for (const sdp::Line& line : section.lines()) std::cout << line.content << '\n';
  }
}

#endif
