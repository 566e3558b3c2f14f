// Any text's messages as calls: each message is of one call or of none, and what is told of a call holds.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <set>

#include "calls/callTable.h"
#include "captureChecks.h"
#include "captures/textExport.h"

namespace {

using fuzzing::require;
using tool::BodyRole;
using tool::Call;
using tool::CallMessage;

void checkMessages(const Call& call) {
  tool::CaptureTime last;
  for (std::size_t index = 0; index < call.messages.size(); ++index) {
    const CallMessage& message = call.messages[index];
    require(message.leg < call.legs.size(), "a message is of no leg");
    require(!message.time || !last || *last <= *message.time, "messages are not in the order of time");
    if (message.time) last = message.time;
    require(
        message.sdpBegin <= message.text.size() && message.sdpSize <= message.text.size() - message.sdpBegin,
        "SDP is not of its message");
    require((message.sdpSize == 0) == (message.body == BodyRole::none), "a role is of no body");
    if (message.exchange) {
      require(*message.exchange < call.exchanges.size(), "a message is of no exchange");
      require(message.body == BodyRole::offer || message.body == BodyRole::answer,
              "an exchange has another body");
    }
    if (!message.retransmissionOf) continue;
    require(*message.retransmissionOf < index, "a message repeats a later one");
    const CallMessage& first = call.messages[*message.retransmissionOf];
    require(!first.retransmissionOf, "a message repeats a repetition");
    require(first.leg == message.leg && first.first() == message.first() && first.cseq == message.cseq,
            "a message repeats another one");
  }
}

void checkLegs(const Call& call) {
  require(!call.legs.empty(), "a call has no leg");
  std::size_t seen = 0;
  for (const CallMessage& message : call.messages) {
    require(message.leg <= seen, "legs are not in their order");
    if (message.leg == seen) ++seen;
  }
  require(seen == call.legs.size(), "a leg has no message");
  for (std::size_t index = 0; index < call.legs.size(); ++index) {
    const tool::Leg& leg = call.legs[index];
    require((index == 0) == (leg.joinedBy == tool::JoinedBy::first), "a leg was joined by nothing");
    std::size_t at = index;
    for (std::size_t steps = 0; steps < call.legs.size() && at != 0; ++steps) at = call.legs.at(at).joinedTo;
    require(at == 0, "a leg does not lead to the first one");
  }
}

void checkExchanges(const Call& call) {
  for (std::size_t index = 0; index < call.exchanges.size(); ++index) {
    const tool::Exchange& exchange = call.exchanges[index];
    require(call.messages.at(exchange.offer).body == BodyRole::offer, "an exchange has no offer");
    require(exchange.finalStatus == 0 || exchange.finalStatus >= 200, "a status is not final");
    if (!exchange.answer) continue;
    require(*exchange.answer > exchange.offer, "an answer comes before its offer");
    const CallMessage& answer = call.messages.at(*exchange.answer);
    require(answer.body == BodyRole::answer && answer.exchange == index, "an answer is of another exchange");
  }
}

void checkHops(const Call& call) {
  std::set<std::size_t> afters;
  for (const tool::Hop& hop : call.hops) {
    require(hop.before < hop.after && hop.after < call.messages.size(), "a hop goes back");
    require(afters.insert(hop.after).second, "a message comes of two");
    const CallMessage& before = call.messages[hop.before];
    const CallMessage& after = call.messages[hop.after];
    require(before.sdpSize != 0, "a hop has no body");
    require(before.method == after.method && before.status / 100 == after.status / 100,
            "a hop changes the kind");
    require(before.leg != after.leg || before.flow != after.flow, "a hop goes nowhere");
  }
}

/// Gathers the calls of a text, and checks each.
struct Checked {
  std::set<std::size_t> messages;
  std::set<std::size_t> calls;

  void take(const Call& call) {
    require(calls.insert(call.number).second, "two calls have one number");
    require(!call.messages.empty(), "a call has no messages");
    for (const CallMessage& message : call.messages) {
      require(messages.insert(message.number).second, "a message is of two calls");
    }
    checkMessages(call);
    checkLegs(call);
    checkExchanges(call);
    checkHops(call);
    require(call.start.has_value() == call.end.has_value() && (!call.start || *call.start <= *call.end),
            "a call ends before it begins");
  }
};

void check(std::string_view text, tool::CallOptions options) {
  Checked checked;
  tool::CallTable table(std::move(options), [&](const Call& call) { checked.take(call); });
  tool::CaptureOutput output([&](const tool::CapturedMessage& message) { table.take(message); });
  tool::TextExport reader(output);
  reader.take(text);
  reader.flush();
  table.finish();
  require(table.openCalls() == 0, "calls stay open");
  require(table.messages() == output.messages(), "a message was not counted");
  require(checked.messages.size() + table.otherMessages() == table.messages(), "a message got lost");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  check(text, {.joinHeaders = {"X-Join", "Subject"}});
  check(text, {.joinHeaders = {}, .mostOpenCalls = 2, .mostOpenBytes = 8000});
  return 0;
}
