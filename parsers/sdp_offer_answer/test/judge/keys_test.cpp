#include "judgeTestSupport.h"

// The rules of keys.

namespace {

using judgeTest::bodyOf;
using judgeTest::Names;
using judgeTest::namesOf;
using judgeTest::RuleCase;

class KeyRules : public testing::TestWithParam<RuleCase> {};

TEST_P(KeyRules, AreToldWhenBroken) { judgeTest::expectRule(GetParam()); }

constexpr const char* kSdes =
    "m=audio 4000 RTP/SAVP 0\n"
    "a=crypto:1 AES_CM_128_HMAC_SHA1_80 inline:b2ZmZXJvZmZlcm9mZmVyb2ZmZXJvZmZlcm9m\n"
    "a=crypto:2 AES_CM_128_HMAC_SHA1_32 inline:b2ZmZXJvZmZlcm9mZmVyb2ZmZXJvZmZlcm9m\n";

constexpr const char* kDtls =
    "m=audio 4000 UDP/TLS/RTP/SAVPF 0\na=setup:actpass\na=fingerprint:sha-256 AA:BB\n";

INSTANTIATE_TEST_SUITE_P(
    Judge, KeyRules,
    testing::Values(
        RuleCase{"tag",
                 kSdes,
                 "m=audio 5000 RTP/SAVP 0\na=crypto:3 AES_CM_128_HMAC_SHA1_80 inline:YW5zd2Vy\n",
                 "m=audio 5000 RTP/SAVP 0\na=crypto:1 AES_CM_128_HMAC_SHA1_80 inline:YW5zd2Vy\n",
                 {"1: crypto-tag: tag 3 was not offered"}},
        RuleCase{"suite",
                 kSdes,
                 "m=audio 5000 RTP/SAVP 0\na=crypto:1 AES_CM_128_HMAC_SHA1_32 inline:YW5zd2Vy\n",
                 "m=audio 5000 RTP/SAVP 0\na=crypto:2 AES_CM_128_HMAC_SHA1_32 inline:YW5zd2Vy\n",
                 {"1: crypto-suite: tag 1 was not offered with the suite AES_CM_128_HMAC_SHA1_32"}},
        RuleCase{"count",
                 kSdes,
                 "m=audio 5000 RTP/SAVP 0\na=crypto:1 AES_CM_128_HMAC_SHA1_80 inline:YW5zd2Vy\n"
                 "a=crypto:2 AES_CM_128_HMAC_SHA1_32 inline:YW5zd2Vy\n",
                 "m=audio 5000 RTP/SAVP 0\na=crypto:2 AES_CM_128_HMAC_SHA1_32 inline:YW5zd2Vy\n",
                 {"1: crypto-count: 2 crypto attributes, not one"}},
        RuleCase{"key",
                 kSdes,
                 "m=audio 5000 RTP/SAVP 0\n",
                 "m=audio 5000 RTP/SAVP 0\na=crypto:1 AES_CM_128_HMAC_SHA1_80 inline:YW5zd2Vy\n",
                 {"1: no-key: RTP/SAVP without a key of a kind that was offered"}},
        RuleCase{"key of another kind",
                 "m=audio 4000 RTP/SAVP 0\na=key-mgmt:mikey AAAA\na=fingerprint:sha-256 AA:BB\n",
                 "m=audio 5000 RTP/SAVP 0\na=crypto:1 AES_CM_128_HMAC_SHA1_80 inline:YW5zd2Vy\n",
                 "m=audio 5000 RTP/SAVP 0\na=fingerprint:sha-256 CC:DD\na=setup:passive\n",
                 {"1: crypto-tag: tag 1 was not offered",
                  "1: no-key: RTP/SAVP without a key of a kind that was offered"}},
        RuleCase{"fingerprint",
                 kDtls,
                 "m=audio 5000 UDP/TLS/RTP/SAVPF 0\na=setup:active\n",
                 "a=fingerprint:sha-256 CC:DD\nm=audio 5000 UDP/TLS/RTP/SAVPF 0\na=setup:active\n",
                 {"1: no-fingerprint: UDP/TLS/RTP/SAVPF without a fingerprint"}},
        RuleCase{
            "fingerprint without RTP",
            "m=application 4000 UDP/DTLS/SCTP webrtc-datachannel\na=setup:actpass\na=fingerprint:sha-256 AA:BB\n",
            "m=application 5000 UDP/DTLS/SCTP webrtc-datachannel\na=setup:active\n",
            "m=application 5000 UDP/DTLS/SCTP webrtc-datachannel\na=setup:active\na=fingerprint:sha-256 CC:DD\n",
            {"1: no-fingerprint: UDP/DTLS/SCTP without a fingerprint"}},
        RuleCase{"setup",
                 kDtls,
                 "m=audio 5000 UDP/TLS/RTP/SAVPF 0\na=fingerprint:sha-256 CC:DD\n",
                 "a=setup:active\nm=audio 5000 UDP/TLS/RTP/SAVPF 0\na=fingerprint:sha-256 CC:DD\n",
                 {"1: no-setup: setup was offered and has no answer"}},
        RuleCase{"setup of TCP",
                 "m=application 4000 TCP/BFCP *\na=setup:active\n",
                 "m=application 5000 TCP/BFCP *\na=setup:holdconn\n",
                 "m=application 5000 TCP/BFCP *\na=setup:passive\n",
                 {"1: no-setup: setup was offered and has no answer"}},
        RuleCase{"setup that was not offered, which has no role to break",
                 "m=audio 4000 RTP/AVP 0\n",
                 "m=audio 5000 RTP/AVP 0\na=fingerprint:sha-256 CC:DD\na=setup:active\n",
                 "m=audio 5000 RTP/AVP 0\na=fingerprint:sha-256 CC:DD\n",
                 {"1: setup-not-offered: setup was not offered"}},
        RuleCase{"setup that was not offered",
                 "m=audio 4000 RTP/AVP 0\n",
                 "m=audio 5000 RTP/AVP 0\na=setup:passive\n",
                 "m=audio 5000 RTP/AVP 0\na=setup:whatever\n",
                 {"1: setup-not-offered: setup was not offered"}},
        RuleCase{"actpass",
                 kDtls,
                 "m=audio 5000 UDP/TLS/RTP/SAVPF 0\na=setup:actpass\na=fingerprint:sha-256 CC:DD\n",
                 "m=audio 5000 UDP/TLS/RTP/SAVPF 0\na=setup:passive\na=fingerprint:sha-256 CC:DD\n",
                 {"1: setup-actpass: actpass is for offers alone"}},
        RuleCase{"both active",
                 "m=audio 4000 UDP/TLS/RTP/SAVPF 0\na=setup:active\na=fingerprint:sha-256 AA:BB\n",
                 "m=audio 5000 UDP/TLS/RTP/SAVPF 0\na=setup:active\na=fingerprint:sha-256 CC:DD\n",
                 "m=audio 5000 UDP/TLS/RTP/SAVPF 0\na=setup:passive\na=fingerprint:sha-256 CC:DD\n",
                 {"1: setup-role: both are active"}},
        RuleCase{"both passive",
                 "m=message 4000 TCP/MSRP *\na=setup:passive\n",
                 "m=message 5000 TCP/MSRP *\na=setup:passive\n",
                 "m=message 5000 TCP/MSRP *\na=setup:active\n",
                 {"1: setup-role: both are passive"}},
        RuleCase{"active to none, which counts as active",
                 "m=message 4000 TCP/MSRP *\n",
                 "m=message 5000 TCP/MSRP *\na=setup:active\n",
                 "m=message 5000 TCP/MSRP *\na=setup:passive\n",
                 {"1: setup-role: both are active"}}));

TEST(Keys, OfOtherMediaMayBeWithoutFingerprintAndSetup) {
  const std::string body = "m=message 9000 TCP/TLS/MSRP *\n";
  EXPECT_EQ(namesOf(bodyOf(body), bodyOf(body)), Names{});
}

TEST(Keys, OfSdesDoNotCountUnderTls) {
  EXPECT_EQ(namesOf(bodyOf(kDtls), bodyOf("m=audio 5000 UDP/TLS/RTP/SAVPF 0\na=setup:active\n"
                                          "a=fingerprint:sha-256 CC:DD\n"
                                          "a=crypto:7 X inline:y\na=crypto:7 X inline:y\n")),
            Names{});
}

TEST(Keys, BesideAPlainProfileNeedNoAnswer) {
  std::string plain = kSdes;
  plain.replace(plain.find("SAVP"), 4, "AVP");
  EXPECT_EQ(namesOf(bodyOf(plain), bodyOf("m=audio 5000 RTP/AVP 0\n")), Names{});
  EXPECT_EQ(
      namesOf(bodyOf(plain), bodyOf("m=audio 5000 RTP/AVP 0\na=crypto:2 AES_CM_128_HMAC_SHA1_80 inline:k\n")),
      Names{"1: crypto-suite"});
}

TEST(Keys, OfTheBundleCount) {
  const std::string key = "a=crypto:1 AES_CM_128_HMAC_SHA1_80 inline:k\n";
  const auto body = [&key](const std::string& first, const std::string& second) {
    return bodyOf("a=group:BUNDLE 1 2\nm=audio 9 RTP/SAVP 0\na=mid:1\n" + first +
                  "m=video 9 RTP/SAVP 34\na=mid:2\n" + second);
  };
  EXPECT_EQ(namesOf(body(key, ""), body(key, "")), Names{});
  EXPECT_EQ(namesOf(body(key, ""), body(key, key)), Names{});
  EXPECT_EQ(namesOf(body("", key), body(key, "")), Names{});
  EXPECT_EQ(namesOf(bodyOf("a=crypto:1 AES_CM_128_HMAC_SHA1_80 inline:k\nm=audio 9 RTP/SAVP 0\n"),
                    bodyOf("a=crypto:1 AES_CM_128_HMAC_SHA1_80 inline:k\nm=audio 9 RTP/SAVP 0\n")),
            Names{"1: no-key"});
}

TEST(Setup, IsOfferedByAFingerprintToo) {
  const std::string offer = bodyOf("a=fingerprint:sha-256 AA:BB\nm=audio 4000 RTP/SAVP 0\n");
  const std::string answer = "m=audio 5000 RTP/SAVP 0\na=fingerprint:sha-256 CC:DD\na=setup:";
  EXPECT_EQ(namesOf(offer, bodyOf(answer + "passive\n")), Names{});
  EXPECT_EQ(namesOf(offer, bodyOf(answer + "active\n")), Names{"1: setup-role"});
}

TEST(Setup, RolesUnderPlainProfilesWithoutFingerprintAreNotLookedAt) {
  const std::string body = "m=audio 4000 RTP/AVP 0\na=setup:active\n";
  EXPECT_EQ(namesOf(bodyOf(body), bodyOf(body)), Names{});
  EXPECT_EQ(namesOf(bodyOf(body), bodyOf("m=audio 4000 RTP/AVP 0\n")), Names{});
}

TEST(Setup, BothMayChooseAfterActpassAlone) {
  for (const char* role : {"active", "passive"}) {
    EXPECT_EQ(
        namesOf(bodyOf(kDtls), bodyOf("m=audio 5000 UDP/TLS/RTP/SAVPF 0\na=fingerprint:sha-256 C\na=setup:" +
                                      std::string(role) + "\n")),
        Names{})
        << role;
  }
}

}  // namespace
