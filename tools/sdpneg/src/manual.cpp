#include "manual.h"

#include "commandTable.h"

namespace tool {
namespace {

/// A text for man(7): minus signs stay minus signs, backslashes backslashes.
std::string escaped(std::string_view text) {
  std::string out;
  for (const char c : text) {
    if (c == '-') {
      out += "\\-";
    } else if (c == '\\') {
      out += "\\e";
    } else {
      out += c;
    }
  }
  return out;
}

std::string synopsis(const CommandRow& command) {
  std::string out = ".SS \"sdpneg " + escaped(command.name);
  if (!command.options.empty()) out += " [OPTION...]";
  for (const OperandRow& operand : command.operands) {
    const std::string name = escaped(operand.name) + (operand.many ? "..." : "");
    out += operand.required ? " " + name : " [" + name + "]";
  }
  return out + "\"\n";
}

std::string optionEntry(const OptionRow& option) {
  std::string out = ".TP\n\\fB" + escaped(option.name) + "\\fR";
  if (!option.argument.empty()) out += "=\\fI" + escaped(option.argument) + "\\fR";
  out += "\n" + escaped(option.help) + "\n";
  if (option.values.empty()) return out;
  out += escaped(option.argument) + " is";
  for (std::size_t i = 0; i < option.values.size(); ++i) {
    const bool last = i + 1 == option.values.size();
    out += (i == 0 ? " " : last ? " or " : ", ") + ("\\fB" + escaped(option.values[i])) + "\\fR";
  }
  return out + "; without the option, \\fB" + escaped(option.initial) + "\\fR.\n";
}

}  // namespace

std::string manualCommands() {
  std::string out;
  for (const CommandRow& command : commandTable()) {
    out += synopsis(command) + escaped(command.details) + "\n";
    for (const OptionRow& option : command.options) out += optionEntry(option);
    for (const OperandRow& operand : command.operands) {
      out += ".TP\n\\fI" + escaped(operand.name) + "\\fR\n" + escaped(operand.help) + "\n";
    }
  }
  return out;
}

}  // namespace tool
