#include "calls.h"

// What happens in a call after it is set up, and calls that are not set up.

namespace {

using Bodies = std::vector<std::string>;

const std::string kOffer =
    "v=0\n"
    "o=alice 21 4 IN IP4 192.0.2.10\n"
    "s=-\n"
    "c=IN IP4 192.0.2.10\n"
    "t=0 0\n"
    "m=audio 49170 RTP/AVP 0 8 18 101\n"
    "a=rtpmap:101 telephone-event/8000\n"
    "a=sendrecv\n";

const std::string kAnswer =
    "v=0\n"
    "o=bob 33 9 IN IP4 192.0.2.20\n"
    "s=-\n"
    "c=IN IP4 192.0.2.20\n"
    "t=0 0\n"
    "m=audio 30000 RTP/AVP 8 18 101\n"
    "a=rtpmap:8 PCMA/8000\n"
    "a=rtpmap:18 G729/8000\n"
    "a=fmtp:18 annexb=no\n"
    "a=rtpmap:101 telephone-event/8000\n"
    "a=sendrecv\n";

std::string withOrigin(const std::string& body, const std::string& origin) {
  const std::size_t from = body.find("o=");
  return std::string(body).replace(from, body.find('\n', from) - from, origin);
}

std::string alice(int version) { return "o=alice 21 " + std::to_string(version) + " IN IP4 192.0.2.10"; }

std::string bob(int version) { return "o=bob 33 " + std::to_string(version) + " IN IP4 192.0.2.20"; }

std::string inMode(const std::string& body, const std::string& mode) {
  return replaced(body, "a=sendrecv", "a=" + mode);
}

std::size_t countOf(const std::string& text, const std::string& piece) {
  std::size_t count = 0;
  for (std::size_t at = text.find(piece); at != std::string::npos; at = text.find(piece, at + 1)) ++count;
  return count;
}

class Dialogs : public Calls {
 protected:
  static Plan plan(const std::string& caller, const std::string& target) {
    Plan made;
    made.callerScenario = caller;
    made.targetScenario = target;
    made.bodies = {{"offer", kOffer}, {"answer", kAnswer}};
    return made;
  }
};

}  // namespace

// Each side sees versions that rise by one, whatever the other side's do.
TEST_F(Dialogs, HoldAndResumeAreRelayed) {
  Plan made = plan("hold-caller", "hold-target");
  made.bodies.push_back({"hold", inMode(withOrigin(kOffer, alice(10)), "sendonly")});
  made.bodies.push_back({"hold-answer", inMode(withOrigin(kAnswer, bob(12)), "recvonly")});
  made.bodies.push_back({"resume", withOrigin(kOffer, alice(11))});
  made.bodies.push_back({"resume-answer", withOrigin(kAnswer, bob(40))});
  const Played played = play(made);
  EXPECT_EQ(played.atTarget,
            (Bodies{kOffer, inMode(withOrigin(kOffer, alice(5)), "sendonly"), withOrigin(kOffer, alice(6))}));
  EXPECT_EQ(played.atCaller, (Bodies{kAnswer, inMode(withOrigin(kAnswer, bob(10)), "recvonly"),
                                     withOrigin(kAnswer, bob(11))}));
  EXPECT_EQ(raised(played.counters),
            (Counters{{"calls", 1}, {"established", 1}, {"ended", 1}, {"reoffers", 2}}));
  EXPECT_EQ(countOf(played.log, " re-offer relayed"), 2U) << played.log;
  EXPECT_EQ(countOf(played.log, " ended by caller"), 1U) << played.log;
}

TEST_F(Dialogs, AnUnchangedReofferIsAnsweredFromTheStore) {
  Plan made = plan("reoffer-caller", "call-target");
  made.bodies.push_back({"reoffer", kOffer});
  const Played played = play(made);
  EXPECT_EQ(played.atTarget, Bodies{kOffer});
  EXPECT_EQ(played.atCaller, (Bodies{kAnswer, kAnswer}));
  EXPECT_EQ(raised(played.counters),
            (Counters{{"calls", 1}, {"established", 1}, {"ended", 1}, {"reoffers", 1}}));
  EXPECT_EQ(countOf(played.log, " re-offer unchanged, answered from store"), 1U) << played.log;
}

TEST_F(Dialogs, AReofferOneVersionOnWithFewerCodecsUpdatesTheStoredAnswer) {
  Plan made = plan("reoffer-caller", "call-target");
  made.bodies.push_back({"reoffer", replaced(withOrigin(kOffer, alice(5)), " 0 8 18 101", " 0 8 101")});
  const std::string updated =
      "v=0\n"
      "o=bob 33 10 IN IP4 192.0.2.20\n"
      "s=-\n"
      "c=IN IP4 192.0.2.20\n"
      "t=0 0\n"
      "m=audio 30000 RTP/AVP 8 101\n"
      "a=rtpmap:8 PCMA/8000\n"
      "a=rtpmap:101 telephone-event/8000\n"
      "a=sendrecv\n";
  const Played played = play(made);
  EXPECT_EQ(played.atTarget, Bodies{kOffer});
  EXPECT_EQ(played.atCaller, (Bodies{kAnswer, updated}));
  EXPECT_EQ(countOf(played.log, " re-offer one version on, stored answer updated"), 1U) << played.log;
}

TEST_F(Dialogs, AReofferFromTheTargetIsRelayed) {
  Plan made = plan("reoffered-caller", "reoffering-target");
  made.bodies.push_back({"reoffer", inMode(withOrigin(kAnswer, bob(20)), "sendonly")});
  made.bodies.push_back({"reanswer", inMode(withOrigin(kOffer, alice(30)), "recvonly")});
  const Played played = play(made);
  EXPECT_EQ(played.atTarget, (Bodies{kOffer, inMode(withOrigin(kOffer, alice(5)), "recvonly")}));
  EXPECT_EQ(played.atCaller, (Bodies{kAnswer, inMode(withOrigin(kAnswer, bob(10)), "sendonly")}));
  EXPECT_EQ(raised(played.counters),
            (Counters{{"calls", 1}, {"established", 1}, {"ended", 1}, {"reoffers", 1}}));
  EXPECT_EQ(countOf(played.log, " ended by target"), 1U) << played.log;
}

TEST_F(Dialogs, AReofferWithoutBodyIsRelayedAndAnsweredInTheAck) {
  Plan made = plan("late-reoffer-caller", "late-reoffer-target");
  made.bodies.push_back({"reoffer", withOrigin(kAnswer, bob(10))});
  made.bodies.push_back({"answer-in-ack", replaced(withOrigin(kOffer, alice(5)), " 0 8 18 101", " 8 101")});
  const Played played = play(made);
  EXPECT_EQ(played.atTarget,
            (Bodies{kOffer, replaced(withOrigin(kOffer, alice(5)), " 0 8 18 101", " 8 101")}));
  // The target's body is the one that the caller has already.
  EXPECT_EQ(played.atCaller, (Bodies{kAnswer, kAnswer}));
  EXPECT_EQ(raised(played.counters),
            (Counters{{"calls", 1}, {"established", 1}, {"ended", 1}, {"reoffers", 1}}));
}

TEST_F(Dialogs, TheTargetMayHangUp) {
  const Played played = play(plan("ended-caller", "ending-target"));
  EXPECT_EQ(played.atTarget, Bodies{kOffer});
  EXPECT_EQ(played.atCaller, Bodies{kAnswer});
  EXPECT_EQ(raised(played.counters), (Counters{{"calls", 1}, {"established", 1}, {"ended", 1}}));
  EXPECT_EQ(countOf(played.log, " ended by target"), 1U) << played.log;
}

TEST_F(Dialogs, ACallMayBeCancelled) {
  const Played played = play(plan("cancel-caller", "cancel-target"));
  EXPECT_EQ(played.atTarget, Bodies{kOffer});
  EXPECT_EQ(played.atCaller, Bodies{});
  EXPECT_EQ(raised(played.counters), (Counters{{"calls", 1}, {"cancelled", 1}}));
  EXPECT_EQ(countOf(played.log, " cancelled"), 1U) << played.log;
}

// Not with what the target says of itself. The scenario checks the status.
TEST_F(Dialogs, AFailureIsRelayedWithoutItsWarning) {
  const Played played = play(plan("refused-caller", "refusing-target"));
  ASSERT_FALSE(played.callerMessages.empty());
  for (const Received& message : played.callerMessages)
    EXPECT_EQ(message.head.find("Warning"), std::string::npos);
  EXPECT_EQ(played.atTarget, Bodies{kOffer});
  EXPECT_EQ(played.atCaller, Bodies{});
  EXPECT_EQ(raised(played.counters), (Counters{{"calls", 1}, {"failed", 1}}));
  EXPECT_EQ(countOf(played.log, " failed with 486"), 1U) << played.log;
}

// The target gets a dummy, then the caller's body as the dummy's next version.
TEST_F(Dialogs, AnInviteWithoutBodyGetsTheTargetsBodyAsOffer) {
  Plan made = plan("late-caller", "late-target");
  made.policy = "audio-codecs = PCMA, PCMU\n";
  const std::string answer =
      "v=0\n"
      "o=alice 21 4 IN IP4 192.0.2.10\n"
      "s=-\n"
      "c=IN IP4 192.0.2.10\n"
      "t=0 0\n"
      "m=audio 49170 RTP/AVP 8\n"
      "a=sendrecv\n";
  const std::string offer =
      "v=0\n"
      "o=bob 33 9 IN IP4 192.0.2.20\n"
      "s=-\n"
      "c=IN IP4 192.0.2.20\n"
      "t=0 0\n"
      "m=audio 30000 RTP/AVP 0 8\n"
      "a=sendrecv\n";
  made.bodies = {{"offer", offer}, {"answer", answer}, {"reanswer", withOrigin(offer, bob(10))}};
  const std::string dummy =
      "v=0\n"
      "o=IRM 1 1 IN IP4 127.0.0.1\n"
      "s=IRM\n"
      "c=IN IP4 127.0.0.1\n"
      "t=0 0\n"
      "m=audio 5004 RTP/AVP 8 0\n";
  const Played played = play(made);
  EXPECT_EQ(played.atTarget, (Bodies{dummy, withOrigin(answer, "o=IRM 1 2 IN IP4 127.0.0.1")}));
  EXPECT_EQ(played.atCaller, Bodies{replaced(offer, " 0 8\n", " 8 0\n")});
  EXPECT_EQ(raised(played.counters), (Counters{{"calls", 1}, {"established", 1}, {"ended", 1}}));
  EXPECT_EQ(countOf(played.log, " dummy offer sent"), 1U) << played.log;
  EXPECT_EQ(countOf(played.log, " dummy offer replaced"), 1U) << played.log;
}
