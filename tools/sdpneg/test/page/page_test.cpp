#include "page/page.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <nlohmann/json.hpp>

#include "process.h"
#include "report/exampleCalls.h"
#include "testFiles.h"

namespace {

using namespace tool;
using nlohmann::json;

std::string pageOf(const std::vector<Call>& calls, const PageSummary& summary = {}, const Names& names = {}) {
  const TemporaryFolder folder;
  const std::string name = folder.path("page.html");
  const int descriptor = ::open(name.c_str(), O_CREAT | O_WRONLY | O_CLOEXEC, 0600);
  Output output(descriptor);
  {
    BufferedOutput out(output);
    Page page(out, names);
    for (const Call& call : calls) page.add(call);
    page.end(summary);
  }
  ::close(descriptor);
  return readBytes(name);
}

std::size_t countOf(std::string_view text, std::string_view piece) {
  std::size_t count = 0;
  for (std::size_t at = text.find(piece); at != std::string_view::npos; at = text.find(piece, at + 1))
    ++count;
  return count;
}

/// What stands in the script element with this attribute, as the page's script reads it.
json scriptIn(std::string_view page, const std::string& attribute) {
  const std::string tag = "<script type=\"application/json\" " + attribute + ">";
  const std::size_t begin = page.find(tag) + tag.size();
  return json::parse(page.substr(begin, page.find("</script>", begin) - begin));
}

TEST(ScriptJson, HasNothingThatAnHtmlReaderKnows) {
  using namespace std::string_literals;
  const struct {
    std::string text;
    std::string written;
  } cases[] = {
      {"", "\"\""},
      {"</script><script>", R"("\u003c/script\u003e\u003cscript\u003e")"},
      {"<!--", R"("\u003c!--")"},
      {"-->]]>", R"("--\u003e]]\u003e")"},
      {"&lt;", R"("\u0026lt;")"},
      {"\u2028a\u2029", R"("\u2028a\u2029")"},
      {"\u2027\u202a\u20ac", "\"\u2027\u202a\u20ac\""},
      {"\0\x1f\n\"\\"s, R"("\u0000\u001f\n\"\\")"},
      {"\xff<\xe2\x80", "\"\uFFFD\\u003c\uFFFD\""},
      {"\xe2", "\"\uFFFD\""},
  };
  for (const auto& each : cases) EXPECT_EQ(scriptJson(each.text), each.written) << each.text;
}

TEST(ScriptJson, EscapesKeysAsValues) {
  EXPECT_EQ(scriptJson({{"<", {"&", nullptr, 3}}}), R"({"\u003c":["\u0026",null,3]})");
}

TEST(Page, HasTheWholeOfEachCall) {
  const Call call = made::borderCall(1, 1, made::kMorning).call;
  const Names names = {{{"192.0.2.10", "phone"}}};
  const std::string page = pageOf({call}, {}, names);
  EXPECT_EQ(scriptIn(page, "id=\"call-1\""),
            json::parse(jsonText(callJson(call, {.withTexts = true, .names = names}))));
}

TEST(Page, HasARowOfWhatTheListShows) {
  const json row = scriptIn(pageOf({made::borderCall(1, 1, made::kMorning).call}), "class=\"call-summary\"");
  EXPECT_EQ(row, json::parse(R"json({
    "number": 1, "start": "2026-03-09T08:15:00.000000Z", "end": "2026-03-09T08:15:25.037250Z",
    "from": "sip:alice@example.org", "to": "sip:bob@example.net", "state": "ended", "result": 200,
    "security": "plain", "joinedBy": "call-id-header", "codecs": ["PCMA"],
    "callIds": ["a84b4c76e66710-1@192.0.2.10", "77c1f0d2-1@198.51.100.5"],
    "participants": ["192.0.2.10", "198.51.100.5", "203.0.113.20"], "names": [null, null, null], "messages": 14,
    "problems": [
      {"rule": "private-address", "severity": "error",
       "text": "10.20.0.5 is offered to 203.0.113.20, which does not reach it"},
      {"rule": "hop-lost-keys", "severity": "error", "text": "198.51.100.5 took the keys of the audio section away"},
      {"rule": "one-way", "severity": "warning", "text": "audio goes to 203.0.113.20 only"}]})json"));
}

TEST(Page, HasShortListsInTheRowsOfEndlessCalls) {
  made::CallMaker maker = made::plainCall(1, 1, 0);
  for (int i = 0; i < 300; ++i) maker.addTrouble("one-way", 0, 0, true, "again");
  const json row = scriptIn(pageOf({maker.call}), "class=\"call-summary\"");
  EXPECT_EQ(row["problems"].size(), 100U);
}

TEST(Page, EndsWithWhatIsKnownOfAllCalls) {
  const json summary =
      scriptIn(pageOf({}, {.title = "a.pcap",
                           .totals = {.messages = 3, .retransmissions = 2, .otherMessages = 1},
                           .notes = {"1 packet"},
                           .rules = {{"one-way", "Media goes one way."}}}),
               "id=\"summary\"");
  EXPECT_EQ(summary,
            json::parse(R"json({"messages": 3, "retransmissions": 2, "otherMessages": 1, "title": "a.pcap",
                                         "notes": ["1 packet"], "rules": {"one-way": "Media goes one way."}})json"));
}

TEST(Page, HasNoElementOfACapture) {
  const std::string hostile = "</script></title><script>alert(1)</script><!--<img src=x onerror=alert(1)>";
  Call call = made::borderCall(1, 1, 0).call;
  call.from = call.to = call.security = hostile;
  call.codecs = {hostile};
  for (Leg& leg : call.legs) leg.callId = leg.joinDetail = hostile;
  for (CallMessage& message : call.messages) {
    message.method = hostile;
    message.text += hostile;
    if (message.sdpSize != 0) message.sdpSize += hostile.size();
  }
  for (Trouble& trouble : call.troubles) trouble.rule = trouble.text = hostile;
  const PageSummary summary = {
      .title = hostile, .totals = {}, .notes = {hostile}, .rules = {{hostile, hostile}}};
  const std::string page = pageOf({call}, summary, {{{"192.0.2.10", hostile}}});
  const std::string harmless = pageOf({made::borderCall(1, 1, 0).call});
  for (const char* piece : {"<script", "</script", "<!--", "<img", "</title"}) {
    EXPECT_EQ(countOf(page, piece), countOf(harmless, piece)) << piece;
  }
  EXPECT_EQ(countOf(harmless, "<script"),
            4U);  // of the row, of the call, of the summary, and the script itself
}

TEST(Page, LeadsNowhereElse) {
  const std::string page = pageOf({});
  EXPECT_EQ(countOf(page, "default-src 'none'"), 1U);
  for (const char* piece : {"src=", "url(", "@import", "innerHTML", "eval(", "fetch(", "XMLHttpRequest"}) {
    EXPECT_EQ(countOf(page, piece), 0U) << piece;
  }
  // The only address is the name of SVG's elements, which nobody asks for.
  EXPECT_EQ(countOf(page, "://"), 1U);
  EXPECT_EQ(countOf(page, "http://www.w3.org/2000/svg"), 1U);
}

}  // namespace
