#include <answerCheck.h>

#include "calls.h"

// What the engine's log says of answers that do not fit what the party was sent. The calls go on.

namespace {

using Lines = std::vector<std::string>;

const std::string kSession =
    "s=-\n"
    "c=IN IP4 192.0.2.10\n"
    "t=0 0\n";

const std::string kOffer = "v=0\no=alice 21 4 IN IP4 192.0.2.10\n" + kSession +
                           "m=audio 49170 RTP/AVP 96 8 101\n"
                           "a=rtpmap:96 G726-32/8000\n"
                           "a=rtpmap:101 telephone-event/8000\n"
                           "a=rtcp-mux\n"
                           "a=sendonly\n";

const std::string kAnswer = "v=0\no=bob 33 9 IN IP4 192.0.2.20\n" + kSession +
                            "m=audio 30000 RTP/AVP 96 101\n"
                            "a=rtpmap:96 G726-32/8000\n"
                            "a=rtpmap:101 telephone-event/8000\n"
                            "a=rtcp-mux\n"
                            "a=recvonly\n";

/// What the log has behind the time and the call's id of lines about answers.
Lines toldOfAnswers(const std::string& log) {
  Lines told;
  for (std::size_t at = log.find(" answer from the "); at != std::string::npos;
       at = log.find(" answer from the ", at)) {
    const std::size_t start = log.rfind('\n', at) + 1;
    // 2024-05-06T07:08:09.123Z call 0123456789abcdef
    const std::string head = log.substr(start, at - start);
    EXPECT_EQ(head.size(), 46U) << head;
    EXPECT_EQ(head.substr(24, 6), " call ") << head;
    const std::size_t end = log.find('\n', at);
    told.push_back(log.substr(at + 1, end - at - 1));
    at = end;
  }
  return told;
}

class Answers : public Calls {
 protected:
  /// Expects that a call goes on as any other, and what is told of its answers.
  void expectTold(const Plan& plan, const Lines& told) {
    const Played played = play(plan);
    EXPECT_EQ(raised(played.counters), (Counters{{"calls", 1}, {"established", 1}, {"ended", 1}}));
    EXPECT_EQ(toldOfAnswers(played.log), told) << played.log;
  }

  static Plan plan(const std::string& offer, const std::string& answer, const std::string& policy = "") {
    Plan made;
    made.policy = policy;
    made.bodies = {{"offer", offer}, {"answer", answer}};
    return made;
  }
};

/// Sections with rtcp-mux in a BUNDLE group.
std::string bundleOf(int sections, const std::string& attributes) {
  std::string group = "a=group:BUNDLE";
  std::string media;
  for (int mid = 1; mid <= sections; ++mid) {
    group += " " + std::to_string(mid);
    media += "m=audio 30000 RTP/AVP 8\na=mid:" + std::to_string(mid) + "\n" + attributes;
  }
  return "v=0\no=bob 33 9 IN IP4 192.0.2.20\n" + kSession + group + "\n" + media;
}

std::string muxMissing(int section) {
  return "section " + std::to_string(section) + ": mux-missing (error): it is bundled, and has no rtcp-mux";
}

}  // namespace

TEST(WhatIsWrong, IsNothingWithAGoodAnswer) {
  EXPECT_EQ(b2bua::whatIsWrong(kOffer, kAnswer), Lines{});
  EXPECT_EQ(b2bua::whatIsWrong("", ""), Lines{});
}

TEST(WhatIsWrong, IsToldWithSectionRuleSeverityAndText) {
  const std::string other = replaced(replaced(kAnswer, " 96 101", " 96 3"), "G726-32", "AMR");
  EXPECT_EQ(b2bua::whatIsWrong(kOffer, other + "m=video 0 RTP/AVP 34\n"),
            (Lines{"session: section-count (error): the answer has 2 sections, the offer 1",
                   "section 1: codec-not-offered (warning): 3 GSM/8000 was not offered",
                   "section 1: payload-changed (error): 96 AMR/8000; offered was 96 G726-32/8000"}));
}

TEST(WhatIsWrong, IsToldUpToTenFindings) {
  const std::string offer = bundleOf(12, "a=rtcp-mux\n");
  EXPECT_EQ(b2bua::whatIsWrong(offer, offer), Lines{});
  Lines ten;
  for (int section = 1; section <= 10; ++section) ten.push_back(muxMissing(section));
  EXPECT_EQ(b2bua::whatIsWrong(bundleOf(10, "a=rtcp-mux\n"), bundleOf(10, "")), ten);
  ten.push_back("2 more findings");
  EXPECT_EQ(b2bua::whatIsWrong(offer, bundleOf(12, "")), ten);
}

TEST(WhatIsWrong, IsToldWithoutKeys) {
  const std::string offer =
      replaced(kOffer, "a=sendonly\n", "a=crypto:1 AES_CM_128_HMAC_SHA1_80 inline:OFFERED\n");
  const std::string answer =
      replaced(kAnswer, "a=recvonly\n", "a=crypto:2 F8_128_HMAC_SHA1_80 inline:ANSWERED\n");
  EXPECT_EQ(b2bua::whatIsWrong(offer, answer), Lines{"section 1: crypto-tag (error): tag 2 was not offered"});
}

TEST_F(Answers, ThatAreGoodAreNotTold) { expectTold(plan(kOffer, kAnswer), {}); }

TEST_F(Answers, WithAnotherCodecUnderAPayloadTypeAreTold) {
  expectTold(plan(kOffer, replaced(kAnswer, "G726-32", "iLBC")),
             {"answer from the target, section 1: payload-changed (error): 96 iLBC/8000; offered was 96 "
              "G726-32/8000"});
}

TEST_F(Answers, WithoutMuxInABundleAreTold) {
  expectTold(plan(bundleOf(2, "a=rtcp-mux\n"), bundleOf(2, "")),
             {"answer from the target, " + muxMissing(1), "answer from the target, " + muxMissing(2)});
}

// Without ICE in the offer that it got, the target must not answer it: the offer that counts is not the caller's. Of
// what it says, no policy has taken anything yet.
TEST_F(Answers, AreJudgedByWhatThePartyWasSentAndAsItSaidThem) {
  const std::string ice = "a=ice-ufrag:abcd\na=ice-pwd:abcdefghijklmnopqrstuv\n";
  const Plan made = plan(kOffer + ice, kAnswer + ice, "ice = remove\n");
  const Played played = play(made);
  EXPECT_EQ(played.atTarget, Lines{kOffer});
  EXPECT_EQ(played.atCaller, Lines{kAnswer});
  EXPECT_EQ(
      toldOfAnswers(played.log),
      Lines{
          "answer from the target, section 1: ice-not-offered (error): ice-ufrag, and the offer has no ice-ufrag "
          "and ice-pwd"});
}

// The target's first body answers the dummy, the caller's body the target's, the target's second one the caller's.
TEST_F(Answers, OfAllOffersOfACallWithoutAnOfferAreTold) {
  Plan made;
  made.callerScenario = "late-caller";
  made.targetScenario = "late-target";
  const std::string offer = "v=0\no=bob 33 9 IN IP4 192.0.2.20\n" + kSession + "m=audio 30000 RTP/AVP 8\n";
  const std::string answer = "v=0\no=alice 21 4 IN IP4 192.0.2.10\n" + kSession + "m=audio 49170 RTP/AVP 8\n";
  made.bodies = {{"offer", offer + "a=rtcp-mux\n"},
                 {"answer", answer + "a=setup:active\n"},
                 {"reanswer", replaced(offer, "33 9 ", "33 10 ") + "a=setup:actpass\n"}};
  expectTold(made,
             {"answer from the target, section 1: rtcp-mux-not-offered (error): rtcp-mux was not offered",
              "answer from the caller, section 1: setup-not-offered (error): setup was not offered",
              "answer from the target, section 1: setup-actpass (error): actpass is for offers alone"});
}
