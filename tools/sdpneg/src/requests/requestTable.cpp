#include "requests/requestTable.h"

#include <algorithm>

#include "requests/requestArguments.h"

namespace tool {
namespace {

/// An argument in a synopsis: its values, or its name where there are many.
std::string argumentWord(const RequestArgument& argument) {
  if (!standsAsValues(argument)) return std::string(argument.name);
  std::string out;
  for (const std::string_view value : argument.values) {
    out.append(value == argument.values.front() ? "" : "|").append(value);
  }
  return out;
}

}  // namespace

std::span<const RequestRow> requestTable() {
  static const std::vector<RequestRow> rows = [] {
    std::vector<RequestRow> all;
    for (const auto topic : {originRequests(), codecRequests(), mediaRequests(), attributeRequests(),
                             securityRequests(), bodyRequests(), documentRequests()}) {
      all.insert(all.end(), topic.begin(), topic.end());
    }
    return all;
  }();
  return rows;
}

const RequestRow* findRequest(std::string_view name) {
  const auto rows = requestTable();
  const auto found =
      std::find_if(rows.begin(), rows.end(), [name](const RequestRow& row) { return row.name == name; });
  return found != rows.end() ? &*found : nullptr;
}

bool isAccepted(const RequestArgument& argument, std::string_view word) {
  if (argument.accepts != nullptr) return argument.accepts(word);
  return argument.values.empty() || indexOf(argument.values, word) < argument.values.size();
}

bool standsAsValues(const RequestArgument& argument) {
  constexpr std::size_t kMost = 4;
  return !argument.values.empty() && argument.values.size() <= kMost;
}

std::string requestSynopsis(const RequestRow& request) {
  std::string out(request.name);
  for (const RequestArgument& argument : request.arguments) {
    const std::string word = argumentWord(argument);
    out += argument.optional ? " [" + word + "]" : " " + word;
  }
  return out;
}

std::string argumentHelp(const RequestArgument& argument) {
  std::string out(argument.expects);
  for (std::size_t i = 0; i < argument.values.size(); ++i) {
    const bool last = i + 1 == argument.values.size();
    out.append(i == 0 ? ": " : last ? " or " : ", ").append(argument.values[i]);
  }
  return out;
}

}  // namespace tool
