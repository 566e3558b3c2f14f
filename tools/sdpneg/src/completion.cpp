#include "completion.h"

#include <algorithm>

#include "commandTable.h"

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
    if (option.name == last && !option.argument.empty()) return &option;
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

std::string commandWords(const CommandRow& command) {
  std::string out;
  for (const OptionRow& option : command.options) addLine(out, option.name);
  addLine(out, "--help");
  const bool files = std::any_of(command.operands.begin(), command.operands.end(),
                                 [](const OperandRow& operand) { return operand.isFile; });
  if (files) addLine(out, "<file>");
  return out;
}

}  // namespace

std::string completions(const std::vector<std::string>& words) {
  if (words.empty()) return programWords();
  const CommandRow* command = commandOf(words);
  if (command == nullptr) return {};
  const OptionRow* option = openOption(*command, words);
  if (option == nullptr) return commandWords(*command);
  std::string out;
  for (const std::string_view value : option->values) addLine(out, value);
  return out;
}

}  // namespace tool
