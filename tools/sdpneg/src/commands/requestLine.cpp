#include "commands/requestLine.h"

#include <algorithm>

#include "commands/commandTable.h"
#include "commands/nearestName.h"
#include "inspection/names.h"

namespace tool {
namespace {

using Words = std::span<const std::string>;

std::string quoted(std::string_view word) { return std::string("'").append(word).append("'"); }

const RequestRow& requestOf(Words group) {
  if (group.empty()) throw UsageError{"a request is missing; 'sdpneg requests' lists them"};
  const RequestRow* row = findRequest(group.front());
  if (row != nullptr) return *row;
  if (group.front().empty()) throw UsageError{"a request is an empty word; 'sdpneg requests' lists them"};
  std::vector<std::string_view> names;
  for (const RequestRow& each : requestTable()) names.push_back(each.name);
  const std::string_view nearest = nearestName(group.front(), names);
  throw UsageError{"there is no request " + quoted(group.front()) +
                   (nearest.empty() ? "" : "; did you mean " + quoted(nearest) + "?") +
                   (nearest.empty() ? "; " : " ") + "'sdpneg requests' lists them"};
}

/// How many of the words behind a request are its arguments. Those that can be left out go to the file where
/// they cannot be what the request takes.
std::size_t argumentCount(const RequestRow& row, Words words, bool fileMayFollow) {
  const std::size_t most = row.arguments.size();
  const bool filesTurn = fileMayFollow && !words.empty() && words.size() <= most &&
                         row.arguments[words.size() - 1].optional &&
                         !isAccepted(row.arguments[words.size() - 1], words.back());
  return filesTurn ? words.size() - 1 : std::min(words.size(), most);
}

/// "; they are PCMU, ..." for an argument whose names are too many for its help.
std::string knownNames(const RequestArgument& argument) {
  return argument.names == nullptr ? std::string() : "; known are " + joined(argument.names(), ", ");
}

void checkArguments(const RequestRow& row, Words words) {
  for (std::size_t i = 0; i < words.size(); ++i) {
    const RequestArgument& argument = row.arguments[i];
    if (isAccepted(argument, words[i])) continue;
    throw UsageError{std::string(argument.name).append(" of ").append(row.name).append(" is ") +
                     argumentHelp(argument) + ", not " + quoted(words[i]) + knownNames(argument)};
  }
  if (words.size() < row.arguments.size() && !row.arguments[words.size()].optional) {
    throw UsageError{"an argument is missing: " + requestSynopsis(row)};
  }
}

/// Reads one request and, behind the last one, the file.
void readGroup(Words group, bool last, RequestLine& line) {
  const RequestRow& row = requestOf(group);
  const Words words = group.subspan(1);
  const std::size_t count = argumentCount(row, words, last);
  const Words behind = words.subspan(count);
  checkArguments(row, words.first(count));
  if (behind.size() > (last ? 1U : 0U)) {
    throw UsageError{quoted(behind[last ? 1 : 0]) + " is one word too many behind " + requestSynopsis(row)};
  }
  line.calls.push_back({&row, {{words.begin(), words.begin() + static_cast<std::ptrdiff_t>(count)}, {}}});
  if (!behind.empty()) line.file = behind.front();
}

}  // namespace

RequestLine readRequestLine(Words words) {
  RequestLine line;
  while (true) {
    const auto separator = std::find(words.begin(), words.end(), "--");
    const auto length = static_cast<std::size_t>(separator - words.begin());
    const bool last = separator == words.end();
    readGroup(words.first(length), last, line);
    if (last) return line;
    words = words.subspan(length + 1);
  }
}

}  // namespace tool
