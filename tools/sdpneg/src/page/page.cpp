#include "page/page.h"

#include <array>
#include <utility>

#include "page/pageParts.h"

namespace tool {
namespace {

/// Of a list that is searched what is enough for most calls.
constexpr std::size_t kMostSearched = 100;

Json firstOf(const Json& list) {
  Json first = Json::array();
  for (const Json& each : list) {
    if (first.size() == kMostSearched) break;
    first.push_back(each);
  }
  return first;
}

/// What the list of calls shows of a call, and what it is searched by.
Json rowJson(const Call& call, const Json& whole) {
  Json row = Json::object();
  for (const char* key :
       {"number", "start", "end", "from", "to", "state", "result", "security", "joinedBy"}) {
    row[key] = whole[key];
  }
  for (const char* key : {"codecs", "callIds", "participants", "names"}) row[key] = firstOf(whole[key]);
  row["messages"] = call.messages.size();
  Json problems = Json::array();
  for (const Json& problem : firstOf(whole["problems"])) {
    problems.push_back(
        {{"rule", problem["rule"]}, {"severity", problem["severity"]}, {"text", problem["text"]}});
  }
  row["problems"] = std::move(problems);
  return row;
}

/// What stands for the character of a JSON text that begins at a place; empty where it may stand there itself.
std::string_view escapeAt(std::string_view text, std::size_t at) {
  constexpr std::array<std::pair<std::string_view, std::string_view>, 5> kEscapes = {
      {{"<", "\\u003c"}, {">", "\\u003e"}, {"&", "\\u0026"}, {"\u2028", "\\u2028"}, {"\u2029", "\\u2029"}}};
  for (const auto& [character, escape] : kEscapes) {
    if (text.substr(at, character.size()) == character) return escape;
  }
  return {};
}

}  // namespace

std::string scriptJson(const Json& json) {
  constexpr std::string_view kBegins = "<>&\xE2";  // the last is the first byte of line ends
  constexpr std::size_t kLineEndSize = 3;
  const std::string text = json.dump(-1, ' ', false, Json::error_handler_t::replace);
  std::string escaped;
  escaped.reserve(text.size());
  std::size_t done = 0;
  for (std::size_t at = text.find_first_of(kBegins); at != std::string::npos;) {
    std::size_t next = at + 1;
    if (const std::string_view escape = escapeAt(text, at); !escape.empty()) {
      escaped.append(text, done, at - done);
      escaped += escape;
      next = done = at + (text[at] == '\xE2' ? kLineEndSize : 1);
    }
    at = text.find_first_of(kBegins, next);
  }
  escaped.append(text, done);
  return escaped;
}

Page::Page(BufferedOutput& out, Names names)
    : out_(out), options_{.withTexts = true, .names = std::move(names)} {
  for (const std::string_view piece : pageBegin()) out_.write(piece);
}

void Page::writeScript(std::string_view attributes, const Json& json) {
  out_.write("<script type=\"application/json\" ");
  out_.write(attributes);
  out_.write(">");
  out_.write(scriptJson(json));
  out_.write("</script>\n");
}

void Page::add(const Call& call) {
  const Json json = callJson(call, options_);
  writeScript("class=\"call-summary\"", rowJson(call, json));
  writeScript("id=\"call-" + std::to_string(call.number) + "\"", json);
}

void Page::end(const PageSummary& summary) {
  Json json = totalsJson(summary.totals);
  json["title"] = summary.title;
  json["notes"] = summary.notes;
  json["rules"] = summary.rules;
  writeScript("id=\"summary\"", json);
  for (const std::string_view piece : pageEnd()) out_.write(piece);
}

}  // namespace tool
