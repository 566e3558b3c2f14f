#include "calls/legJoiner.h"

#include <gtest/gtest.h>

#include "calls/messages.h"

namespace {

using calling::callsOf;
using calling::kAlice;
using calling::kBob;
using calling::kCarol;
using calling::kProxy;
using calling::reply;
using calling::sdp;
using calling::Sip;
using tool::Call;
using tool::JoinedBy;

/// The INVITEs of two legs that have nothing in common but who is between them.
Sip firstLeg() { return {.start = "INVITE", .destination = kProxy, .callId = "a", .branch = "z9hG4bKa"}; }
Sip secondLeg() {
  return {.start = "INVITE",
          .source = kProxy,
          .callId = "b",
          .branch = "z9hG4bKb",
          .from = "sip:x@example.net",
          .to = "sip:y@example.net"};
}

struct JoinCase {
  std::string name;
  std::string headers;  ///< of the first leg
  std::string others;   ///< of the second
  JoinedBy by;          ///< first for none
  std::string detail;
};

std::string nameOf(const testing::TestParamInfo<JoinCase>& info) { return info.param.name; }

class JoinsByHeaders : public testing::TestWithParam<JoinCase> {};

TEST_P(JoinsByHeaders, ToOneCall) {
  const JoinCase& one = GetParam();
  Sip first = firstLeg();
  Sip second = secondLeg();
  first.headers = one.headers;
  second.headers = one.others;
  const std::vector<Call> calls = callsOf({first, second}, {.joinHeaders = {"X-Mine", "Also-Mine"}});
  if (one.by == JoinedBy::first) {
    EXPECT_EQ(calls.size(), 2U);
    return;
  }
  ASSERT_EQ(calls.size(), 1U);
  ASSERT_EQ(calls[0].legs.size(), 2U);
  EXPECT_EQ(calls[0].number, 1U);
  EXPECT_EQ(calls[0].legs[0].callId, "a");
  EXPECT_EQ(calls[0].legs[0].joinedBy, JoinedBy::first);
  EXPECT_EQ(calls[0].legs[1].callId, "b");
  EXPECT_EQ(calls[0].legs[1].joinedBy, one.by);
  EXPECT_EQ(calls[0].legs[1].joinDetail, one.detail);
  EXPECT_EQ(calls[0].legs[1].joinedTo, 0U);
  EXPECT_EQ(calls[0].messages[1].leg, 1U);
}

constexpr std::string_view kUuid = "ab30317f1a784dc48ff824d0d3715d86";
const std::string kSession = "Session-ID: " + std::string(kUuid);

INSTANTIATE_TEST_SUITE_P(
    LegJoiner, JoinsByHeaders,
    testing::Values(
        JoinCase{"NamedEqual", "X-Mine: 1\r\n", "x-mine:1\r\n", JoinedBy::joinHeader, "x-mine: 1"},
        JoinCase{"NamedCallId", "", "Also-Mine: a\r\n", JoinedBy::joinHeader, "Also-Mine: a"},
        JoinCase{"NamedCallIdOfWhatFollows", "X-Mine: b\r\n", "", JoinedBy::joinHeader, "X-Mine: b"},
        JoinCase{"NamedOfOtherNames", "X-Mine: 1\r\n", "Also-Mine: 1\r\n", JoinedBy::first, ""},
        JoinCase{"NamedEmpty", "X-Mine:\r\n", "X-Mine:\r\n", JoinedBy::first, ""},
        JoinCase{"NamedBeforeKnown", "X-Mine: 1\r\nX-CID: 2\r\n", "X-CID: 2\r\nX-Mine: 1\r\n",
                 JoinedBy::joinHeader, "X-Mine: 1"},
        JoinCase{"KnownCallId", "", "X-Call-ID: a\r\n", JoinedBy::callIdHeader, "X-Call-ID: a"},
        JoinCase{"KnownCallIdOfWhatFollows", "X-CallID: b\r\n", "", JoinedBy::callIdHeader, "X-CallID: b"},
        JoinCase{"KnownEqualByOtherNames", "X-CID: 1\r\n", "x-original-call-id: 1\r\n",
                 JoinedBy::callIdHeader, "x-original-call-id: 1"},
        JoinCase{"KnownUnequal", "X-CID: 1\r\n", "X-CID: 2\r\n", JoinedBy::first, ""},
        JoinCase{"Folded", "X-CID: 1\r\n  2\r\n", "X-CID:\r\n 1 2\r\n", JoinedBy::callIdHeader, "X-CID: 1 2"},
        JoinCase{"Replaces", "", "Replaces: a;to-tag=t;from-tag=f\r\n", JoinedBy::callIdHeader,
                 "Replaces: a;to-tag=t;from-tag=f"},
        JoinCase{"SessionEqual", kSession + "\r\n", kSession + ";remote=0\r\n", JoinedBy::callIdHeader,
                 kSession + ";remote=0"},
        JoinCase{"SessionRemote", kSession + "\r\n",
                 "Session-ID: 1;Remote=\"AB30317f1a784dc48ff824d0d3715d86\"\r\n", JoinedBy::callIdHeader,
                 "Session-ID: 1;Remote=\"AB30317f1a784dc48ff824d0d3715d86\""},
        JoinCase{"SessionNobody", "Session-ID: 1;remote=00000000000000000000000000000000\r\n",
                 "Session-ID: 2;remote=00000000000000000000000000000000\r\n", JoinedBy::first, ""},
        JoinCase{"SessionIsNoCallId", "", "Session-ID: a\r\n", JoinedBy::first, ""},
        JoinCase{"Charging", "P-Charging-Vector: icid-value=\"x;y\";orig-ioi=1\r\n",
                 "P-Charging-Vector: orig-ioi=2 ; icid-value=\"x;y\"\r\n", JoinedBy::callIdHeader,
                 "P-Charging-Vector: orig-ioi=2 ; icid-value=\"x;y\""},
        JoinCase{"ChargingUnequal", "P-Charging-Vector: icid-value=1\r\n",
                 "P-Charging-Vector: icid-value=2\r\n", JoinedBy::first, ""},
        JoinCase{"KindsApart", kSession + "\r\n", "X-CID: " + std::string(kUuid) + "\r\n", JoinedBy::first,
                 ""},
        JoinCase{"OtherHeaders", "Subject: 1\r\n", "Subject: 1\r\n", JoinedBy::first, ""},
        JoinCase{"LongestValue", "X-CID: " + std::string(512, 'x') + "\r\n",
                 "X-CID: " + std::string(512, 'x') + "\r\n", JoinedBy::callIdHeader,
                 "X-CID: " + std::string(256, 'x')},
        JoinCase{"TooLongValue", "X-CID: " + std::string(513, 'x') + "\r\n",
                 "X-CID: " + std::string(513, 'x') + "\r\n", JoinedBy::first, ""}),
    nameOf);

/// How the second of two legs was joined; first for not at all.
JoinedBy joinOf(const std::vector<Call>& calls) {
  return calls.size() == 1 && calls[0].legs.size() == 2 ? calls[0].legs[1].joinedBy : JoinedBy::first;
}

struct OriginCase {
  std::string name;
  std::string origin;  ///< of the second leg; the first one has "- 11 1 IN IP4 192.0.2.1"
  std::string address;
  int port;
  bool isJoined;
};

TEST(LegJoiner, JoinsByOrigins) {
  const std::vector<OriginCase> cases = {
      {"passed on", "- 11 1 IN IP4 192.0.2.1", "192.0.2.1", 4000, true},
      {"anchored", "- 11 1 IN IP4 192.0.2.1", "192.0.2.2", 5000, true},
      {"other address of the origin", "- 11 1 IN IP4 192.0.2.2", "192.0.2.1", 4000, true},
      {"other version", "- 11 2 IN IP4 192.0.2.1", "192.0.2.1", 4000, true},
      {"anchored with another version", "- 11 2 IN IP4 192.0.2.1", "192.0.2.2", 4000, false},
      {"other port and address of the origin", "- 11 1 IN IP4 192.0.2.2", "192.0.2.1", 4002, false},
      {"other session", "- 12 1 IN IP4 192.0.2.1", "192.0.2.1", 4000, false},
      {"other user", "x 11 1 IN IP4 192.0.2.1", "192.0.2.1", 4000, false},
      {"no session", "-", "192.0.2.1", 4000, false},
  };
  for (const OriginCase& one : cases) {
    Sip first = firstLeg();
    Sip second = secondLeg();
    first.body = sdp();
    second.body = sdp(one.origin, one.address, one.port);
    const std::vector<Call> calls = callsOf({first, second});
    EXPECT_EQ(joinOf(calls), one.isJoined ? JoinedBy::origin : JoinedBy::first) << one.name;
    if (one.isJoined) {
      EXPECT_EQ(calls[0].legs[1].joinDetail, "o=" + one.origin) << one.name;
    }
  }
}

/// Where the first leg's INVITE goes and the second's comes from, and whether the same body joins them.
struct WayCase {
  std::string name;
  std::string_view firstSource;
  std::string_view firstDestination;
  std::string_view source;
  std::string_view destination;
  std::int64_t later;  ///< microseconds
  bool isJoined;
};

TEST(LegJoiner, JoinsOriginsThatWereSentOn) {
  const std::vector<WayCase> cases = {
      {"sent on late", kAlice, kProxy, kProxy, kBob, 600000000, true},
      {"by the same caller", kAlice, kProxy, kAlice, kBob, 1000, false},
      {"to the same server by another caller", kAlice, kProxy, kBob, kProxy, 1000, false},
      {"by another address at once", kAlice, kProxy, kBob, kCarol, 5000000, true},
      {"by another address later", kAlice, kProxy, kBob, kCarol, 5000001, false},
      {"ports apart", "127.0.0.1:5060", "127.0.0.1:5062", "127.0.0.1:5062", "127.0.0.1:5064", 1000, true},
      {"same caller by port", "127.0.0.1:5060", "127.0.0.1:5062", "127.0.0.1:5060", "127.0.0.1:5064", 1000,
       false},
  };
  for (const WayCase& one : cases) {
    Sip first = firstLeg();
    Sip second = secondLeg();
    first.source = one.firstSource;
    first.destination = one.firstDestination;
    second.source = one.source;
    second.destination = one.destination;
    first.body = second.body = sdp();
    first.time = 1000000000;
    second.time = 1000000000 + one.later;
    std::vector<Sip> messages = {first, second};
    // Calls that ring do not wait for so long.
    if (one.later > 300000000) messages.insert(messages.begin() + 1, reply(first, "200"));
    const std::vector<Call> calls = callsOf(messages);
    EXPECT_EQ(joinOf(calls), one.isJoined ? JoinedBy::origin : JoinedBy::first) << one.name;
  }
}

TEST(LegJoiner, JoinsOriginsByTheirSendersWhereAddressesAreUnknown) {
  const struct {
    std::string name;
    std::string_view sender;
    std::string start;
    std::int64_t later;
    bool isJoined;
  } cases[] = {
      {"another sender", "other:5060", "INVITE", 5000000, true},
      {"the same sender", "host", "INVITE", 1000, false},
      {"later", "other:5060", "INVITE", 5000001, false},
      {"a response", "other:5060", "200 INVITE", 1000, false},
  };
  for (const auto& one : cases) {
    Sip first = firstLeg();
    Sip second = secondLeg();
    first.source = first.destination = second.source = second.destination = "";
    first.body = second.body = sdp();
    first.time = 1000000000;
    second.time = 1000000000 + one.later;
    second.sender = one.sender;
    second.start = one.start;
    const std::vector<Call> calls = callsOf({first, second});
    EXPECT_EQ(joinOf(calls), one.isJoined ? JoinedBy::origin : JoinedBy::first) << one.name;
  }
}

TEST(LegJoiner, TellsCallsOfSendersWithOneOriginApart) {
  // Both sides have the same o-line in each call, and the server in the middle sends it on.
  std::vector<Sip> messages;
  for (int call = 0; call < 3; ++call) {
    Sip first = firstLeg();
    Sip second = secondLeg();
    first.callId = "a" + std::to_string(call);
    second.callId = "b" + std::to_string(call);
    first.body = second.body = sdp();
    messages.insert(messages.end(), {first, second, reply(second, "200", sdp()), reply(first, "200", sdp())});
  }
  const std::vector<Call> calls = callsOf(messages);
  ASSERT_EQ(calls.size(), 3U);
  for (std::size_t i = 0; i < calls.size(); ++i) {
    ASSERT_EQ(calls[i].legs.size(), 2U) << i;
    EXPECT_EQ(calls[i].legs[0].callId, "a" + std::to_string(i));
    EXPECT_EQ(calls[i].legs[1].callId, "b" + std::to_string(i));
  }
}

/// The messages of a call by way of a server: two legs with the same bodies.
std::vector<Sip> relayed(const std::string& name, std::string_view caller, std::string_view server,
                         std::string_view target) {
  Sip first = firstLeg();
  Sip second = secondLeg();
  first.callId = "a" + name;
  second.callId = "b" + name;
  first.source = caller;
  first.destination = second.source = server;
  second.destination = target;
  first.body = second.body = sdp();
  const std::string answer = sdp("- 5 1 IN IP4 192.0.2.3");
  return {first, second, reply(second, "200", answer), reply(first, "200", answer)};
}

void expectPairs(const std::vector<Call>& calls, std::size_t count) {
  ASSERT_EQ(calls.size(), count);
  for (const Call& call : calls) {
    ASSERT_EQ(call.legs.size(), 2U);
    EXPECT_EQ(call.legs[0].callId.substr(1), call.legs[1].callId.substr(1));
  }
}

TEST(LegJoiner, TellsCallsAtOneAddressWithTheSameBodiesApart) {
  // Each with ports of its own, one behind the other, as clients are that are started for each call.
  std::vector<Sip> messages;
  std::vector<std::string> ends;
  ends.reserve(60);
  for (int i = 0; i < 60; ++i) ends.push_back("127.0.0.1:" + std::to_string(6000 + i));
  for (std::size_t i = 0; i < 20; ++i) {
    for (const Sip& sip : relayed(std::to_string(i), ends[3 * i], ends[3 * i + 1], ends[3 * i + 2]))
      messages.push_back(sip);
  }
  expectPairs(callsOf(messages), 20);
}

TEST(LegJoiner, TellsCallsThatOverlapWithTheSameBodiesApart) {
  // A load test: one caller, one server, one target, one body. Each step of all calls comes before the next step.
  constexpr std::size_t kCalls = 12;
  std::vector<std::vector<Sip>> calls;
  for (std::size_t i = 0; i < kCalls; ++i) calls.push_back(relayed(std::to_string(i), kAlice, kProxy, kBob));
  std::vector<Sip> messages;
  for (std::size_t step = 0; step < calls.front().size(); ++step) {
    for (const std::vector<Sip>& call : calls) messages.push_back(call[step]);
  }
  expectPairs(callsOf(messages), kCalls);
}

TEST(LegJoiner, JoinsByOriginsOfAnswers) {
  // Only the responses were captured.
  const Sip first = reply(firstLeg(), "200", sdp("- 5 1 IN IP4 192.0.2.3"));
  const Sip second = reply(secondLeg(), "200", sdp("- 5 1 IN IP4 192.0.2.3"));
  const std::vector<Call> calls = callsOf({second, first});
  ASSERT_EQ(joinOf(calls), JoinedBy::origin);
  EXPECT_EQ(calls[0].legs[0].callId, "b");
}

struct NumberCase {
  std::string name;
  std::string from;  ///< of the second leg
  std::string to;
  std::int64_t later;
  std::string_view source;
  bool isJoined;
};

TEST(LegJoiner, JoinsByTimeAndNumbers) {
  const std::vector<NumberCase> cases = {
      {"same", "sip:+4930123@example.net", "sip:+4989456@example.net", 1000, kProxy, true},
      {"other forms", "sip:004930123@b", "tel:+49-(89)-456;phone-context=x", 1000, kProxy, true},
      {"after two seconds", "sip:4930123@b", "sip:4989456@b", 2000000, kProxy, true},
      {"later", "sip:4930123@b", "sip:4989456@b", 2000001, kProxy, false},
      {"other caller", "sip:4930124@b", "sip:4989456@b", 1000, kProxy, false},
      {"other callee", "sip:4930123@b", "sip:4989457@b", 1000, kProxy, false},
      {"by one who got no INVITE", "sip:4930123@b", "sip:4989456@b", 1000, kCarol, false},
      {"by the caller", "sip:4930123@b", "sip:4989456@b", 1000, kAlice, false},
      {"no callee", "sip:4930123@b", "sip:b", 1000, kProxy, false},
  };
  for (const NumberCase& one : cases) {
    Sip first = firstLeg();
    Sip second = secondLeg();
    first.from = "sip:+49.30.123@example.org;user=phone";
    first.to = "sip:4989456:secret@example.org";
    first.time = 1000000000;
    second.from = one.from;
    second.to = one.to;
    second.source = one.source;
    second.time = 1000000000 + one.later;
    const std::vector<Call> calls = callsOf({first, second});
    EXPECT_EQ(joinOf(calls), one.isJoined ? JoinedBy::timeAndNumbers : JoinedBy::first) << one.name;
    if (one.isJoined) {
      const std::string after = std::to_string(one.later / 1000);
      EXPECT_EQ(calls[0].legs[1].joinDetail, "4930123 to 4989456, " + after + " ms later") << one.name;
    }
  }
}

/// The legs of a call between the same numbers.
Sip likeFirst(Sip sip) {
  sip.from = firstLeg().from;
  sip.to = firstLeg().to;
  return sip;
}

TEST(LegJoiner, JoinsByNumbersBeforeTheFinalResponseAlone) {
  const Sip first = firstLeg();
  const Sip second = likeFirst(secondLeg());
  EXPECT_EQ(joinOf(callsOf({first, reply(first, "180"), second})), JoinedBy::timeAndNumbers);
  EXPECT_EQ(joinOf(callsOf({first, reply(first, "486"), second})), JoinedBy::first);
  // What asks for another INVITE is not the end of it.
  Sip again = first;
  again.cseq = 2;
  again.branch = "z9hG4bKc";
  for (const std::string status : {"407", "422", "488", "302"}) {
    EXPECT_EQ(joinOf(callsOf({first, reply(first, status), again, second})), JoinedBy::timeAndNumbers)
        << status;
  }
}

TEST(LegJoiner, JoinsByNumbersTheNearestInTime) {
  Sip early = firstLeg();
  early.callId = "early";
  Sip near = firstLeg();
  const Sip second = likeFirst(secondLeg());
  const std::vector<Call> calls = callsOf({early, near, second});
  ASSERT_EQ(calls.size(), 2U);
  EXPECT_EQ(calls[0].legs.size(), 1U);
  ASSERT_EQ(calls[1].legs.size(), 2U);
  EXPECT_EQ(calls[1].number, 2U);
  EXPECT_EQ(calls[1].legs[0].callId, "a");

  // Two at the same time are as good as none.
  early.time = near.time = 1000000000;
  EXPECT_EQ(callsOf({early, near, second}).size(), 3U);
}

TEST(LegJoiner, PrefersWhatIsStrongerToNumbers) {
  Sip early = firstLeg();
  early.callId = "early";
  early.headers = "X-CID: 1\r\n";
  const Sip near = firstLeg();
  Sip second = likeFirst(secondLeg());
  second.headers = "X-CID: 1\r\n";
  const std::vector<Call> calls = callsOf({early, near, second});
  ASSERT_EQ(calls.size(), 2U);
  ASSERT_EQ(calls[0].legs.size(), 2U);
  EXPECT_EQ(calls[0].legs[1].callId, "b");
  EXPECT_EQ(calls[0].legs[1].joinedBy, JoinedBy::callIdHeader);
}

TEST(LegJoiner, JoinsForksByNumbers) {
  Sip second = likeFirst(secondLeg());
  Sip third = likeFirst(secondLeg());
  third.callId = "c";
  third.destination = kCarol;
  const std::vector<Call> calls = callsOf({firstLeg(), second, third});
  ASSERT_EQ(calls.size(), 1U);
  ASSERT_EQ(calls[0].legs.size(), 3U);
  EXPECT_EQ(calls[0].legs[1].joinedTo, 0U);
  EXPECT_EQ(calls[0].legs[2].joinedTo, 0U);
}

TEST(LegJoiner, MakesCallsOneThatALegJoinsLater) {
  // Two calls with two legs each become one by their second legs.
  Sip one = firstLeg();
  Sip two = secondLeg();
  two.headers = "X-CID: a\r\n";
  Sip three = firstLeg();
  three.callId = "c";
  three.from = "sip:u@example.net";
  Sip four = secondLeg();
  four.callId = "d";
  four.headers = "X-CID: c\r\n";
  Sip last = two;
  last.cseq = 2;
  last.toTag = "t";
  last.headers = "X-CID: d\r\n";
  const std::vector<Call> calls = callsOf({one, two, three, four, last});
  ASSERT_EQ(calls.size(), 1U);
  EXPECT_EQ(calls[0].number, 1U);
  ASSERT_EQ(calls[0].legs.size(), 4U);
  const auto& legs = calls[0].legs;
  EXPECT_EQ(legs[1].joinedTo, 0U);
  EXPECT_EQ(legs[2].callId, "c");
  EXPECT_EQ(legs[2].joinedTo, 3U);
  EXPECT_EQ(legs[2].joinDetail, "X-CID: c");
  EXPECT_EQ(legs[3].callId, "d");
  EXPECT_EQ(legs[3].joinedTo, 1U);
  EXPECT_EQ(legs[3].joinDetail, "X-CID: d");
  for (std::size_t index = 0; index < 4; ++index) EXPECT_EQ(calls[0].messages[index].leg, index);
  EXPECT_EQ(calls[0].messages[4].leg, 1U);
  EXPECT_EQ(joinsOf(calls[0]), "call-id-header");
}

TEST(LegJoiner, LimitsTheLegsOfACall) {
  std::vector<Sip> messages;
  for (int leg = 0; leg < 600; ++leg) {
    Sip sip = firstLeg();
    sip.callId = std::to_string(leg);
    sip.headers = "X-CID: same\r\n";
    messages.push_back(sip);
  }
  const std::vector<Call> calls = callsOf(messages);
  ASSERT_EQ(calls.size(), 3U);
  EXPECT_EQ(calls[0].legs.size(), 256U);
  EXPECT_EQ(calls[1].legs.size(), 256U);
  EXPECT_EQ(calls[2].legs.size(), 88U);
}

}  // namespace
