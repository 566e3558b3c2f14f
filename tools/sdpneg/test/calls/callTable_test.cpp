#include "calls/callTable.h"

#include <gtest/gtest.h>

#include "calls/messages.h"

namespace {

using calling::callsOf;
using calling::kAlice;
using calling::kBob;
using calling::kCarol;
using calling::kProxy;
using calling::sdp;
using calling::Sip;
using calling::Table;
using tool::BodyRole;
using tool::Call;
using tool::CallState;
using tool::JoinedBy;

/// A call from its INVITE to the response of its BYE.
std::vector<Sip> plainCall() {
  return {
      {.start = "INVITE", .body = sdp()},
      {.start = "180 INVITE", .source = kBob, .destination = kAlice, .toTag = "t"},
      {.start = "200 INVITE",
       .source = kBob,
       .destination = kAlice,
       .body = sdp("- 7 1 IN IP4 192.0.2.3", "192.0.2.3"),
       .toTag = "t"},
      {.start = "ACK", .branch = "z9hG4bK2", .toTag = "t"},
      {.start = "BYE",
       .source = kBob,
       .destination = kAlice,
       .branch = "z9hG4bK3",
       .fromTag = "t",
       .toTag = "f"},
      {.start = "200 BYE", .branch = "z9hG4bK3", .fromTag = "t", .toTag = "f"},
  };
}

TEST(CallTable, PutsTheMessagesOfACallTogether) {
  const std::vector<Call> calls = callsOf(plainCall());
  ASSERT_EQ(calls.size(), 1U);
  const Call& call = calls.front();
  EXPECT_EQ(call.number, 1U);
  EXPECT_EQ(call.state, CallState::ended);
  EXPECT_EQ(call.result, 200);
  EXPECT_EQ(call.from, "sip:alice@example.org");
  EXPECT_EQ(call.to, "sip:bob@example.org");
  EXPECT_EQ(call.start, 1000001000);
  EXPECT_EQ(call.end, 1000006000);
  ASSERT_EQ(call.legs.size(), 1U);
  EXPECT_EQ(call.legs[0].callId, "a");
  EXPECT_EQ(call.legs[0].joinedBy, JoinedBy::first);
  ASSERT_EQ(call.messages.size(), 6U);
  EXPECT_EQ(call.messages[1].first(), "180");
  EXPECT_EQ(call.messages[1].method, "INVITE");
  EXPECT_EQ(call.messages[3].first(), "ACK");
  EXPECT_EQ(call.messages[0].body, BodyRole::offer);
  EXPECT_EQ(call.messages[2].body, BodyRole::answer);
  EXPECT_EQ(call.messages[0].sdp(), sdp());
  ASSERT_EQ(call.exchanges.size(), 1U);
  EXPECT_EQ(call.exchanges[0].offer, 0U);
  EXPECT_EQ(call.exchanges[0].answer, 2U);
  EXPECT_EQ(call.exchanges[0].finalStatus, 200);
  EXPECT_TRUE(call.exchanges[0].isFirst);
  EXPECT_TRUE(call.hops.empty());
  EXPECT_EQ(call.retransmissions(), 0U);
  EXPECT_FALSE(call.isGivenUp);
}

}  // namespace
