#include <csignal>

#include "../testFiles.h"
#include "twoParties.h"

// Offers within a call by UPDATE.

namespace {

const std::string kAllows = "Allow: INVITE, ACK, BYE, UPDATE\r\n";

class Updates : public TwoParties {
 protected:
  std::string kHold = replaced(kOffer, "21 4 IN", "21 5 IN") + "a=sendonly\r\n";
  std::string kHeld = replaced(kAnswer, "33 9 IN", "33 10 IN") + "a=recvonly\r\n";
};

}  // namespace

TEST_F(Updates, AnOfferGoesOnAsUpdateWhereThatIsAllowed) {
  start();
  establish("", "200 OK\r\nAllow: INVITE, ACK, BYE, UPDATE");
  caller_.request(engine_->address(), {.method = "UPDATE", .cseq = 2, .toTag = tag_, .body = kHold});
  const std::string update = atTarget("UPDATE ");
  EXPECT_EQ(contentOf(update), kHold);
  EXPECT_EQ(headerOf(update, "CSeq"), "2 UPDATE");
  answer(update, "200 OK", kHeld);
  const std::string held = atCaller("SIP/2.0 200 ", "CSeq: 2 UPDATE");
  EXPECT_EQ(contentOf(held), kHeld);
  EXPECT_EQ(headerOf(held, "Contact"), "<sip:" + engine_->address() + ";transport=udp>");
  EXPECT_EQ(atTarget("ACK ", "", kSilence), "");
  // It is what was agreed: the same again is answered from the store.
  const std::string again = ask({.method = "UPDATE", .cseq = 3, .toTag = tag_, .body = kHold});
  EXPECT_EQ(contentOf(again), kHeld);
  EXPECT_EQ(atTarget("UPDATE ", "", kSilence), "");
  EXPECT_EQ(raised(engine_->counters()),
            (Counters{{"calls", 1}, {"established", 1}, {"reoffers", 2}, {"active", 1}}));
}

TEST_F(Updates, AnOfferGoesOnAsInviteWhereItIsNot) {
  start();
  establish();
  caller_.request(engine_->address(), {.method = "UPDATE", .cseq = 2, .toTag = tag_, .body = kHold});
  const std::string held = atTarget("INVITE ", "CSeq: 2 INVITE");
  EXPECT_EQ(contentOf(held), kHold);
  answer(held, "200 OK", kHeld);
  EXPECT_NE(atTarget("ACK ", "CSeq: 2 ACK"), "");
  EXPECT_EQ(contentOf(atCaller("SIP/2.0 200 ", "CSeq: 2 UPDATE")), kHeld);
}

TEST_F(Updates, WhoSaysThatItTakesThemAndDoesNotGetsAnInvite) {
  start();
  establish("", "200 OK\r\nAllow: UPDATE");
  caller_.request(engine_->address(), {.method = "UPDATE", .cseq = 2, .toTag = tag_, .body = kHold});
  answer(atTarget("UPDATE "), "405 Method Not Allowed");
  const std::string held = atTarget("INVITE ", "CSeq: 3 INVITE");
  EXPECT_EQ(contentOf(held), kHold);
  answer(held, "200 OK", kHeld);
  EXPECT_NE(atTarget("ACK ", "CSeq: 3 ACK"), "");
  EXPECT_EQ(contentOf(atCaller("SIP/2.0 200 ", "CSeq: 2 UPDATE")), kHeld);
}

TEST_F(Updates, AnOfferOfTheTargetGoesToTheCaller) {
  start();
  establish(kAllows);
  const std::string offer = replaced(kAnswer, "33 9 IN", "33 20 IN") + "a=sendonly\r\n";
  requestOfTarget("UPDATE", 1, offer);
  const std::string update = atCaller("UPDATE ");
  EXPECT_EQ(contentOf(update), replaced(offer, "33 20 IN", "33 10 IN"));
  caller_.respond(engine_->address(), update, "200 OK", kHold);
  EXPECT_EQ(contentOf(atTarget("SIP/2.0 200 ", "CSeq: 1 UPDATE")), kHold);
}

TEST_F(Updates, ARefusalLeavesTheCallAsItWas) {
  start();
  establish("", "200 OK\r\nAllow: UPDATE");
  caller_.request(engine_->address(), {.method = "UPDATE", .cseq = 2, .toTag = tag_, .body = kHold});
  answer(atTarget("UPDATE "), "488 Not Acceptable Here");
  EXPECT_NE(atCaller("SIP/2.0 488 ", "CSeq: 2 UPDATE"), "");
  const std::string bad = ask({.method = "UPDATE", .cseq = 3, .toTag = tag_, .body = "hello"});
  EXPECT_EQ(statusOf(bad), 488) << bad;
  const std::string other =
      ask({.method = "UPDATE", .cseq = 4, .toTag = tag_, .body = "hello", .contentType = "text/plain"});
  EXPECT_EQ(statusOf(other), 415) << other;
  EXPECT_EQ(statusOf(ask({.method = "BYE", .cseq = 5, .toTag = tag_})), 200);
  EXPECT_NE(atTarget("BYE "), "");
}

// Two bodies of one version would be one session to the party.
TEST_F(Updates, ARefusedOfferKeepsItsVersion) {
  start();
  establish("", "200 OK\r\nAllow: UPDATE");
  caller_.request(engine_->address(), {.method = "UPDATE", .cseq = 2, .toTag = tag_, .body = kHold});
  answer(atTarget("UPDATE "), "488 Not Acceptable Here");
  EXPECT_NE(atCaller("SIP/2.0 488 ", "CSeq: 2 UPDATE"), "");
  // The same again.
  caller_.request(engine_->address(), {.cseq = 3, .toTag = tag_, .body = kHold});
  const std::string again = atTarget("INVITE ", "CSeq: 3 INVITE");
  EXPECT_EQ(contentOf(again), kHold);
  answer(again, "488 Not Acceptable Here");
  EXPECT_NE(atCaller("SIP/2.0 488 ", "CSeq: 3 INVITE"), "");
  // Another one, and then what both had before.
  const std::string moved = replaced(replaced(kOffer, "21 4 IN", "21 5 IN"), "49170", "49180");
  caller_.request(engine_->address(), {.method = "UPDATE", .cseq = 4, .toTag = tag_, .body = moved});
  const std::string other = atTarget("UPDATE ");
  EXPECT_EQ(contentOf(other), replaced(moved, "21 5 IN", "21 6 IN"));
  answer(other, "488 Not Acceptable Here");
  EXPECT_NE(atCaller("SIP/2.0 488 ", "CSeq: 4 UPDATE"), "");
  caller_.request(
      engine_->address(),
      {.method = "UPDATE", .cseq = 5, .toTag = tag_, .body = replaced(kOffer, "21 4 IN", "21 9 IN")});
  const std::string former = atTarget("UPDATE ");
  EXPECT_EQ(contentOf(former), replaced(kOffer, "21 4 IN", "21 7 IN"));
  // What it takes is what the next one is one version on of.
  answer(former, "200 OK", kHeld);
  EXPECT_EQ(contentOf(atCaller("SIP/2.0 200 ", "CSeq: 5 UPDATE")), kHeld);
  caller_.request(engine_->address(), {.method = "UPDATE", .cseq = 6, .toTag = tag_, .body = kHold});
  EXPECT_EQ(contentOf(atTarget("UPDATE ")), replaced(kHold, "21 5 IN", "21 8 IN"));
}

// Who has an offer under way, and who has one to answer (RFC 3311 5.2).
TEST_F(Updates, OffersThatMeetAreRefused) {
  start();
  establish("", "200 OK\r\nAllow: UPDATE");
  caller_.request(engine_->address(), {.method = "UPDATE", .cseq = 2, .toTag = tag_, .body = kHold});
  const std::string update = atTarget("UPDATE ");
  const std::string early = ask({.method = "UPDATE", .cseq = 3, .toTag = tag_, .body = kHold});
  EXPECT_EQ(statusOf(early), 500) << early;
  EXPECT_NE(headerOf(early, "Retry-After"), "");
  EXPECT_LE(std::stoi(headerOf(early, "Retry-After")), 10);
  requestOfTarget("UPDATE", 1, kHeld);
  EXPECT_NE(atTarget("SIP/2.0 491 ", "CSeq: 1 UPDATE"), "");
  requestOfTarget("INVITE", 2, kHeld);
  EXPECT_NE(atTarget("SIP/2.0 491 ", "CSeq: 2 INVITE"), "");
  // A sign of life meets nothing.
  EXPECT_EQ(statusOf(ask({.method = "UPDATE", .cseq = 4, .toTag = tag_})), 200);
  answer(update, "200 OK", kHeld);
  EXPECT_EQ(contentOf(atCaller("SIP/2.0 200 ", "CSeq: 2 UPDATE")), kHeld);
}

TEST_F(Updates, BeforeTheCallIsAnsweredItIsTooEarly) {
  start();
  invited_ = invite({.body = kOffer});
  answer(invited_, "180 Ringing");
  const std::string tag = toTagOf(atCaller("SIP/2.0 180 "));
  EXPECT_EQ(statusOf(ask({.method = "UPDATE", .cseq = 2, .toTag = tag, .body = kHold})), 500);
  requestOfTarget("UPDATE", 1, kHeld);
  EXPECT_NE(atTarget("SIP/2.0 491 "), "");
  answer(invited_, "200 OK", kAnswer);
  EXPECT_EQ(contentOf(atCaller("SIP/2.0 200 ", "CSeq: 1 INVITE")), kAnswer);
}

TEST_F(Updates, ACallMayEndWhileOneIsUnderWay) {
  start();
  establish("", "200 OK\r\nAllow: UPDATE");
  caller_.request(engine_->address(), {.method = "UPDATE", .cseq = 2, .toTag = tag_, .body = kHold});
  const std::string update = atTarget("UPDATE ");
  EXPECT_EQ(statusOf(ask({.method = "BYE", .cseq = 3, .toTag = tag_})), 200);
  EXPECT_NE(atTarget("BYE "), "");
  // Only INVITEs are cancelled.
  EXPECT_EQ(atTarget("CANCEL ", "", kSilence), "");
  answer(update, "200 OK", kHeld);
  EXPECT_EQ(raised(engine_->counters()),
            (Counters{{"calls", 1}, {"established", 1}, {"reoffers", 1}, {"ended", 1}}));
}

// They are many, but no more than other offers may be; the call goes on.
TEST_F(Updates, AStormOfThemIsLimited) {
  start({"--max-invites", "50"});
  establish("", "200 OK\r\nAllow: UPDATE");
  for (int cseq = 2; cseq < 102; ++cseq)
    caller_.request(engine_->address(), {.method = "UPDATE", .cseq = cseq, .toTag = tag_, .body = kHold});
  const std::string first = atTarget("UPDATE ");
  answer(first, "200 OK", kHeld);
  EXPECT_NE(atCaller("SIP/2.0 200 ", "CSeq: 2 UPDATE"), "");
  EXPECT_EQ(atTarget("UPDATE ", "", kSilence), "");
  EXPECT_EQ(engine_->counters().at("active"), 1);
}

namespace {

/// A call that is not answered yet, but whose parties have agreed about it reliably.
class EarlyUpdates : public Updates {
 protected:
  void agree(const std::string& allowed = "Allow: UPDATE\r\n") {
    start();
    agreeEarly(allowed);
  }

  void hold() const {
    caller_.request(engine_->address(), {.method = "UPDATE", .cseq = 3, .toTag = tag_, .body = kHold});
  }
};

}  // namespace

TEST_F(EarlyUpdates, AnOfferGoesOnBeforeTheCallIsAnswered) {
  agree();
  hold();
  const std::string update = atTarget("UPDATE ");
  EXPECT_EQ(contentOf(update), kHold);
  EXPECT_EQ(headerOf(update, "CSeq"), "3 UPDATE");
  answer(update, "200 OK", kHeld);
  EXPECT_EQ(contentOf(atCaller("SIP/2.0 200 ", "CSeq: 3 UPDATE")), kHeld);
  // And back.
  const std::string resumed = replaced(kAnswer, "33 9 IN", "33 11 IN");
  requestOfTarget("UPDATE", 1, resumed);
  const std::string back = atCaller("UPDATE ");
  EXPECT_EQ(contentOf(back), resumed);
  caller_.respond(engine_->address(), back, "200 OK", replaced(kOffer, "21 4 IN", "21 6 IN"));
  EXPECT_EQ(contentOf(atTarget("SIP/2.0 200 ", "CSeq: 1 UPDATE")), replaced(kOffer, "21 4 IN", "21 6 IN"));
  // The 200 says nothing new, and what follows goes on from what was agreed last.
  answer(invited_, "200 OK", kAnswer);
  EXPECT_EQ(contentOf(atCaller("SIP/2.0 200 ", "CSeq: 1 INVITE")), "");
  caller_.request(engine_->address(), {.method = "ACK", .toTag = tag_});
  EXPECT_NE(atTarget("ACK "), "");
  const std::string again = invite({.cseq = 4, .toTag = tag_, .body = kHold});
  EXPECT_EQ(contentOf(again), replaced(kHold, "21 5 IN", "21 7 IN"));
}

TEST_F(EarlyUpdates, ARefusalLeavesTheEarlySession) {
  agree();
  hold();
  answer(atTarget("UPDATE "), "488 Not Acceptable Here");
  EXPECT_NE(atCaller("SIP/2.0 488 ", "CSeq: 3 UPDATE"), "");
  EXPECT_EQ(statusOf(ask({.method = "UPDATE", .cseq = 4, .toTag = tag_, .body = "hello"})), 488);
  // Another offer is another version.
  const std::string moved = replaced(replaced(kOffer, "21 4 IN", "21 5 IN"), "49170", "49180");
  caller_.request(engine_->address(), {.method = "UPDATE", .cseq = 5, .toTag = tag_, .body = moved});
  const std::string other = atTarget("UPDATE ");
  EXPECT_EQ(contentOf(other), replaced(moved, "21 5 IN", "21 6 IN"));
  answer(other, "488 Not Acceptable Here");
  EXPECT_NE(atCaller("SIP/2.0 488 ", "CSeq: 5 UPDATE"), "");
  answer(invited_, "200 OK", kAnswer);
  EXPECT_NE(atCaller("SIP/2.0 200 ", "CSeq: 1 INVITE"), "");
}

TEST_F(EarlyUpdates, WhoTakesNoneGetsNone) {
  agree("");
  requestOfTarget("UPDATE", 1, kHeld);
  EXPECT_NE(atTarget("SIP/2.0 491 "), "");
  EXPECT_EQ(atCaller("UPDATE ", "", kSilence), "");
}

TEST_F(EarlyUpdates, OffersThatMeetAreRefused) {
  agree();
  hold();
  const std::string update = atTarget("UPDATE ");
  EXPECT_EQ(statusOf(ask({.method = "UPDATE", .cseq = 4, .toTag = tag_, .body = kHold})), 500);
  requestOfTarget("UPDATE", 1, kHeld);
  EXPECT_NE(atTarget("SIP/2.0 491 "), "");
  answer(update, "200 OK", kHeld);
  EXPECT_EQ(contentOf(atCaller("SIP/2.0 200 ", "CSeq: 3 UPDATE")), kHeld);
}

// The 200 waits for the answer to the UPDATE.
TEST_F(EarlyUpdates, ACallMayBeAnsweredWhileOneIsUnderWay) {
  agree();
  hold();
  const std::string update = atTarget("UPDATE ");
  answer(invited_, "200 OK", kAnswer);
  EXPECT_EQ(atCaller("SIP/2.0 200 ", "CSeq: 1 INVITE", kSilence), "");
  answer(update, "200 OK", kHeld);
  EXPECT_EQ(contentOf(atCaller("SIP/2.0 200 ", "CSeq: 3 UPDATE")), kHeld);
  EXPECT_EQ(contentOf(atCaller("SIP/2.0 200 ", "CSeq: 1 INVITE")), "");
}

TEST_F(EarlyUpdates, ACallMayFailWhileOneIsUnderWay) {
  agree();
  hold();
  EXPECT_NE(atTarget("UPDATE "), "");
  answer(invited_, "486 Busy Here");
  EXPECT_NE(atCaller("SIP/2.0 500 ", "CSeq: 3 UPDATE"), "");
  EXPECT_NE(atCaller("SIP/2.0 486 ", "CSeq: 1 INVITE"), "");
  EXPECT_EQ(engine_->counters().at("active"), 0);
}

TEST_F(EarlyUpdates, ACallMayBeCancelledWhileOneIsUnderWay) {
  agree();
  hold();
  EXPECT_NE(atTarget("UPDATE "), "");
  EXPECT_EQ(statusOf(ask({.method = "CANCEL", .branch = "INVITE1"})), 200);
  EXPECT_NE(atCaller("SIP/2.0 487 ", "CSeq: 1 INVITE"), "");
  EXPECT_NE(atTarget("CANCEL "), "");
  answer(invited_, "487 Request Terminated");
  EXPECT_TRUE(waitUntil([&] { return engine_->counters().at("active") == 0; }, kLongestWait));
}

TEST_F(EarlyUpdates, AnEngineThatEndsEndsThemToo) {
  agree();
  hold();
  EXPECT_NE(atTarget("UPDATE "), "");
  engine_->process().signal(SIGTERM);
  EXPECT_NE(atCaller("SIP/2.0 503 ", "CSeq: 1 INVITE"), "");
  EXPECT_NE(atTarget("CANCEL "), "");
  answer(invited_, "487 Request Terminated");
  EXPECT_EQ(engine_->process().wait(kLongestWait), 0);
}
