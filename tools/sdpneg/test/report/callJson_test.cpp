#include "report/callJson.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdint>
#include <limits>
#include <nlohmann/json.hpp>
#include <set>

#include "calls/media.h"
#include "process.h"
#include "report/bodyDiff.h"
#include "report/exampleCalls.h"
#include "schemaCheck.h"
#include "testFiles.h"

namespace {

using namespace tool;
using nlohmann::json;

/// What is written by a function into a file.
template <typename Write>
std::string written(Write write) {
  const TemporaryFolder folder;
  const std::string name = folder.path("out");
  const int descriptor = ::open(name.c_str(), O_CREAT | O_WRONLY | O_CLOEXEC, 0600);
  Output output(descriptor);
  {
    BufferedOutput out(output);
    write(out);
  }
  ::close(descriptor);
  return readBytes(name);
}

json jsonOf(const Call& call, const CallJsonOptions& options = {}) {
  return json::parse(jsonText(callJson(call, options)));
}

TEST(CallJson, HoldsAllOfACall) {
  made::CallMaker maker(3, 41, made::kMorning);
  const std::string offer = made::audioBody("192.0.2.10", 40000);
  const std::string answer = made::audioBody("203.0.113.20", 31000);
  maker.addLeg("one@a");
  maker.addLeg("two@b", JoinedBy::origin, "o=- 3901 192.0.2.10", 0);
  const std::size_t invite =
      maker.add(0, "192.0.2.10:5060", "[2001:db8::5]:5070", "INVITE sip:b", "INVITE", offer, BodyRole::offer);
  maker.wait(1500001);
  const std::size_t onward =
      maker.add(1, "[2001:db8::5]:5070", "203.0.113.20:5060", "INVITE sip:b", "INVITE", offer, BodyRole::sdp);
  const std::size_t again = maker.addAgain(onward);
  const std::size_t accepted =
      maker.add(0, "[2001:db8::5]:5070", "192.0.2.10:5060", "200 OK", "INVITE", answer, BodyRole::answer);
  maker.call.messages[again].time.reset();
  maker.call.messages[again].transport = Transport::webSocket;
  maker.call.messages[again].isCut = true;
  maker.call.messages[again].body = BodyRole::none;
  maker.call.messages[again].sdpSize = 0;
  maker.addHop(invite, onward);
  maker.addExchange(invite, accepted, 200);
  maker.call.exchanges.push_back({onward, std::nullopt, 0, true});
  maker.addTrouble("one-way", accepted, 17, false, "nobody hears bob");
  maker.addTrouble("t38-refused", again, 0, true, "no fax", 0);
  maker.call.state = CallState::up;
  maker.call.result = 200;
  maker.call.codecs = {"PCMA"};
  maker.call.security = "plain";

  json expected = json::parse(R"json({
    "number": 3, "callIds": ["one@a", "two@b"], "joinedBy": "origin",
    "legs": [{"callId": "one@a", "joinedBy": null, "joinDetail": null, "joinedTo": null},
             {"callId": "two@b", "joinedBy": "origin", "joinDetail": "o=- 3901 192.0.2.10", "joinedTo": "one@a"}],
    "start": "2026-03-09T08:15:00.000000Z", "end": "2026-03-09T08:15:01.500001Z",
    "from": "sip:alice@example.org", "to": "sip:bob@example.net", "result": 200, "state": "up", "givenUp": false,
    "codecs": ["PCMA"], "security": "plain",
    "participants": ["192.0.2.10", "2001:db8::5", "203.0.113.20"], "names": [null, "proxy", null],
    "messages": [
      {"number": 41, "time": "2026-03-09T08:15:00.000000Z", "source": "192.0.2.10:5060",
       "destination": "[2001:db8::5]:5070", "path": [0, 1], "transport": "UDP", "callId": "one@a",
       "first": "INVITE", "method": "INVITE", "cseq": 1, "retransmission": false, "retransmissionOf": null,
       "cut": false, "body": "offer", "text": null},
      {"number": 42, "time": "2026-03-09T08:15:01.500001Z", "source": "[2001:db8::5]:5070",
       "destination": "203.0.113.20:5060", "path": [1, 2], "transport": "UDP", "callId": "two@b",
       "first": "INVITE", "method": "INVITE", "cseq": 1, "retransmission": false, "retransmissionOf": null,
       "cut": false, "body": "sdp", "text": null},
      {"number": 43, "time": null, "source": "[2001:db8::5]:5070",
       "destination": "203.0.113.20:5060", "path": [1, 2], "transport": "WS", "callId": "two@b",
       "first": "INVITE", "method": "INVITE", "cseq": 1, "retransmission": true, "retransmissionOf": 42,
       "cut": true, "body": null, "short": null, "text": null},
      {"number": 44, "time": "2026-03-09T08:15:01.500001Z", "source": "[2001:db8::5]:5070",
       "destination": "192.0.2.10:5060", "path": [1, 0], "transport": "UDP", "callId": "one@a",
       "first": "200", "method": "INVITE", "cseq": 1, "retransmission": false, "retransmissionOf": null,
       "cut": false, "body": "answer", "text": null}],
    "exchanges": [{"offer": 41, "answer": 44, "status": 200}, {"offer": 42, "answer": null, "status": null}],
    "hops": [{"before": 41, "after": 42, "participant": "2001:db8::5", "diff": []}],
    "problems": [
      {"rule": "one-way", "severity": "error", "message": 44, "section": 1, "line": 17, "text": "nobody hears bob"},
      {"rule": "t38-refused", "severity": "warning", "message": 43, "section": 0, "line": null, "text": "no fax"}]
  })json");
  for (const std::size_t with : {invite, onward}) expected["messages"][with]["short"] = shortForm(offer);
  expected["messages"][accepted]["short"] = shortForm(answer);
  EXPECT_EQ(jsonOf(maker.call, {.withTexts = false, .names = {{{"2001:db8::5", "proxy"}}}}), expected);
}

TEST(CallJson, HasNullForWhatIsNotKnown) {
  made::CallMaker maker(1);
  maker.addLeg("one@a");
  maker.add(0, "192.0.2.10:5060", "203.0.113.20:5060", "INVITE sip:b", "INVITE");
  maker.call.start.reset();
  maker.call.end.reset();
  maker.call.from.clear();
  maker.call.to.clear();
  const json call = jsonOf(maker.call);
  for (const char* key : {"joinedBy", "start", "end", "from", "to", "result", "security"}) {
    EXPECT_EQ(call[key], nullptr) << key;
  }
  EXPECT_EQ(call["state"], "ringing");
}

TEST(CallJson, HasTextsWhereTheyAreAskedFor) {
  const Call call = made::plainCall(1, 1, 0).call;
  const json messages = jsonOf(call, {.withTexts = true, .names = {}})["messages"];
  ASSERT_EQ(messages.size(), call.messages.size());
  for (std::size_t i = 0; i < messages.size(); ++i) EXPECT_EQ(messages[i]["text"], call.messages[i].text);
}

TEST(CallJson, HasReplacementCharactersForWhatIsNoText) {
  made::CallMaker maker(1);
  maker.addLeg("a\xFF\xC0z");
  maker.add(0, "192.0.2.10:5060", "203.0.113.20:5060", "INVITE sip:b", "INVITE");
  EXPECT_EQ(jsonOf(maker.call)["callIds"][0], "a\uFFFD\uFFFDz");
}

TEST(CallJson, TellsWhatHopsChangedAsItIsPrinted) {
  const Call call = made::borderCall(1, 1, 0).call;
  const json hops = jsonOf(call)["hops"];
  ASSERT_EQ(hops.size(), 6U);
  const Hop& first = call.hops[0];
  json expected = json::array();
  for (const SectionDiff& part :
       bodyDiff(call.messages[first.before].sdp(), call.messages[first.after].sdp())) {
    expected.push_back({{"section", part.section}, {"lines", part.lines}});
  }
  EXPECT_EQ(hops[0]["diff"], expected);
  EXPECT_EQ(expected.size(), 2U);             // session and audio
  EXPECT_EQ(hops[1]["diff"], json::array());  // of a message without a body
  EXPECT_EQ(hops[2]["diff"], json::array());  // of an answer that it passed on
  EXPECT_EQ(hops[2]["participant"], "198.51.100.5");
}

TEST(CallJson, TellsParticipantsAtOneAddressApartByPorts) {
  made::CallMaker maker(1);
  maker.addLeg("one@a");
  maker.add(0, "127.0.0.1:5060", "127.0.0.1:5080", "INVITE sip:b", "INVITE");
  const json call =
      jsonOf(maker.call, {.withTexts = false, .names = {{{"127.0.0.1", "here"}, {"127.0.0.1:5080", "b"}}}});
  EXPECT_EQ(call["participants"], json({"127.0.0.1:5060", "127.0.0.1:5080"}));
  EXPECT_EQ(call["names"], json({"here", "b"}));
  EXPECT_EQ(call["messages"][0]["path"], json({0, 1}));
}

TEST(IsoTime, HasMicrosecondsOfFourDigitYears) {
  constexpr std::int64_t kSecond = 1000000;
  const struct {
    CaptureTime time;
    std::optional<std::string> text;
  } cases[] = {
      {std::nullopt, std::nullopt},
      {0, "1970-01-01T00:00:00.000000Z"},
      {1, "1970-01-01T00:00:00.000001Z"},
      {-1, "1969-12-31T23:59:59.999999Z"},
      {951782400 * kSecond, "2000-02-29T00:00:00.000000Z"},
      {253402300799 * kSecond + 999999, "9999-12-31T23:59:59.999999Z"},
      {253402300800 * kSecond, std::nullopt},
      {-62167219200 * kSecond, "0000-01-01T00:00:00.000000Z"},
      {-62167219200 * kSecond - 1, std::nullopt},
      {std::numeric_limits<std::int64_t>::max(), std::nullopt},
      {std::numeric_limits<std::int64_t>::min(), std::nullopt},
  };
  for (const auto& each : cases) EXPECT_EQ(isoTime(each.time), each.text) << each.time.value_or(0);
}

TEST(CallsJson, HasTotalsBehindTheCalls) {
  const auto empty = [](BufferedOutput& out) {
    CallsJson(out, {}).end({.messages = 7, .retransmissions = 2, .otherMessages = 1});
  };
  EXPECT_EQ(written(empty), R"json({
  "format": 1,
  "calls": [],
  "messages": 7,
  "retransmissions": 2,
  "otherMessages": 1
}
)json");
}

TEST(CallsJson, HasEachCallAsItIs) {
  const Call first = made::plainCall(1, 1, 0).call;
  const Call second = made::borderCall(2, 5, 0).call;
  const json document = json::parse(written([&](BufferedOutput& out) {
    CallsJson calls(out, {});
    calls.add(first);
    calls.add(second);
    calls.end({.messages = 18, .retransmissions = 1, .otherMessages = 0});
  }));
  EXPECT_EQ(document["calls"], json({jsonOf(first), jsonOf(second)}));
  EXPECT_EQ(document["messages"], 18);
  EXPECT_EQ(document["retransmissions"], 1);
}

const std::string schemaFile = SDPNEG_SOURCE_DIR "/data/calls.schema.json";

/// Goes through all objects that a schema describes by their properties.
template <typename Visit>
void forEachObject(const json& node, Visit visit) {
  if (node.is_object() && node.contains("properties") && node.contains("required")) visit(node);
  if (!node.is_structured()) return;
  for (const json& child : node) forEachObject(child, visit);
}

TEST(CallsSchema, LeavesNoKeyOpen) {
  int objects = 0;
  forEachObject(json::parse(readBytes(schemaFile)), [&objects](const json& object) {
    ++objects;
    EXPECT_EQ(object["additionalProperties"], false) << object;
    std::set<std::string> keys;
    for (const auto& [key, property] : object["properties"].items()) keys.insert(key);
    EXPECT_EQ(object["required"].get<std::set<std::string>>(), keys);
  });
  EXPECT_EQ(objects, 8);  // the document, calls, legs, messages, exchanges, hops, their diffs, problems
}

class CallsSchemaCheck : public SchemaCheck {};

json exampleDocument(bool withTexts) {
  return json::parse(written([&](BufferedOutput& out) {
    CallsJson calls(out, {.withTexts = withTexts, .names = {{{"192.0.2.10", "phone"}}}});
    calls.add(made::borderCall(1, 1, made::kMorning).call);
    calls.add(made::plainCall(2, 15, made::kMorning).call);
    for (const CallState state : {CallState::ringing, CallState::failed, CallState::cancelled}) {
      calls.add(made::shortCall(3, 19, made::kMorning, state).call);
    }
    made::CallMaker unknown(4);
    unknown.addLeg("");
    unknown.add(0, "", "", "INVITE sip:b", "INVITE");
    unknown.call.start = unknown.call.end = unknown.call.messages[0].time = std::nullopt;
    calls.add(unknown.call);
    calls.end({.messages = 40, .retransmissions = 1, .otherMessages = 3});
  }));
}

TEST_F(CallsSchemaCheck, FindsNothingInTheOutput) {
  const json documents = json::array({exampleDocument(true), exampleDocument(false)});
  EXPECT_EQ(documents[0]["calls"].size(), 6U);
  EXPECT_EQ(mistakesIn(schemaFile, documents), (std::vector<int>{0, 0})) << errors();
}

TEST_F(CallsSchemaCheck, FindsWhatIsWrong) {
  const json document = exampleDocument(true);
  const struct {
    const char* place;
    json value;
  } cases[] = {{"/format", 2},
               {"/more", 1},
               {"/messages", -1},
               {"/calls/0/number", 0},
               {"/calls/0/start", "2026-03-09 08:15:00"},
               {"/calls/0/joinedBy", ""},
               {"/calls/0/legs", json::array()},
               {"/calls/0/legs/1/joinedBy", "luck"},
               {"/calls/0/state", "busy"},
               {"/calls/0/result", "200"},
               {"/calls/0/result", 180},
               {"/calls/0/codecs", "PCMA"},
               {"/calls/0/messages/0/path", json::array({0})},
               {"/calls/0/messages/0/first", 200},
               {"/calls/0/messages/0/body", "proposal"},
               {"/calls/0/messages/0/transport", "TLS"},
               {"/calls/0/messages/0/number", 0},
               {"/calls/0/exchanges/0/status", "200"},
               {"/calls/0/hops/0/diff/0/section", ""},
               {"/calls/0/hops/0/participant", nullptr},
               {"/calls/0/problems/0/severity", "bad"},
               {"/calls/0/problems/0/line", 0}};
  json documents = json::array();
  for (const auto& each : cases) {
    documents.push_back(document);
    documents.back()[json::json_pointer(each.place)] = each.value;
  }
  const std::vector<int> mistakes = mistakesIn(schemaFile, documents);
  ASSERT_EQ(mistakes.size(), documents.size());
  for (std::size_t i = 0; i < std::size(cases); ++i) EXPECT_NE(mistakes[i], 0) << cases[i].place;
}

}  // namespace
