#include "answer/answerTestSupport.h"

// What protects the media of answers.

using namespace answerTest;
using sdp::SectionOutcome;

namespace {

constexpr const char* kSdes =
    "m=audio 5000 RTP/SAVP 0|a=crypto:7 AES_CM_128_HMAC_SHA1_80 inline:ours80 UNENCRYPTED_SRTP WSH=64|a=crypto:8 "
    "AES_CM_128_HMAC_SHA1_32 inline:ours32|";
constexpr const char* kDtls = "m=audio 5000 UDP/TLS/RTP/SAVP 0|a=fingerprint:sha-256 AA:BB|a=setup:actpass|";
constexpr const char* kPlain = "m=audio 5000 RTP/AVP 0|";

TEST(Sdes, AnswersTheFirstOfferedSuiteThatWeHave) {
  expectAnswers(
      {{"its tag, our key",
        "m=audio 4000 RTP/SAVP 0|a=crypto:1 F8_128_HMAC_SHA1_80 inline:f8|a=crypto:2 AES_CM_128_HMAC_SHA1_32 "
        "inline:t32|a=crypto:3 AES_CM_128_HMAC_SHA1_80 inline:t80|",
        kSdes, "m=audio 5000 RTP/SAVP 0|a=crypto:2 AES_CM_128_HMAC_SHA1_32 inline:ours32|"},
       {"session parameters that we lack",
        "m=audio 4000 RTP/SAVP 0|a=crypto:1 AES_CM_128_HMAC_SHA1_80 inline:t80 KDR=1|a=crypto:2 "
        "AES_CM_128_HMAC_SHA1_32 inline:t32|",
        kSdes, "m=audio 5000 RTP/SAVP 0|a=crypto:2 AES_CM_128_HMAC_SHA1_32 inline:ours32|"},
       {"session parameters that both have",
        "m=audio 4000 RTP/SAVP 0|a=crypto:1 AES_CM_128_HMAC_SHA1_80 inline:t80 WSH=64|", kSdes,
        "m=audio 5000 RTP/SAVP 0|a=crypto:1 AES_CM_128_HMAC_SHA1_80 inline:ours80 WSH=64|"},
       {"session parameters that need not be known",
        "m=audio 4000 RTP/SAVP 0|a=crypto:1 AES_CM_128_HMAC_SHA1_32 inline:t32 -X=1|", kSdes,
        "m=audio 5000 RTP/SAVP 0|a=crypto:1 AES_CM_128_HMAC_SHA1_32 inline:ours32|"},
       {"lines that are none",
        "m=audio 4000 RTP/SAVP 0|a=crypto:x AES_CM_128_HMAC_SHA1_80 inline:a|a=crypto:1 AES_CM_128_HMAC_SHA1_80|a=crypto:2 "
        "AES_CM_128_HMAC_SHA1_32 inline:t32|",
        kSdes, "m=audio 5000 RTP/SAVP 0|a=crypto:2 AES_CM_128_HMAC_SHA1_32 inline:ours32|"},
       {"also of a section that need not be protected",
        "m=audio 4000 RTP/SAVPF 0|a=crypto:1 AES_CM_128_HMAC_SHA1_32 inline:t32|",
        "m=audio 5000 RTP/AVP 0|a=crypto:8 AES_CM_128_HMAC_SHA1_32 inline:ours32|",
        "m=audio 5000 RTP/SAVPF 0|a=crypto:1 AES_CM_128_HMAC_SHA1_32 inline:ours32|"}});
  expectRefusals({{"no suite in common",
                   "m=audio 4000 RTP/SAVP 0|a=crypto:1 F8_128_HMAC_SHA1_80 inline:f8|",
                   kSdes,
                   {SectionOutcome::noCommonKeys}},
                  {"no key", "m=audio 4000 RTP/SAVP 0|", kSdes, {SectionOutcome::noCommonKeys}},
                  {"MIKEY alone",
                   "m=audio 4000 RTP/SAVP 0|a=key-mgmt:mikey AQ==|",
                   kSdes,
                   {SectionOutcome::noCommonKeys}},
                  {"keys of the session are none",
                   "v=0|a=crypto:1 AES_CM_128_HMAC_SHA1_80 inline:t80|m=audio 4000 RTP/SAVP 0|",
                   kSdes,
                   {SectionOutcome::noCommonKeys}}});
}

TEST(Dtls, HasTheLocalFingerprintAndTheOtherRole) {
  const char* const active = "m=audio 5000 UDP/TLS/RTP/SAVP 0|a=fingerprint:sha-256 AA:BB|a=setup:active|";
  const char* const passive = "m=audio 5000 UDP/TLS/RTP/SAVP 0|a=fingerprint:sha-256 AA:BB|a=setup:passive|";
  const char* const actpassOffer = "m=audio 4000 UDP/TLS/RTP/SAVP 0|a=fingerprint:sha-1 CC|a=setup:actpass|";
  expectAnswers(
      {{"to actpass", actpassOffer, kDtls, active},
       {"to passive", "m=audio 4000 UDP/TLS/RTP/SAVP 0|a=fingerprint:sha-1 CC|a=setup:passive|", kDtls,
        active},
       {"to active", "m=audio 4000 UDP/TLS/RTP/SAVP 0|a=fingerprint:sha-1 CC|a=setup:active|", kDtls,
        passive},
       {"to none", "m=audio 4000 UDP/TLS/RTP/SAVP 0|a=fingerprint:sha-1 CC|", kDtls, passive},
       {"to another word", "m=audio 4000 UDP/TLS/RTP/SAVP 0|a=fingerprint:sha-1 CC|a=setup:holdconn|", kDtls,
        passive},
       {"from the sessions", "a=fingerprint:sha-1 CC|a=setup:actpass|m=audio 4000 UDP/TLS/RTP/SAVP 0|",
        "a=fingerprint:sha-256 AA:BB|m=audio 5000 UDP/TLS/RTP/SAVP 0|",
        "a=fingerprint:sha-256 AA:BB|m=audio 5000 UDP/TLS/RTP/SAVP 0|a=setup:active|"},
       {"keys of SDES do not count there",
        "m=audio 4000 UDP/TLS/RTP/SAVP 0|a=fingerprint:sha-1 CC|a=setup:actpass|a=crypto:1 AES_CM_128_HMAC_SHA1_80 "
        "inline:t80|",
        "m=audio 5000 UDP/TLS/RTP/SAVP 0|a=crypto:1 AES_CM_128_HMAC_SHA1_80 inline:o80|a=fingerprint:sha-256 "
        "AA:BB|a=setup:actpass|",
        active},
       {"where no suite is common",
        "m=audio 4000 RTP/SAVP 0|a=crypto:1 F8_128_HMAC_SHA1_80 inline:f8|a=fingerprint:sha-1 CC|a=setup:actpass|",
        kDtls, "m=audio 5000 RTP/SAVP 0|a=fingerprint:sha-256 AA:BB|a=setup:active|"},
       {"an identity of TLS where one is offered",
        "m=audio 4000 UDP/TLS/RTP/SAVP 0|a=fingerprint:sha-1 CC|a=setup:actpass|a=tls-id:abc|",
        "m=audio 5000 UDP/TLS/RTP/SAVP 0|a=tls-id:def|a=fingerprint:sha-256 AA:BB|",
        "m=audio 5000 UDP/TLS/RTP/SAVP 0|a=tls-id:def|a=fingerprint:sha-256 AA:BB|a=setup:active|"}});
  sdp::AnswerOptions options;
  options.isPassive = true;
  expectAnswers({{"passive on wish", actpassOffer, kDtls, passive},
                 {"but not to passive",
                  "m=audio 4000 UDP/TLS/RTP/SAVP 0|a=fingerprint:sha-1 CC|a=setup:passive|", kDtls, active}},
                options);
  expectRefusals({{"without a fingerprint",
                   "m=audio 4000 UDP/TLS/RTP/SAVP 0|a=setup:actpass|",
                   kDtls,
                   {SectionOutcome::noCommonKeys}},
                  {"without one of ours", actpassOffer, kSdes, {SectionOutcome::noCommonKeys}}});
}

TEST(Dtls, KeepsTheRoleOfTheAnswerBefore) {
  const sdp::Document previous = documentOf(
      "v=0\r\no=me 7 4 IN IP4 192.0.2.2\r\nm=audio 5000 UDP/TLS/RTP/SAVP 0\r\na=setup:passive\r\n"
      "m=audio 0 UDP/TLS/RTP/SAVP 0\r\na=setup:passive\r\n");
  sdp::AnswerOptions options;
  options.previous = &previous;
  const char* const offer =
      "m=audio 4000 UDP/TLS/RTP/SAVP 0|a=fingerprint:sha-1 CC|a=setup:actpass|m=audio 4002 UDP/TLS/RTP/SAVP "
      "0|a=fingerprint:sha-1 CC|a=setup:actpass|";
  const char* const local =
      "a=fingerprint:sha-256 AA:BB|m=audio 5000 UDP/TLS/RTP/SAVP 0|m=audio 5002 UDP/TLS/RTP/SAVP 0|";
  expectAnswers(
      {{"where there was one", offer, local,
        "v=0|o=me 7 5 IN IP4 192.0.2.2|s=us|c=IN IP4 192.0.2.2|t=0 0|a=fingerprint:sha-256 AA:BB|m=audio 5000 "
        "UDP/TLS/RTP/SAVP 0|a=setup:passive|m=audio 5002 UDP/TLS/RTP/SAVP 0|a=setup:active|"}},
      options);
}

TEST(Dtls, KeepsTheRoleOfABundleForItsNewSections) {
  const sdp::Document previous = documentOf(
      "v=0\r\no=me 7 4 IN IP4 192.0.2.2\r\nm=audio 0 UDP/TLS/RTP/SAVP 0\r\nm=audio 5000 UDP/TLS/RTP/SAVP 0\r\n"
      "a=setup:passive\r\n");
  sdp::AnswerOptions options;
  options.previous = &previous;
  const char* const offer =
      "a=group:BUNDLE a b|a=fingerprint:sha-1 CC|a=setup:actpass|m=audio 4000 UDP/TLS/RTP/SAVP "
      "0|a=mid:a|a=rtcp-mux|m=audio 4000 UDP/TLS/RTP/SAVP 0|a=mid:b|a=rtcp-mux|";
  const char* const local =
      "a=group:BUNDLE x y|a=fingerprint:sha-256 AA:BB|m=audio 5000 UDP/TLS/RTP/SAVP 0|a=mid:x|a=rtcp-mux|m=audio "
      "5002 UDP/TLS/RTP/SAVP 0|a=mid:y|a=rtcp-mux|";
  expectAnswers(
      {{"although the first had none", offer, local,
        "v=0|o=me 7 5 IN IP4 192.0.2.2|s=us|c=IN IP4 192.0.2.2|t=0 0|a=group:BUNDLE a b|a=fingerprint:sha-256 "
        "AA:BB|m=audio 5000 UDP/TLS/RTP/SAVP 0|a=mid:a|a=rtcp-mux|a=setup:passive|m=audio 5000 UDP/TLS/RTP/SAVP "
        "0|a=mid:b|a=rtcp-mux|a=setup:passive|"}},
      options);
}

TEST(Osrtp, IsAnsweredWithTheKeysThatWeHave) {
  const char* const offer =
      "m=audio 4000 RTP/AVP 0|a=fingerprint:sha-1 CC|a=setup:actpass|a=crypto:1 AES_CM_128_HMAC_SHA1_80 inline:t80|";
  expectAnswers(
      {{"SDES first", offer,
        "m=audio 5000 RTP/AVP 0|a=fingerprint:sha-256 AA:BB|a=setup:actpass|a=crypto:9 "
        "AES_CM_128_HMAC_SHA1_80 inline:o80|",
        "m=audio 5000 RTP/AVP 0|a=crypto:1 AES_CM_128_HMAC_SHA1_80 inline:o80|"},
       {"DTLS", offer, kDtls, "m=audio 5000 RTP/AVP 0|a=fingerprint:sha-256 AA:BB|a=setup:active|"},
       {"else plain", offer, kPlain, kPlain},
       {"plain offers get no keys", "m=audio 4000 RTP/AVP 0|",
        "m=audio 5000 RTP/AVP 0|a=fingerprint:sha-256 AA:BB|a=setup:actpass|a=tls-id:x|a=key-mgmt:mikey "
        "AQ==|a=crypto:9 AES_CM_128_HMAC_SHA1_80 inline:o80|",
        kPlain}});
  expectRefusals({{"no key in common, and ours are wanted",
                   "m=audio 4000 RTP/AVP 0|a=fingerprint:sha-1 CC|",
                   kSdes,
                   {SectionOutcome::noCommonKeys}},
                  {"a plain offer", "m=audio 4000 RTP/AVP 0|", kSdes, {SectionOutcome::notProtected}},
                  {"a plain offer to DTLS", "m=audio 4000 RTP/AVP 0|", kDtls, {SectionOutcome::notProtected}},
                  {"a plain section of ours",
                   "m=audio 4000 RTP/SAVP 0|a=crypto:1 AES_CM_128_HMAC_SHA1_80 inline:t80|",
                   kPlain,
                   {SectionOutcome::notProtected}}});
}

TEST(Tls, HasRolesWithoutRtpToo) {
  expectAnswers(
      {{"DTLS of a data channel",
        "m=application 4000 UDP/DTLS/SCTP webrtc-datachannel|a=fingerprint:sha-1 CC|a=setup:actpass|a=sctp-port:5000|",
        "a=fingerprint:sha-256 AA:BB|m=application 5000 UDP/DTLS/SCTP webrtc-datachannel|a=sctp-port:5001|",
        "a=fingerprint:sha-256 AA:BB|m=application 5000 UDP/DTLS/SCTP "
        "webrtc-datachannel|a=sctp-port:5001|a=setup:active|"},
       {"TLS by names in certificates", "m=message 4000 TCP/TLS/MSRP *|a=path:msrps://a;tcp|",
        "m=message 5000 TCP/TLS/MSRP *|a=path:msrps://b;tcp|",
        "m=message 5000 TCP/TLS/MSRP *|a=path:msrps://b;tcp|a=setup:passive|"},
       {"TCP", "m=application 4000 TCP/BFCP *|a=setup:passive|",
        "m=application 5000 TCP/BFCP *|a=setup:actpass|a=connection:new|a=fingerprint:sha-256 AA:BB|",
        "m=application 5000 TCP/BFCP *|a=setup:active|a=connection:new|"}});
}

TEST(Keys, OfAGroupAreThoseOfItsFirstSectionThatHasSome) {
  expectAnswers(
      {{"of the offer and ours",
        "a=group:BUNDLE 1 2|m=audio 4000 RTP/SAVP 0|a=mid:1|a=rtcp-mux|a=crypto:1 AES_CM_128_HMAC_SHA1_80 "
        "inline:t80|m=video 4000 RTP/SAVP 31|a=mid:2|a=rtcp-mux|",
        "a=group:BUNDLE x y|m=audio 5000 RTP/SAVP 0|a=mid:x|a=rtcp-mux|a=crypto:9 AES_CM_128_HMAC_SHA1_80 "
        "inline:o80|m=video 5000 RTP/SAVP 31|a=mid:y|a=rtcp-mux|",
        "v=0|o=me 7 3 IN IP4 192.0.2.2|s=us|c=IN IP4 192.0.2.2|t=0 0|a=group:BUNDLE 1 2|m=audio 5000 RTP/SAVP "
        "0|a=mid:1|a=rtcp-mux|a=crypto:1 AES_CM_128_HMAC_SHA1_80 inline:o80|m=video 5000 RTP/SAVP "
        "31|a=mid:2|a=rtcp-mux|a=crypto:1 AES_CM_128_HMAC_SHA1_80 inline:o80|"}});
}

}  // namespace
