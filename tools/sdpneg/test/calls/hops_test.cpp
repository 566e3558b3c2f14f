#include <gtest/gtest.h>

#include <utility>

#include "calls/messages.h"

// What participants make of what they get.

namespace {

using calling::callsOf;
using calling::kBob;
using calling::kCarol;
using calling::kProxy;
using calling::reply;
using calling::sdp;
using calling::Sip;
using tool::Call;

/// Hops as "0>1".
std::vector<std::string> hopsOf(const std::vector<Sip>& messages) {
  std::vector<std::string> told;
  const std::vector<Call> calls = callsOf(messages);
  EXPECT_EQ(calls.size(), 1U);
  if (calls.size() != 1) return told;
  for (const tool::Hop& hop : calls[0].hops) {
    told.push_back(std::to_string(hop.before) + ">" + std::to_string(hop.after));
  }
  return told;
}

constexpr std::string_view kOutside = "198.51.100.1";

using Hops = std::vector<std::string>;

/// The INVITEs at both sides of a proxy.
Sip first() { return {.start = "INVITE", .destination = kProxy, .body = sdp()}; }
Sip sentOn(Sip sip) {
  sip.source = kProxy;
  sip.destination = kBob;
  sip.branch += "p";
  return sip;
}
/// The INVITE of the other leg of a back-to-back user agent.
Sip otherLeg() {
  Sip sip = sentOn(first());
  sip.callId = "b";
  sip.cseq = 100;
  sip.fromTag = "g";
  sip.headers = "X-CID: a\r\n";
  return sip;
}
const std::string kBody = sdp("- 5 1 IN IP4 192.0.2.3", "192.0.2.3");

Sip without(Sip sip) {
  sip.body.clear();
  return sip;
}

TEST(Hops, LeadThroughProxies) {
  const Sip second = sentOn(first());
  EXPECT_EQ(hopsOf({first(), reply(first(), "100"), second, reply(second, "180"), reply(first(), "180"),
                    reply(second, "200", kBody), reply(first(), "200", kBody)}),
            (Hops{"0>2", "5>6"}));
}

TEST(Hops, LeadThroughLegs) {
  const Sip second = otherLeg();
  Sip ack = {.start = "ACK", .destination = kProxy, .branch = "z9hG4bKack", .toTag = "t"};
  EXPECT_EQ(hopsOf({first(), second, reply(second, "183", kBody, "u"), reply(first(), "183", kBody),
                    reply(second, "200", kBody, "u"), reply(first(), "200", kBody), ack}),
            (Hops{"0>1", "2>3", "4>5"}));
}

TEST(Hops, LeadToForks) {
  Sip third = otherLeg();
  third.callId = "c";
  third.destination = kCarol;
  EXPECT_EQ(hopsOf({first(), otherLeg(), third}), (Hops{"0>1", "0>2"}));
  Sip fork = sentOn(first());
  fork.destination = kCarol;
  EXPECT_EQ(hopsOf({first(), sentOn(first()), fork}), (Hops{"0>1", "0>2"}));
}

TEST(Hops, LeadFromTheNearestMessage) {
  // The caller offers again before the server has sent the first offer on.
  Sip again = first();
  again.cseq = 2;
  again.branch = "z9hG4bK2";
  EXPECT_EQ(hopsOf({first(), again, otherLeg()}), (Hops{"1>2"}));
}

TEST(Hops, LeadToMessagesThatLostTheirBodies) {
  EXPECT_EQ(hopsOf({first(), without(otherLeg())}), (Hops{"0>1"}));
  EXPECT_EQ(hopsOf({first(), without(sentOn(first()))}), (Hops{"0>1"}));
  const Sip second = otherLeg();
  // Of two provisional responses the second one has a body, and each is sent on as it is.
  EXPECT_EQ(hopsOf({first(), second, reply(second, "180", {}, "u"), reply(first(), "180"),
                    reply(second, "183", kBody, "u"), reply(first(), "183", kBody)}),
            (Hops{"0>1", "4>5"}));
  // The one with the body becomes one without.
  EXPECT_EQ(hopsOf({first(), second, reply(second, "183", kBody, "u"), reply(first(), "180")}),
            (Hops{"0>1", "2>3"}));
  // A body that came in anew is of no hop.
  EXPECT_EQ(hopsOf({without(first()), second}), Hops());
}

TEST(Hops, CountNoRetransmissions) {
  EXPECT_EQ(hopsOf({first(), first(), otherLeg(), otherLeg()}), (Hops{"0>2"}));
}

TEST(Hops, AreOfMessagesOfOneKind) {
  const Sip second = otherLeg();
  EXPECT_EQ(hopsOf({first(), second, reply(second, "200", kBody, "u"), reply(first(), "183", kBody)}),
            (Hops{"0>1"}));
  // An offer for an answer.
  EXPECT_EQ(hopsOf({without(first()), without(second), reply(second, "200", kBody, "u"),
                    reply(first(), "200", kBody)}),
            (Hops{"2>3"}));
  EXPECT_EQ(
      hopsOf({first(), without(second), reply(second, "200", kBody, "u"), reply(first(), "200", kBody)}),
      (Hops{"0>1"}));
}

TEST(Hops, AreNotMadeOfWhatWasSentOnBefore) {
  Sip challenged = otherLeg();
  challenged.cseq = 101;
  challenged.branch = "z9hG4bKc";
  challenged.headers.clear();
  // With credentials it is sent at once; later, the server offers by itself.
  EXPECT_EQ(hopsOf({first(), otherLeg(), reply(otherLeg(), "407"), challenged}), (Hops{"0>1", "0>3"}));
  challenged.time = 1060000000;
  EXPECT_EQ(hopsOf({first(), otherLeg(), challenged}), (Hops{"0>1"}));
}

TEST(Hops, AreNotLongerThanMinutes) {
  Sip second = otherLeg();
  Sip opening = first();
  opening.time = 1000000000;
  second.time = 1000000000 + 299999999;
  EXPECT_EQ(hopsOf({opening, second}), (Hops{"0>1"}));
  second.time = 1000000000 + 300000000;
  EXPECT_EQ(hopsOf({opening, second}), Hops());
}

TEST(Hops, AreToldByPortsWhereAnAddressTalksToItself) {
  Sip opening = first();
  opening.source = "127.0.0.1:5060";
  opening.destination = "127.0.0.1:5062";
  Sip second = otherLeg();
  second.source = "127.0.0.1:5062";
  second.destination = "127.0.0.1:5064";
  EXPECT_EQ(hopsOf({opening, second}), (Hops{"0>1"}));
  second.source = "127.0.0.1:5066";
  EXPECT_EQ(hopsOf({opening, second}), (Hops{"0>1"}));  // by a port for each side
  second.destination = "127.0.0.1:5062";
  EXPECT_EQ(hopsOf({opening, second}), Hops());
}

TEST(Hops, LeadThroughOneThatHasAnAddressForEachSide) {
  Sip second = otherLeg();
  second.source = kOutside;
  EXPECT_EQ(hopsOf({first(), second, reply(second, "183", kBody, "u"), reply(first(), "183", kBody)}),
            (Hops{"0>1", "2>3"}));
  // Where the legs share a participant, another one sends by itself.
  second.destination = kProxy;
  EXPECT_EQ(hopsOf({first(), second}), Hops());
}

TEST(Hops, DoNotGoBack) {
  // A request that comes back to where it came from, in the same leg, was not sent on.
  Sip back = first();
  std::swap(back.source, back.destination);
  back.branch = "z9hG4bKback";
  EXPECT_EQ(hopsOf({first(), back}), Hops());
}

}  // namespace
