#include <gtest/gtest.h>

#include "calls/messages.h"

// What became of calls.

namespace {

using calling::callsOf;
using calling::kProxy;
using calling::reply;
using calling::Sip;
using tool::Call;
using tool::CallState;

Sip invite() { return {.start = "INVITE"}; }
Sip inDialog(const std::string& method, int cseq = 1) {
  return {.start = method, .cseq = cseq, .branch = "z9hG4bK" + method + std::to_string(cseq), .toTag = "t"};
}
/// The INVITE again with the next number.
Sip retry(int cseq = 2) {
  Sip sip = invite();
  sip.cseq = cseq;
  sip.branch = "z9hG4bK" + std::to_string(cseq);
  return sip;
}
Sip proxied() {
  Sip sip = invite();
  sip.source = kProxy;
  sip.branch = "z9hG4bKp";
  return sip;
}
Sip toProxy() {
  Sip sip = invite();
  sip.destination = kProxy;
  return sip;
}

struct ResultCase {
  std::string name;
  std::vector<Sip> messages;
  CallState state;
  int result;
};

TEST(CallResult, IsThatOfTheFirstInvite) {
  Sip fork = proxied();
  fork.branch = "z9hG4bKq";
  const Sip cancel = {.start = "CANCEL"};
  const std::vector<ResultCase> cases = {
      {"nothing yet", {invite()}, CallState::ringing, 0},
      {"ringing", {invite(), reply(invite(), "180")}, CallState::ringing, 0},
      {"up", {invite(), reply(invite(), "200")}, CallState::up, 200},
      {"ended", {invite(), reply(invite(), "202"), inDialog("BYE", 2)}, CallState::ended, 202},
      {"failed", {invite(), reply(invite(), "486")}, CallState::failed, 486},
      {"redirected", {invite(), reply(invite(), "302")}, CallState::failed, 302},
      {"cancelled",
       {invite(), cancel, reply(cancel, "200"), reply(invite(), "487")},
       CallState::cancelled,
       487},
      {"cancelled without more", {invite(), cancel}, CallState::cancelled, 0},
      {"cancelled too late", {invite(), cancel, reply(invite(), "200")}, CallState::up, 200},
      {"cancelled by a busy callee", {invite(), cancel, reply(invite(), "486")}, CallState::failed, 486},
      {"with credentials",
       {invite(), reply(invite(), "401"), retry(), reply(retry(), "200")},
       CallState::up,
       200},
      {"challenged alone", {invite(), reply(invite(), "407")}, CallState::failed, 407},
      {"challenged twice",
       {invite(), reply(invite(), "401"), retry(), reply(retry(), "407"), retry(3), reply(retry(3), "486")},
       CallState::failed,
       486},
      {"redirected to another place",
       {invite(), reply(invite(), "302"), retry(), reply(retry(), "200"), inDialog("BYE", 3)},
       CallState::ended,
       200},
      {"with another timer",
       {invite(), reply(invite(), "422"), retry(), reply(retry(), "200")},
       CallState::up,
       200},
      {"with other media",
       {invite(), reply(invite(), "488"), retry(), reply(retry(), "200")},
       CallState::up,
       200},
      {"rings with credentials",
       {invite(), reply(invite(), "407"), retry(), reply(retry(), "180")},
       CallState::ringing,
       0},
      {"again after a failure",
       {invite(), reply(invite(), "486"), retry(), reply(retry(), "200")},
       CallState::failed,
       486},
      {"offered again in vain",
       {invite(), reply(invite(), "200"), inDialog("INVITE", 2), reply(inDialog("INVITE", 2), "491")},
       CallState::up,
       200},
      {"forks",
       {toProxy(), proxied(), fork, reply(proxied(), "200"), reply(toProxy(), "200"), reply(fork, "487")},
       CallState::up,
       200},
      {"one after another", {toProxy(), proxied(), reply(proxied(), "486"), fork}, CallState::ringing, 0},
      {"from its middle", {inDialog("INVITE", 7), reply(inDialog("INVITE", 7), "200")}, CallState::up, 200},
      {"from its middle to its end", {inDialog("INVITE", 7), inDialog("BYE", 8)}, CallState::ended, 0},
      {"from its answer", {reply(invite(), "200"), inDialog("ACK")}, CallState::up, 200},
      {"its end alone", {inDialog("BYE", 2)}, CallState::ended, 0},
      {"from its ACK", {inDialog("ACK")}, CallState::up, 0},
      {"from an UPDATE", {inDialog("UPDATE")}, CallState::up, 0},
      {"from a PRACK", {inDialog("PRACK")}, CallState::ringing, 0},
      {"failed with its ACK", {invite(), reply(invite(), "486"), inDialog("ACK")}, CallState::failed, 486},
  };
  for (const ResultCase& one : cases) {
    const std::vector<Call> calls = callsOf(one.messages);
    ASSERT_EQ(calls.size(), 1U) << one.name;
    EXPECT_EQ(textOf(calls[0].state), textOf(one.state)) << one.name;
    EXPECT_EQ(calls[0].result, one.result) << one.name;
  }
}

TEST(CallResult, TellsThePartiesOfTheFirstInvite) {
  Sip bye = inDialog("BYE", 2);
  bye.from = "sip:bob@example.org";
  bye.to = "sip:alice@example.org";
  Sip opening = invite();
  opening.from = "sip:+4930;npdi@example.org;user=phone?x=y";
  opening.to = "tel:+4989;phone-context=x";
  const std::vector<Call> calls = callsOf({opening, bye});
  EXPECT_EQ(calls.at(0).from, "sip:+4930;npdi@example.org");
  EXPECT_EQ(calls.at(0).to, "tel:+4989");
  EXPECT_EQ(callsOf({bye}).at(0).from, "sip:bob@example.org");
}

TEST(CallResult, TellsTheTimesThatAreKnown) {
  Sip timeless = reply(invite(), "180");
  timeless.isTimeless = true;
  std::vector<Call> calls = callsOf({invite(), timeless});
  EXPECT_EQ(calls.at(0).start, 1000001000);
  EXPECT_EQ(calls.at(0).end, 1000001000);
  calls = callsOf({timeless});
  EXPECT_EQ(calls.at(0).start, std::nullopt);
  EXPECT_EQ(calls.at(0).end, std::nullopt);
}

}  // namespace
