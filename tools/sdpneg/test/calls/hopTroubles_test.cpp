// What hops take away.

#include <gtest/gtest.h>

#include "calls/madeCall.h"
#include "calls/troubles.h"

namespace {

using made::body;
using made::Line;
using made::Maker;
using made::rulesOf;
using Strings = std::vector<std::string>;

constexpr std::string_view kSecure =
    "m=audio 4000 RTP/SAVP 8\na=crypto:1 AES_CM_128_HMAC_SHA1_80 inline:KEYKEY\n";
constexpr std::string_view kIce =
    "m=audio 4000 RTP/AVP 8\na=ice-ufrag:abcd\na=ice-pwd:pppp\na=candidate:1 1 udp 1 192.0.2.1 4000 typ host\n"
    "a=candidate:2 1 udp 1 192.0.2.2 4000 typ host\n";

/// A call whose INVITE a proxy makes another one of.
tool::Call hop(std::string_view before, std::string_view after) {
  Maker maker;
  const std::size_t in = maker.add({made::kAlice, made::kProxy}, before);
  Line further{made::kProxy, made::kBob};
  further.leg = 1;
  const std::size_t out = maker.add(further, after);
  maker.hop(in, out);
  findTroubles(maker.call);
  return maker.call;
}

TEST(HopTroubles, AreNoneWhereAHopAnchorsMediaAndEndsIce) {
  EXPECT_EQ(rulesOf(hop(body(kIce), body("m=audio 7000 RTP/AVP 8\nc=IN IP4 198.51.100.2\n"))), Strings{});
  EXPECT_EQ(rulesOf(hop(body(kIce), body(kIce))), Strings{});
  EXPECT_EQ(rulesOf(hop(body(kSecure), body("m=audio 7000 RTP/AVP 8\nc=IN IP4 198.51.100.2\n"))), Strings{});
  EXPECT_EQ(rulesOf(hop(body(kIce), body("m=audio 0 RTP/AVP 8\n"))), Strings{});
}

TEST(HopTroubles, NameCandidatesThatWentAlone) {
  const tool::Call call = hop(
      body(kIce), body("m=audio 7000 RTP/AVP 8\nc=IN IP4 198.51.100.2\na=ice-ufrag:abcd\na=ice-pwd:pppp\n"));
  EXPECT_EQ(rulesOf(call), (Strings{"hop-lost-candidates 2 1 11"}));
  EXPECT_EQ(call.troubles.front().text,
            "audio: 2 candidates were taken away by 198.51.100.2, and ice-ufrag is still there");
}

TEST(HopTroubles, NameCandidatesThatWentWhereTheAddressStayed) {
  const tool::Call call = hop(body(kIce), body("m=audio 4000 RTP/AVP 8\n"));
  EXPECT_EQ(rulesOf(call), (Strings{"hop-lost-candidates 2 1 11"}));
  EXPECT_EQ(
      call.troubles.front().text,
      "audio: 2 candidates were taken away by 198.51.100.2, and media go to 192.0.2.1 port 4000 as before");
}

TEST(HopTroubles, NameKeysThatWentAlone) {
  const tool::Call call = hop(body(kSecure), body("m=audio 7000 RTP/SAVP 8\nc=IN IP4 198.51.100.2\n"));
  EXPECT_EQ(rulesOf(call), (Strings{"hop-lost-keys 2 1 11"}));
  EXPECT_EQ(call.troubles.front().text,
            "audio: crypto was taken away by 198.51.100.2, and the profile is RTP/SAVP");
}

TEST(HopTroubles, NameKeysThatWentWhereTheAddressStayed) {
  const tool::Call call = hop(body(kSecure), body("m=audio 4000 RTP/AVP 8\n"));
  EXPECT_EQ(rulesOf(call), (Strings{"hop-lost-keys 2 1 11"}));
  EXPECT_EQ(call.troubles.front().text,
            "audio: crypto was taken away by 198.51.100.2, and media go to 192.0.2.1 port 4000 as before");
}

TEST(HopTroubles, CountKeysOfTheSession) {
  std::string offer = body("m=audio 4000 UDP/TLS/RTP/SAVPF 8\na=setup:actpass\n");
  const std::string bare = offer;
  offer.insert(offer.find("t=0"), "a=fingerprint:sha-1 AA:BB\r\n");
  EXPECT_EQ(rulesOf(hop(offer, bare)), (Strings{"hop-lost-keys 2 1 11"}));
  EXPECT_EQ(rulesOf(hop(bare, offer)), Strings{});
}

TEST(HopTroubles, NameSecureProfilesThatAHopMade) {
  const tool::Call call =
      hop(body("m=audio 4000 RTP/AVP 8\n"), body("m=audio 7000 RTP/SAVP 8\nc=IN IP4 198.51.100.2\n"));
  EXPECT_EQ(rulesOf(call), (Strings{"profile-without-keys 2 1 11"}));
  EXPECT_EQ(call.troubles.front().text,
            "audio: RTP/AVP became RTP/SAVP by 198.51.100.2, and there are no keys");
}

TEST(HopTroubles, TellBothOfOneThatChangesTheProfileAndTakesKeys) {
  EXPECT_EQ(rulesOf(hop(body("m=audio 4000 UDP/TLS/RTP/SAVPF 8\na=fingerprint:sha-1 AA\n"),
                        body("m=audio 7000 RTP/SAVP 8\n"))),
            (Strings{"hop-lost-keys 2 1 11", "profile-without-keys 2 1 11"}));
}

TEST(HopTroubles, AreNoneWhereAProfileCameWithoutKeys) {
  EXPECT_EQ(rulesOf(hop(body("m=audio 4000 RTP/SAVP 8\n"), body("m=audio 7000 RTP/SAVP 8\n"))), Strings{});
}

}  // namespace
