#include "judgeTestSupport.h"

// Answers as phones, gateways and browsers give them: nothing is wrong with them.

namespace {

using judgeTest::bodyOf;
using judgeTest::linesOf;
using judgeTest::Names;

TEST(Calls, OfPhones) {
  EXPECT_EQ(
      linesOf(bodyOf("m=audio 16384 RTP/AVP 9 0 8 18 101\n"
                     "a=rtpmap:9 G722/8000\na=rtpmap:0 PCMU/8000\na=rtpmap:8 PCMA/8000\n"
                     "a=rtpmap:18 G729/8000\na=fmtp:18 annexb=no\n"
                     "a=rtpmap:101 telephone-event/8000\na=fmtp:101 0-15\na=ptime:20\na=sendrecv\n"
                     "m=video 16386 RTP/AVP 97\na=rtpmap:97 H264/90000\n"
                     "a=fmtp:97 profile-level-id=42801F;packetization-mode=0\n"),
              bodyOf("m=audio 30000 RTP/AVP 8 101\n"
                     "a=rtpmap:8 PCMA/8000\na=rtpmap:101 telephone-event/8000\na=fmtp:101 0-16\na=ptime:20\n"
                     "m=video 0 RTP/AVP 97\n")),
      Names{});
}

TEST(Calls, OfSecurePhonesOnHold) {
  EXPECT_EQ(linesOf(bodyOf("m=audio 16384 RTP/SAVP 0 101\n"
                           "a=crypto:1 AEAD_AES_256_GCM inline:b2ZmZXI=\n"
                           "a=crypto:2 AES_CM_128_HMAC_SHA1_80 inline:b2ZmZXI=|2^31\n"
                           "a=rtpmap:101 telephone-event/8000\na=sendonly\n"),
                    bodyOf("m=audio 30000 RTP/SAVP 0 101\n"
                           "a=crypto:2 AES_CM_128_HMAC_SHA1_80 inline:YW5zd2Vy\n"
                           "a=rtpmap:101 telephone-event/8000\na=recvonly\n")),
            Names{});
}

TEST(Calls, OfFaxGateways) {
  EXPECT_EQ(
      linesOf(bodyOf("m=image 5000 udptl t38\na=T38FaxVersion:0\na=T38FaxRateManagement:transferredTCF\n"
                     "m=audio 0 RTP/AVP 0\n"),
              bodyOf("m=image 6000 UDPTL T38\na=T38FaxVersion:0\n"
                     "m=audio 0 RTP/AVP 0\n")),
      Names{});
}

TEST(Calls, OfMobileNetworks) {
  EXPECT_EQ(linesOf(bodyOf("b=AS:41\nm=audio 49152 RTP/AVP 104 110 102 100\n"
                           "a=rtpmap:104 AMR-WB/16000/1\na=fmtp:104 mode-change-capability=2;max-red=220\n"
                           "a=rtpmap:110 AMR-WB/16000/1\na=fmtp:110 octet-align=1;max-red=220\n"
                           "a=rtpmap:102 AMR/8000/1\na=fmtp:102 mode-set=0,2,4,7\n"
                           "a=rtpmap:100 telephone-event/16000\n"
                           "a=curr:qos local none\na=des:qos mandatory local sendrecv\n"),
                    bodyOf("m=audio 50000 RTP/AVP 104 100\n"
                           "a=rtpmap:104 AMR-WB/16000\na=fmtp:104 mode-set=0,1,2;max-red=0\n"
                           "a=rtpmap:100 telephone-event/16000\na=fmtp:100 0-15\n"
                           "a=curr:qos local none\na=conf:qos remote sendrecv\n")),
            Names{});
}

/// A section of a browser, whose address comes with trickling candidates.
std::string browserSection(const std::string& head, const std::string& setup, const std::string& formats) {
  return head +
         "c=IN IP4 0.0.0.0\na=rtcp:9 IN IP4 0.0.0.0\na=ice-ufrag:4Zx+\na=ice-pwd:mbZ0kM5XGzY1vPiJkKqQ9fD2\n"
         "a=ice-options:trickle\na=fingerprint:sha-256 5A:C1\na=setup:" +
         setup + "\n" + formats;
}

TEST(Calls, OfBrowsers) {
  const std::string start = "a=group:BUNDLE 0 1 2\na=extmap-allow-mixed\na=msid-semantic: WMS\n";
  const std::string audio =
      "a=mid:0\na=extmap:1 urn:ietf:params:rtp-hdrext:ssrc-audio-level\na=extmap:4 urn:ietf:params:rtp-hdrext:sdes:mid\n"
      "a=rtcp-mux\na=rtpmap:111 opus/48000/2\na=rtcp-fb:111 transport-cc\na=fmtp:111 minptime=10;useinbandfec=1\n"
      "a=rtpmap:63 red/48000/2\na=fmtp:63 111/111\na=rtpmap:110 telephone-event/48000\n";
  const std::string video =
      "a=mid:1\na=extmap:4 urn:ietf:params:rtp-hdrext:sdes:mid\na=rtcp-mux\na=rtcp-rsize\n"
      "a=rtpmap:96 VP8/90000\na=rtpmap:97 rtx/90000\na=fmtp:97 apt=96\n"
      "a=rtpmap:103 H264/90000\na=fmtp:103 level-asymmetry-allowed=1;packetization-mode=1;profile-level-id=42001f\n"
      "a=rtpmap:104 rtx/90000\na=fmtp:104 apt=103\n"
      "a=rtpmap:100 VP9/90000\na=fmtp:100 profile-id=2\n";
  const std::string answeredVideo =
      "a=mid:1\na=extmap:4 urn:ietf:params:rtp-hdrext:sdes:mid\na=rtcp-mux\na=rtcp-rsize\n"
      "a=rtpmap:96 VP8/90000\na=rtpmap:97 rtx/90000\na=fmtp:97 apt=96\n"
      "a=rtpmap:103 H264/90000\na=fmtp:103 level-asymmetry-allowed=1;packetization-mode=1;profile-level-id=420034\n";
  const std::string data = "a=mid:2\na=sctp-port:5000\na=max-message-size:262144\n";
  EXPECT_EQ(
      linesOf(bodyOf(start + browserSection("m=audio 9 UDP/TLS/RTP/SAVPF 111 63 110\n", "actpass", audio) +
                     browserSection("m=video 0 UDP/TLS/RTP/SAVPF 96 97 103 104 100\n", "actpass",
                                    video + "a=bundle-only\n") +
                     browserSection("m=application 0 UDP/DTLS/SCTP webrtc-datachannel\n", "actpass",
                                    data + "a=bundle-only\n")),
              bodyOf(start +
                     browserSection("m=audio 9 UDP/TLS/RTP/SAVPF 111 63 110\n", "active",
                                    audio + "a=recvonly\n") +
                     browserSection("m=video 9 UDP/TLS/RTP/SAVPF 96 97 103\n", "active", answeredVideo) +
                     browserSection("m=application 9 UDP/DTLS/SCTP webrtc-datachannel\n", "active", data))),
      Names{});
}

TEST(Calls, OfBrowsersThatRefuseTheVideo) {
  const std::string dtls =
      "a=ice-ufrag:4Zx+\na=ice-pwd:mbZ0kM5XGzY1vPiJkKqQ9fD2\na=fingerprint:sha-256 5A:C1\n";
  const std::string audio = "m=audio 9 UDP/TLS/RTP/SAVPF 0\na=mid:a\na=rtcp-mux\n";
  const std::string video = " UDP/TLS/RTP/SAVPF 34\na=mid:v\na=rtcp-mux\n";
  EXPECT_EQ(linesOf(bodyOf("a=group:BUNDLE a v\n" + dtls + "a=setup:actpass\n" + audio + "m=video 9" + video),
                    bodyOf("a=group:BUNDLE a\n" + dtls + "a=setup:active\n" + audio + "m=video 0" + video +
                           "a=inactive\n")),
            Names{});
}

}  // namespace
