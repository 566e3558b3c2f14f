#include <algorithm>

#include "../testFiles.h"
#include "twoParties.h"

// What the target says before its final response, with bodies and reliably.

namespace {

const std::string kKnows = "Supported: 100rel\r\n";
const std::string kReliable = "\r\nRequire: 100rel\r\nRSeq: ";

class EarlyMedia : public TwoParties {
 protected:
  std::string kOther = replaced(replaced(kAnswer, "33 9 IN", "33 10 IN"), "30000", "30002");

  void ring(const std::string& status = "183 Session Progress", const std::string& body = "") const {
    answer(invited_, status, body);
  }

  std::string prack(const std::string& response, int cseq) const {
    const std::string number = headerOf(response, "RSeq");
    return ask({.method = "PRACK",
                .cseq = cseq,
                .toTag = toTagOf(response),
                .header = "RAck: " + number + " 1 INVITE\r\n"});
  }
};

}  // namespace

TEST_F(EarlyMedia, ABodyBeforeTheAnswerGoesThroughThePolicy) {
  start({"--policy", folder_.write("policy", "audio-codecs = PCMA\n")});
  invited_ = invite({.body = kOffer});
  ring("180 Ringing");
  EXPECT_EQ(contentOf(atCaller("SIP/2.0 180 ")), "");
  ring("183 Session Progress", replaced(kAnswer, " 8\r\n", " 8 0\r\n"));
  const std::string early = atCaller("SIP/2.0 183 ");
  EXPECT_EQ(contentOf(early), kAnswer);
  EXPECT_EQ(headerOf(early, "Content-Type"), "application/sdp");
  EXPECT_EQ(headerOf(early, "RSeq"), "");
}

// The o-line's version rises with each change, and only then.
TEST_F(EarlyMedia, TheSameBodyKeepsItsVersion) {
  start();
  invited_ = invite({.body = kOffer});
  ring("183 Session Progress", kAnswer);
  EXPECT_EQ(contentOf(atCaller("SIP/2.0 183 ")), kAnswer);
  ring("183 Session Progress", replaced(kAnswer, "33 9 IN", "33 70 IN"));
  EXPECT_EQ(contentOf(atCaller("SIP/2.0 183 ")), kAnswer);
  ring("183 Session Progress", replaced(kOther, "33 10 IN", "33 71 IN"));
  EXPECT_EQ(contentOf(atCaller("SIP/2.0 183 ")), kOther);
  answer(invited_, "200 OK", kOther);
  EXPECT_EQ(contentOf(atCaller("SIP/2.0 200 ")), kOther);
}

TEST_F(EarlyMedia, ABodyThatCannotBeUsedIsLeftOut) {
  start();
  invited_ = invite({.body = kOffer});
  ring("183 Session Progress", "hello");
  EXPECT_EQ(contentOf(atCaller("SIP/2.0 183 ")), "");
  answer(invited_, "200 OK", kAnswer);
  EXPECT_EQ(contentOf(atCaller("SIP/2.0 200 ")), kAnswer);
  EXPECT_EQ(engine_->counters().at("refused_bodies"), 1);
}

TEST_F(EarlyMedia, ACallerWithoutBodyGetsNone) {
  start();
  invited_ = invite({});
  EXPECT_EQ(headerOf(invited_, "Supported"), "timer");
  ring("183 Session Progress", kAnswer);
  EXPECT_EQ(contentOf(atCaller("SIP/2.0 183 ")), "");
  answer(invited_, "200 OK", kAnswer);
  EXPECT_EQ(contentOf(atCaller("SIP/2.0 200 ")), kAnswer);
}

// One that is repeated, and one that is ahead of its turn, are as if they had not come.
TEST_F(EarlyMedia, AReliableResponseOfTheTargetGetsItsPrack) {
  start();
  invited_ = invite({.body = kOffer});
  EXPECT_NE(invited_.find("\r\nSupported: 100rel"), std::string::npos) << invited_;
  ring("180 Ringing" + kReliable + "70");
  const std::string prack = atTarget("PRACK ");
  EXPECT_EQ(headerOf(prack, "RAck"), "70 1 INVITE");
  EXPECT_EQ(headerOf(prack, "CSeq"), "2 PRACK");
  EXPECT_EQ(toTagOf(prack), ";tag=raw");
  answer(prack, "200 OK");
  EXPECT_NE(atCaller("SIP/2.0 180 "), "");
  for (const char* number : {"70", "72", "69", "0", "4294967295", "x"}) {
    ring("180 Ringing" + kReliable + number);
    EXPECT_EQ(atTarget("PRACK ", "", milliseconds(50)), "") << number;
  }
  EXPECT_EQ(atCaller("SIP/2.0 180 ", "RSeq", milliseconds(50)), "");
  ring("183 Session Progress" + kReliable + "71", kAnswer);
  EXPECT_EQ(headerOf(atTarget("PRACK "), "RAck"), "71 1 INVITE");
  EXPECT_EQ(contentOf(atCaller("SIP/2.0 183 ")), kAnswer);
  // It has given its answer.
  answer(invited_, "200 OK");
  EXPECT_EQ(contentOf(atCaller("SIP/2.0 200 ")), kAnswer);
}

// Each fork counts by itself.
TEST_F(EarlyMedia, ForksGetTheirOwnPracks) {
  start();
  const std::string invited = invite({.body = kOffer});
  const auto from = [&](const std::string& tag) {
    const std::string to = headerOf(invited, "To");
    return replaced(invited, "To: " + to, "To: " + to + ";tag=" + tag);
  };
  for (const char* tag : {"one", "two"}) {
    answer(from(tag), "183 Session Progress" + kReliable + "5", kAnswer);
    const std::string prack = atTarget("PRACK ");
    EXPECT_EQ(toTagOf(prack), std::string(";tag=") + tag);
    answer(prack, "200 OK");
  }
  answer(from("one"), "180 Ringing" + kReliable + "6");
  EXPECT_EQ(toTagOf(atTarget("PRACK ")), ";tag=one");
  for (int fork = 0; fork < 10; ++fork) answer(from(std::to_string(fork)), "180 Ringing" + kReliable + "1");
  for (int fork = 0; fork < 6; ++fork)
    EXPECT_EQ(toTagOf(atTarget("PRACK ", ";tag=" + std::to_string(fork))), ";tag=" + std::to_string(fork));
  EXPECT_EQ(atTarget("PRACK ", "tag=6", kSilence), "");
  answer(from("two"), "200 OK", kAnswer);
  const std::string accepted = atCaller("SIP/2.0 200 ");
  caller_.request(engine_->address(), {.method = "ACK", .toTag = toTagOf(accepted)});
  EXPECT_EQ(toTagOf(atTarget("ACK ")), ";tag=two");
}

TEST_F(EarlyMedia, ACallerThatKnowsItGetsBodiesReliably) {
  start();
  invited_ = invite({.body = kOffer, .header = kKnows});
  ring("180 Ringing");
  EXPECT_EQ(headerOf(atCaller("SIP/2.0 180 "), "RSeq"), "");
  ring("183 Session Progress", kAnswer);
  const std::string early = atCaller("SIP/2.0 183 ");
  EXPECT_EQ(headerOf(early, "Require"), "100rel");
  EXPECT_EQ(contentOf(early), kAnswer);
  // It is repeated, and all else waits for its PRACK.
  answer(invited_, "200 OK", kOther);
  EXPECT_EQ(atCaller("SIP/2.0 183 "), early);
  EXPECT_EQ(statusOf(prack(early, 2)), 200);
  const std::string accepted = atCaller("SIP/2.0 200 ", "CSeq: 1 INVITE");
  EXPECT_EQ(contentOf(accepted), kOther);
  // It has one already.
  EXPECT_EQ(statusOf(prack(early, 3)), 481);
  caller_.request(engine_->address(), {.method = "ACK", .toTag = toTagOf(accepted)});
  EXPECT_NE(atTarget("ACK "), "");
  EXPECT_EQ(statusOf(ask({.method = "BYE", .cseq = 4, .toTag = toTagOf(accepted)})), 200);
}

TEST_F(EarlyMedia, ACallerThatInsistsGetsAllReliably) {
  start();
  invited_ = invite({.body = kOffer, .header = "Require: 100rel\r\n"});
  ring("180 Ringing");
  const std::string ringing = atCaller("SIP/2.0 180 ");
  EXPECT_EQ(headerOf(ringing, "Require"), "100rel");
  // Of what comes meanwhile the last one counts.
  ring("182 Queued");
  ring("183 Session Progress", kAnswer);
  EXPECT_EQ(statusOf(prack(ringing, 2)), 200);
  const std::string early = atCaller("SIP/2.0 18", "RSeq");
  EXPECT_EQ(contentOf(early), kAnswer);
  EXPECT_EQ(std::stoul(headerOf(early, "RSeq")), std::stoul(headerOf(ringing, "RSeq")) + 1);
}

TEST_F(EarlyMedia, AnOfferInAPrackIsRefused) {
  start();
  invited_ = invite({.body = kOffer, .header = kKnows});
  ring("183 Session Progress", kAnswer);
  const std::string early = atCaller("SIP/2.0 183 ");
  const std::string refused = ask({.method = "PRACK",
                                   .cseq = 2,
                                   .toTag = toTagOf(early),
                                   .body = kOffer,
                                   .header = "RAck: " + headerOf(early, "RSeq") + " 1 INVITE\r\n"});
  EXPECT_EQ(statusOf(refused), 488) << refused;
  answer(invited_, "200 OK", kAnswer);
  EXPECT_EQ(contentOf(atCaller("SIP/2.0 200 ", "CSeq: 1 INVITE")), kAnswer);
}

// A transaction for each would be kept for 32 seconds.
TEST_F(EarlyMedia, APrackForNothingIsRefused) {
  start();
  EXPECT_EQ(statusOf(ask({.method = "PRACK", .toTag = ";tag=x", .header = "RAck: 1 1 INVITE\r\n"})), 481);
  invited_ = invite({.body = kOffer, .header = kKnows});
  ring("183 Session Progress", kAnswer);
  const std::string early = atCaller("SIP/2.0 183 ");
  const std::string next = std::to_string(std::stoul(headerOf(early, "RSeq")) + 1);
  int cseq = 2;
  for (const std::string& rack :
       std::vector<std::string>{next + " 1 INVITE", "0 1 INVITE", "1 2 INVITE", "1 1 BYE"}) {
    const std::string refused =
        ask({.method = "PRACK", .cseq = cseq++, .toTag = toTagOf(early), .header = "RAck: " + rack + "\r\n"});
    EXPECT_EQ(statusOf(refused), 481) << rack;
  }
  EXPECT_EQ(statusOf(ask({.method = "PRACK", .cseq = cseq++, .toTag = toTagOf(early)})), 481);
  EXPECT_EQ(statusOf(prack(early, cseq)), 200);
}

TEST_F(EarlyMedia, ACallMayBeCancelledWhileAPrackIsAwaited) {
  start();
  invited_ = invite({.body = kOffer, .header = kKnows});
  ring("183 Session Progress", kAnswer);
  const std::string early = atCaller("SIP/2.0 183 ");
  answer(invited_, "200 OK", kAnswer);
  EXPECT_EQ(statusOf(ask({.method = "CANCEL", .branch = "INVITE1"})), 200);
  EXPECT_NE(atCaller("SIP/2.0 487 "), "");
  EXPECT_NE(atTarget("ACK "), "");
  EXPECT_NE(atTarget("BYE "), "");
  EXPECT_EQ(statusOf(prack(early, 2)), 481);
  EXPECT_EQ(raised(engine_->counters()), (Counters{{"calls", 1}, {"cancelled", 1}}));
}

TEST_F(EarlyMedia, AFailureNeedNotWaitForAPrack) {
  start();
  invited_ = invite({.body = kOffer, .header = kKnows});
  ring("183 Session Progress", kAnswer);
  const std::string early = atCaller("SIP/2.0 183 ");
  answer(invited_, "486 Busy Here");
  EXPECT_NE(atCaller("SIP/2.0 486 "), "");
  EXPECT_EQ(statusOf(prack(early, 2)), 481);
}

TEST_F(EarlyMedia, ACallWithoutAPrackEnds) {
  start();
  invited_ = invite({.body = kOffer, .header = kKnows});
  ring("183 Session Progress", kAnswer);
  EXPECT_NE(atCaller("SIP/2.0 504 ", "", milliseconds(40'000)), "");
  EXPECT_NE(atTarget("CANCEL "), "");
  answer(invited_, "487 Request Terminated");
  EXPECT_TRUE(waitUntil([&] { return engine_->counters().at("active") == 0; }, kLongestWait));
  EXPECT_EQ(raised(engine_->counters()), (Counters{{"calls", 1}, {"failed", 1}}));
}

TEST_F(EarlyMedia, AFloodOfBodiesDoesNotGoOn) {
  start();
  invited_ = invite({.body = kOffer});
  for (int version = 100; version < 400; ++version)
    ring("183 Session Progress", replaced(replaced(kAnswer, "33 9", "33 " + std::to_string(version)), "30000",
                                          std::to_string(30'000 + version)));
  std::size_t count = 0;
  while (!atCaller("SIP/2.0 183 ", "", kSilence).empty()) ++count;
  EXPECT_EQ(count, 100U);
  answer(invited_, "200 OK", kAnswer);
  const std::string accepted = atCaller("SIP/2.0 200 ");
  EXPECT_EQ(contentOf(accepted), replaced(kAnswer, "33 9 IN", "33 200 IN"));
}
