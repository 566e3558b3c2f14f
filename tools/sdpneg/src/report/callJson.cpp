#include "report/callJson.h"

#include <array>
#include <chrono>
#include <utility>
#include <vector>

#include "calls/media.h"
#include "report/bodyDiff.h"

namespace tool {
namespace {

std::string_view textOf(BodyRole role) {
  constexpr std::array<std::string_view, 4> kNames = {"", "offer", "answer", "sdp"};
  return kNames[static_cast<std::size_t>(role)];
}

/// A decimal number with zeros in front of it.
std::string padded(std::int64_t number, std::size_t digits) {
  std::string text = std::to_string(number);
  if (text.size() < digits) text.insert(0, digits - text.size(), '0');
  return text;
}

Json orNullNumber(int number) { return number == 0 ? Json(nullptr) : Json(number); }

Json numberOf(const Call& call, const std::optional<std::size_t>& message) {
  return message ? Json(call.messages[*message].number) : Json(nullptr);
}

Json callIdsJson(const Call& call) {
  Json list = Json::array();
  for (const Leg& leg : call.legs) list.push_back(leg.callId);
  return list;
}

Json legsJson(const Call& call) {
  Json list = Json::array();
  for (const Leg& leg : call.legs) {
    const bool isJoined = leg.joinedBy != JoinedBy::first;
    list.push_back({{"callId", leg.callId},
                    {"joinedBy", orNull(textOf(leg.joinedBy))},
                    {"joinDetail", orNull(leg.joinDetail)},
                    {"joinedTo", isJoined ? Json(call.legs[leg.joinedTo].callId) : Json(nullptr)}});
  }
  return list;
}

Json messageJson(const Call& call, const CallMessage& message, const Participants& participants,
                 bool withText) {
  const Flow& flow = message.flow;
  return {{"number", message.number},
          {"time", orNull(isoTime(message.time))},
          {"source", flow.source.text()},
          {"destination", flow.destination.text()},
          {"path", {participants.indexOf(flow.source), participants.indexOf(flow.destination)}},
          {"transport", textOf(message.transport)},
          {"callId", call.legs[message.leg].callId},
          {"first", message.first()},
          {"method", message.method},
          {"cseq", message.cseq},
          {"retransmission", message.retransmissionOf.has_value()},
          {"retransmissionOf", numberOf(call, message.retransmissionOf)},
          {"cut", message.isCut},
          {"body", orNull(textOf(message.body))},
          {"short", message.sdpSize == 0 ? Json(nullptr) : Json(shortForm(message.sdp()))},
          {"text", withText ? Json(message.text) : Json(nullptr)}};
}

Json exchangesJson(const Call& call) {
  Json list = Json::array();
  for (const Exchange& exchange : call.exchanges) {
    list.push_back({{"offer", call.messages[exchange.offer].number},
                    {"answer", numberOf(call, exchange.answer)},
                    {"status", orNullNumber(exchange.finalStatus)}});
  }
  return list;
}

Json hopJson(const Call& call, const Hop& hop, const std::vector<std::string>& participants,
             const Participants& ends) {
  const CallMessage& before = call.messages[hop.before];
  const CallMessage& after = call.messages[hop.after];
  Json diff = Json::array();
  if (before.sdpSize != 0 || after.sdpSize != 0) {
    for (const SectionDiff& section : bodyDiff(before.sdp(), after.sdp())) {
      diff.push_back({{"section", section.section}, {"lines", section.lines}});
    }
  }
  return {{"before", before.number},
          {"after", after.number},
          {"participant", participants[ends.indexOf(after.flow.source)]},
          {"diff", std::move(diff)}};
}

Json problemJson(const Call& call, const Trouble& trouble) {
  return {{"rule", trouble.rule},
          {"severity", trouble.isWarning ? "warning" : "error"},
          {"message", call.messages[trouble.message].number},
          {"section", trouble.section},
          {"line", trouble.line == 0 ? Json(nullptr) : Json(trouble.line)},
          {"text", trouble.text}};
}

/// What is told of a call besides its lists of objects.
Json headJson(const Call& call) {
  return {{"number", call.number},
          {"callIds", callIdsJson(call)},
          {"joinedBy", orNull(joinsOf(call))},
          {"legs", legsJson(call)},
          {"start", orNull(isoTime(call.start))},
          {"end", orNull(isoTime(call.end))},
          {"from", orNull(call.from)},
          {"to", orNull(call.to)},
          {"result", orNullNumber(call.result)},
          {"state", textOf(call.state)},
          {"givenUp", call.isGivenUp},
          {"codecs", call.codecs},
          {"security", orNull(call.security)}};
}

}  // namespace

Json totalsJson(const CallTotals& totals) {
  return {{"messages", totals.messages},
          {"retransmissions", totals.retransmissions},
          {"otherMessages", totals.otherMessages}};
}

std::optional<std::string> isoTime(CaptureTime time) {
  namespace chrono = std::chrono;
  constexpr auto kFirst = chrono::sys_days(chrono::year(0) / 1 / 1);
  constexpr auto kBehind = chrono::sys_days(chrono::year(10000) / 1 / 1);
  if (!time) return std::nullopt;
  const chrono::sys_time<chrono::microseconds> point{chrono::microseconds(*time)};
  if (point < kFirst || point >= kBehind) return std::nullopt;
  const auto day = chrono::floor<chrono::days>(point);
  const chrono::year_month_day date(day);
  const chrono::hh_mm_ss clock(point - day);
  return padded(static_cast<int>(date.year()), 4) + "-" + padded(static_cast<unsigned>(date.month()), 2) +
         "-" + padded(static_cast<unsigned>(date.day()), 2) + "T" + padded(clock.hours().count(), 2) + ":" +
         padded(clock.minutes().count(), 2) + ":" + padded(clock.seconds().count(), 2) + "." +
         padded(clock.subseconds().count(), 6) + "Z";
}

Json callJson(const Call& call, const CallJsonOptions& options) {
  const Participants ends(call);
  std::vector<std::string> participants;
  Json names = Json::array();
  for (std::size_t i = 0; i < ends.size(); ++i) {
    participants.push_back(ends.at(i).text());
    names.push_back(orNull(options.names.of(ends.at(i))));
  }
  Json messages = Json::array();
  for (const CallMessage& message : call.messages) {
    messages.push_back(messageJson(call, message, ends, options.withTexts));
  }
  Json hops = Json::array();
  for (const Hop& hop : call.hops) hops.push_back(hopJson(call, hop, participants, ends));
  Json problems = Json::array();
  for (const Trouble& trouble : call.troubles) problems.push_back(problemJson(call, trouble));

  Json json = headJson(call);
  json["participants"] = std::move(participants);
  json["names"] = std::move(names);
  json["messages"] = std::move(messages);
  json["exchanges"] = exchangesJson(call);
  json["hops"] = std::move(hops);
  json["problems"] = std::move(problems);
  return json;
}

CallsJson::CallsJson(BufferedOutput& out, CallJsonOptions options)
    : out_(out), options_(std::move(options)), list_(out, {{"format", 1}, {"calls", Json::array()}}, "") {}

void CallsJson::add(const Call& call) {
  const std::string by = list_.begin();
  out_.write(indented(jsonText(callJson(call, options_)), by));
}

void CallsJson::end(const CallTotals& totals) {
  list_.end(totalsJson(totals));
  out_.write("\n");
}

}  // namespace tool
