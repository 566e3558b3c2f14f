// What goes wrong in the course of calls: directions, hold, fax, versions, retransmissions.

#include <gtest/gtest.h>

#include "calls/madeCall.h"
#include "calls/troubles.h"

namespace {

using made::body;
using made::kAudio;
using made::Line;
using made::Maker;
using made::rulesOf;
using Strings = std::vector<std::string>;

std::string audio(std::string_view direction) {
  return std::string(kAudio) + "a=" + std::string(direction) + "\n";
}

struct WayCase {
  std::string offer;
  std::string answer;
  Strings rules;
  std::string text;
};

TEST(OneWay, IsToldAtTheMessageThatMadeItSo) {
  const WayCase cases[] = {
      {audio("sendrecv"),
       audio("sendonly"),
       {"one-way 2 1 11"},
       "audio is sendonly: 192.0.2.1 does not send"},
      {audio("sendrecv"),
       audio("recvonly"),
       {"one-way 2 1 11"},
       "audio is recvonly: 203.0.113.3 does not send"},
      {audio("sendrecv"), audio("inactive"), {"one-way 2 1 11"}, "audio is inactive: nobody sends"},
      {audio("sendonly"),
       audio("recvonly"),
       {"one-way 1 1 11"},
       "audio is sendonly: 203.0.113.3 does not send"},
      {audio("recvonly"),
       audio("sendonly"),
       {"one-way 1 1 11"},
       "audio is recvonly: 192.0.2.1 does not send"},
      {audio("sendonly"), audio("inactive"), {"one-way 2 1 11"}, "audio is inactive: nobody sends"},
      {audio("sendrecv"),
       "m=audio 0 RTP/AVP 8\n",
       {"one-way 2 1 11"},
       "audio is refused with port 0 by 203.0.113.3: nobody sends"},
      {audio("sendrecv"),
       "m=audio 4000 RTP/AVP 8\nc=IN IP4 0.0.0.0\n",
       {"one-way 2 1 11"},
       "audio is sendonly: 192.0.2.1 does not send"},
      {audio("sendrecv"), audio("sendrecv"), {}, ""},
      {std::string(kAudio) + "m=video 4002 RTP/AVP 34\n",
       std::string(kAudio) + "m=video 0 RTP/AVP 34\n",
       {},
       ""},
      {std::string(kAudio) + "m=audio 4002 RTP/AVP 8\n",
       std::string(kAudio) + "m=audio 0 RTP/AVP 8\n",
       {},
       ""},
      {std::string(kAudio) + "m=video 4002 RTP/AVP 34\n",
       std::string(kAudio) + "m=video 4002 RTP/AVP 34\na=recvonly\n",
       {"one-way 2 2 12"},
       "video is recvonly: 203.0.113.3 does not send"},
  };
  for (const WayCase& test : cases) {
    Maker maker;
    maker.begin(body(test.offer), body(test.answer));
    findTroubles(maker.call);
    EXPECT_EQ(rulesOf(maker.call), test.rules) << test.offer << test.answer;
    EXPECT_EQ(made::textOf(maker.call, "one-way"), test.text);
  }
}

TEST(OneWay, IsNoLaterHoldAndNoCallThatFailed) {
  Maker maker;
  maker.begin(body(kAudio), body(kAudio));
  maker.again(2, body(audio("sendonly"), "2"), body(audio("recvonly"), "2"));
  findTroubles(maker.call);
  EXPECT_EQ(rulesOf(maker.call), Strings{});
  Maker failed;
  failed.begin(body(kAudio), body(audio("inactive")));
  failed.call.messages[1].status = 183;
  failed.call.exchanges[0].finalStatus = 486;
  findTroubles(failed.call);
  EXPECT_EQ(rulesOf(failed.call), Strings{});
}

TEST(OneWay, IsWhatHoldsWhenTheCallIsAccepted) {
  // Preconditions: inactive until an UPDATE before the call is accepted.
  Maker maker;
  const std::size_t invite = maker.add({}, body(audio("inactive")));
  Line progress = Maker::accept({});
  progress.status = 183;
  const std::size_t answer = maker.add(progress, body(audio("inactive")));
  maker.exchange(invite, answer);
  Line update;
  update.method = "UPDATE";
  update.cseq = 2;
  update.toTag = "b";
  const std::size_t offer = maker.add(update, body(kAudio, "2"));
  const std::size_t updated = maker.add(Maker::accept(update), body(kAudio, "2"));
  maker.exchange(offer, updated, 200, false);
  maker.add(Maker::accept({}));
  findTroubles(maker.call);
  EXPECT_EQ(rulesOf(maker.call), Strings{});
}

/// A call over a back-to-back user agent: the bodies in the order in which they are sent.
tool::Call overHop(const std::string& offer, const std::string& passedOffer, const std::string& answer,
                   const std::string& passedAnswer) {
  Maker maker;
  const Line first{made::kAlice, made::kProxy};
  Line second{made::kProxy, made::kBob};
  second.leg = 1;
  const std::size_t in = maker.add(first, body(offer));
  const std::size_t out = maker.add(second, body(passedOffer));
  const std::size_t back = maker.add(Maker::accept(second), body(answer));
  const std::size_t last = maker.add(Maker::accept(first), body(passedAnswer));
  maker.exchange(in, last);
  maker.exchange(out, back);
  maker.hop(in, out);
  maker.hop(back, last);
  findTroubles(maker.call);
  return maker.call;
}

TEST(OneWay, IsToldAtTheHopThatMadeIt) {
  // The offer is changed, and Bob and the hop only follow it.
  tool::Call call = overHop(audio("sendrecv"), audio("sendonly"), audio("recvonly"), audio("recvonly"));
  EXPECT_EQ(rulesOf(call), (Strings{"one-way 2 1 11"}));
  EXPECT_EQ(call.troubles.front().text,
            "audio came as sendrecv and was made sendonly by 198.51.100.2: 203.0.113.3 does not send");
  // The answer is changed.
  call = overHop(audio("sendrecv"), audio("sendrecv"), audio("sendrecv"), audio("inactive"));
  EXPECT_EQ(rulesOf(call), (Strings{"one-way 4 1 11"}));
  EXPECT_EQ(call.troubles.front().text,
            "audio came as sendrecv and was made inactive by 198.51.100.2: nobody sends");
  // Nothing is changed: Bob did it, and it is told once.
  call = overHop(audio("sendrecv"), audio("sendrecv"), audio("sendonly"), audio("sendonly"));
  EXPECT_EQ(rulesOf(call), (Strings{"one-way 3 1 11"}));
  EXPECT_EQ(call.troubles.front().text, "audio is sendonly: 198.51.100.2 does not send");
  // Refused behind the hop, and accepted before it.
  call = overHop(kAudio.data(), kAudio.data(), "m=audio 0 RTP/AVP 8\n", kAudio.data());
  EXPECT_EQ(rulesOf(call), (Strings{"one-way 3 1 11"}));
  EXPECT_EQ(call.troubles.front().text, "audio is refused with port 0 by 203.0.113.3: nobody sends");
  // Refused by the hop.
  call = overHop(kAudio.data(), kAudio.data(), kAudio.data(), "m=audio 0 RTP/AVP 8\n");
  EXPECT_EQ(call.troubles.front().text,
            "audio came as sendrecv and was refused with port 0 by 198.51.100.2: nobody sends");
}

TEST(OneWay, IsHowRecordingsAre) {
  for (const std::string require : {"", "Require: replaces,\r\n SIPREC\r\n", "Supported: siprec\r\n"}) {
    Maker maker;
    const std::size_t offer = maker.add({}, body(audio("sendonly")));
    const std::size_t answer = maker.add(Maker::accept({}), body(audio("recvonly")));
    maker.exchange(offer, answer);
    tool::CallMessage& invite = maker.call.messages[offer];
    invite.text.insert(invite.text.find('\n') + 1, require);
    invite.sdpBegin += require.size();
    findTroubles(maker.call);
    EXPECT_EQ(rulesOf(maker.call).empty(), require.starts_with("Require")) << require;
  }
}

/// What is the same again keeps its version.
std::string bodyAgain(std::string_view media) { return body(media, media == kAudio ? "1" : "2"); }

tool::Call endedCall(std::string_view holdOffer, std::string_view holdAnswer) {
  Maker maker;
  maker.begin(body(kAudio), body(kAudio));
  maker.again(2, bodyAgain(holdOffer), bodyAgain(holdAnswer));
  Line bye;
  bye.method = "BYE";
  bye.cseq = 3;
  bye.toTag = "b";
  maker.add(bye);
  maker.call.state = tool::CallState::ended;
  return maker.call;
}

TEST(HoldNotResumed, IsToldWhereTheCallEndsOnHold) {
  tool::Call call = endedCall(audio("sendonly"), audio("recvonly"));
  findTroubles(call);
  EXPECT_EQ(rulesOf(call), (Strings{"hold-not-resumed 3 1 11"}));
  EXPECT_EQ(call.troubles.front().text, "the call ended while audio was held since message 3 of 192.0.2.1");
  EXPECT_TRUE(call.troubles.front().isWarning);
  call = endedCall("m=audio 4000 RTP/AVP 8\nc=IN IP4 0.0.0.0\n", kAudio);
  findTroubles(call);
  EXPECT_EQ(rulesOf(call), (Strings{"hold-not-resumed 3 1 11"}));
}

TEST(HoldNotResumed, IsNoneWhereItWasResumedOrTransferredOrIsUp) {
  tool::Call call = endedCall(kAudio, kAudio);
  findTroubles(call);
  EXPECT_EQ(rulesOf(call), Strings{});
  call = endedCall(audio("sendonly"), audio("recvonly"));
  call.state = tool::CallState::up;
  findTroubles(call);
  EXPECT_EQ(rulesOf(call), Strings{});
  call = endedCall(audio("sendonly"), audio("recvonly"));
  call.messages.back().method = "REFER";
  findTroubles(call);
  EXPECT_EQ(rulesOf(call), Strings{});
}

/// An exchange of a call over a hop that changes nothing.
void passOn(Maker& maker, std::uint64_t cseq, const std::string& offer, const std::string& answer,
            int status = 200) {
  Line first{made::kAlice, made::kProxy};
  Line second{made::kProxy, made::kBob};
  second.leg = 1;
  for (Line* line : {&first, &second}) {
    line->cseq = cseq;
    if (cseq != 1) line->toTag = "b";
  }
  const auto replyTo = [&](const Line& line) {
    Line reply = Maker::accept(line);
    reply.status = status;
    return reply;
  };
  const std::size_t in = maker.add(first, offer);
  const std::size_t out = maker.add(second, offer);
  const std::size_t back = maker.add(replyTo(second), answer);
  const std::size_t last = maker.add(replyTo(first), answer);
  const bool isAnswered = !answer.empty();
  maker.exchange(in, isAnswered ? std::optional(last) : std::nullopt, status, cseq == 1);
  maker.exchange(out, isAnswered ? std::optional(back) : std::nullopt, status, cseq == 1);
  maker.hop(in, out);
  maker.hop(back, last);
}

TEST(HoldNotResumed, IsToldOnceOfBothSidesOfAHop) {
  Maker maker;
  passOn(maker, 1, body(kAudio), body(kAudio));
  passOn(maker, 2, body(audio("sendonly"), "2"), body(audio("recvonly"), "2"));
  maker.call.state = tool::CallState::ended;
  findTroubles(maker.call);
  EXPECT_EQ(rulesOf(maker.call), (Strings{"hold-not-resumed 5 1 11"}));
}

constexpr std::string_view kFax = "m=image 5000 udptl t38\n";

TEST(FaxRefused, IsToldByPortAndByStatus) {
  Maker maker;
  maker.begin(body(kAudio), body(kAudio));
  maker.again(2, body(kFax, "2"), body("m=image 0 udptl t38\n", "2"));
  findTroubles(maker.call);
  EXPECT_EQ(rulesOf(maker.call), (Strings{"t38-refused 4 1 11"}));
  EXPECT_EQ(maker.call.troubles.front().text, "203.0.113.3 refuses T.38 with port 0");

  Maker status;
  status.begin(body(kAudio), body(kAudio));
  Line line;
  line.cseq = 2;
  line.toTag = "b";
  status.exchange(status.add(line, body(kFax, "2")), std::nullopt, 488, false);
  findTroubles(status.call);
  EXPECT_EQ(rulesOf(status.call), (Strings{"t38-refused 3 1 11"}));
  EXPECT_EQ(status.call.troubles.front().text, "203.0.113.3 refuses T.38 with 488");
  for (const int other : {0, 200, 401, 407, 491}) {
    status.call.exchanges.back().finalStatus = other;
    findTroubles(status.call);
    EXPECT_EQ(rulesOf(status.call), Strings{}) << other;
  }
}

TEST(FaxRefused, IsToldOfWhoRefusesAndNotOfTheHopThatPassesItOn) {
  Maker port;
  passOn(port, 1, body(kAudio), body(kAudio));
  passOn(port, 2, body(kFax, "2"), body("m=image 0 udptl t38\n", "2"));
  findTroubles(port.call);
  EXPECT_EQ(rulesOf(port.call), (Strings{"t38-refused 7 1 11"}));
  EXPECT_EQ(port.call.troubles.front().text, "203.0.113.3 refuses T.38 with port 0");

  Maker status;
  passOn(status, 1, body(kAudio), body(kAudio));
  passOn(status, 2, body(kFax, "2"), "", 415);
  findTroubles(status.call);
  EXPECT_EQ(rulesOf(status.call), (Strings{"t38-refused 6 1 11"}));
  EXPECT_EQ(status.call.troubles.front().text, "203.0.113.3 refuses T.38 with 415");
}

TEST(FaxRefused, IsNoneInAFirstOfferAndWhereItIsAccepted) {
  Maker maker;
  maker.begin(body(std::string(kAudio) + std::string(kFax)),
              body(std::string(kAudio) + "m=image 0 udptl t38\n"));
  findTroubles(maker.call);
  EXPECT_EQ(rulesOf(maker.call), Strings{});
  Maker accepted;
  accepted.begin(body(kAudio), body(kAudio));
  accepted.again(2, body(kFax, "2"), body(kFax, "2"));
  findTroubles(accepted.call);
  EXPECT_EQ(rulesOf(accepted.call), Strings{});
}

TEST(Versions, HaveToRiseWithAChange) {
  Maker maker;
  maker.begin(body(kAudio), body(kAudio));
  maker.again(2, body(std::string(kAudio) + "a=ptime:20\n"), body(kAudio));
  findTroubles(maker.call);
  EXPECT_EQ(rulesOf(maker.call), (Strings{"version-not-raised 3 0 7"}));
  EXPECT_EQ(maker.call.troubles.front().text,
            "the body is not that of message 1, and the version is 1 as there");
  EXPECT_FALSE(maker.call.troubles.front().isWarning);
}

TEST(Versions, HaveNotToFall) {
  Maker maker;
  maker.begin(body(kAudio, "10"), body(kAudio, "10"));
  maker.again(2, body(kAudio, "9"), body(kAudio, "010"));
  findTroubles(maker.call);
  EXPECT_EQ(rulesOf(maker.call), (Strings{"version-not-raised 3 0 7", "version-not-raised 4 0 7"}));
  EXPECT_EQ(maker.call.troubles.front().text,
            "the body is not that of message 1, and the version went from 10 to 9");
}

TEST(Versions, RaisedForNothingAreAWarning) {
  Maker maker;
  maker.begin(body(kAudio), body(kAudio));
  maker.again(2, body(kAudio, "2"), body(kAudio));
  findTroubles(maker.call);
  EXPECT_EQ(rulesOf(maker.call), (Strings{"version-raised-without-change 3 0 7"}));
  EXPECT_EQ(maker.call.troubles.front().text,
            "the version went from 1 to 2, and the body is that of message 1");
  EXPECT_TRUE(maker.call.troubles.front().isWarning);
}

TEST(Versions, AreFineWhereTheyRiseWithAChangeOrAllStays) {
  Maker maker;
  maker.begin(body(kAudio), body(kAudio));
  maker.again(2, body(std::string(kAudio) + "a=ptime:20\n", "2"), body(kAudio));
  // Another session, and versions that are no numbers, cannot be compared.
  std::string other = body(std::string(kAudio) + "a=ptime:30\n");
  other.replace(other.find(" 7 1 "), 5, " 8 1 ");
  maker.again(3, other, body(kAudio));
  findTroubles(maker.call);
  EXPECT_EQ(rulesOf(maker.call), Strings{});
}

TEST(Versions, BeginAnewWithAnotherAttemptAndInOtherForks) {
  Maker maker;
  const std::string changed = body(std::string(kAudio) + "a=ptime:20\n");
  maker.add({}, body(kAudio));
  Line second;
  second.cseq = 2;
  maker.add(second, changed);
  Line fork = Maker::accept(second);
  fork.toTag = "c";
  fork.status = 183;
  maker.add(fork, body(kAudio));
  fork.toTag = "d";
  maker.add(fork, changed);
  findTroubles(maker.call);
  EXPECT_EQ(rulesOf(maker.call), Strings{});
}

TEST(Versions, GoBackToWhatStandsWhenAnOfferWasRefused) {
  const std::string held = std::string(kAudio) + "a=sendonly\n";
  Line second;
  second.cseq = 2;
  second.toTag = "b";
  Maker maker;
  maker.begin(body(kAudio), body(kAudio));
  maker.exchange(maker.add(second, body(held, "2")), std::nullopt, 488, false);
  maker.exchange(maker.add(second, body(held, "2")), std::nullopt, 488, false);
  maker.again(4, body(kAudio), body(kAudio));
  findTroubles(maker.call);
  EXPECT_EQ(rulesOf(maker.call), Strings{});
  // Not when it was taken, and the version of the refused one is not for another body.
  Maker taken;
  taken.begin(body(kAudio), body(kAudio));
  taken.again(2, body(held, "2"), body(std::string(kAudio) + "a=recvonly\n", "2"));
  taken.again(3, body(kAudio), body(kAudio, "3"));
  findTroubles(taken.call);
  EXPECT_EQ(rulesOf(taken.call), (Strings{"version-not-raised 5 0 7"}));
  Maker used;
  used.begin(body(kAudio), body(kAudio));
  used.exchange(used.add(second, body(held, "2")), std::nullopt, 488, false);
  used.again(3, body(std::string(kAudio) + "a=ptime:20\n", "2"), body(kAudio));
  findTroubles(used.call);
  EXPECT_EQ(rulesOf(used.call), (Strings{"version-not-raised 4 0 7"}));
}

TEST(Versions, OfRelayedBodiesAreToldOnce) {
  Maker maker;
  const std::string changed = body(std::string(kAudio) + "a=ptime:20\n");
  for (const auto& [source, destination] :
       {std::pair{made::kAlice, made::kProxy}, {made::kProxy, made::kBob}}) {
    Line line{source, destination};
    maker.add(line, body(kAudio));
    line.toTag = "b";
    line.cseq = 2;
    maker.add(line, changed);
  }
  findTroubles(maker.call);
  EXPECT_EQ(rulesOf(maker.call), (Strings{"version-not-raised 2 0 7"}));
}

TEST(Retransmissions, HaveToBeTheSame) {
  Maker maker;
  maker.add({}, body(kAudio));
  maker.add({}, body(kAudio));
  maker.add({}, body(std::string(kAudio) + "a=ptime:20\n", "2"));
  maker.call.messages[1].retransmissionOf = 0;
  maker.call.messages[2].retransmissionOf = 0;
  findTroubles(maker.call);
  EXPECT_EQ(rulesOf(maker.call), (Strings{"retransmission-differs 3 0 6"}));
  EXPECT_EQ(maker.call.troubles.front().text, "its body is not that of message 1, which it repeats");
  maker.call.messages[2].isCut = true;
  findTroubles(maker.call);
  EXPECT_EQ(rulesOf(maker.call), Strings{});
}

}  // namespace
