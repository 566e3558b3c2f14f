#include <gtest/gtest.h>

#include "calls/messages.h"

// Which messages repeat others.

namespace {

using calling::callsOf;
using calling::kProxy;
using calling::reply;
using calling::sdp;
using calling::Sip;
using tool::Call;

Sip invite() { return {.start = "INVITE", .body = sdp()}; }

struct RepeatCase {
  std::string name;
  Sip first;
  Sip second;
  bool isRepeat;
};

Sip with(Sip sip, std::string Sip::*member, const std::string& value) {
  sip.*member = value;
  return sip;
}

TEST(Retransmissions, AreToldFromNewMessages) {
  const Sip first = invite();
  Sip otherWay = first;
  otherWay.destination = kProxy;
  Sip otherPort = first;
  otherPort.source = "192.0.2.1:5062";
  Sip otherNumber = first;
  otherNumber.cseq = 2;
  const Sip ringing = reply(first, "180");
  const Sip withBody = reply(first, "180", sdp());
  const Sip reliable = with(withBody, &Sip::headers, "RSeq: 1\r\n");
  const Sip ack = {.start = "ACK", .branch = "z9hG4bK2", .toTag = "t"};
  const std::vector<RepeatCase> cases = {
      {"request", first, first, true},
      {"request with another body", first, with(first, &Sip::body, sdp("- 11 2 IN IP4 192.0.2.1")), true},
      {"request without its body", first, with(first, &Sip::body, ""), true},
      {"request with other headers", first, with(first, &Sip::headers, "X-Try: 2\r\n"), true},
      {"another way", first, otherWay, false},
      {"another port", first, otherPort, false},
      {"another number", first, otherNumber, false},
      {"another branch", first, with(first, &Sip::branch, "z9hG4bK2"), false},
      {"another target", first, with(first, &Sip::to, "sip:carol@example.org"), false},
      {"in a dialog", first, with(first, &Sip::toTag, "t"), false},
      {"response", reply(first, "200", sdp()), reply(first, "200", sdp()), true},
      {"response of another fork", reply(first, "200", sdp()), reply(first, "200", sdp(), "u"), false},
      {"another response", ringing, reply(first, "183"), false},
      {"provisional response", ringing, ringing, true},
      {"provisional response with a body", ringing, withBody, false},
      {"reliable response", reliable, reliable, true},
      {"another reliable response", reliable, with(reliable, &Sip::headers, "RSeq: 2\r\n"), false},
      {"ACK", ack, ack, true},
      {"ACK of another branch", ack, with(ack, &Sip::branch, "z9hG4bK3"), false},
  };
  for (const RepeatCase& one : cases) {
    const std::vector<Call> calls = callsOf({one.first, one.second, one.second});
    ASSERT_EQ(calls.size(), 1U) << one.name;
    const auto& messages = calls[0].messages;
    EXPECT_EQ(messages[0].retransmissionOf, std::nullopt) << one.name;
    EXPECT_EQ(messages[1].retransmissionOf.has_value(), one.isRepeat) << one.name;
    EXPECT_EQ(messages[2].retransmissionOf, one.isRepeat ? 0U : 1U) << one.name;
    EXPECT_EQ(calls[0].retransmissions(), one.isRepeat ? 2U : 1U) << one.name;
  }
}

TEST(Retransmissions, AreOfTheSameLegAlone) {
  Sip other = invite();
  other.callId = "b";
  other.headers = "X-CID: a\r\n";
  const std::vector<Call> calls = callsOf({invite(), other});
  ASSERT_EQ(calls.size(), 1U);
  EXPECT_EQ(calls[0].retransmissions(), 0U);
}

TEST(Retransmissions, HaveTheRoleOfTheFirst) {
  const Sip answer = reply(invite(), "200", sdp("- 5 1 IN IP4 192.0.2.3"));
  const std::vector<Call> calls =
      callsOf({invite(), invite(), with(invite(), &Sip::body, ""), answer, answer});
  const Call& call = calls.at(0);
  ASSERT_EQ(call.messages.size(), 5U);
  EXPECT_EQ(call.exchanges.size(), 1U);
  EXPECT_EQ(call.messages[1].body, tool::BodyRole::offer);
  EXPECT_EQ(call.messages[1].exchange, 0U);
  EXPECT_EQ(call.messages[2].body, tool::BodyRole::none);
  EXPECT_EQ(call.messages[2].exchange, std::nullopt);
  EXPECT_EQ(call.messages[4].body, tool::BodyRole::answer);
  EXPECT_EQ(call.messages[4].exchange, 0U);
  EXPECT_EQ(call.exchanges[0].answer, 3U);
}

TEST(Retransmissions, AreCountedWhenCallsAreGivenAway) {
  calling::Table table;
  table.take(invite());
  table.take(invite());
  EXPECT_EQ(table.table.retransmissions(), 0U);
  table.table.finish();
  EXPECT_EQ(table.table.retransmissions(), 1U);
  EXPECT_EQ(table.table.messages(), 2U);
}

}  // namespace
