#include "answer/answerTestSupport.h"

// Fingerprints, identities of TLS and ICE credentials of the local session: they stay there when they hold for all that
// is accepted, and go into the sections otherwise.

using namespace answerTest;

namespace {

constexpr const char* kOffer =
    "m=audio 4000 UDP/TLS/RTP/SAVP 0|a=fingerprint:sha-1 CC|a=setup:actpass|m=video 4002 UDP/TLS/RTP/SAVP "
    "31|a=fingerprint:sha-1 CC|a=setup:actpass|";

TEST(SessionCredentials, StayAtTheirPlaceWhenAllAcceptedSectionsHaveThem) {
  const char* const local =
      "a=tool:t|a=fingerprint:sha-256 AA|a=fingerprint:sha-1 BB|a=cname:c|m=audio 5000 UDP/TLS/RTP/SAVP "
      "0|a=ptime:20|m=video 5002 UDP/TLS/RTP/SAVP 31|";
  expectAnswers(
      {{"all fingerprints", kOffer, local,
        "a=tool:t|a=fingerprint:sha-256 AA|a=fingerprint:sha-1 BB|a=cname:c|m=audio 5000 UDP/TLS/RTP/SAVP "
        "0|a=ptime:20|a=setup:active|m=video 5002 UDP/TLS/RTP/SAVP 31|a=setup:active|"},
       {"a refused section has no say",
        "m=text 4004 RTP/AVP 98|m=audio 4000 UDP/TLS/RTP/SAVP 0|a=fingerprint:sha-1 CC|a=setup:actpass|m=video 0 "
        "RTP/AVP 31|",
        local,
        "a=tool:t|a=fingerprint:sha-256 AA|a=fingerprint:sha-1 BB|a=cname:c|m=text 0 RTP/AVP 98|m=audio 5000 "
        "UDP/TLS/RTP/SAVP 0|a=ptime:20|a=setup:active|m=video 0 RTP/AVP 31|"},
       {"nothing is accepted", "m=audio 0 UDP/TLS/RTP/SAVP 0|", local,
        "a=tool:t|a=cname:c|m=audio 0 UDP/TLS/RTP/SAVP 0|"}});
}

TEST(SessionCredentials, GoIntoTheSectionsWhenOneHasNone) {
  expectAnswers(
      {{"a plain section",
        "m=audio 4000 UDP/TLS/RTP/SAVP 0|a=fingerprint:sha-1 CC|a=setup:passive|m=video 4002 RTP/AVP 31|",
        "a=fingerprint:sha-256 AA|m=audio 5000 UDP/TLS/RTP/SAVP 0|m=video 5002 RTP/AVP 31|",
        "m=audio 5000 UDP/TLS/RTP/SAVP 0|a=fingerprint:sha-256 AA|a=setup:active|m=video 5002 RTP/AVP 31|"},
       {"a section with SDES",
        "m=audio 4000 RTP/SAVP 0|a=crypto:1 AES_CM_128_HMAC_SHA1_80 inline:t80|m=video 4002 UDP/TLS/RTP/SAVP "
        "31|a=fingerprint:sha-1 CC|a=setup:passive|",
        "a=fingerprint:sha-256 AA|m=audio 5000 RTP/SAVP 0|a=crypto:9 AES_CM_128_HMAC_SHA1_80 inline:o80|m=video 5002 "
        "UDP/TLS/RTP/SAVP 31|",
        "m=audio 5000 RTP/SAVP 0|a=crypto:1 AES_CM_128_HMAC_SHA1_80 inline:o80|m=video 5002 UDP/TLS/RTP/SAVP "
        "31|a=fingerprint:sha-256 AA|a=setup:active|"},
       {"a section with its own", kOffer,
        "a=fingerprint:sha-256 AA|m=audio 5000 UDP/TLS/RTP/SAVP 0|a=fingerprint:sha-256 BB|m=video 5002 "
        "UDP/TLS/RTP/SAVP 31|",
        "m=audio 5000 UDP/TLS/RTP/SAVP 0|a=fingerprint:sha-256 BB|a=setup:active|m=video 5002 UDP/TLS/RTP/SAVP "
        "31|a=fingerprint:sha-256 AA|a=setup:active|"}});
}

TEST(SessionCredentials, HaveTheIdentityOfTlsWhenAllAreOfferedOne) {
  const char* const local =
      "a=tls-id:ours|a=fingerprint:sha-256 AA|m=audio 5000 UDP/TLS/RTP/SAVP 0|m=video 5002 UDP/TLS/RTP/SAVP 31|";
  expectAnswers(
      {{"in the session",
        "a=tls-id:them|m=audio 4000 UDP/TLS/RTP/SAVP 0|a=fingerprint:sha-1 CC|a=setup:actpass|m=video 4002 "
        "UDP/TLS/RTP/SAVP 31|a=fingerprint:sha-1 CC|a=setup:actpass|",
        local,
        "a=tls-id:ours|a=fingerprint:sha-256 AA|m=audio 5000 UDP/TLS/RTP/SAVP 0|a=setup:active|m=video 5002 "
        "UDP/TLS/RTP/SAVP 31|a=setup:active|"},
       {"in one section",
        "m=audio 4000 UDP/TLS/RTP/SAVP 0|a=fingerprint:sha-1 CC|a=setup:actpass|m=video 4002 UDP/TLS/RTP/SAVP "
        "31|a=fingerprint:sha-1 CC|a=setup:actpass|a=tls-id:them|",
        local,
        "a=fingerprint:sha-256 AA|m=audio 5000 UDP/TLS/RTP/SAVP 0|a=setup:active|m=video 5002 UDP/TLS/RTP/SAVP "
        "31|a=setup:active|a=tls-id:ours|"},
       {"nowhere", kOffer, local,
        "a=fingerprint:sha-256 AA|m=audio 5000 UDP/TLS/RTP/SAVP 0|a=setup:active|m=video 5002 UDP/TLS/RTP/SAVP "
        "31|a=setup:active|"}});
}

TEST(SessionCredentials, OfIceStayWhenAllAcceptedSectionsHaveIce) {
  const char* const local =
      "a=ice-ufrag:ours|a=ice-pwd:oursoursoursoursoursour|m=audio 5000 RTP/AVP 0|m=video 5002 RTP/AVP 31|";
  expectAnswers(
      {{"all have",
        "a=ice-ufrag:them|a=ice-pwd:themthemthemthemthemth|m=audio 4000 RTP/AVP 0|m=video 4002 RTP/AVP 31|",
        local, local},
       {"one has",
        "m=audio 4000 RTP/AVP 0|a=ice-ufrag:them|a=ice-pwd:themthemthemthemthemth|m=video 4002 RTP/AVP 31|",
        local,
        "m=audio 5000 RTP/AVP 0|a=ice-ufrag:ours|a=ice-pwd:oursoursoursoursoursour|m=video 5002 RTP/AVP 31|"},
       {"a section with its own",
        "a=ice-ufrag:them|a=ice-pwd:themthemthemthemthemth|m=audio 4000 RTP/AVP 0|m=video 4002 RTP/AVP 31|",
        "a=ice-ufrag:ours|a=ice-pwd:oursoursoursoursoursour|m=audio 5000 RTP/AVP 0|m=video 5002 RTP/AVP "
        "31|a=ice-ufrag:more|a=ice-pwd:moremoremoremoremoremo|",
        "m=audio 5000 RTP/AVP 0|a=ice-ufrag:ours|a=ice-pwd:oursoursoursoursoursour|m=video 5002 RTP/AVP "
        "31|a=ice-ufrag:more|a=ice-pwd:moremoremoremoremoremo|"},
       {"each by itself", "a=ice-ufrag:them|a=ice-pwd:themthemthemthemthemth|m=audio 4000 RTP/AVP 0|",
        "a=ice-ufrag:ours|m=audio 5000 RTP/AVP 0|a=ice-pwd:oursoursoursoursoursour|",
        "a=ice-ufrag:ours|m=audio 5000 RTP/AVP 0|a=ice-pwd:oursoursoursoursoursour|"}});
}

TEST(SessionCredentials, OfIceInAGroupAreThoseOfItsFirstSection) {
  const char* const offer =
      "a=group:BUNDLE 1 2|a=ice-ufrag:them|a=ice-pwd:themthemthemthemthemth|m=audio 4000 RTP/AVP "
      "0|a=mid:1|a=rtcp-mux|m=video 4000 RTP/AVP 31|a=mid:2|a=rtcp-mux|";
  expectAnswers(
      {{"from the session", offer,
        "a=group:BUNDLE x y|a=ice-ufrag:ours|a=ice-pwd:oursoursoursoursoursour|m=audio 5000 RTP/AVP "
        "0|a=mid:x|a=rtcp-mux|a=candidate:1 1 UDP 1 192.0.2.2 5000 typ host|m=video 5002 RTP/AVP "
        "31|a=mid:y|a=rtcp-mux|a=ice-ufrag:more|a=ice-pwd:moremoremoremoremoremo|",
        "a=group:BUNDLE 1 2|a=ice-ufrag:ours|a=ice-pwd:oursoursoursoursoursour|m=audio 5000 RTP/AVP "
        "0|a=mid:1|a=rtcp-mux|a=candidate:1 1 UDP 1 192.0.2.2 5000 typ host|m=video 5000 RTP/AVP "
        "31|a=mid:2|a=rtcp-mux|a=candidate:1 1 UDP 1 192.0.2.2 5000 typ host|"},
       {"its own", offer,
        "a=group:BUNDLE x y|a=ice-ufrag:ours|a=ice-pwd:oursoursoursoursoursour|m=audio 5000 RTP/AVP "
        "0|a=mid:x|a=rtcp-mux|a=ice-ufrag:more|a=ice-pwd:moremoremoremoremoremo|m=video 5002 RTP/AVP "
        "31|a=mid:y|a=rtcp-mux|",
        "a=group:BUNDLE 1 2|m=audio 5000 RTP/AVP "
        "0|a=mid:1|a=rtcp-mux|a=ice-ufrag:more|a=ice-pwd:moremoremoremoremoremo|m=video 5000 RTP/AVP "
        "31|a=mid:2|a=rtcp-mux|a=ice-ufrag:more|a=ice-pwd:moremoremoremoremoremo|"}});
}

}  // namespace
