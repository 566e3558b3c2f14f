// What is wrong in the exchanges of calls, and in their addresses.

#include "calls/troubles.h"

#include <gtest/gtest.h>

#include "calls/madeCall.h"

namespace {

using made::body;
using made::kAudio;
using made::Line;
using made::Maker;
using made::rulesOf;
using Strings = std::vector<std::string>;

TEST(TroubleRules, HaveNamesAndMeanings) {
  for (const tool::TroubleRule& rule : tool::troubleRules()) {
    EXPECT_FALSE(rule.meaning.empty()) << rule.name;
    EXPECT_EQ(rule.meaning.back() == '.', false) << rule.name;
  }
  EXPECT_EQ(tool::troubleRules().size(), 13U);
}

TEST(Troubles, AreNoneInAGoodCall) {
  Maker maker;
  maker.begin(body("m=audio 4000 RTP/AVP 8 101\na=rtpmap:101 telephone-event/8000\n"),
              body("m=audio 4000 RTP/AVP 8 101\na=rtpmap:101 telephone-event/8000\n"));
  maker.call.troubles.push_back({"old", 0, 0, 0, false, "of an earlier time"});
  findTroubles(maker.call);
  EXPECT_EQ(rulesOf(maker.call), Strings{});
}

TEST(JudgedTroubles, HaveTheRuleTheAnswerAndTheLineOfTheSection) {
  Maker maker;
  // Header of five lines, session of five, and m-lines on 11 and 12.
  maker.begin(body("m=audio 4000 RTP/AVP 8\nm=video 4002 RTP/AVP 34\n"),
              body("m=audio 4000 RTP/AVP 8\nm=text 4002 RTP/AVP 34\n"));
  findTroubles(maker.call);
  EXPECT_EQ(rulesOf(maker.call), (Strings{"section-media 2 2 12"}));
  EXPECT_FALSE(maker.call.troubles.front().isWarning);
  EXPECT_NE(maker.call.troubles.front().text, "");
}

TEST(JudgedTroubles, OfTheSessionStandAtItsFirstLine) {
  Maker maker;
  maker.begin(body("m=audio 4000 RTP/AVP 8\nm=video 4002 RTP/AVP 34\n"), body(kAudio));
  findTroubles(maker.call);
  EXPECT_EQ(rulesOf(maker.call), (Strings{"section-count 2 0 6"}));
}

TEST(JudgedTroubles, AreWarningsWhereTheJudgeSaysSo) {
  Maker maker;
  maker.begin(body(kAudio), body("m=audio 4000 RTP/AVP 8 0\n"));
  findTroubles(maker.call);
  EXPECT_EQ(rulesOf(maker.call), (Strings{"codec-not-offered 2 1 11"}));
  EXPECT_TRUE(maker.call.troubles.front().isWarning);
}

TEST(JudgedTroubles, AreToldOnceWhereAProxyRelaysBoth) {
  const std::string offer = body(kAudio);
  const std::string answer = body("m=audio 4000 RTP/AVP 8 0\n");
  Maker maker;
  const std::size_t first = maker.add({made::kAlice, made::kProxy}, offer);
  const Line further{made::kProxy, made::kBob};
  const std::size_t passed = maker.add(further, offer);
  const std::size_t answered = maker.add(Maker::accept(further), answer);
  const std::size_t back = maker.add(Maker::accept({made::kAlice, made::kProxy}), answer);
  maker.exchange(passed, answered);
  maker.exchange(first, back);
  maker.hop(first, passed);
  maker.hop(answered, back);
  findTroubles(maker.call);
  EXPECT_EQ(rulesOf(maker.call), (Strings{"codec-not-offered 3 1 11"}));
}

struct CodecCase {
  std::string_view offer;
  std::string_view answer;
  bool isTrouble;
};

TEST(CodecTroubles, NameAnAnswerWithoutACommonCodec) {
  constexpr std::string_view kEvents = " 101\na=rtpmap:101 telephone-event/8000\n";
  const std::string offer = "m=audio 4000 RTP/AVP 0 9" + std::string(kEvents);
  const std::string other = "m=audio 4000 RTP/AVP 8" + std::string(kEvents);
  const std::string eventsOnly = "m=audio 4000 RTP/AVP" + std::string(kEvents);
  const std::string dynamic = "m=audio 4000 RTP/AVP 96\na=rtpmap:96 pcmu/8000\n";
  const CodecCase cases[] = {
      {offer, other, true},
      {offer, eventsOnly, true},
      {offer, dynamic, false},
      {offer, offer, false},
      {eventsOnly, offer, false},
      {"m=audio 4000 RTP/AVP 77\n", "m=audio 4000 RTP/AVP 77\n", false},
      {offer, "m=audio 0 RTP/AVP 8\n", false},
      {"m=audio 4000 RTP/AVP 0\n", "m=audio 4000 RTP/AVP 77\n", true},
  };
  for (const CodecCase& test : cases) {
    Maker maker;
    maker.begin(body(test.offer), body(test.answer));
    findTroubles(maker.call);
    EXPECT_EQ(!made::textOf(maker.call, "no-common-codec").empty(), test.isTrouble)
        << test.offer << test.answer;
  }
}

TEST(CodecTroubles, TellWhatWasOfferedAndAnswered) {
  Maker maker;
  maker.begin(body("m=audio 4000 RTP/AVP 0 9\n"), body(kAudio));
  findTroubles(maker.call);
  EXPECT_EQ(made::textOf(maker.call, "no-common-codec"),
            "audio: offered PCMU,G722, answered and accepted PCMA");
  Maker events;
  events.begin(body("m=audio 4000 RTP/AVP 0 101\na=rtpmap:101 telephone-event/8000\n"),
               body("m=audio 4000 RTP/AVP 101\na=rtpmap:101 telephone-event/8000\n"));
  findTroubles(events.call);
  EXPECT_EQ(made::textOf(events.call, "no-common-codec"), "audio: offered PCMU, answered and accepted none");
}

TEST(CodecTroubles, AreNoneWhereTheCallWasRefused) {
  Maker maker;
  maker.begin(body("m=audio 4000 RTP/AVP 0\n"), body(kAudio));
  maker.call.exchanges.back().finalStatus = 488;
  findTroubles(maker.call);
  EXPECT_EQ(made::textOf(maker.call, "no-common-codec"), "");
}

TEST(EventTroubles, NeedACommonClockRate) {
  const std::string offer = body(
      "m=audio 4000 RTP/AVP 96 97 98\na=rtpmap:96 opus/48000/2\na=rtpmap:97 telephone-event/48000\n"
      "a=rtpmap:98 telephone-event/16000\n");
  Maker maker;
  maker.begin(offer, body("m=audio 4000 RTP/AVP 96 101\na=rtpmap:96 opus/48000/2\n"
                          "a=rtpmap:101 telephone-event/8000\n"));
  findTroubles(maker.call);
  EXPECT_EQ(made::textOf(maker.call, "dtmf-clock"),
            "telephone-event is offered at 16000, 48000 Hz and answered at 8000");
  Maker good;
  good.begin(offer, body("m=audio 4000 RTP/AVP 96 101\na=rtpmap:96 opus/48000/2\n"
                         "a=rtpmap:101 Telephone-Event/16000\n"));
  findTroubles(good.call);
  EXPECT_EQ(rulesOf(good.call), Strings{});
  Maker without;
  without.begin(offer, body("m=audio 4000 RTP/AVP 96\na=rtpmap:96 opus/48000/2\n"));
  findTroubles(without.call);
  EXPECT_EQ(rulesOf(without.call), Strings{});
}

std::string textOfAddress(std::string_view sdp, std::string_view destination = made::kBob) {
  Maker maker;
  Line line{made::kInside, destination};
  maker.add(line, sdp);
  findTroubles(maker.call);
  return made::textOf(maker.call, "private-address");
}

TEST(AddressTroubles, NamePrivateAddressesForPublicPeers) {
  EXPECT_EQ(textOfAddress(body(kAudio, "1", "10.1.2.3")),
            "audio: 10.1.2.3 is private, and goes to 203.0.113.3");
  for (const std::string_view address : {"172.16.0.1", "172.31.255.255", "192.168.1.1", "100.64.0.1",
                                         "169.254.9.9", "127.0.0.1", "fd00::1", "fe80::1", "::1"}) {
    EXPECT_NE(textOfAddress(body(kAudio, "1", address)), "") << address;
  }
  for (const std::string_view address : {"172.32.0.1", "172.15.0.1", "192.169.1.1", "100.128.0.1", "0.0.0.0",
                                         "::", "2001:db8::1", "phone.example.org", ""}) {
    EXPECT_EQ(textOfAddress(body(kAudio, "1", address)), "") << address;
  }
}

TEST(AddressTroubles, AreNoneWherePeersArePrivateOrNoMediaAreWanted) {
  const std::string inside = body(kAudio, "1", "10.1.2.3");
  EXPECT_EQ(textOfAddress(inside, "192.168.0.9:5060"), "");
  EXPECT_EQ(textOfAddress(body("m=audio 0 RTP/AVP 8\n", "1", "10.1.2.3")), "");
  EXPECT_EQ(textOfAddress(body("m=audio 4000 RTP/AVP 8\nc=IN IP4 192.0.2.1\n", "1", "10.1.2.3")), "");
}

TEST(AddressTroubles, LookAtCandidatesWhereThereIsIce) {
  const std::string start =
      "m=audio 9 UDP/TLS/RTP/SAVPF 8\na=ice-ufrag:abcd\na=ice-pwd:x\na=fingerprint:sha-1 AA\n";
  const std::string host = "a=candidate:1 1 udp 1 10.0.0.7 4000 typ host\n";
  const std::string reflexive = "a=candidate:2 1 udp 1 192.0.2.7 4000 typ srflx\n";
  const std::string name = "a=candidate:3 1 udp 1 x.local 4000 typ host\n";
  EXPECT_EQ(textOfAddress(body(start + name + host, "1", "0.0.0.0")),
            "audio: 10.0.0.7 is private, and goes to 203.0.113.3; no candidate is public");
  EXPECT_EQ(textOfAddress(body(start + host + reflexive, "1", "10.0.0.7")), "");
  EXPECT_EQ(textOfAddress(body(start + name, "1", "0.0.0.0")), "");
}

TEST(AddressTroubles, StandAtTheLineThatGivesTheAddressOnceForEachSender) {
  Maker maker;
  Line line{made::kInside, made::kBob};
  maker.add(line, body(kAudio, "1", "10.1.2.3"));
  maker.add(line, body("m=audio 4000 RTP/AVP 8\na=ptime:20\nc=IN IP4 10.9.9.9\n", "2", "10.1.2.3"));
  maker.add(line, body(kAudio, "3", "10.1.2.3"));
  findTroubles(maker.call);
  EXPECT_EQ(rulesOf(maker.call), (Strings{"private-address 1 1 9", "private-address 2 1 13"}));
}

TEST(Troubles, AreBoundedAndSaySo) {
  Maker maker;
  std::string many;
  for (int i = 0; i < 1500; ++i)
    many += "m=audio 4000 RTP/AVP 8\nc=IN IP4 10.0." + std::to_string(i / 250) + "." +
            std::to_string(i % 250) + "\n";
  maker.add({made::kInside, made::kBob}, body(many));
  findTroubles(maker.call);
  ASSERT_EQ(maker.call.troubles.size(), 1001U);
  EXPECT_EQ(maker.call.troubles.back().rule, "not-all-told");
  EXPECT_EQ(maker.call.troubles[999].rule, "private-address");
}

}  // namespace
