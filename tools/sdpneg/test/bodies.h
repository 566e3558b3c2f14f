#ifndef SDPNEG_TEST_BODIES_H
#define SDPNEG_TEST_BODIES_H

#include <string_view>

// Bodies that several tests use. Their lines end in LF.

namespace bodies {

inline constexpr std::string_view audioCall =
    "v=0\n"
    "o=ann 17 18 IN IP4 192.0.2.10\n"
    "s=-\n"
    "c=IN IP4 192.0.2.10\n"
    "b=AS:80\n"
    "t=0 0\n"
    "m=audio 49170 RTP/AVP 8 0 101\n"
    "a=rtpmap:8 PCMA/8000\n"
    "a=rtpmap:101 telephone-event/8000\n"
    "a=ptime:20\n";

inline constexpr std::string_view secureCall =
    "v=0\n"
    "o=- 1 1 IN IP6 2001:db8::17\n"
    "s=-\n"
    "c=IN IP6 2001:db8::17\n"
    "t=0 0\n"
    "m=audio 40000 RTP/SAVP 9\n"
    "a=crypto:1 AES_CM_128_HMAC_SHA1_80 inline:MDEyMzQ1Njc4OWFiY2RlZjAxMjM0NTY3ODlhYmNk\n"
    "a=sendonly\n"
    "m=video 40002 RTP/SAVP 97\n"
    "b=TIAS:1400000\n"
    "a=label:cam\n"
    "a=rtpmap:97 H264/90000\n"
    "a=fmtp:97 profile-level-id=42801F\n"
    "a=crypto:1 AES_CM_128_HMAC_SHA1_80 inline:ZGNiYTk4NzY1NDMyMTBmZWRjYmE5ODc2NTQzMjEw\n"
    "a=recvonly\n";

inline constexpr std::string_view faxCall =
    "v=0\n"
    "o=fax 1 2 IN IP4 198.51.100.7\n"
    "s=-\n"
    "c=IN IP4 198.51.100.7\n"
    "t=0 0\n"
    "m=image 30010 udptl t38\n"
    "a=T38MaxBitRate:14400\n";

/// What a browser sends that has no candidates yet.
inline constexpr std::string_view browserOffer =
    "v=0\n"
    "o=- 1 2 IN IP4 127.0.0.1\n"
    "s=-\n"
    "t=0 0\n"
    "m=audio 9 UDP/TLS/RTP/SAVPF 111 0\n"
    "c=IN IP4 0.0.0.0\n"
    "a=rtpmap:111 opus/48000/2\n"
    "a=fingerprint:sha-256 AB:CD\n"
    "a=ice-ufrag:abcd\n"
    "a=sendrecv\n";

}  // namespace bodies

#endif
