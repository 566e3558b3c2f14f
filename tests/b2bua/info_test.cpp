#include "twoParties.h"

// INFO within a call: digits.

namespace {

const std::string kDigit = "Signal=5\r\nDuration=160\r\n";
const std::string kDigits = "application/dtmf-relay";

class Infos : public TwoParties {
 protected:
  void press(int cseq, const std::string& body, const std::string& type = kDigits) const {
    caller_.request(engine_->address(),
                    {.method = "INFO", .cseq = cseq, .toTag = tag_, .body = body, .contentType = type});
  }
  /// @return the status of an INFO that goes no further
  int refused(int cseq, const std::string& body, const std::string& type = kDigits) const {
    return statusOf(ask({.method = "INFO", .cseq = cseq, .toTag = tag_, .body = body, .contentType = type}));
  }
};

}  // namespace

TEST_F(Infos, DigitsGoOnAsTheyAre) {
  start();
  establish();
  press(2, kDigit);
  const std::string info = atTarget("INFO ");
  EXPECT_EQ(contentOf(info), kDigit);
  EXPECT_EQ(headerOf(info, "Content-Type"), kDigits);
  EXPECT_EQ(headerOf(info, "CSeq"), "2 INFO");
  answer(info, "200 OK");
  EXPECT_NE(atCaller("SIP/2.0 200 ", "CSeq: 2 INFO"), "");
  press(3, "5", "Application/DTMF");
  const std::string other = atTarget("INFO ");
  EXPECT_EQ(contentOf(other), "5");
  EXPECT_EQ(headerOf(other, "Content-Type"), "application/dtmf");
  answer(other, "405 Method Not Allowed");
  EXPECT_NE(atCaller("SIP/2.0 405 ", "CSeq: 3 INFO"), "");
  // The other way, and without a body.
  requestOfTarget("INFO", 1);
  const std::string back = atCaller("INFO ");
  EXPECT_EQ(contentOf(back), "");
  caller_.respond(engine_->address(), back, "200 OK");
  EXPECT_NE(atTarget("SIP/2.0 200 ", "CSeq: 1 INFO"), "");
  EXPECT_EQ(raised(engine_->counters()), (Counters{{"calls", 1}, {"established", 1}, {"active", 1}}));
}

TEST_F(Infos, OtherBodiesAreRefused) {
  start();
  establish();
  EXPECT_EQ(refused(2, kOffer, "application/sdp"), 415);
  EXPECT_EQ(refused(3, kDigit, "application/dtmf-relay-x"), 415);
  EXPECT_EQ(refused(4, std::string(1'025, '5')), 413);
  EXPECT_EQ(atTarget("INFO ", "", kSilence), "");
  press(5, std::string(1'024, '5'));
  EXPECT_EQ(contentOf(atTarget("INFO ")), std::string(1'024, '5'));
}

TEST_F(Infos, OneGoesOnAtATime) {
  start();
  establish();
  press(2, kDigit);
  const std::string first = atTarget("INFO ");
  EXPECT_EQ(refused(3, kDigit), 491);
  answer(first, "200 OK");
  EXPECT_NE(atCaller("SIP/2.0 200 ", "CSeq: 2 INFO"), "");
  press(4, kDigit);
  EXPECT_NE(atTarget("INFO "), "");
}

// Where the target has no dialog yet, there is nowhere to go.
TEST_F(Infos, NoneGoesOnBeforeThereIsADialog) {
  start();
  invited_ = invite({.body = kOffer});
  answer(invited_, "180 Ringing");
  tag_ = toTagOf(atCaller("SIP/2.0 180 "));
  EXPECT_EQ(refused(2, kDigit), 491);
}

// The stack sends nothing to what is no SIP URI.
TEST_F(Infos, OneThatCannotBeSentIsRefused) {
  start();
  invited_ = invite({.body = kOffer, .contact = "<tel:+49-30-1234>"});
  answer(invited_, "200 OK", kAnswer);
  caller_.request(engine_->address(), {.method = "ACK", .toTag = toTagOf(atCaller("SIP/2.0 200 "))});
  EXPECT_NE(atTarget("ACK "), "");
  for (int cseq = 1; cseq <= 2; ++cseq) {
    requestOfTarget("INFO", cseq);
    EXPECT_NE(atTarget("SIP/2.0 500 ", "CSeq: " + std::to_string(cseq) + " INFO"), "");
  }
}

TEST_F(Infos, ACallMayEndWhileOneIsUnderWay) {
  start();
  establish();
  press(2, kDigit);
  const std::string info = atTarget("INFO ");
  EXPECT_EQ(statusOf(ask({.method = "BYE", .cseq = 3, .toTag = tag_})), 200);
  answer(atTarget("BYE "), "200 OK");
  answer(info, "200 OK");
  EXPECT_EQ(raised(engine_->counters()), (Counters{{"calls", 1}, {"established", 1}, {"ended", 1}}));
}

TEST_F(Infos, AStormOfThemIsLimited) {
  start({"--max-invites", "3"});
  establish();
  for (int cseq = 2; cseq < 5; ++cseq) {
    press(cseq, kDigit);
    answer(atTarget("INFO "), "200 OK");
    EXPECT_NE(atCaller("SIP/2.0 200 ", "CSeq: " + std::to_string(cseq) + " INFO"), "");
  }
  EXPECT_EQ(refused(5, kDigit), 503);
}
