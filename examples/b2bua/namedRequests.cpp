#include "namedRequests.h"

#include <sdpDocumentRequests.h>

#include <algorithm>

#include "optionFiles.h"
#include "reasons.h"

namespace b2bua {

namespace {

enum class Bodies { all, offers, answers };

std::size_t listOf(Bodies bodies, Way way, Side party) {
  return 4 * static_cast<std::size_t>(bodies) + 2 * static_cast<std::size_t>(way) + party;
}

/// The words between blanks, where they stand.
std::vector<std::string_view> fieldsOf(std::string_view line) {
  constexpr const char* kBlanks = " \t";
  std::vector<std::string_view> fields;
  for (std::size_t at = line.find_first_not_of(kBlanks); at < line.size();) {
    const std::size_t end = std::min(line.find_first_of(kBlanks, at), line.size());
    fields.push_back(line.substr(at, end - at));
    at = line.find_first_not_of(kBlanks, end);
  }
  return fields;
}

const sdp::RequestDescription* descriptionOf(std::string_view name) {
  const auto all = sdp::requestDescriptions();
  const auto found = std::ranges::find(all, name, &sdp::RequestDescription::name);
  return found != all.end() ? &*found : nullptr;
}

/// @return the number of the word that a reason is about
std::size_t wrongWord(sdp::Reason reason, const std::vector<std::string_view>& words) {
  switch (reason) {
    case sdp::Reason::unknownRequest:
      return 0;
    case sdp::Reason::argumentCount: {
      // The first that is too many, or else the name that has too few behind it.
      const std::string_view takes = descriptionOf(words[0])->arguments;
      const std::size_t most = fieldsOf(takes).size();
      return words.size() > most + 1 ? most + 1 : 0;
    }
    case sdp::Reason::wrongMedia:
      return words.size() - 1;
    case sdp::Reason::wrongPort:
      return 2;
    default:
      return 1;
  }
}

NamedRequest readRequest(std::size_t list, const std::string& line, std::size_t number) {
  const std::vector<std::string_view> words = fieldsOf(line);
  const sdp::Refusal refusal = sdp::checkArguments(words);
  if (!refusal) return {words.begin(), words.end()};
  if (words.empty()) throw WordError(keyOf(list), "no request", number, 0);
  const std::string_view wrong = words[wrongWord(refusal.reason, words)];
  std::string text = std::string(textOf(refusal.reason)) + ": " + std::string(wrong);
  if (const sdp::RequestDescription* const takes = descriptionOf(words[0]))
    text += "; " + std::string(takes->name) + " takes " +
            (takes->arguments.empty() ? "nothing" : std::string(takes->arguments));
  throw WordError(keyOf(list), text, number, static_cast<std::size_t>(wrong.data() - line.data()));
}

/// @return why one of them is refused, with its name
std::string perform(const std::vector<NamedRequest>& requests, sdp::Document& document) {
  for (const NamedRequest& request : requests) {
    const std::vector<std::string_view> words(request.begin(), request.end());
    if (sdp::perform(document, words)) return request[0] + ": " + reasonOf(document);
  }
  return "";
}

}  // namespace

std::string keyOf(std::size_t list) {
  constexpr const char* kBodies[] = {"", "offer-", "answer-"};
  return std::string(kBodies[list / 4]) + (list % 4 < 2 ? "from-" : "to-") +
         nameOf(list % 2 == 0 ? kCaller : kTarget);
}

std::vector<NamedRequest> readRequests(std::size_t list, const std::vector<std::string>& lines) {
  std::vector<NamedRequest> requests;
  requests.reserve(lines.size());
  for (const std::string& line : lines) requests.push_back(readRequest(list, line, requests.size()));
  return requests;
}

std::string applyRequests(const Policy& policy, Way way, Side party, bool isAnswer, Body& body) {
  const std::size_t lists[] = {listOf(Bodies::all, way, party),
                               listOf(isAnswer ? Bodies::answers : Bodies::offers, way, party)};
  const auto isEmpty = [&](std::size_t list) { return policy.requests[list].empty(); };
  if (std::ranges::all_of(lists, isEmpty)) return "";
  sdp::Document document;
  if (document.read(textOf(body))) return reasonOf(document);
  const bool had = hasPort(document);
  for (const std::size_t list : lists) {
    if (std::string reason = perform(policy.requests[list], document); !reason.empty())
      return keyOf(list) + " " + reason;
    if (had && !isAnswer && !hasPort(document)) return keyOf(list) + ": no media left";
  }
  return store(document, body);
}

bool hasRequests(const Policy& policy) {
  return std::ranges::any_of(policy.requests, [](const auto& list) { return !list.empty(); });
}

}  // namespace b2bua
