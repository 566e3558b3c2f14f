#include <bencode.h>

#include <csignal>

#include "fakeRelay.h"
#include "twoParties.h"

// Calls whose bodies go by way of a media relay that answers late, wrongly or not at all.

namespace {

const std::string kRelayedOffer =
    "v=0\r\no=alice 21 4 IN IP4 192.0.2.10\r\ns=-\r\nc=IN IP4 198.51.100.10\r\nt=0 0\r\n"
    "m=audio 49170 RTP/AVP 0 8\r\n";
const std::string kRelayedAnswer =
    "v=0\r\no=bob 33 9 IN IP4 192.0.2.20\r\ns=-\r\nc=IN IP4 198.51.100.20\r\nt=0 0\r\nm=audio 30000 RTP/AVP 8\r\n";

std::string bodyIn(const std::string& message) { return message.substr(message.find("\r\n\r\n") + 4); }

std::string commandsOf(const std::vector<RelayRequest>& requests) {
  std::string all;
  for (const RelayRequest& request : requests) all += (all.empty() ? "" : " ") + request.texts.at("command");
  return all;
}

/// An engine and its relay between two parties that do what the test says.
class MediaRelay : public TwoParties {
 protected:
  void start(const std::vector<std::string>& options = {}) {
    std::vector<std::string> all = {"--media", "rtpengine", "udp:" + relay_.address()};
    all.insert(all.end(), options.begin(), options.end());
    TwoParties::start(all);
  }

  /// What has happened but for what the relay was asked.
  Counters events(Counters counters) const {
    counters.erase("media_requests");
    return raised(std::move(counters));
  }

  FakeRelay relay_;
};

}  // namespace

TEST_F(MediaRelay, BothSidesGetWhatItMakesOfTheBodies) {
  start();
  invited_ = invite({.body = kOffer});
  EXPECT_EQ(bodyIn(invited_), kRelayedOffer);
  target_.respond(engine_->address(), invited_, "200 OK", kAnswer);
  const std::string response = caller_.receive("SIP/2.0 200 ", "", kLongestWait);
  EXPECT_EQ(bodyIn(response), kRelayedAnswer);
  const std::string tag = toTagOf(response);
  caller_.request(engine_->address(), {.method = "ACK", .toTag = tag});
  EXPECT_NE(target_.receive("ACK ", "", kLongestWait), "");
  EXPECT_EQ(statusOf(ask({.method = "BYE", .cseq = 2, .toTag = tag})), 200);
  ASSERT_TRUE(relay_.waitFor("delete"));
  const std::vector<RelayRequest> requests = relay_.requests();
  ASSERT_EQ(commandsOf(requests), "offer answer delete");
  const std::string callerTag = tag.substr(5);
  const std::string call = callerTag.substr(0, 16);
  EXPECT_EQ(requests[0].texts,
            (std::map<std::string, std::string>{
                {"command", "offer"}, {"call-id", call}, {"from-tag", callerTag}, {"sdp", kOffer}}));
  EXPECT_EQ(requests[1].texts, (std::map<std::string, std::string>{{"command", "answer"},
                                                                   {"call-id", call},
                                                                   {"from-tag", callerTag},
                                                                   {"to-tag", call + "-t"},
                                                                   {"sdp", kAnswer}}));
  EXPECT_EQ(requests[2].texts,
            (std::map<std::string, std::string>{{"command", "delete"}, {"call-id", call}}));
  EXPECT_EQ(raised(engine_->stop()),
            (Counters{{"calls", 1}, {"established", 1}, {"ended", 1}, {"media_requests", 2}}));
}

TEST_F(MediaRelay, IsAskedForNoKeysOfAKindThatAnOfferHasNot) {
  start();
  const std::string keys =
      "a=crypto:1 AES_CM_128_HMAC_SHA1_80 inline:WVNfX19zZW1jdGwgKCkgewkyMjA7fQp9CnVubGVz\r\n";
  const std::string fingerprint =
      "a=fingerprint:sha-1 4A:AD:B9:B1:3F:82:18:3B:54:02:12:DF:3E:5D:49:6B:19:E5:7C:AB\r\n";
  const std::string noKeys = "4:SDESl3:offe";
  const std::string noDtls = "4:DTLS3:off";
  const struct {
    std::string lines;
    bool withoutKeys;
    bool withoutDtls;
  } kOffers[] = {{"", false, false},
                 {keys, false, true},
                 {fingerprint, true, false},
                 {keys + fingerprint, false, false}};
  int call = 0;
  for (const auto& offer : kOffers) {
    SCOPED_TRACE(offer.lines);
    invite({.call = ++call, .body = replaced(kOffer, "RTP/AVP", "RTP/SAVP") + offer.lines});
    const std::vector<RelayRequest> requests = relay_.requests();
    ASSERT_EQ(requests.size(), static_cast<std::size_t>(call));
    EXPECT_EQ(requests.back().bytes.find(noKeys) != std::string::npos, offer.withoutKeys);
    EXPECT_EQ(requests.back().bytes.find(noDtls) != std::string::npos, offer.withoutDtls);
  }
}

TEST_F(MediaRelay, IsNotAskedAboutABodyWithoutMedia) {
  start();
  const std::string offer = kOffer.substr(0, kOffer.find("m="));
  const std::string answer = kAnswer.substr(0, kAnswer.find("m="));
  invited_ = invite({.body = offer});
  EXPECT_EQ(bodyIn(invited_), offer);
  target_.respond(engine_->address(), invited_, "200 OK", answer);
  const std::string response = caller_.receive("SIP/2.0 200 ", "", kLongestWait);
  EXPECT_EQ(bodyIn(response), answer);
  const std::string tag = toTagOf(response);
  caller_.request(engine_->address(), {.method = "ACK", .toTag = tag});
  EXPECT_NE(target_.receive("ACK ", "", kLongestWait), "");
  EXPECT_TRUE(relay_.requests().empty());
  // Its media come by a re-INVITE.
  const std::string offered = invite({.cseq = 2, .toTag = tag, .body = replaced(kOffer, " 21 4 ", " 21 5 ")});
  EXPECT_EQ(bodyIn(offered), replaced(kRelayedOffer, " 21 4 ", " 21 5 "));
}

TEST_F(MediaRelay, AReOfferOfTheTargetGoesTheOtherWay) {
  start();
  const std::string tag = establish();
  requestOfTarget("INVITE", 1, kAnswer);
  const std::string offered = caller_.receive("INVITE ", "", kLongestWait);
  EXPECT_EQ(bodyIn(offered), kRelayedAnswer);
  const std::vector<RelayRequest> requests = relay_.requests();
  ASSERT_EQ(commandsOf(requests), "offer answer offer");
  EXPECT_EQ(requests[2].texts.at("from-tag"), requests[1].texts.at("to-tag"));
  EXPECT_EQ(requests[2].texts.at("to-tag"), requests[1].texts.at("from-tag"));
}

TEST_F(MediaRelay, AnUnchangedReOfferIsAnsweredWithoutIt) {
  start();
  const std::string tag = establish();
  const std::string response = ask({.cseq = 2, .toTag = tag, .body = kOffer});
  EXPECT_EQ(statusOf(response), 200);
  EXPECT_EQ(bodyIn(response), kRelayedAnswer);
  EXPECT_EQ(commandsOf(relay_.requests()), "offer answer");
}

// Without a relay the stored answer would be brought up to date.
TEST_F(MediaRelay, AReOfferThatChangesCodecsReachesIt) {
  start();
  const std::string tag = establish();
  const std::string changed = replaced(replaced(kOffer, " 21 4 ", " 21 5 "), "0 8\r\n", "8\r\n");
  EXPECT_EQ(bodyIn(invite({.cseq = 2, .toTag = tag, .body = changed})),
            replaced(changed, "c=IN IP4 192.0.2.", "c=IN IP4 198.51.100."));
  EXPECT_EQ(commandsOf(relay_.requests()), "offer answer offer");
}

// The caller's body is there in its ACK only; it answers to what the target said to the dummy.
TEST_F(MediaRelay, ACallWithoutABodyIsOfferedByTheTarget) {
  start();
  const std::string invited = invite({});
  target_.respond(engine_->address(), invited, "200 OK", kAnswer);
  const std::string response = caller_.receive("SIP/2.0 200 ", "", kLongestWait);
  EXPECT_EQ(bodyIn(response), kRelayedAnswer);
  caller_.request(engine_->address(), {.method = "ACK", .toTag = toTagOf(response), .body = kOffer});
  const std::string again = target_.receive("INVITE ", "CSeq: 2 INVITE", kLongestWait);
  EXPECT_NE(again.find("\r\nc=IN IP4 198.51.100.10\r\n"), std::string::npos) << again;
  const std::vector<RelayRequest> requests = relay_.requests();
  ASSERT_EQ(commandsOf(requests), "offer answer");
  EXPECT_TRUE(requests[0].texts.at("from-tag").ends_with("-t"));
  EXPECT_EQ(requests[1].texts.at("from-tag"), requests[0].texts.at("from-tag"));
  EXPECT_TRUE(requests[1].texts.at("to-tag").ends_with("-c"));
}

// -- what happens while it thinks

TEST_F(MediaRelay, ACallIsSetUpWhenItAnswersLate) {
  start();
  relay_.hold("offer");
  caller_.request(engine_->address(), {.body = kOffer});
  ASSERT_TRUE(relay_.waitFor("offer"));
  EXPECT_EQ(target_.receive("INVITE ", "", kSilence), "");
  relay_.letGo();
  const std::string invited = target_.receive("INVITE ", "", kLongestWait);
  EXPECT_EQ(bodyIn(invited), kRelayedOffer);
  relay_.hold("answer");
  const std::string accepted = target_.respond(engine_->address(), invited, "200 OK", kAnswer);
  ASSERT_TRUE(relay_.waitFor("answer"));
  target_.send(engine_->address(), accepted);
  EXPECT_EQ(caller_.receive("SIP/2.0 200 ", "", kSilence), "");
  relay_.letGo();
  EXPECT_EQ(bodyIn(caller_.receive("SIP/2.0 200 ", "", kLongestWait)), kRelayedAnswer);
  EXPECT_EQ(commandsOf(relay_.requests()), "offer answer");
  EXPECT_GT(relay_.datagrams(), 2);  // it was asked again
}

// As when the store or the machine keeps it for a while.
TEST_F(MediaRelay, IsNotGoneWhenTheEngineIsLateToReadWhatItSays) {
  start();
  relay_.hold("offer");
  caller_.request(engine_->address(), {.body = kOffer});
  ASSERT_TRUE(relay_.waitFor("offer"));
  engine_->process().signal(SIGSTOP);
  relay_.letGo();
  std::this_thread::sleep_for(milliseconds{1'300});
  engine_->process().signal(SIGCONT);
  const std::string invited = target_.receive("INVITE ", "", kLongestWait);
  ASSERT_NE(invited, "") << engine_->log();
  EXPECT_EQ(bodyIn(invited), kRelayedOffer);
  EXPECT_EQ(engine_->counters().at("media_gone"), 0);
}

TEST_F(MediaRelay, ACancelEndsACallWhoseOfferIsOnItsWay) {
  start();
  relay_.hold("offer");
  caller_.request(engine_->address(), {.body = kOffer});
  ASSERT_TRUE(relay_.waitFor("offer"));
  caller_.request(engine_->address(), {.method = "CANCEL", .branch = "INVITE1"});
  EXPECT_NE(caller_.receive("SIP/2.0 487 ", "", kLongestWait), "");
  EXPECT_TRUE(relay_.waitFor("delete"));
  relay_.letGo();
  EXPECT_EQ(target_.receive("INVITE ", "", kSilence), "");
  EXPECT_EQ(events(engine_->stop()), (Counters{{"calls", 1}, {"cancelled", 1}}));
}

TEST_F(MediaRelay, ACancelEndsACallWhoseAnswerIsOnItsWay) {
  start();
  const std::string invited = invite({.body = kOffer});
  relay_.hold("answer");
  target_.respond(engine_->address(), invited, "200 OK", kAnswer);
  ASSERT_TRUE(relay_.waitFor("answer"));
  caller_.request(engine_->address(), {.method = "CANCEL", .branch = "INVITE1"});
  EXPECT_NE(caller_.receive("SIP/2.0 487 ", "", kLongestWait), "");
  EXPECT_NE(target_.receive("ACK ", "", kLongestWait), "");
  EXPECT_NE(target_.receive("BYE ", "", kLongestWait), "");
  relay_.letGo();
  EXPECT_EQ(caller_.receive("SIP/2.0 200 ", "INVITE", kSilence), "");
  EXPECT_EQ(events(engine_->counters()), (Counters{{"calls", 1}, {"cancelled", 1}}));
}

TEST_F(MediaRelay, ATargetThatHangsUpWhileItsAnswerIsOnItsWayEndsTheCall) {
  start();
  invited_ = invite({.body = kOffer});
  relay_.hold("answer");
  target_.respond(engine_->address(), invited_, "200 OK", kAnswer);
  ASSERT_TRUE(relay_.waitFor("answer"));
  requestOfTarget("BYE", 1);
  EXPECT_NE(caller_.receive("SIP/2.0 480 ", "", kLongestWait), "");
  EXPECT_NE(target_.receive("ACK ", "", kLongestWait), "");
  relay_.letGo();
  EXPECT_EQ(caller_.receive("SIP/2.0 200 ", "", kSilence), "");
  EXPECT_EQ(events(engine_->stop()), (Counters{{"calls", 1}, {"failed", 1}}));
}

TEST_F(MediaRelay, AReOfferThatIsCancelledOnItsWayLeavesTheCall) {
  start();
  const std::string tag = establish();
  relay_.hold("offer");
  caller_.request(engine_->address(), {.cseq = 2, .toTag = tag, .body = kHold});
  ASSERT_TRUE(relay_.waitFor("offer", 2));
  caller_.request(engine_->address(), {.method = "CANCEL", .cseq = 2, .toTag = tag, .branch = "INVITE2"});
  EXPECT_NE(caller_.receive("SIP/2.0 487 ", "CSeq: 2 INVITE", kLongestWait), "");
  relay_.letGo();
  EXPECT_EQ(target_.receive("INVITE ", "", kSilence), "");
  // The next one goes through.
  EXPECT_NE(invite({.cseq = 3, .toTag = tag, .body = kHold}), "");
  EXPECT_EQ(events(engine_->counters()),
            (Counters{{"calls", 1}, {"established", 1}, {"reoffers", 2}, {"active", 1}}));
}

TEST_F(MediaRelay, AByeEndsACallWhoseReOfferIsOnItsWay) {
  start();
  const std::string tag = establish();
  relay_.hold("offer");
  caller_.request(engine_->address(), {.cseq = 2, .toTag = tag, .body = kHold});
  ASSERT_TRUE(relay_.waitFor("offer", 2));
  requestOfTarget("BYE", 1);
  EXPECT_NE(caller_.receive("SIP/2.0 487 ", "CSeq: 2 INVITE", kLongestWait), "");
  EXPECT_NE(caller_.receive("BYE ", "", kLongestWait), "");
  EXPECT_TRUE(relay_.waitFor("delete"));
  relay_.letGo();
  EXPECT_EQ(target_.receive("INVITE ", "", kSilence), "");
  EXPECT_EQ(events(engine_->counters()),
            (Counters{{"calls", 1}, {"established", 1}, {"ended", 1}, {"reoffers", 1}}));
}

TEST_F(MediaRelay, AByeEndsACallWhoseSecondAnswerIsOnItsWay) {
  start();
  const std::string tag = establish();
  const std::string held = invite({.cseq = 2, .toTag = tag, .body = kHold});
  relay_.hold("answer");
  target_.respond(engine_->address(), held, "200 OK", kAnswer);
  ASSERT_TRUE(relay_.waitFor("answer", 2));
  EXPECT_EQ(statusOf(ask({.method = "BYE", .cseq = 3, .toTag = tag})), 200);
  EXPECT_NE(target_.receive("ACK ", "CSeq: 2 ACK", kLongestWait), "");
  EXPECT_NE(target_.receive("BYE ", "", kLongestWait), "");
  relay_.letGo();
  EXPECT_EQ(events(engine_->counters()),
            (Counters{{"calls", 1}, {"established", 1}, {"ended", 1}, {"reoffers", 1}}));
}

TEST_F(MediaRelay, AnInviteThatMeetsOneOnItsWayIsRefused) {
  start();
  const std::string tag = establish();
  relay_.hold("offer");
  caller_.request(engine_->address(), {.cseq = 2, .toTag = tag, .body = kHold});
  ASSERT_TRUE(relay_.waitFor("offer", 2));
  requestOfTarget("INVITE", 1, kAnswer);
  EXPECT_NE(target_.receive("SIP/2.0 491 ", "", kLongestWait), "");
  relay_.letGo();
  EXPECT_NE(target_.receive("INVITE ", "CSeq: 2 INVITE", kLongestWait), "");
}

TEST_F(MediaRelay, AnEngineThatEndsGivesUpABodyOnItsWay) {
  start();
  relay_.hold("offer");
  caller_.request(engine_->address(), {.call = 1, .body = kOffer});
  ASSERT_TRUE(relay_.waitFor("offer"));
  relay_.hold("answer");
  const std::string invited = invite({.call = 2, .body = kOffer});
  target_.respond(engine_->address(), invited, "200 OK", kAnswer);
  ASSERT_TRUE(relay_.waitFor("answer"));
  engine_->process().signal(SIGTERM);
  EXPECT_NE(caller_.receive("SIP/2.0 503 ", "", kLongestWait), "");
  EXPECT_NE(caller_.receive("SIP/2.0 503 ", "", kLongestWait), "");
  EXPECT_NE(target_.receive("ACK ", "", kLongestWait), "");
  const std::string ended = target_.receive("BYE ", "", kLongestWait);
  target_.respond(engine_->address(), ended, "200 OK");
  EXPECT_EQ(engine_->process().wait(kLongestWait), 0);
}

// The answer of the caller is in its ACK.
TEST_F(MediaRelay, AnAckThatIsRepeatedWhileItsAnswerIsOnItsWayCountsOnce) {
  start();
  const std::string tag = establish();
  const std::string asked = invite({.cseq = 2, .toTag = tag});
  target_.respond(engine_->address(), asked, "200 OK", replaced(kAnswer, " 33 9 ", " 33 10 "));
  EXPECT_NE(caller_.receive("SIP/2.0 200 ", "CSeq: 2 INVITE", kLongestWait), "");
  relay_.hold("answer");
  for (int i = 0; i < 2; ++i)
    caller_.request(engine_->address(), {.method = "ACK", .cseq = 2, .toTag = tag, .body = kOffer});
  ASSERT_TRUE(relay_.waitFor("answer", 2));
  EXPECT_EQ(target_.receive("ACK ", "CSeq: 2 ACK", kSilence), "");
  relay_.letGo();
  EXPECT_EQ(bodyIn(target_.receive("ACK ", "CSeq: 2 ACK", kLongestWait)), kRelayedOffer);
  EXPECT_EQ(commandsOf(relay_.requests()), "offer answer offer answer");
}

// -- what comes to nothing

TEST_F(MediaRelay, HearsAgainOnWhatWasAgreedWhenAReOfferIsRefused) {
  start();
  const std::string tag = establish();
  const std::string held = invite({.cseq = 2, .toTag = tag, .body = kHold});
  target_.respond(engine_->address(), held, "488 Not Acceptable Here");
  EXPECT_NE(caller_.receive("SIP/2.0 488 ", "CSeq: 2 INVITE", kLongestWait), "");
  ASSERT_TRUE(relay_.waitFor("answer", 2));
  const std::vector<RelayRequest> requests = relay_.requests();
  ASSERT_EQ(commandsOf(requests), "offer answer offer offer answer");
  EXPECT_EQ(requests[3].texts.at("sdp"), kOffer);
  EXPECT_EQ(requests[3].texts.at("from-tag"), requests[0].texts.at("from-tag"));
  EXPECT_EQ(requests[4].texts.at("sdp"), kAnswer);
}

TEST_F(MediaRelay, HearsAgainOnWhatWasAgreedWhenAReOfferIsCancelled) {
  start();
  const std::string tag = establish();
  const std::string held = invite({.cseq = 2, .toTag = tag, .body = kHold});
  target_.respond(engine_->address(), held, "180 Ringing");
  caller_.request(engine_->address(), {.method = "CANCEL", .cseq = 2, .toTag = tag, .branch = "INVITE2"});
  EXPECT_NE(caller_.receive("SIP/2.0 487 ", "CSeq: 2 INVITE", kLongestWait), "");
  target_.respond(engine_->address(), held, "487 Request Terminated");
  ASSERT_TRUE(relay_.waitFor("answer", 2));
  EXPECT_EQ(commandsOf(relay_.requests()), "offer answer offer offer answer");
}

TEST_F(MediaRelay, HearsAgainOnWhatWasAgreedWhenAnEarlyUpdateIsRefused) {
  start();
  agreeEarly();
  caller_.request(engine_->address(), {.method = "UPDATE", .cseq = 3, .toTag = tag_, .body = kHold});
  answer(atTarget("UPDATE "), "488 Not Acceptable Here");
  EXPECT_NE(atCaller("SIP/2.0 488 ", "CSeq: 3 UPDATE"), "");
  ASSERT_TRUE(relay_.waitFor("answer", 2));
  const std::vector<RelayRequest> requests = relay_.requests();
  ASSERT_EQ(commandsOf(requests), "offer answer offer offer answer");
  EXPECT_EQ(requests[3].texts.at("sdp"), kOffer);
  EXPECT_EQ(requests[4].texts.at("sdp"), kAnswer);
  // The call goes on.
  answer(invited_, "200 OK", kAnswer);
  EXPECT_NE(atCaller("SIP/2.0 200 ", "CSeq: 1 INVITE"), "");
}

// -- what it should not say

TEST_F(MediaRelay, WhatIsNoReplyIsDropped) {
  start();
  relay_.answerWith([](const RelayRequest& request) {
    const std::string deep = request.cookie + " " + std::string(60'000, 'l');
    return std::vector<std::string>{"",
                                    "hello",
                                    request.cookie,
                                    request.cookie + " ",
                                    request.cookie + " hello",
                                    request.cookie + " de",
                                    request.cookie + " d6:result-2:oke",
                                    request.cookie + " d6:result99999999999:oke",
                                    deep,
                                    "other d6:result2:oke",
                                    okReply(request),
                                    okReply(request)};
  });
  establish();
  EXPECT_EQ(raised(engine_->counters()),
            (Counters{{"calls", 1}, {"established", 1}, {"media_requests", 2}, {"active", 1}}));
}

TEST_F(MediaRelay, WhatItCannotDoIsRefused) {
  start();
  const std::string huge = "v=0\r\no=- 1 1 IN IP4 192.0.2.1\r\ns=" + std::string(50'000, 'x') +
                           "\r\nt=0 0\r\nm=audio 4000 RTP/AVP 0\r\n";
  const std::vector<std::string> replies = {
      "d6:result5:error12:error-reason12:out of portse",
      "d6:result2:oke",
      "d6:result2:ok3:sdp0:e",
      "d6:result2:ok3:sdp5:hello"
      "e",
      "d3:sdp4:v=0\n6:result4:ponge",
      "d6:result2:ok3:sdp" + std::to_string(huge.size()) + ":" + huge + "e"};
  int call = 0;
  for (const std::string& reply : replies) {
    SCOPED_TRACE(reply.substr(0, 60));
    relay_.answerWith([&](const RelayRequest& request) { return std::vector{request.cookie + " " + reply}; });
    const std::string response = ask({.call = ++call, .body = kOffer});
    EXPECT_EQ(statusOf(response), 503);
    EXPECT_EQ(headerOf(response, "Warning"),
              "399 " + engine_->address() + " \"the media relay cannot take the body\"");
  }
  relay_.answerWith([](const RelayRequest& request) { return std::vector{okReply(request)}; });
  EXPECT_EQ(bodyIn(invite({.call = 7, .body = kOffer})), kRelayedOffer);
  EXPECT_NE(engine_->log().find("media relay refused a body: out of ports"), std::string::npos)
      << engine_->log();
  EXPECT_EQ(raised(engine_->counters()), (Counters{{"calls", 7},
                                                   {"failed", 6},
                                                   {"refused_bodies", 6},
                                                   {"media_requests", 7},
                                                   {"media_failures", 6},
                                                   {"active", 1}}));
}

// Another engine with another relay would fare no better.
TEST_F(MediaRelay, ABodyThatItCannotReadIsNotAcceptable) {
  start();
  const struct {
    std::string reason;
    int status;
  } kErrors[] = {{"Failed to parse SDP", 488},
                 {"Incomplete SDP specification", 488},
                 {"Error rewriting SDP", 488},
                 {"Parallel session limit reached", 503},
                 {"Ran out of ports", 503},
                 {"Unknown call-id", 503},
                 {"", 503}};
  int call = 0;
  for (const auto& error : kErrors) {
    SCOPED_TRACE(error.reason);
    const std::string reply = " d6:result5:error12:error-reason" + b2bua::bencodeText(error.reason) + "e";
    relay_.answerWith([&](const RelayRequest& request) { return std::vector{request.cookie + reply}; });
    const std::string response = ask({.call = ++call, .body = kOffer});
    EXPECT_EQ(statusOf(response), error.status);
    EXPECT_EQ(headerOf(response, "Warning"),
              "399 " + engine_->address() + " \"the media relay cannot take the body\"");
  }
  EXPECT_EQ(engine_->counters().at("media_failures"), call);
}

TEST_F(MediaRelay, HeadersGoOnWithTheResponseThatTheyCameWith) {
  start();
  const std::string invited = invite({.body = kOffer});
  relay_.hold("answer");
  target_.respond(engine_->address(), invited, "183 Session Progress\r\nX-Early: 1", kAnswer);
  ASSERT_TRUE(relay_.waitFor("answer"));
  target_.respond(engine_->address(), invited, "200 OK\r\nX-Last: 2", kAnswer);
  EXPECT_EQ(caller_.receive("SIP/2.0 2", "", milliseconds(200)), "");
  relay_.letGo();
  const std::string early = caller_.receive("SIP/2.0 183 ", "", kLongestWait);
  EXPECT_EQ(headerOf(early, "X-Early"), "1") << early;
  EXPECT_EQ(headerOf(early, "X-Last"), "") << early;
  const std::string accepted = caller_.receive("SIP/2.0 200 ", "", kLongestWait);
  EXPECT_EQ(headerOf(accepted, "X-Last"), "2") << accepted;
  EXPECT_EQ(headerOf(accepted, "X-Early"), "") << accepted;
}

// -- when it is gone

TEST_F(MediaRelay, WithoutItNewCallsAreRefusedAtOnceAndRunningOnesGoOn) {
  start();
  const std::string tag = establish();
  relay_.beSilent(true);
  ASSERT_TRUE(waitUntil([&] { return engine_->counters().at("media_gone") == 1; }, kLongestWait));
  const auto before = std::chrono::steady_clock::now();
  const std::string response = ask({.call = 2, .body = kOffer});
  EXPECT_LT(std::chrono::steady_clock::now() - before, milliseconds{200});
  EXPECT_EQ(statusOf(response), 503);
  EXPECT_EQ(headerOf(response, "Warning"), "399 " + engine_->address() + " \"the media relay is gone\"");
  EXPECT_EQ(statusOf(ask({.cseq = 2, .toTag = tag, .body = kHold})), 503);
  caller_.request(engine_->address(), {.method = "ACK", .cseq = 2, .toTag = tag, .branch = "INVITE2"});

  relay_.beSilent(false);
  ASSERT_TRUE(waitUntil([&] { return engine_->log().find("is back") != std::string::npos; }, kLongestWait));
  const std::string held = invite({.cseq = 3, .toTag = tag, .body = kHold});
  EXPECT_NE(held.find("a=sendonly"), std::string::npos) << held;
  EXPECT_EQ(raised(engine_->counters()), (Counters{{"calls", 1},
                                                   {"established", 1},
                                                   {"reoffers", 2},
                                                   {"refused_bodies", 1},
                                                   {"media_requests", 4},
                                                   {"media_failures", 1},
                                                   {"media_gone", 1},
                                                   {"overload", 1},
                                                   {"active", 1}}));
}

TEST_F(MediaRelay, WhoWaitsForOneThatGoesIsRefused) {
  start();
  relay_.answerWith([](const RelayRequest&) { return std::vector<std::string>{}; });
  const auto before = std::chrono::steady_clock::now();
  EXPECT_EQ(statusOf(ask({.body = kOffer})), 503);
  EXPECT_LT(std::chrono::steady_clock::now() - before, milliseconds{1'500});
  EXPECT_EQ(relay_.datagrams(), 4);
}

TEST_F(MediaRelay, AnAnswerThatFindsItGoneEndsTheCall) {
  start();
  const std::string invited = invite({.body = kOffer});
  relay_.beSilent(true);
  target_.respond(engine_->address(), invited, "200 OK", kAnswer);
  EXPECT_NE(caller_.receive("SIP/2.0 503 ", "", kLongestWait), "");
  EXPECT_NE(target_.receive("ACK ", "", kLongestWait), "");
  EXPECT_NE(target_.receive("BYE ", "", kLongestWait), "");
}

TEST_F(MediaRelay, WhereNobodyListensItIsGoneAtOnce) {
  std::string address;
  {
    const RawParty nobody;
    address = nobody.address();
  }
  Engine engine(folder_, "127.0.0.1", target_.port(), {"--media", "rtpengine", "udp:" + address});
  EXPECT_TRUE(waitUntil([&] { return engine.counters().at("media_gone") == 1; }, milliseconds{500}));
  EXPECT_EQ(statusOf(caller_.ask(engine.address(), {.body = kOffer}, kLongestWait)), 503);
}
