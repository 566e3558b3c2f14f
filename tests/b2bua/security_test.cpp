#include "calls.h"

// The rules about security: plain and secure m-lines, and best effort in one m-line or two.

namespace {

using Bodies = std::vector<std::string>;

const std::string kCrypto =
    "a=crypto:1 AES_CM_128_HMAC_SHA1_80 inline:PS1uQCVeeCFCanVmcjkpPywjNWhcYD0mXXtxaVBR\n";
const std::string kOtherCrypto =
    "a=crypto:1 AES_CM_128_HMAC_SHA1_80 inline:WVNfX19zZW1jdGwgKCkgewkyMjA7fQp9CnVubGVz\n";
const std::string kCodec = "a=rtpmap:8 PCMA/8000\n";

const std::string kFromAlice =
    "v=0\n"
    "o=alice 21 4 IN IP4 192.0.2.10\n"
    "s=-\n"
    "c=IN IP4 192.0.2.10\n"
    "t=0 0\n";

const std::string kFromBob =
    "v=0\n"
    "o=bob 33 9 IN IP4 192.0.2.20\n"
    "s=-\n"
    "c=IN IP4 192.0.2.20\n"
    "t=0 0\n";

const std::string kTwoLineOffer =
    kFromAlice + "m=audio 49170 RTP/AVP 8\n" + kCodec + "m=audio 49170 RTP/SAVP 8\n" + kCodec + kCrypto;
const std::string kOneLineOffer = kFromAlice + "m=audio 49170 RTP/AVP 8\n" + kCodec + kCrypto;
const std::string kSecureOffer = kFromAlice + "m=audio 49170 RTP/SAVP 8\n" + kCodec + kCrypto;
const std::string kPlainOffer = kFromAlice + "m=audio 49170 RTP/AVP 8\n" + kCodec;

const std::string kPlainAnswer = kFromBob + "m=audio 30000 RTP/AVP 8\n" + kCodec;
const std::string kSecureAnswer = kFromBob + "m=audio 30000 RTP/SAVP 8\n" + kCodec + kOtherCrypto;
const std::string kOneLineAnswer = kFromBob + "m=audio 30000 RTP/AVP 8\n" + kCodec + kOtherCrypto;

struct SecurityCase {
  const char* name;
  const char* security;
  std::string offer;
  std::string atTarget;
  std::string answer;
  std::string atCaller;
};

// A refused m-line of an answer is audio with port 0 and format 0.
const SecurityCase kCases[] = {
    {"asIs", "as-is", kTwoLineOffer, kTwoLineOffer,
     kFromBob + "m=audio 0 RTP/AVP 8\n" + kSecureAnswer.substr(kFromBob.size()),
     kFromBob + "m=audio 0 RTP/AVP 8\n" + kSecureAnswer.substr(kFromBob.size())},
    {"plainLeavesTheSecureMLineOut", "plain", kTwoLineOffer, kPlainOffer, kPlainAnswer,
     kPlainAnswer + "m=audio 0 RTP/SAVP 0\n"},
    {"plainLeavesTheKeysOut", "plain", kOneLineOffer, kPlainOffer, kPlainAnswer, kPlainAnswer},
    {"secureLeavesThePlainMLineOut", "secure", kTwoLineOffer, kSecureOffer, kSecureAnswer,
     kFromBob + "m=audio 0 RTP/AVP 0\n" + kSecureAnswer.substr(kFromBob.size())},
    {"secureInsistsOnBestEffort", "secure", kOneLineOffer, kSecureOffer, kSecureAnswer, kOneLineAnswer},
    {"secureStaysSecure", "secure", kSecureOffer, kSecureOffer, kSecureAnswer, kSecureAnswer},
    {"twoMLinesBecomeOneAnsweredWithKeys", "best-effort-1", kTwoLineOffer, kOneLineOffer, kOneLineAnswer,
     kFromBob + "m=audio 0 RTP/AVP 0\n" + kSecureAnswer.substr(kFromBob.size())},
    {"twoMLinesBecomeOneAnsweredWithoutKeys", "best-effort-1", kTwoLineOffer, kOneLineOffer, kPlainAnswer,
     kPlainAnswer + "m=audio 0 RTP/SAVP 0\n"},
    // The attributes stay with the second of the two.
    {"oneMLineBecomesTwo", "best-effort-2", kOneLineOffer,
     kFromAlice + "m=audio 49170 RTP/AVP 8\n" + kSecureOffer.substr(kFromAlice.size()),
     kFromBob + "m=audio 0 RTP/AVP 8\n" + kSecureAnswer.substr(kFromBob.size()), kOneLineAnswer},
    {"bestEffortIsNotMadeOfAPlainOffer", "best-effort-1", kPlainOffer, kPlainOffer, kPlainAnswer,
     kPlainAnswer},
};

class Security : public Calls, public testing::WithParamInterface<SecurityCase> {};

}  // namespace

TEST_P(Security, BodiesArriveAsThePolicyHasThem) {
  const SecurityCase& tested = GetParam();
  Plan plan;
  plan.policy = std::string("security = ") + tested.security + "\n";
  plan.bodies = {{"offer", tested.offer}, {"answer", tested.answer}};
  const Played played = play(plan);
  EXPECT_EQ(played.atTarget, Bodies{tested.atTarget});
  EXPECT_EQ(played.atCaller, Bodies{tested.atCaller});
  EXPECT_EQ(played.counters.at("established"), 1);
  EXPECT_EQ(played.counters.at("ended"), 1);
  EXPECT_EQ(played.counters.at("failed"), 0);
}

INSTANTIATE_TEST_SUITE_P(Rules, Security, testing::ValuesIn(kCases),
                         [](const auto& tested) { return std::string(tested.param.name); });

namespace {

/// An offer of which the policy leaves nothing.
class Insecure : public Calls {
 protected:
  void expectRefusal(const std::string& security, const std::string& offer) {
    Plan plan;
    plan.callerScenario = "unusable-caller";
    plan.targetScenario = "";
    plan.policy = "security = " + security + "\n";
    plan.bodies = {{"offer", offer}};
    const Played played = play(plan);
    EXPECT_EQ(played.counters.at("refused_bodies"), 1);
    EXPECT_EQ(played.counters.at("failed"), 1);
    EXPECT_EQ(played.counters.at("active"), 0);
  }
};

}  // namespace

TEST_F(Insecure, APlainOfferIsRefusedWhereSecureIsWanted) { expectRefusal("secure", kPlainOffer); }

TEST_F(Insecure, ASecureOfferIsRefusedWherePlainIsWanted) { expectRefusal("plain", kSecureOffer); }
