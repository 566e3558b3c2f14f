#include <gtest/gtest.h>

#include <algorithm>
#include <nlohmann/json.hpp>
#include <sstream>

#include "process.h"
#include "schemaCheck.h"
#include "testFiles.h"

// `sdpneg check-answer`: its lines, its JSON and the schema of that.

namespace {

using nlohmann::json;

const std::string schemaFile = SDPNEG_SOURCE_DIR "/data/check-answer.schema.json";
const std::string offer =
    "v=0\r\nc=IN IP4 192.0.2.1\r\nm=audio 4000 RTP/AVP 0\r\na=sendonly\r\nm=video 4002 RTP/AVP 34\r\n";
const std::string good =
    "v=0\r\nc=IN IP4 192.0.2.2\r\nm=audio 5000 RTP/AVP 0\r\na=recvonly\r\nm=video 0 RTP/AVP 34\r\n";
const std::string bad =
    "v=0\r\nc=IN IP4 192.0.2.2\r\na=ice-lite\r\nm=audio 5000 RTP/AVP 0 8\r\nm=\x1b[2J\xff 0 RTP/AVP 34\r\n";

class CheckAnswer : public testing::Test {
 protected:
  Outcome check(std::vector<std::string> options, const std::string& answer) const {
    options.insert(options.begin(), "check-answer");
    options.push_back(folder_.write("offer.sdp", offer));
    options.push_back(folder_.write("answer.sdp", answer));
    return runSdpneg(options);
  }

  TemporaryFolder folder_;
};

TEST_F(CheckAnswer, SaysNothingOfAGoodAnswer) {
  const Outcome outcome = check({}, good);
  EXPECT_EQ(outcome.out, "");
  EXPECT_EQ(outcome.err, "");
  EXPECT_EQ(outcome.status, 0);
  const Outcome asJson = check({"--json"}, good);
  EXPECT_EQ(asJson.out, "{\n  \"format\": 1,\n  \"findings\": []\n}\n");
  EXPECT_EQ(asJson.status, 0);
}

TEST_F(CheckAnswer, ListsWhatIsWrongALineEach) {
  const Outcome outcome = check({}, bad);
  EXPECT_EQ(outcome.out,
            "0: ice-not-offered: ice-lite in the session, and no section was offered with ICE\n"
            "1: direction: sendrecv answers sendonly\n"
            "1: codec-not-offered: 8 PCMA/8000 was not offered\n"
            "2: section-media: \\x1b[2J\\xff answers video\n");
  EXPECT_EQ(outcome.err, "");
  EXPECT_EQ(outcome.status, 1);
}

TEST_F(CheckAnswer, TellsWhenThereIsMoreThanItLists) {
  std::string answer =
      "v=0\r\nc=IN IP4 192.0.2.2\r\nm=audio 5000 RTP/AVP 0\r\na=recvonly\r\nm=video 0 RTP/AVP 34\r\n";
  std::string extensions;
  for (int n = 0; n < 2000; ++n)
    extensions += "a=extmap:" + std::to_string(n + 1) + " urn:x:" + std::to_string(n) + "\r\n";
  answer.insert(answer.find("m=video"), extensions);
  const Outcome outcome = check({}, answer);
  EXPECT_EQ(std::count(outcome.out.begin(), outcome.out.end(), '\n'), 1000);
  EXPECT_EQ(outcome.err, "sdpneg: there are more findings than these\n");
  EXPECT_EQ(outcome.status, 1);
}

TEST_F(CheckAnswer, WritesTheSameAsJson) {
  const Outcome outcome = check({"--json"}, bad);
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(json::parse(outcome.out), json::parse(R"json({"format": 1, "findings": [
    {"section": 0, "rule": "ice-not-offered", "severity": "error",
     "text": "ice-lite in the session, and no section was offered with ICE"},
    {"section": 1, "rule": "direction", "severity": "error", "text": "sendrecv answers sendonly"},
    {"section": 1, "rule": "codec-not-offered", "severity": "warning", "text": "8 PCMA/8000 was not offered"},
    {"section": 2, "rule": "section-media", "severity": "error", "text": "\\x1b[2J\\xff answers video"}]})json"));
}

TEST_F(CheckAnswer, TakesStandardInputAndMessages) {
  const std::string file = folder_.write("offer.sdp", offer);
  EXPECT_EQ(runSdpneg({"check-answer", file, "-"}, {.input = good}).status, 0);
  const std::string message =
      "SIP/2.0 200 OK\r\nContent-Type: application/sdp\r\nContent-Length: " + std::to_string(good.size()) +
      "\r\n\r\n" + good;
  EXPECT_EQ(runSdpneg({"check-answer", file, "-"}, {.input = message}).status, 0);
  EXPECT_EQ(runSdpneg({"check-answer", file, "-"}, {.input = bad}).status, 1);
}

TEST_F(CheckAnswer, RefusesWrongArguments) {
  for (const std::vector<std::string>& words : {std::vector<std::string>{"check-answer"},
                                                {"check-answer", "a"},
                                                {"check-answer", "a", "b", "c"},
                                                {"check-answer", "-", "-"},
                                                {"check-answer", "--what", "a", "b"}}) {
    const Outcome outcome = runSdpneg(words);
    EXPECT_EQ(outcome.status, 64);
    EXPECT_EQ(outcome.out, "");
  }
}

TEST_F(CheckAnswer, TellsInputsThatCannotBeRead) {
  const Outcome outcome =
      runSdpneg({"check-answer", "--json", folder_.path("none"), folder_.write("offer.sdp", offer)});
  EXPECT_EQ(outcome.status, 2);
  EXPECT_EQ(outcome.out, "");
  EXPECT_EQ(outcome.err, "sdpneg: " + folder_.path("none") + ": cannot be read: No such file or directory\n");
}

class CheckAnswerSchema : public SchemaCheck {};

json documentOf(const std::string& answer) {
  const TemporaryFolder folder;
  return json::parse(
      runSdpneg({"check-answer", "--json", folder.write("offer.sdp", offer), "-"}, {.input = answer}).out);
}

TEST_F(CheckAnswerSchema, FindsNothingInTheOutput) {
  EXPECT_EQ(mistakesIn(schemaFile, json::array({documentOf(good), documentOf(bad), documentOf("")})),
            (std::vector<int>{0, 0, 0}))
      << errors();
}

TEST_F(CheckAnswerSchema, FindsWhatIsWrong) {
  const json document = documentOf(bad);
  const struct {
    const char* place;
    json value;
  } cases[] = {{"/format", 2},
               {"/more", 1},
               {"/findings", nullptr},
               {"/findings/0/section", -1},
               {"/findings/0/rule", "no-such-rule"},
               {"/findings/0/severity", "bad"},
               {"/findings/0/text", ""},
               {"/findings/0/line", 1}};
  json documents = json::array();
  for (const auto& each : cases) {
    documents.push_back(document);
    documents.back()[json::json_pointer(each.place)] = each.value;
  }
  documents.push_back(document);
  documents.back()["findings"][0].erase("rule");
  const std::vector<int> mistakes = mistakesIn(schemaFile, documents);
  ASSERT_EQ(mistakes.size(), documents.size());
  for (std::size_t i = 0; i < std::size(cases); ++i) EXPECT_NE(mistakes[i], 0) << cases[i].place;
  EXPECT_NE(mistakes.back(), 0);
}

TEST(CheckAnswerRules, OfTheSchemaAreThoseOfTheLibrary) {
  const json schema = json::parse(readBytes(schemaFile));
  const std::string names =
      readBytes(SDPNEG_SOURCE_DIR "/../../parsers/sdp_offer_answer/src/judge/rules.cpp");
  std::size_t at = 0;
  for (const json& rule : schema["definitions"]["finding"]["properties"]["rule"]["enum"]) {
    at = names.find("{\"" + rule.get<std::string>() + "\", ", at);
    ASSERT_NE(at, std::string::npos) << rule;
  }
  EXPECT_EQ(schema["definitions"]["finding"]["properties"]["rule"]["enum"].size(), 39U);
  EXPECT_EQ(names.find("{\"", at + 1), std::string::npos);
}

TEST(CheckAnswerRules, StandOnThePageInTheirOrderWithTheirSeverity) {
  const std::string page = readBytes(SDPNEG_SOURCE_DIR "/../../docs/offer-answer.md");
  const std::size_t begin = page.find("\n## The judge\n");
  ASSERT_NE(begin, std::string::npos);
  std::istringstream lines(page.substr(begin, page.find("\n## The dialog\n", begin) - begin));
  std::vector<std::string> shown;
  for (std::string line; std::getline(lines, line);) {
    if (!line.starts_with("| `")) continue;
    const bool isWarning = line.find(" | warning | ") != std::string::npos;
    EXPECT_NE(isWarning, line.find(" | error | ") != std::string::npos) << line;
    shown.push_back(line.substr(3, line.find('`', 3) - 3) + (isWarning ? ": warning" : ""));
  }
  std::vector<std::string> rules;
  const json schema = json::parse(readBytes(schemaFile));
  for (const std::string rule : schema["definitions"]["finding"]["properties"]["rule"]["enum"]) {
    const bool isWarning = rule == "codec-not-offered" || rule == "payload-reserved";
    rules.push_back(rule + (isWarning ? ": warning" : ""));
  }
  EXPECT_EQ(shown, rules);
}

}  // namespace
