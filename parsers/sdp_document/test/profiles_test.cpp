#include "documentTestSupport.h"

// set-profile, opportunistic and secure-only: transports and the keys beside them.

namespace {

using documentTest::expectDone;
using documentTest::expectRefused;
using documentTest::expectUnchanged;
using sdp::Reason;

/// Everything that a profile may take along.
constexpr const char* kAllKeys =
    "a=crypto:1 x y|a=key-mgmt:mikey z|a=fingerprint:sha-1 AA|a=setup:actpass|a=tls-id:t|a=rtcp-fb:0 "
    "nack|a=rtcp-fb:* x|"
    "a=rtcp-rsize|a=ice-ufrag:u|";

struct ProfileCase {
  const char* profile;
  const char* left;  ///< of kAllKeys
};

TEST(SetProfile, LeavesTheKeysThatGoWithIt) {
  const ProfileCase cases[] = {
      {"RTP/AVP", "a=ice-ufrag:u|"},
      {"RTP/AVPF", "a=rtcp-fb:0 nack|a=rtcp-fb:* x|a=rtcp-rsize|a=ice-ufrag:u|"},
      {"RTP/SAVP", "a=crypto:1 x y|a=key-mgmt:mikey z|a=ice-ufrag:u|"},
      {"RTP/SAVPF",
       "a=crypto:1 x y|a=key-mgmt:mikey z|a=rtcp-fb:0 nack|a=rtcp-fb:* x|a=rtcp-rsize|a=ice-ufrag:u|"},
      {"UDP/TLS/RTP/SAVP", "a=fingerprint:sha-1 AA|a=setup:actpass|a=tls-id:t|a=ice-ufrag:u|"},
      {"UDP/TLS/RTP/SAVPF",
       "a=fingerprint:sha-1 AA|a=setup:actpass|a=tls-id:t|a=rtcp-fb:0 nack|a=rtcp-fb:* "
       "x|a=rtcp-rsize|a=ice-ufrag:u|"},
  };
  for (const ProfileCase& c : cases) {
    for (const char* const transport : {"RTP/AVP", "UDP/TLS/RTP/SAVPF", "X/RTP/Y", c.profile}) {
      SCOPED_TRACE(std::string(transport) + " to " + c.profile);
      const std::string request = std::string("set-profile ") + c.profile;
      const std::string before =
          std::string("m=audio 9\t") + transport + "  0 |" + kAllKeys + "m=video 0 RTP/AVP 31|" + kAllKeys;
      const std::string after =
          std::string("m=audio 9\t") + c.profile + "  0 |" + c.left + "m=video 0 RTP/AVP 31|" + kAllKeys;
      expectDone({{"a disabled section stays", request.c_str(), before.c_str(), after.c_str()}});
    }
  }
}

TEST(SetProfile, TakesTheSessionsKeysThatDoNotGoWithIt) {
  const char* const session =
      "a=crypto:1 x y|a=key-mgmt:mikey z|a=fingerprint:x|a=setup:y|a=tls-id:z|a=rtcp-fb:* a|a=rtcp-rsize|";
  const ProfileCase cases[] = {
      {"RTP/AVP", "a=crypto:1 x y|a=rtcp-fb:* a|a=rtcp-rsize|"},
      {"RTP/AVPF", "a=crypto:1 x y|a=rtcp-fb:* a|a=rtcp-rsize|"},
      {"RTP/SAVP", "a=crypto:1 x y|a=key-mgmt:mikey z|a=rtcp-fb:* a|a=rtcp-rsize|"},
      {"RTP/SAVPF", "a=crypto:1 x y|a=key-mgmt:mikey z|a=rtcp-fb:* a|a=rtcp-rsize|"},
      {"UDP/TLS/RTP/SAVP", "a=crypto:1 x y|a=fingerprint:x|a=setup:y|a=tls-id:z|a=rtcp-fb:* a|a=rtcp-rsize|"},
      {"UDP/TLS/RTP/SAVPF",
       "a=crypto:1 x y|a=fingerprint:x|a=setup:y|a=tls-id:z|a=rtcp-fb:* a|a=rtcp-rsize|"},
  };
  for (const ProfileCase& c : cases) {
    SCOPED_TRACE(c.profile);
    const std::string request = std::string("set-profile ") + c.profile;
    const std::string before = std::string(session) + "m=audio 9 RTP/SAVP 0|";
    const std::string after = std::string(c.left) + "m=audio 9 " + c.profile + " 0|";
    expectDone({{"the session", request.c_str(), before.c_str(), after.c_str()}});
  }
}

TEST(SetProfile, LeavesWhatIsNoRtpOrOverTcp) {
  expectUnchanged({
      {"no RTP", "set-profile RTP/AVP", "a=fingerprint:x|m=application 9 UDP/DTLS/SCTP x|a=crypto:1 x y|"},
      {"TCP", "set-profile RTP/AVP", "a=fingerprint:x|m=audio 9 TCP/RTP/AVPF 0|a=rtcp-fb:0 x|"},
      {"disabled", "set-profile RTP/SAVP", "a=fingerprint:x|m=audio 0 RTP/AVPF 0|"},
      {"no section", "set-profile RTP/SAVP", "a=fingerprint:x|a=setup:y|"},
      {"not selected", "set-profile RTP/AVP video", "a=fingerprint:x|m=audio 9 RTP/AVPF 0|"},
  });
  expectDone({{"bundled only follows", "set-profile RTP/AVPF", "m=audio 0 RTP/AVP 0|a=bundle-only|",
               "m=audio 0 RTP/AVPF 0|a=bundle-only|"}});
}

TEST(SetProfile, IsRefusedWithoutKeys) {
  expectRefused({
      {"none", "set-profile RTP/SAVP", "m=audio 9 RTP/AVP 0|a=fingerprint:x|", Reason::noKeys, 1, 5,
       "section 1 (audio): neither crypto nor key-mgmt"},
      {"the session's crypto is nobody's", "set-profile RTP/SAVPF", "a=crypto:1 x y|m=audio 9 RTP/AVP 0|",
       Reason::noKeys, 1, 6, "section 1 (audio): neither crypto nor key-mgmt"},
      {"one of two lacks them", "set-profile RTP/SAVP",
       "m=audio 9 RTP/AVP 0|a=crypto:1 x y|m=video 9 RTP/AVP 31|", Reason::noKeys, 2, 7,
       "section 2 (video): neither crypto nor key-mgmt"},
      {"no fingerprint", "set-profile UDP/TLS/RTP/SAVPF",
       "m=audio 9 RTP/AVP 0|a=crypto:1 x y|a=setup:active|", Reason::noFingerprint, 1, 5,
       "section 1 (audio): no fingerprint"},
  });
  expectDone({
      {"key-mgmt of the session", "set-profile RTP/SAVP", "a=key-mgmt:x|m=audio 9 RTP/AVP 0|",
       "a=key-mgmt:x|m=audio 9 RTP/SAVP 0|"},
      {"fingerprint of the session", "set-profile UDP/TLS/RTP/SAVP", "a=fingerprint:x|m=audio 9 RTP/AVP 0|",
       "a=fingerprint:x|m=audio 9 UDP/TLS/RTP/SAVP 0|"},
      {"in a section that is not selected they do not matter", "set-profile RTP/SAVP 1",
       "m=audio 9 RTP/AVP 0|a=crypto:1 x y|m=video 9 RTP/AVP 31|",
       "m=audio 9 RTP/SAVP 0|a=crypto:1 x y|m=video 9 RTP/AVP 31|"},
  });
}

TEST(SetProfile, IsRefusedWhileAnotherSectionRestsOnTheSessionsKeys) {
  expectRefused({
      {"dtls without RTP", "set-profile RTP/AVP",
       "a=fingerprint:x|m=audio 9 UDP/TLS/RTP/SAVPF 0|m=application 9 UDP/DTLS/SCTP x|",
       Reason::sessionKeysInUse, 2, 7, "section 2 (application): rests on keys of the session that would go"},
      {"dtls", "set-profile RTP/AVP audio",
       "a=fingerprint:x|m=audio 9 UDP/TLS/RTP/SAVPF 0|m=video 9 UDP/TLS/RTP/SAVPF 31|",
       Reason::sessionKeysInUse, 2, 7, "section 2 (video): rests on keys of the session that would go"},
      {"osrtp, though it has crypto", "set-profile RTP/AVP audio",
       "a=fingerprint:x|m=video 9 RTP/AVP 31|a=crypto:1 x y|m=audio 9 RTP/AVP 0|", Reason::sessionKeysInUse,
       1, 6, "section 1 (video): rests on keys of the session that would go"},
      {"over TCP", "set-profile RTP/AVP",
       "a=fingerprint:x|m=audio 9 RTP/AVP 0|m=video 9 TCP/DTLS/RTP/SAVP 31|", Reason::sessionKeysInUse, 2, 7,
       "section 2 (video): rests on keys of the session that would go"},
      {"mikey", "set-profile RTP/AVP audio", "a=key-mgmt:x|m=audio 9 RTP/AVP 0|m=video 9 RTP/SAVP 31|",
       Reason::sessionKeysInUse, 2, 7, "section 2 (video): rests on keys of the session that would go"},
      {"mikey, for DTLS", "set-profile UDP/TLS/RTP/SAVP audio",
       "a=key-mgmt:x|m=audio 9 RTP/AVP 0|a=fingerprint:y|m=video 9 RTP/SAVP 31|", Reason::sessionKeysInUse, 2,
       8, "section 2 (video): rests on keys of the session that would go"},
      {"bundled only is not disabled", "set-profile RTP/AVP audio",
       "a=fingerprint:x|m=audio 9 RTP/AVP 0|m=video 0 UDP/TLS/RTP/SAVP 31|a=bundle-only|",
       Reason::sessionKeysInUse, 2, 7, "section 2 (video): rests on keys of the session that would go"},
  });
  expectDone({
      {"a fingerprint of its own, though it loses the session's setup", "set-profile RTP/AVP audio",
       "a=fingerprint:x|a=setup:y|m=audio 9 UDP/TLS/RTP/SAVPF 0|m=application 9 UDP/DTLS/SCTP "
       "x|a=fingerprint:z|",
       "m=audio 9 RTP/AVP 0|m=application 9 UDP/DTLS/SCTP x|a=fingerprint:z|"},
      {"disabled", "set-profile RTP/AVP",
       "a=fingerprint:x|m=audio 9 RTP/AVP 0|m=video 0 UDP/TLS/RTP/SAVP 31|",
       "m=audio 9 RTP/AVP 0|m=video 0 UDP/TLS/RTP/SAVP 31|"},
      {"the session has no fingerprint that could go", "set-profile RTP/AVP audio",
       "a=setup:x|m=audio 9 RTP/AVP 0|m=application 9 UDP/DTLS/SCTP x|",
       "m=audio 9 RTP/AVP 0|m=application 9 UDP/DTLS/SCTP x|"},
      {"key-mgmt of its own", "set-profile RTP/AVP audio",
       "a=key-mgmt:x|m=audio 9 RTP/AVP 0|m=video 9 RTP/SAVP 31|a=key-mgmt:y|",
       "m=audio 9 RTP/AVP 0|m=video 9 RTP/SAVP 31|a=key-mgmt:y|"},
      {"key-mgmt stays for SAVP", "set-profile RTP/SAVP audio",
       "a=key-mgmt:x|m=audio 9 RTP/AVP 0|m=video 9 RTP/SAVP 31|",
       "a=key-mgmt:x|m=audio 9 RTP/SAVP 0|m=video 9 RTP/SAVP 31|"},
      {"sdes rests on its own", "set-profile RTP/AVP audio",
       "a=key-mgmt:x|m=audio 9 RTP/AVP 0|m=video 9 RTP/SAVP 31|a=crypto:1 x y|",
       "m=audio 9 RTP/AVP 0|m=video 9 RTP/SAVP 31|a=crypto:1 x y|"},
  });
}

TEST(SetProfile, IsRefusedWhereABundleWouldHaveTwoTransports) {
  const char* const bundle = "a=group:BUNDLE 0 1|m=audio 9 RTP/AVP 0|a=mid:0|m=video 9 RTP/AVP 31|a=mid:1|";
  expectRefused({
      {"one of two", "set-profile RTP/AVPF audio", bundle, Reason::differentTransports, 2, 8,
       "section 2 (video): other transport than the rest of its BUNDLE group"},
  });
  expectDone({
      {"both", "set-profile RTP/AVPF", bundle,
       "a=group:BUNDLE 0 1|m=audio 9 RTP/AVPF 0|a=mid:0|m=video 9 RTP/AVPF 31|a=mid:1|"},
      {"they had several before", "set-profile RTP/AVPF audio",
       "a=group:BUNDLE 0 1|m=audio 9 RTP/AVP 0|a=mid:0|m=video 9 RTP/SAVP 31|a=mid:1|",
       "a=group:BUNDLE 0 1|m=audio 9 RTP/AVPF 0|a=mid:0|m=video 9 RTP/SAVP 31|a=mid:1|"},
      {"one over TCP made them several before", "set-profile RTP/AVPF audio",
       "a=group:BUNDLE 0 1 2|m=audio 9 RTP/AVP 0|a=mid:0|m=video 9 RTP/AVP 31|a=mid:1|m=audio 9 TCP/RTP/AVP "
       "0|a=mid:2|",
       "a=group:BUNDLE 0 1 2|m=audio 9 RTP/AVPF 0|a=mid:0|m=video 9 RTP/AVP 31|a=mid:1|m=audio 9 TCP/RTP/AVP "
       "0|a=mid:2|"},
      {"another group", "set-profile RTP/AVPF audio",
       "a=group:LS 0 1|m=audio 9 RTP/AVP 0|a=mid:0|m=video 9 RTP/AVP 31|a=mid:1|",
       "a=group:LS 0 1|m=audio 9 RTP/AVPF 0|a=mid:0|m=video 9 RTP/AVP 31|a=mid:1|"},
      {"the other is disabled", "set-profile RTP/AVPF audio",
       "a=group:BUNDLE 0 1|m=audio 9 RTP/AVP 0|a=mid:0|m=video 0 RTP/AVP 31|a=mid:1|",
       "a=group:BUNDLE 0 1|m=audio 9 RTP/AVPF 0|a=mid:0|m=video 0 RTP/AVP 31|a=mid:1|"},
      {"the other is no RTP", "set-profile RTP/AVPF audio",
       "a=group:BUNDLE 0 1|m=audio 9 RTP/AVP 0|a=mid:0|m=x 9 y 31|a=mid:1|",
       "a=group:BUNDLE 0 1|m=audio 9 RTP/AVPF 0|a=mid:0|m=x 9 y 31|a=mid:1|"},
  });
}

// --- opportunistic and secure-only ---------------------------------------------------------------------------

TEST(Opportunistic, MakesProtectedSectionsPlainWithTheirKeys) {
  expectDone({
      {"sdes", "opportunistic", "m=audio 9 RTP/SAVP 0|a=crypto:1 x y|",
       "m=audio 9 RTP/AVP 0|a=crypto:1 x y|"},
      {"sdes with feedback", "opportunistic", "m=audio 9 RTP/SAVPF 0|a=crypto:1 x y|",
       "m=audio 9 RTP/AVPF 0|a=crypto:1 x y|"},
      {"mikey", "opportunistic", "a=key-mgmt:x|m=audio 9 RTP/SAVP 0|", "a=key-mgmt:x|m=audio 9 RTP/AVP 0|"},
      {"dtls", "opportunistic", "a=fingerprint:x|m=audio 9 UDP/TLS/RTP/SAVPF 0|a=rtcp-fb:* x|a=setup:active|",
       "a=fingerprint:x|m=audio 9 RTP/AVPF 0|a=rtcp-fb:* x|a=setup:active|"},
      {"dtls without TLS in its transport", "opportunistic", "m=audio 9 RTP/SAVP 0|a=fingerprint:x|",
       "m=audio 9 RTP/AVP 0|a=fingerprint:x|"},
      {"those that are selected", "opportunistic 2",
       "m=audio 9 RTP/SAVP 0|a=crypto:1 x y|m=audio 9 RTP/SAVP 0|a=crypto:1 x y|",
       "m=audio 9 RTP/SAVP 0|a=crypto:1 x y|m=audio 9 RTP/AVP 0|a=crypto:1 x y|"},
  });
  expectUnchanged({
      {"keyless", "opportunistic", "m=audio 9 RTP/SAVP 0|m=video 9 UDP/TLS/RTP/SAVP 31|a=crypto:1 x y|"},
      {"osrtp", "opportunistic", "m=audio 9 RTP/AVP 0|a=crypto:1 x y|"},
      {"plain", "opportunistic", "m=audio 9 RTP/AVP 0|"},
      {"TCP", "opportunistic", "m=audio 9 TCP/RTP/SAVP 0|a=crypto:1 x y|"},
      {"no RTP", "opportunistic", "a=fingerprint:x|m=application 9 UDP/DTLS/SCTP x|"},
      {"disabled", "opportunistic", "m=audio 0 RTP/SAVP 0|a=crypto:1 x y|"},
  });
  expectRefused(
      {{"a bundle of two transports", "opportunistic",
        "a=group:BUNDLE 0 1|m=audio 9 RTP/SAVP 0|a=mid:0|a=crypto:1 x y|m=video 9 RTP/SAVP 31|a=mid:1|",
        Reason::differentTransports, 2, 9,
        "section 2 (video): other transport than the rest of its BUNDLE group"}});
}

TEST(SecureOnly, GivesOpportunisticSectionsTheProfileOfTheirKeys) {
  expectDone({
      {"crypto", "secure-only", "m=audio 9 RTP/AVP 0|a=crypto:1 x y|a=fingerprint:z|",
       "m=audio 9 RTP/SAVP 0|a=crypto:1 x y|a=fingerprint:z|"},
      {"crypto with feedback", "secure-only", "m=audio 9 RTP/AVPF 0|a=crypto:1 x y|",
       "m=audio 9 RTP/SAVPF 0|a=crypto:1 x y|"},
      {"key-mgmt", "secure-only", "m=audio 9 RTP/AVP 0|a=key-mgmt:x|", "m=audio 9 RTP/SAVP 0|a=key-mgmt:x|"},
      {"a fingerprint", "secure-only", "m=audio 9 RTP/AVP 0|a=fingerprint:x|a=setup:y|",
       "m=audio 9 UDP/TLS/RTP/SAVP 0|a=fingerprint:x|a=setup:y|"},
      {"the session's fingerprint, with feedback", "secure-only", "a=fingerprint:x|m=audio 9 RTP/AVPF 0|",
       "a=fingerprint:x|m=audio 9 UDP/TLS/RTP/SAVPF 0|"},
      {"a fingerprint and the session's key-mgmt", "secure-only",
       "a=key-mgmt:y|m=audio 9 RTP/AVP 0|a=fingerprint:x|",
       "a=key-mgmt:y|m=audio 9 RTP/SAVP 0|a=fingerprint:x|"},
  });
  expectUnchanged({
      {"plain", "secure-only", "a=key-mgmt:x|m=audio 9 RTP/AVP 0|"},
      {"secure", "secure-only",
       "m=audio 9 RTP/SAVP 0|a=crypto:1 x y|m=audio 9 UDP/TLS/RTP/SAVP 0|a=fingerprint:x|"},
      {"TCP", "secure-only", "m=audio 9 TCP/RTP/AVP 0|a=crypto:1 x y|"},
      {"disabled", "secure-only", "m=audio 0 RTP/AVP 0|a=crypto:1 x y|"},
      {"not selected", "secure-only video", "m=audio 9 RTP/AVP 0|a=crypto:1 x y|"},
  });
  expectRefused(
      {{"a bundle of two transports", "secure-only",
        "a=group:BUNDLE 0 1|m=audio 9 RTP/AVP 0|a=mid:0|a=crypto:1 x y|m=video 9 RTP/AVP 31|a=mid:1|",
        Reason::differentTransports, 2, 9,
        "section 2 (video): other transport than the rest of its BUNDLE group"}});
}

TEST(SecureOnly, UndoesOpportunisticForKeysOfOneKind) {
  const char* const bodies[] = {
      "m=audio 9 RTP/SAVPF 0|a=crypto:1 x y|",
      "m=audio 9 RTP/SAVP 0|a=key-mgmt:x|",
      "a=fingerprint:x|m=audio 9 UDP/TLS/RTP/SAVP 0|",
  };
  for (const char* const body : bodies) {
    sdp::Document document = documentTest::documentBehindHead(body);
    const std::string text(document.text());
    EXPECT_FALSE(makeOpportunistic(document));
    EXPECT_NE(document.text(), text);
    EXPECT_FALSE(makeSecureOnly(document));
    EXPECT_EQ(document.text(), text);
  }
}

}  // namespace
