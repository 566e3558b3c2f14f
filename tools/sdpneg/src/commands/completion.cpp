#include "commands/completion.h"

#include <algorithm>

#include "commands/commandTable.h"
#include "requests/requestTable.h"

namespace tool {
namespace {

void addLine(std::string& out, std::string_view word) {
  out += word;
  out += '\n';
}

const CommandRow* commandOf(const std::vector<std::string>& words) {
  const auto rows = commandTable();
  const auto found = std::find_if(rows.begin(), rows.end(), [&](const CommandRow& row) {
    return !words.empty() && words.front() == row.name;
  });
  return found != rows.end() ? &*found : nullptr;
}

/// The option whose argument comes next; null when none waits for one.
const OptionRow* openOption(const CommandRow& command, const std::vector<std::string>& words) {
  const bool splitAtEquals = words.back() == "=" && words.size() > 1;
  const std::string& last = splitAtEquals ? words[words.size() - 2] : words.back();
  for (const OptionRow& option : command.options) {
    if (option.argument.empty()) continue;
    if (option.name == last || option.shortName == last) return &option;
  }
  return nullptr;
}

std::string programWords() {
  std::string out;
  for (const CommandRow& command : commandTable()) addLine(out, command.name);
  addLine(out, "--help");
  addLine(out, "--version");
  return out;
}

std::string optionWords(const CommandRow& command) {
  std::string out;
  for (const OptionRow& option : command.options) addLine(out, option.name);
  addLine(out, "--help");
  return out;
}

std::string commandWords(const CommandRow& command) {
  std::string out = optionWords(command);
  const bool files = std::any_of(command.operands.begin(), command.operands.end(),
                                 [](const OperandRow& operand) { return operand.isFile; });
  if (files) addLine(out, "<file>");
  return out;
}

/// The words behind the last "--" that are no options.
std::vector<std::string_view> requestWords(const CommandRow& command, const std::vector<std::string>& words) {
  std::vector<std::string_view> request;
  for (std::size_t i = 1; i < words.size(); ++i) {
    if (words[i] == "--") {
      request.clear();
    } else if (openOption(command, {words.begin(), words.begin() + static_cast<std::ptrdiff_t>(i)}) ==
                   nullptr &&
               words[i] != "=" && words[i].rfind("--", 0) != 0) {
      request.emplace_back(words[i]);
    }
  }
  return request;
}

/// What may stand where a command takes requests: a request, an argument, the next request or a file.
std::string requestCompletions(const CommandRow& command, const std::vector<std::string>& words) {
  const std::vector<std::string_view> given = requestWords(command, words);
  std::string out = optionWords(command);
  if (given.empty()) {
    for (const RequestRow& row : requestTable()) addLine(out, row.name);
    return out;
  }
  const RequestRow* request = findRequest(given.front());
  if (request == nullptr) return {};
  const std::size_t next = given.size() - 1;
  const RequestArgument* argument = next < request->arguments.size() ? &request->arguments[next] : nullptr;
  if (argument != nullptr) {
    for (const std::string_view value : argument->values) addLine(out, value);
  }
  const bool complete = argument == nullptr || argument->optional;
  if (complete) addLine(out, "--");
  if (complete || argument->isFile) addLine(out, "<file>");
  return out;
}

}  // namespace

std::string completions(const std::vector<std::string>& words) {
  if (words.empty()) return programWords();
  const CommandRow* command = commandOf(words);
  if (command == nullptr) return {};
  const OptionRow* option = openOption(*command, words);
  if (option == nullptr) {
    return command->requestUsage.empty() ? commandWords(*command) : requestCompletions(*command, words);
  }
  std::string out;
  if (option->values.empty()) addLine(out, "<file>");
  for (const std::string_view value : option->values) addLine(out, value);
  return out;
}

}  // namespace tool
