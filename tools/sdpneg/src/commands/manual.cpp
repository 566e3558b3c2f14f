#include "commands/manual.h"

#include "commands/commandTable.h"
#include "requests/requestTable.h"

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
  if (!command.requestUsage.empty()) return out + " " + escaped(command.requestUsage) + "\"\n";
  for (const OptionRow& option : command.options) {
    if (option.required) out += " " + escaped(option.name) + "=" + escaped(option.argument);
  }
  for (const OperandRow& operand : command.operands) {
    const std::string name = escaped(operand.name) + (operand.many ? "..." : "");
    out += operand.required ? " " + name : " [" + name + "]";
  }
  return out + "\"\n";
}

std::string optionEntry(const OptionRow& option) {
  std::string out = ".TP\n";
  if (!option.shortName.empty()) out += "\\fB" + escaped(option.shortName) + "\\fR, ";
  out += "\\fB" + escaped(option.name) + "\\fR";
  if (!option.argument.empty()) out += "=\\fI" + escaped(option.argument) + "\\fR";
  out += "\n" + escaped(option.help) + "\n";
  if (option.values.empty()) return out;
  out += escaped(option.argument) + " is";
  for (std::size_t i = 0; i < option.values.size(); ++i) {
    const bool last = i + 1 == option.values.size();
    out += (i == 0 ? " " : last ? " or " : ", ") + ("\\fB" + escaped(option.values[i])) + "\\fR";
  }
  if (option.initial.empty()) return out + ".\n";
  return out + "; without the option, \\fB" + escaped(option.initial) + "\\fR.\n";
}

/// The requests with what their arguments may be.
std::string requestEntries() {
  std::string out = ".PP\nThe requests:\n";
  for (const RequestRow& request : requestTable()) {
    out += ".TP\n\\fB" + escaped(requestSynopsis(request)) + "\\fR\n" + escaped(request.help) + "\n";
    for (const RequestArgument& argument : request.arguments) {
      if (standsAsValues(argument)) continue;  // above
      out += "\\fI" + escaped(argument.name) + "\\fR is " + escaped(argumentHelp(argument)) + ".\n";
    }
  }
  return out;
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
    if (!command.requestUsage.empty()) out += requestEntries();
  }
  return out;
}

}  // namespace tool
