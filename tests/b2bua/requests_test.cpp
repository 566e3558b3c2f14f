#include <algorithm>
#include <csignal>

#include "twoParties.h"

// What the engine does with single requests: those that it answers by itself, and those that are repeated.

namespace {

class Requests : public TwoParties {};

}  // namespace

TEST_F(Requests, OptionsAreAnsweredWithWhatIsAllowed) {
  start();
  const std::string response = ask({.method = "OPTIONS"});
  EXPECT_EQ(statusOf(response), 200) << response;
  EXPECT_EQ(headerOf(response, "Accept"), "application/sdp, multipart/mixed");
  EXPECT_EQ(headerOf(response, "Allow"), "INVITE, ACK, CANCEL, BYE, OPTIONS, PRACK, UPDATE, INFO");
}

TEST_F(Requests, OptionsAreAnsweredWithinACallToo) {
  start();
  const std::string tag = establish();
  const std::string response = ask({.method = "OPTIONS", .cseq = 2, .toTag = tag});
  EXPECT_EQ(statusOf(response), 200) << response;
  EXPECT_EQ(headerOf(response, "Accept"), "application/sdp, multipart/mixed");
  EXPECT_EQ(headerOf(response, "Supported"), "100rel, timer");
  EXPECT_EQ(statusOf(ask({.method = "OPTIONS", .call = 2, .toTag = tag})), 481);
  EXPECT_EQ(statusOf(ask({.method = "OPTIONS", .call = 3, .toTag = ";tag=nobody-c"})), 481);
  EXPECT_EQ(engine_->counters()["active"], 1);
}

TEST_F(Requests, OptionsThatInsistOnUnknownExtensionsAreRefused) {
  start();
  const std::string response = ask({.method = "OPTIONS", .header = "Require: none-such\r\n"});
  EXPECT_EQ(statusOf(response), 420) << response;
}

TEST_F(Requests, OtherMethodsAreRefused) {
  start();
  for (const char* method : {"MESSAGE", "REFER", "NOSUCH"}) {
    const std::string response = ask({.method = method});
    EXPECT_EQ(statusOf(response), 405) << response;
    EXPECT_EQ(headerOf(response, "Allow"), "INVITE, ACK, CANCEL, BYE, OPTIONS, PRACK, UPDATE, INFO");
  }
}

TEST_F(Requests, WhatBelongsToNoDialogIsRefused) {
  start();
  EXPECT_EQ(statusOf(ask({.method = "BYE", .call = 1, .cseq = 2, .toTag = ";tag=nobody-c"})), 481);
  EXPECT_EQ(statusOf(ask({.method = "BYE", .call = 2, .cseq = 2})), 481);
  EXPECT_EQ(statusOf(ask({.call = 3, .cseq = 2, .toTag = ";tag=nobody"})), 481);
  EXPECT_EQ(raised(engine_->stop()), Counters{});
}

TEST_F(Requests, WhatIsNoSipIsCountedOnly) {
  start();
  for (const char* message : {"hello", "INVITE\r\n\r\n"}) caller_.send(engine_->address(), message);
  EXPECT_EQ(statusOf(ask({.method = "OPTIONS"})), 200);
  EXPECT_EQ(raised(engine_->stop()), (Counters{{"malformed", 2}}));
}

TEST_F(Requests, ABodyThatIsNoSdpIsRefused) {
  start();
  const std::string response = ask({.body = "hello", .contentType = "text/plain"});
  EXPECT_EQ(statusOf(response), 415) << response;
  EXPECT_EQ(headerOf(response, "Accept"), "application/sdp");
  EXPECT_EQ(raised(engine_->stop()), (Counters{{"calls", 1}, {"failed", 1}}));
}

TEST_F(Requests, MoreCallsThanAllowedAreRefused) {
  start({"--max-calls", "1"});
  EXPECT_NE(invite({.call = 1, .body = kOffer}), "");
  EXPECT_EQ(statusOf(ask({.call = 2, .body = kOffer})), 503);
  EXPECT_EQ(raised(engine_->counters()), (Counters{{"calls", 1}, {"active", 1}}));
}

TEST_F(Requests, AnInviteThatMeetsAnotherOneIsRefused) {
  start();
  const std::string tag = establish();
  const std::string held = invite({.cseq = 2, .toTag = tag, .body = kHold});
  ASSERT_NE(held, "");
  // The target asks for something of its own instead of an answer.
  const std::string own =
      "INVITE " + headerOf(held, "Contact").substr(1, headerOf(held, "Contact").find('>') - 1) +
      " SIP/2.0\r\nVia: SIP/2.0/UDP " + target_.address() +
      ";branch=z9hG4bKown\r\nMax-Forwards: 70\r\nFrom: " + headerOf(held, "To") +
      "\r\nTo: " + headerOf(held, "From") + "\r\nCall-ID: " + headerOf(held, "Call-ID") +
      "\r\nCSeq: 1 INVITE\r\nContact: <sip:bob@" + target_.address() + ">\r\nContent-Length: 0\r\n\r\n";
  target_.send(engine_->address(), own);
  EXPECT_NE(target_.receive("SIP/2.0 491 ", "z9hG4bKown", kLongestWait), "");
  // The first one goes on.
  target_.respond(engine_->address(), held, "200 OK", kAnswer);
  EXPECT_NE(caller_.receive("SIP/2.0 200 ", "CSeq: 2 INVITE", kLongestWait), "");
}

TEST_F(Requests, ARepeatedSuccessGetsItsAckAgain) {
  start();
  const std::string invited = invite({.body = kOffer});
  const std::string response = target_.respond(engine_->address(), invited, "200 OK", kAnswer);
  const std::string tag = toTagOf(caller_.receive("SIP/2.0 200 ", "", kLongestWait));
  caller_.request(engine_->address(), {.method = "ACK", .toTag = tag});
  const std::string acknowledged = target_.receive("ACK ", "", kLongestWait);
  ASSERT_NE(acknowledged, "");
  target_.send(engine_->address(), response);
  EXPECT_EQ(target_.receive("ACK ", "", kLongestWait), acknowledged);
}

TEST_F(Requests, ASuccessIsRepeatedUntilItHasItsAck) {
  start();
  target_.respond(engine_->address(), invite({.body = kOffer}), "200 OK", kAnswer);
  const std::string response = caller_.receive("SIP/2.0 200 ", "", kLongestWait);
  ASSERT_NE(response, "");
  EXPECT_EQ(caller_.receive("SIP/2.0 200 ", "", kLongestWait), response);
  caller_.request(engine_->address(), {.method = "ACK", .toTag = toTagOf(response)});
  EXPECT_NE(target_.receive("ACK ", "", kLongestWait), "");
  EXPECT_TRUE(waitUntil([&] { return engine_->counters().at("established") == 1; }, kLongestWait));
}

// A target that rings when the caller has given up, and answers all the same.
TEST_F(Requests, ASuccessAfterTheCancelIsEnded) {
  start();
  const std::string invited = invite({.body = kOffer});
  target_.respond(engine_->address(), invited, "180 Ringing");
  EXPECT_NE(caller_.receive("SIP/2.0 180 ", "", kLongestWait), "");
  EXPECT_EQ(statusOf(ask({.method = "CANCEL", .branch = "INVITE1"})), 200);
  const std::string cancelled = target_.receive("CANCEL ", "", kLongestWait);
  ASSERT_NE(cancelled, "");
  target_.respond(engine_->address(), invited, "200 OK", kAnswer);
  EXPECT_NE(target_.receive("ACK ", "", kLongestWait), "");
  const std::string ended = target_.receive("BYE ", "", kLongestWait);
  ASSERT_NE(ended, "");
  target_.respond(engine_->address(), ended, "200 OK");
  EXPECT_EQ(raised(engine_->stop()), (Counters{{"calls", 1}, {"cancelled", 1}}));
}

// Nothing comes after the final response, whatever the target says.
TEST_F(Requests, WhoHasCancelledHearsNoMoreOfTheTarget) {
  start();
  const std::string invited = invite({.body = kOffer});
  target_.respond(engine_->address(), invited, "180 Ringing");
  EXPECT_NE(caller_.receive("SIP/2.0 180 ", "", kLongestWait), "");
  caller_.request(engine_->address(), {.method = "CANCEL", .branch = "INVITE1"});
  EXPECT_NE(caller_.receive("SIP/2.0 487 ", "", kLongestWait), "");
  EXPECT_NE(target_.receive("CANCEL ", "", kLongestWait), "");
  target_.respond(engine_->address(), invited, "180 Ringing");
  EXPECT_EQ(caller_.receive("SIP/2.0 180 ", "", kSilence), "");
  target_.respond(engine_->address(), invited, "487 Request Terminated");
  EXPECT_NE(target_.receive("ACK ", "", kLongestWait), "");
  EXPECT_EQ(raised(engine_->stop()), (Counters{{"calls", 1}, {"cancelled", 1}}));
}

TEST_F(Requests, ATargetThatDoesNotKnowItsDialogEndsTheCall) {
  start();
  const std::string tag = establish();
  const std::string held = invite({.cseq = 2, .toTag = tag, .body = kHold});
  target_.respond(engine_->address(), held, "481 Call Does Not Exist");
  EXPECT_NE(caller_.receive("SIP/2.0 481 ", "CSeq: 2 INVITE", kLongestWait), "");
  EXPECT_NE(caller_.receive("BYE ", "", kLongestWait), "");
  EXPECT_NE(target_.receive("BYE ", "", kLongestWait), "");
  EXPECT_EQ(raised(engine_->counters()),
            (Counters{{"calls", 1}, {"established", 1}, {"ended", 1}, {"reoffers", 1}}));
}

// The target is on hold since, and must hear of the next offer, even if it is that of before.
TEST_F(Requests, AnOfferWhoseAnswerCannotBeUsedHasItsVersion) {
  start();
  const std::string tag = establish();
  const std::string held = invite({.cseq = 2, .toTag = tag, .body = kHold});
  EXPECT_NE(held.find("o=alice 21 5 IN"), std::string::npos) << held;
  target_.respond(engine_->address(), held, "200 OK", "hello");
  EXPECT_NE(caller_.receive("SIP/2.0 488 ", "CSeq: 2 INVITE", kLongestWait), "");
  EXPECT_NE(target_.receive("ACK ", "", kLongestWait), "");
  caller_.request(engine_->address(), {.method = "ACK", .cseq = 2, .toTag = tag, .branch = "INVITE2"});
  const std::string resumed = invite({.cseq = 3, .toTag = tag, .body = kOffer});
  EXPECT_NE(resumed.find("o=alice 21 6 IN"), std::string::npos) << resumed;
}

TEST_F(Requests, WhatInsistsOnAnExtensionIsRefused) {
  start();
  const std::string response = ask({.body = kOffer, .header = "Require: precondition\r\n"});
  EXPECT_EQ(statusOf(response), 420) << response;
  EXPECT_EQ(headerOf(response, "Unsupported"), "precondition");
  EXPECT_EQ(raised(engine_->stop()), Counters{});
}

// What is told of them is bounded.
TEST_F(Requests, WhatInsistsOnHundredsOfExtensionsIsRefused) {
  start();
  std::string names;
  for (int i = 0; i < 400; ++i) names += (i == 0 ? "x" : ",x") + std::to_string(i);
  const std::string response = ask({.body = kOffer, .header = "Require: " + names + "\r\n"});
  EXPECT_EQ(statusOf(response), 420);
  const std::string unsupported = headerOf(response, "Unsupported");
  EXPECT_TRUE(unsupported.starts_with("x0, x1, x2")) << unsupported;
  EXPECT_EQ(std::ranges::count(unsupported, ','), 31);
  // What is known among them is no reason, whatever its place and case.
  const std::string known =
      ask({.method = "OPTIONS", .call = 30, .header = "Require: timer, 100REL\r\nRequire: x\r\n"});
  EXPECT_EQ(headerOf(known, "Unsupported"), "x");
}

// It would not stand between < and > in what goes on.
TEST_F(Requests, AUserThatBreaksItsUriIsRefused) {
  start();
  int call = 0;
  for (const char* user : {"bo>b", "bo<b", "bo\"b"}) {
    caller_.request(engine_->address(), {.call = ++call, .user = user, .body = kOffer});
    const std::string response = atCaller("SIP/2.0 4");
    EXPECT_EQ(statusOf(response), 400) << user << response;
  }
  EXPECT_EQ(raised(engine_->counters()), Counters{});
  caller_.request(engine_->address(), {.call = ++call, .user = "bo%3Eb;x=1", .body = kOffer});
  EXPECT_TRUE(atTarget("INVITE ").starts_with("INVITE sip:bo%3Eb;x=1@"));
}

TEST_F(Requests, AnEngineThatEndsEndsACallThatWaitsForItsAck) {
  start();
  target_.respond(engine_->address(), invite({.body = kOffer}), "200 OK", kAnswer);
  EXPECT_NE(caller_.receive("SIP/2.0 200 ", "", kLongestWait), "");
  EXPECT_EQ(raised(engine_->stop()), (Counters{{"calls", 1}, {"failed", 1}}));
  EXPECT_NE(caller_.receive("BYE ", "", kLongestWait), "");
  EXPECT_NE(target_.receive("ACK ", "", kLongestWait), "");
  EXPECT_NE(target_.receive("BYE ", "", kLongestWait), "");
}

// It can only be cancelled when the target has said something (RFC 3261 9.1), so the engine waits for that.
TEST_F(Requests, AnEngineThatEndsGivesUpACallThatIsNotAnsweredYet) {
  start();
  const std::string invited = invite({.body = kOffer});
  engine_->process().signal(SIGTERM);
  EXPECT_NE(caller_.receive("SIP/2.0 503 ", "", kLongestWait), "");
  target_.respond(engine_->address(), invited, "180 Ringing");
  EXPECT_NE(target_.receive("CANCEL ", "", kLongestWait), "");
  EXPECT_EQ(engine_->process().wait(kLongestWait), 0);
}

TEST_F(Requests, BodiesAreShownBeforeAndAfterThePolicy) {
  start({"--show", "--policy", folder_.write("policy", "audio-codecs = PCMA\n")});
  establish();
  const std::string output = replaced(engine_->process().output(), "\x1b", "ESC");
  const std::size_t from = output.find("-- call ");
  ASSERT_NE(from, std::string::npos) << output;
  const std::string call = output.substr(from + 8, 16);
  EXPECT_EQ(output.substr(from), "-- call " + call +
                                     ": offer from the caller\n"
                                     "  v=0\n"
                                     "  o=alice 21 4 IN IP4 192.0.2.10\n"
                                     "  s=-\n"
                                     "  c=IN IP4 192.0.2.10\n"
                                     "  t=0 0\n"
                                     "- m=audio 49170 RTP/AVP 0 8\n"
                                     "+ m=audio 49170 RTP/AVP 8\n"
                                     "-- call " +
                                     call +
                                     ": answer from the target\n"
                                     "  v=0\n"
                                     "  o=bob 33 9 IN IP4 192.0.2.20\n"
                                     "  s=-\n"
                                     "  c=IN IP4 192.0.2.20\n"
                                     "  t=0 0\n"
                                     "  m=audio 30000 RTP/AVP 8\n");
}

TEST_F(Requests, TheLibrarysOwnLinesStandInTheLogWhenAsked) {
  start({"--trace", "--policy", folder_.write("policy", "ice = remove\n")});
  establish();
  EXPECT_NE(engine_->log().find("sdpParse"), std::string::npos) << engine_->log();
}

TEST_F(Requests, OtherwiseTheyDoNot) {
  start({"--policy", folder_.write("policy", "ice = remove\n")});
  establish();
  EXPECT_EQ(engine_->log().find("sdpParse"), std::string::npos) << engine_->log();
}
