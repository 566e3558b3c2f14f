#include <gtest/gtest.h>

#include "calls/messages.h"

// What is offered, and what answers it.

namespace {

using calling::callsOf;
using calling::kAlice;
using calling::kBob;
using calling::kProxy;
using calling::reply;
using calling::sdp;
using calling::Sip;
using tool::Call;

/// Roles of bodies, and exchanges as "0>2=200 first".
struct Told {
  std::string roles;  ///< a letter per message: '-', 'o', 'a', 's'
  std::vector<std::string> exchanges;

  bool operator==(const Told&) const = default;
};

std::ostream& operator<<(std::ostream& stream, const Told& told) {
  stream << told.roles;
  for (const std::string& exchange : told.exchanges) stream << ", " << exchange;
  return stream;
}

Told toldOf(const std::vector<Sip>& messages) {
  const std::vector<Call> calls = callsOf(messages);
  if (calls.size() != 1) return {};
  Told told;
  for (const tool::CallMessage& message : calls[0].messages) {
    told.roles += std::string_view("-oas")[static_cast<std::size_t>(message.body)];
  }
  for (const tool::Exchange& exchange : calls[0].exchanges) {
    told.exchanges.push_back(std::to_string(exchange.offer) + ">" +
                             (exchange.answer ? std::to_string(*exchange.answer) : "") + "=" +
                             std::to_string(exchange.finalStatus) + (exchange.isFirst ? " first" : ""));
  }
  return told;
}

Sip invite() { return {.start = "INVITE", .body = sdp()}; }
/// An INVITE without an offer.
Sip empty() { return {.start = "INVITE"}; }
const std::string kBody = sdp("- 5 1 IN IP4 192.0.2.3", "192.0.2.3");

Sip reliable(const Sip& request, const std::string& status, const std::string& body, int rseq = 1) {
  Sip sip = reply(request, status, body);
  sip.headers = "Require: 100rel\r\nRSeq: " + std::to_string(rseq) + "\r\n";
  return sip;
}

/// A request inside the dialog, of the caller.
Sip inDialog(const std::string& method, int cseq, const std::string& body = {}) {
  return {.start = method,
          .body = body,
          .cseq = cseq,
          .branch = "z9hG4bK" + method + std::to_string(cseq),
          .toTag = "t"};
}

Sip prack(int rseq, const std::string& body = {}) {
  Sip sip = inDialog("PRACK", rseq + 1, body);
  sip.headers = "RAck: " + std::to_string(rseq) + " 1 INVITE\r\n";
  return sip;
}

struct ExchangeCase {
  std::string name;
  std::vector<Sip> messages;
  Told told;
};

TEST(Exchanges, AreFoundInTransactions) {
  const Sip ack = inDialog("ACK", 1);
  const Sip ackAnswer = inDialog("ACK", 1, kBody);
  const Sip again = inDialog("INVITE", 2, sdp("- 11 2 IN IP4 192.0.2.1"));
  const Sip update = inDialog("UPDATE", 2, sdp("- 11 2 IN IP4 192.0.2.1"));
  Sip retry = invite();
  retry.cseq = 2;
  retry.branch = "z9hG4bK9";
  const std::vector<ExchangeCase> cases = {
      {"offer and answer", {invite(), reply(invite(), "200", kBody), ack}, {"oa-", {"0>1=200 first"}}},
      {"no answer yet", {invite(), reply(invite(), "180")}, {"o-", {"0>=0 first"}}},
      {"refused", {invite(), reply(invite(), "488"), ack}, {"o--", {"0>=488 first"}}},
      {"refused with what could be", {invite(), reply(invite(), "488", kBody)}, {"os", {"0>=488 first"}}},
      {"early and final answer",
       {invite(), reply(invite(), "183", kBody), reply(invite(), "200", kBody)},
       {"oaa", {"0>2=200 first"}}},
      {"early answer alone",
       {invite(), reply(invite(), "183", kBody), reply(invite(), "200")},
       {"oa-", {"0>1=200 first"}}},
      {"reliable answer",
       {invite(), reliable(invite(), "183", kBody), prack(1), reply(prack(1), "200"),
        reply(invite(), "200", kBody)},
       {"oa--s", {"0>1=200 first"}}},
      {"offer in PRACK",
       {invite(), reliable(invite(), "183", kBody), prack(1, sdp()), reply(prack(1), "200", kBody),
        reply(invite(), "200")},
       {"oaoa-", {"0>1=200 first", "2>3=200"}}},
      {"late offer", {empty(), reply(empty(), "200", kBody), ackAnswer}, {"-oa", {"1>2=200 first"}}},
      {"late offer without answer", {empty(), reply(empty(), "200", kBody), ack}, {"-o-", {"1>=200 first"}}},
      {"late reliable offer",
       {empty(), reliable(empty(), "183", kBody), prack(1, sdp()), reply(prack(1), "200"),
        reply(empty(), "200", kBody), ackAnswer},
       {"-oa-ss", {"1>2=200 first"}}},
      {"body of an unreliable response to no offer",
       {empty(), reply(empty(), "183", kBody), reply(empty(), "200", kBody), ackAnswer},
       {"-soa", {"2>3=200 first"}}},
      {"ACK twice",
       {empty(), reply(empty(), "200", kBody), ackAnswer, ackAnswer},
       {"-oaa", {"1>2=200 first"}}},
      {"INVITE in the dialog",
       {invite(), reply(invite(), "200", kBody), ack, again, reply(again, "200", kBody)},
       {"oa-oa", {"0>1=200 first", "3>4=200"}}},
      {"both at once",
       {invite(), reply(invite(), "200", kBody), ack, again, reply(again, "491")},
       {"oa-o-", {"0>1=200 first", "3>=491"}}},
      {"UPDATE",
       {invite(), reliable(invite(), "183", kBody), update, reply(update, "200", kBody),
        reply(invite(), "200")},
       {"oaoa-", {"0>1=200 first", "2>3=200"}}},
      {"UPDATE refused",
       {invite(), reply(invite(), "200", kBody), update, reply(update, "504")},
       {"oao-", {"0>1=200 first", "2>=504"}}},
      {"with credentials",
       {invite(), reply(invite(), "401"), inDialog("ACK", 1), retry, reply(retry, "200", kBody)},
       {"o--oa", {"0>=401 first", "3>4=200 first"}}},
      {"again after a refusal",
       {invite(), reply(invite(), "500"), inDialog("ACK", 1), retry},
       {"o--o", {"0>=500 first", "3>=0"}}},
      {"forks",
       {invite(), reply(invite(), "183", kBody), reply(invite(), "183", kBody, "u"),
        reply(invite(), "200", kBody, "u")},
       {"oaaa", {"0>1=200 first", "0>3=200 first"}}},
      {"response without its request", {reply(invite(), "200", kBody), ack}, {"s-", {}}},
      {"ACK without its response", {ackAnswer}, {"s", {}}},
      {"INVITE of a dialog from before", {again, reply(again, "200", kBody)}, {"oa", {"0>1=200"}}},
      {"INFO", {invite(), inDialog("INFO", 2, kBody)}, {"os", {"0>=0 first"}}},
      {"offers of both parties",
       {invite(), reply(invite(), "200", kBody),
        Sip{.start = "INVITE",
            .source = kBob,
            .destination = kAlice,
            .body = kBody,
            .branch = "z9hG4bKb",
            .fromTag = "t",
            .toTag = "f"}},
       {"oao", {"0>1=200 first", "2>=0"}}},
  };
  for (const ExchangeCase& one : cases) EXPECT_EQ(toldOf(one.messages), one.told) << one.name;
}

/// A request as a proxy sends it on.
Sip sentOn(Sip sip) {
  sip.source = kProxy;
  sip.destination = kBob;
  sip.branch += "p";
  return sip;
}

TEST(Exchanges, AreOfEachSegment) {
  Sip first = invite();
  first.destination = kProxy;
  const Sip second = sentOn(first);
  EXPECT_EQ(toldOf({first, second, reply(second, "200", kBody), reply(first, "200", kBody)}),
            (Told{"ooaa", {"0>3=200 first", "1>2=200 first"}}));
  // Without branches, parties tell the segments apart.
  Sip bare = first;
  bare.branch.clear();
  Sip bareOn = second;
  bareOn.branch.clear();
  EXPECT_EQ(toldOf({bare, bareOn, reply(bareOn, "200", kBody), reply(bare, "200", kBody)}),
            (Told{"ooaa", {"0>3=200 first", "1>2=200 first"}}));
}

TEST(Exchanges, HaveTheAnswersOfTheirOwnSegment) {
  Sip first = empty();
  first.destination = kProxy;
  const Sip second = sentOn(first);
  Sip ack = inDialog("ACK", 1, kBody);
  ack.destination = kProxy;
  EXPECT_EQ(
      toldOf({first, second, reply(second, "200", kBody), reply(first, "200", kBody), ack, sentOn(ack)}),
      (Told{"--ooaa", {"2>5=200 first", "3>4=200 first"}}));
  // An ACK that passes the proxy by answers what its sender got.
  const Sip direct = inDialog("ACK", 1, kBody);
  EXPECT_EQ(toldOf({first, second, reply(second, "200", kBody), reply(first, "200", kBody), direct}),
            (Told{"--ooa", {"2>=200 first", "3>4=200 first"}}));
}

TEST(Exchanges, EndByTheFirstFinalResponse) {
  const std::vector<Call> calls =
      callsOf({invite(), reply(invite(), "200", kBody), reply(invite(), "486", {}, "u")});
  ASSERT_EQ(calls.at(0).exchanges.size(), 1U);
  EXPECT_EQ(calls[0].exchanges[0].finalStatus, 200);
}

}  // namespace
