#include "calls/callTable.h"

#include <gtest/gtest.h>

#include "calls/messages.h"

namespace {

using calling::callsOf;
using calling::kAlice;
using calling::kBob;
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

TEST(CallTable, LeavesOutWhatIsOfNoCall) {
  Table table;
  table.take({.start = "REGISTER", .callId = "r"});
  table.take({.start = "200 OPTIONS", .callId = "o"});
  table.take({.start = "MESSAGE", .callId = "a"});
  table.take({.start = "INVITE"});
  table.take({.start = "INFO", .branch = "z9hG4bK2", .toTag = "t"});
  table.take({.start = "200 MESSAGE", .source = kBob, .destination = kAlice});
  table.take({.start = "PUBLISH"});
  table.table.finish();
  EXPECT_EQ(table.table.messages(), 7U);
  EXPECT_EQ(table.table.otherMessages(), 4U);
  ASSERT_EQ(table.calls.size(), 1U);
  ASSERT_EQ(table.calls[0].messages.size(), 3U);
  EXPECT_EQ(table.calls[0].messages[1].first(), "INFO");
  EXPECT_EQ(table.calls[0].messages[1].number, 5U);
}

TEST(CallTable, LeavesOutMessagesWithoutCallIdOrCSeq) {
  Table table;
  tool::CapturedMessage message;
  message.text = "INVITE sip:a SIP/2.0\r\nCall-ID: a\r\n\r\n";
  table.table.take(message);
  message.text = "INVITE sip:a SIP/2.0\r\nCSeq: 1 INVITE\r\n\r\n";
  table.table.take(message);
  message.text = "";
  table.table.take(message);
  EXPECT_EQ(table.table.otherMessages(), 3U);
  EXPECT_EQ(table.table.openCalls(), 0U);
}

TEST(CallTable, BeginsCallsInTheirMiddle) {
  for (const std::string start :
       {"INVITE", "ACK", "BYE", "CANCEL", "PRACK", "UPDATE", "200 INVITE", "481 BYE"}) {
    const std::vector<Call> calls = callsOf({{.start = start, .toTag = "t"}});
    EXPECT_EQ(calls.size(), 1U) << start;
  }
}

TEST(CallTable, SortsMessagesByTime) {
  Table table;
  table.take({.start = "INVITE", .time = 2000});
  table.take({.start = "180 INVITE", .source = kBob, .destination = kAlice, .isTimeless = true});
  table.take({.start = "INVITE", .branch = "z9hG4bK0", .time = 1000});
  table.take({.start = "200 INVITE", .source = kBob, .destination = kAlice, .time = 2000});
  table.table.finish();
  std::vector<std::size_t> numbers;
  for (const tool::CallMessage& message : table.calls.at(0).messages) numbers.push_back(message.number);
  // The one without a time stays behind what came before it.
  EXPECT_EQ(numbers, (std::vector<std::size_t>{3, 1, 2, 4}));
  EXPECT_EQ(table.calls[0].start, 1000);
  EXPECT_EQ(table.calls[0].end, 2000);
}

TEST(CallTable, SortsLegsByTheirFirstMessages) {
  Table table;
  table.take({.start = "INVITE", .source = kProxy, .callId = "b", .headers = "X-CID: a\r\n", .time = 2000});
  table.take({.start = "INVITE", .destination = kProxy, .callId = "a", .time = 1000});
  table.table.finish();
  ASSERT_EQ(table.calls.size(), 1U);
  ASSERT_EQ(table.calls[0].legs.size(), 2U);
  EXPECT_EQ(table.calls[0].legs[0].callId, "a");
  EXPECT_EQ(table.calls[0].legs[0].joinedBy, JoinedBy::first);
  EXPECT_EQ(table.calls[0].legs[0].joinDetail, "");
  EXPECT_EQ(table.calls[0].legs[1].callId, "b");
  EXPECT_EQ(table.calls[0].legs[1].joinedBy, JoinedBy::callIdHeader);
  EXPECT_EQ(table.calls[0].legs[1].joinDetail, "X-CID: a");
  EXPECT_EQ(table.calls[0].messages[0].leg, 0U);
}

struct SilenceCase {
  std::string name;
  std::vector<Sip> messages;
  std::int64_t seconds;  ///< for which the call may be silent
};

TEST(CallTable, GivesCallsAwayThatAreSilent) {
  const std::vector<Sip> whole = plainCall();
  const auto front = [&](std::size_t count) {
    return std::vector<Sip>(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(count));
  };
  std::vector<Sip> failed = front(2);
  failed.push_back({.start = "486 INVITE", .source = kBob, .destination = kAlice, .toTag = "t"});
  std::vector<Sip> forked = whole;
  forked.push_back({.start = "200 INVITE", .source = kBob, .destination = kAlice, .toTag = "u"});
  std::vector<Sip> challenged = {whole[0], {.start = "401 INVITE", .source = kBob, .destination = kAlice}};
  std::vector<Sip> again = challenged;
  again.push_back({.start = "INVITE", .cseq = 2, .branch = "z9hG4bK2"});
  std::vector<Sip> repeated = whole;
  repeated.push_back(whole[2]);
  const std::vector<SilenceCase> cases = {
      {"ringing", front(2), 300},     {"up", front(4), 86400},
      {"ended", whole, 32},           {"failed", failed, 32},
      {"one fork up", forked, 86400}, {"challenged", challenged, 32},
      {"ringing again", again, 300},  {"ended, and repeated", repeated, 32},
  };
  for (const SilenceCase& one : cases) {
    Table table;
    for (const Sip& message : one.messages) table.take(message);
    const std::int64_t last = table.now;
    table.take({.start = "OPTIONS", .callId = "o", .time = last + one.seconds * 1000000});
    EXPECT_EQ(table.calls.size(), 0U) << one.name;
    table.take({.start = "OPTIONS", .callId = "o", .time = last + one.seconds * 1000000 + 1});
    EXPECT_EQ(table.calls.size(), 1U) << one.name;
    EXPECT_EQ(table.table.openCalls(), 0U) << one.name;
    EXPECT_FALSE(table.calls.at(0).isGivenUp) << one.name;
  }
}

TEST(CallTable, IsNotEndedByOneMessageThatIsFarAhead) {
  Table table;
  table.take({.start = "INVITE", .callId = "a", .time = 1000000000});
  table.take({.start = "INVITE", .callId = "b", .time = 9000000000000000});
  table.take({.start = "INVITE", .callId = "c", .time = 1001000000});
  EXPECT_TRUE(table.calls.empty());
  table.take({.start = "INVITE", .callId = "d", .time = 9000000000000000});
  table.take(calling::reply({.start = "INVITE", .callId = "d"}, "180"));
  EXPECT_EQ(table.calls.size(), 3U) << "time has passed, as two messages tell";
  table.table.finish();
  ASSERT_EQ(table.calls.size(), 4U);
  EXPECT_EQ(table.calls[3].messages.size(), 2U);
}

TEST(CallTable, TakesALastMessageThatIsFarAhead) {
  Table table;
  table.take({.start = "INVITE", .callId = "a", .time = 1000000000});
  table.take({.start = "INVITE", .callId = "b", .time = 9000000000000000});
  table.table.finish();
  EXPECT_EQ(table.calls.size(), 2U);
  EXPECT_EQ(table.table.messages(), 2U);
}

TEST(CallTable, WaitsForAllLegs) {
  Table table;
  for (const Sip& message : plainCall()) table.take(message);
  Sip other = {.start = "200 INVITE", .callId = "b", .toTag = "u"};
  other.headers = "X-CID: a\r\n";
  table.take(other);
  table.take({.start = "OPTIONS", .callId = "o", .time = table.now + 86400000000});
  EXPECT_EQ(table.calls.size(), 0U);
}

TEST(CallTable, IsNotMadeOlderByMessagesWithoutTimes) {
  Table table;
  for (const Sip& message : plainCall()) table.take(message);
  for (int i = 0; i < 100; ++i) table.take({.start = "OPTIONS", .callId = "o", .isTimeless = true});
  EXPECT_EQ(table.calls.size(), 0U);
}

TEST(CallTable, MakesAnotherCallOfWhatComesTooLate) {
  Table table;
  for (const Sip& message : plainCall()) table.take(message);
  Sip again = plainCall()[0];
  again.time = table.now + 33000000;
  table.take(again);
  EXPECT_EQ(table.calls.size(), 1U);
  table.table.finish();
  ASSERT_EQ(table.calls.size(), 2U);
  EXPECT_EQ(table.calls[1].number, 2U);
  EXPECT_EQ(table.calls[1].retransmissions(), 0U);
}

/// An INVITE of a call of its own.
Sip inviteOf(int call) { return {.start = "INVITE", .callId = "c" + std::to_string(call)}; }

TEST(CallTable, GivesUpTheCallThatIsSilentForLongest) {
  Table table({.joinHeaders = {}, .mostOpenCalls = 2});
  table.take(inviteOf(1));
  table.take(inviteOf(2));
  table.take({.start = "180 INVITE", .callId = "c1"});
  EXPECT_EQ(table.calls.size(), 0U);
  table.take(inviteOf(3));
  ASSERT_EQ(table.calls.size(), 1U);
  EXPECT_EQ(table.calls[0].legs[0].callId, "c2");
  EXPECT_TRUE(table.calls[0].isGivenUp);
  EXPECT_EQ(table.table.openCalls(), 2U);
  table.table.finish();
  ASSERT_EQ(table.calls.size(), 3U);
  EXPECT_EQ(table.calls[1].number, 1U);
  EXPECT_FALSE(table.calls[1].isGivenUp);
  EXPECT_EQ(table.calls[2].number, 3U);
}

TEST(CallTable, GivesAwayACallThatGrowsTooLarge) {
  Table table({.joinHeaders = {}, .mostCallBytes = 10000});
  Sip large = inviteOf(1);
  large.body = std::string(6000, 'x');
  Sip small = inviteOf(2);
  table.take(small);
  table.take(large);
  EXPECT_EQ(table.calls.size(), 0U);
  table.take(large);
  ASSERT_EQ(table.calls.size(), 1U);
  EXPECT_TRUE(table.calls[0].isGivenUp);
  EXPECT_EQ(table.calls[0].messages.size(), 2U);
  EXPECT_EQ(table.table.openCalls(), 1U);
  table.take(large);
  table.table.finish();
  ASSERT_EQ(table.calls.size(), 3U);
  EXPECT_FALSE(table.calls[1].isGivenUp);
  EXPECT_FALSE(table.calls[2].isGivenUp);
}

TEST(CallTable, LimitsTheBytesOfOpenCalls) {
  Table table({.joinHeaders = {}, .mostOpenBytes = 10000});
  Sip large = inviteOf(1);
  large.body = std::string(6000, 'x');
  table.take(large);
  EXPECT_EQ(table.calls.size(), 0U);
  large.callId = "c2";
  table.take(large);
  ASSERT_EQ(table.calls.size(), 1U);
  EXPECT_TRUE(table.calls[0].isGivenUp);
  EXPECT_EQ(table.calls[0].number, 1U);
  large.callId = "c3";
  large.body = std::string(20000, 'x');
  table.take(large);
  EXPECT_EQ(table.calls.size(), 3U);
  EXPECT_EQ(table.table.openCalls(), 0U);
}

TEST(CallTable, GivesAwayTheRestInTheOrderOfNumbers) {
  Table table;
  for (int call = 1; call <= 5; ++call) table.take(inviteOf(call));
  table.take({.start = "200 INVITE", .callId = "c1", .toTag = "t"});
  table.take({.start = "486 INVITE", .callId = "c3", .toTag = "t"});
  table.table.finish();
  ASSERT_EQ(table.calls.size(), 5U);
  for (std::size_t index = 0; index < 5; ++index) EXPECT_EQ(table.calls[index].number, index + 1);
  EXPECT_EQ(table.table.openCalls(), 0U);
  table.table.finish();
  EXPECT_EQ(table.calls.size(), 5U);
}

TEST(CallTable, JoinsByNumbersBeforeACallIsGivenAway) {
  // The other leg has had no final response when the first call's silence ends.
  Table table;
  table.take({.start = "INVITE", .destination = kProxy});
  table.take({.start = "INVITE", .source = kProxy, .destination = kBob, .callId = "b"});
  table.take({.start = "486 INVITE", .source = kProxy, .destination = kAlice, .toTag = "t"});
  table.take({.start = "180 INVITE",
              .source = kBob,
              .destination = kProxy,
              .callId = "b",
              .time = table.now + 33000000});
  EXPECT_EQ(table.calls.size(), 0U);
  EXPECT_EQ(table.table.openCalls(), 1U);
  table.table.finish();
  ASSERT_EQ(table.calls.size(), 1U);
  EXPECT_EQ(table.calls[0].legs.size(), 2U);
  EXPECT_EQ(table.calls[0].legs[1].joinedBy, JoinedBy::timeAndNumbers);
}

TEST(CallTable, LetsTimePassFromTheLastMessageOn) {
  // The times of these messages are of a day long ago.
  Table table;
  table.table.passTime(1000000);
  const std::vector<Sip> messages = plainCall();
  for (std::size_t index = 0; index < 5; ++index) table.take(messages[index]);
  table.table.passTime(1000000);
  table.take(messages[5]);
  table.table.passTime(30000000);
  EXPECT_EQ(table.calls.size(), 0U);
  table.table.passTime(3000000);
  ASSERT_EQ(table.calls.size(), 1U);
  EXPECT_EQ(table.calls[0].messages.size(), 6U);
  EXPECT_EQ(table.table.openCalls(), 0U);
}

TEST(CallTable, LetsTheTimeOfEndedCallsAlonePassFaster) {
  Table table;
  for (const Sip& message : plainCall()) table.take(message);
  table.take({.start = "INVITE", .callId = "rings"});
  constexpr std::int64_t kToday = 1795000000000000;
  table.table.passTime(200000, kToday);
  ASSERT_EQ(table.calls.size(), 1U);
  EXPECT_EQ(table.calls[0].legs[0].callId, "a");
  EXPECT_EQ(table.table.openCalls(), 1U);
}

}  // namespace
