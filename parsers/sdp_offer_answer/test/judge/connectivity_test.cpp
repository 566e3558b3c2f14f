#include "judgeTestSupport.h"

// The rules of RTCP, header extensions and ICE.

namespace {

using judgeTest::bodyOf;
using judgeTest::Names;
using judgeTest::namesOf;
using judgeTest::RuleCase;

class ConnectivityRules : public testing::TestWithParam<RuleCase> {};

TEST_P(ConnectivityRules, AreToldWhenBroken) { judgeTest::expectRule(GetParam()); }

constexpr const char* kIce = "m=audio 4000 RTP/AVP 0\na=ice-ufrag:abcd\na=ice-pwd:0123456789012345678901\n";

INSTANTIATE_TEST_SUITE_P(
    Judge, ConnectivityRules,
    testing::Values(
        RuleCase{"rtcp-mux",
                 "m=audio 4000 RTP/AVP 0\n",
                 "m=audio 5000 RTP/AVP 0\na=rtcp-mux\n",
                 "m=audio 5000 RTP/AVP 0\na=rtcp:5001\n",
                 {"1: rtcp-mux-not-offered: rtcp-mux was not offered"}},
        RuleCase{"extension",
                 "a=extmap:3 urn:c\nm=audio 4000 RTP/AVP 0\na=extmap:1 urn:a\na=extmap:2/sendonly urn:b\n",
                 "m=audio 5000 RTP/AVP 0\na=extmap:1 urn:a\na=extmap:4 urn:d\n",
                 "m=audio 5000 RTP/AVP 0\na=extmap:3 urn:c\na=extmap:02/recvonly urn:b more\n",
                 {"1: extmap-not-offered: urn:d was not offered"}},
        RuleCase{"number of an extension",
                 "m=audio 4000 RTP/AVP 0\na=extmap:1 urn:a\na=extmap:2 urn:b\n",
                 "m=audio 5000 RTP/AVP 0\na=extmap:2 urn:a\n",
                 "m=audio 5000 RTP/AVP 0\na=extmap:1 urn:a\n",
                 {"1: extmap-not-offered: urn:a was offered under another number"}},
        RuleCase{"number of an extension that may have any",
                 "m=audio 4000 RTP/AVP 0\na=extmap:4095 urn:a\na=extmap:4096 urn:b\n",
                 "m=audio 5000 RTP/AVP 0\na=extmap:1 urn:a\n",
                 "m=audio 5000 RTP/AVP 0\na=extmap:1 urn:b\n",
                 {"1: extmap-not-offered: urn:a was offered under another number"}},
        RuleCase{"encrypted extension",
                 "m=audio 4000 RTP/AVP 0\na=extmap:1 urn:ietf:params:rtp-hdrext:encrypt urn:a\n",
                 "m=audio 5000 RTP/AVP 0\na=extmap:1 urn:ietf:params:rtp-hdrext:encrypt urn:b\n",
                 "m=audio 5000 RTP/AVP 0\na=extmap:1 urn:ietf:params:rtp-hdrext:encrypt urn:a\n",
                 {"1: extmap-not-offered: urn:b was not offered"}},
        RuleCase{"extension of the session",
                 "m=audio 4000 RTP/AVP 0\nm=audio 4002 RTP/AVP 0\na=extmap:1 urn:a\n",
                 "a=extmap:1 urn:b\nm=audio 5000 RTP/AVP 0\nm=audio 5002 RTP/AVP 0\n",
                 "a=extmap:1 urn:a\nm=audio 5000 RTP/AVP 0\nm=audio 5002 RTP/AVP 0\n",
                 {"0: extmap-not-offered: urn:b was not offered"}},
        RuleCase{
            "ICE",
            "m=audio 4000 RTP/AVP 0\na=ice-ufrag:abcd\n",
            "m=audio 5000 RTP/AVP 0\na=candidate:1 1 UDP 1 192.0.2.7 5000 typ host\na=end-of-candidates\n",
            "m=audio 5000 RTP/AVP 0\na=ice-options:trickle\na=ice-pacing:50\n",
            {"1: ice-not-offered: candidate, and the offer has no ice-ufrag and ice-pwd"}},
        RuleCase{"ICE of the session",
                 "m=audio 4000 RTP/AVP 0\n",
                 "a=ice-lite\nm=audio 5000 RTP/AVP 0\n",
                 "a=ice-options:ice2\na=ice-pacing:50\nm=audio 5000 RTP/AVP 0\n",
                 {"0: ice-not-offered: ice-lite in the session, and no section was offered with ICE"}},
        RuleCase{"short name",
                 kIce,
                 "m=audio 5000 RTP/AVP 0\na=ice-ufrag:abc\na=ice-pwd:0123456789012345678901\n",
                 "m=audio 5000 RTP/AVP 0\na=ice-ufrag:abcd\na=ice-pwd:0123456789012345678901\n",
                 {"1: ice-short: ice-ufrag has 3 characters, not 4"}},
        RuleCase{"short password of the session",
                 kIce,
                 "a=ice-ufrag:abcd\na=ice-pwd:012345678901234567890\nm=audio 5000 RTP/AVP 0\n",
                 "a=ice-ufrag:abcd\na=ice-pwd:0123456789012345678901\nm=audio 5000 RTP/AVP 0\n",
                 {"0: ice-short: ice-pwd has 21 characters, not 22"}}));

TEST(Ice, OfAnyAttributeIsToldOnceForEachSection) {
  const std::string section = "m=audio 4000 RTP/AVP 0\n";
  for (const char* attribute : {"candidate:1 1 UDP 1 192.0.2.7 5000 typ host",
                                "remote-candidates:1 192.0.2.7 5000", "end-of-candidates", "ice-ufrag:abcd",
                                "ice-pwd:0123456789012345678901", "ice-lite", "ice-mismatch"}) {
    const std::string line = "a=" + std::string(attribute) + "\n";
    EXPECT_EQ(namesOf(bodyOf(section), bodyOf(section + line + line)), Names{"1: ice-not-offered"})
        << attribute;
    EXPECT_EQ(namesOf(bodyOf(kIce + section), bodyOf(section + line + section)), Names{}) << attribute;
    EXPECT_EQ(namesOf(bodyOf(section), bodyOf(line + section)), Names{"0: ice-not-offered"}) << attribute;
  }
}

TEST(Ice, IsOfferedByTheSessionOrTheBundleToo) {
  const std::string credentials = "a=ice-ufrag:abcd\na=ice-pwd:0123456789012345678901\n";
  const std::string answer = bodyOf("m=audio 5000 RTP/AVP 0\na=mid:1\n" + credentials +
                                    "m=audio 5000 RTP/AVP 0\na=mid:2\n" + credentials);
  const std::string audio = "m=audio 4000 RTP/AVP 0\na=mid:1\n";
  const std::string other = "m=audio 4000 RTP/AVP 0\na=mid:2\n";
  EXPECT_EQ(namesOf(bodyOf(credentials + audio + other), answer), Names{});
  EXPECT_EQ(namesOf(bodyOf(audio + credentials + other), answer), Names{"2: ice-not-offered"});
  EXPECT_EQ(namesOf(bodyOf("a=group:BUNDLE 1 2\n" + audio + other + credentials), answer), Names{});
  EXPECT_EQ(namesOf(bodyOf(credentials + "m=audio 0 RTP/AVP 0\nm=audio 0 RTP/AVP 0\n"),
                    bodyOf(credentials + "m=audio 0 RTP/AVP 0\nm=audio 0 RTP/AVP 0\n")),
            Names{"0: ice-not-offered"});
}

TEST(Ice, CredentialsWithoutAValueAreShort) {
  EXPECT_EQ(namesOf(bodyOf(kIce), bodyOf("m=audio 5000 RTP/AVP 0\na=ice-ufrag\na=ice-pwd:\n")),
            (Names{"1: ice-short", "1: ice-short"}));
}

TEST(Extensions, ThatAreNoneArePassedBy) {
  EXPECT_EQ(
      namesOf(bodyOf("m=audio 4000 RTP/AVP 0\na=extmap:1 urn:a\n"),
              bodyOf("a=extmap:x\nm=audio 5000 RTP/AVP 0\na=extmap\na=extmap:7\na=extmap:seven urn:b\n")),
      Names{});
}

}  // namespace
