#include "commandLine.h"

#include <CLI/CLI.hpp>
#include <algorithm>

#include "completion.h"
#include "exitStatus.h"
#include "manual.h"

namespace tool {
namespace {

constexpr std::size_t helpWidth = 80;

/// A text broken into lines.
std::string wrapped(std::string_view text) {
  std::string out;
  while (text.size() > helpWidth) {
    const std::size_t blank = text.rfind(' ', helpWidth);
    if (blank == std::string_view::npos) break;
    out.append(text.substr(0, blank)).append("\n");
    text.remove_prefix(blank + 1);
  }
  return out.append(text);
}

}  // namespace

/// A CLI11 application made from the command table. It fills the arguments of the command that is chosen.
class CommandLine {
 public:
  CommandLine() {
    app_.require_subcommand(1);
    app_.set_version_flag("--version", "sdpneg " SDPNEG_VERSION, "Print the version and exit");
    app_.set_help_flag("--help,-h", "Print this help and exit");
    app_.footer(
        "Exit status: 0 success; 1 a request was refused; 2 something is wrong with an input;\n"
        "64 wrong usage; 70 out of memory; 74 standard output cannot be written.");
    for (const CommandRow& row : commandTable()) addCommand(row);
  }

  /// @throws CLI::ParseError for help, version and every mistake
  const CommandRow& parse(std::vector<std::string> arguments) {
    std::reverse(arguments.begin(), arguments.end());  // as CLI11 takes them
    app_.parse(std::move(arguments));
    const std::string& name = app_.get_subcommands().front()->get_name();
    const auto rows = commandTable();
    const auto command =
        std::find_if(rows.begin(), rows.end(), [&](const CommandRow& row) { return row.name == name; });
    for (const OptionRow& option : command->options) {
      arguments_.values_.try_emplace(std::string(option.name), option.initial);
    }
    return *command;
  }

  const Arguments& arguments() const { return arguments_; }
  std::string help() const { return app_.help(); }

 private:
  void addCommand(const CommandRow& row) {
    CLI::App* command = app_.add_subcommand(std::string(row.name), std::string(row.help));
    command->footer(wrapped(row.details));
    for (const OptionRow& option : row.options) addOption(*command, option);
    for (const OperandRow& operand : row.operands) addOperand(*command, operand);
  }

  void addOption(CLI::App& command, const OptionRow& row) {
    const std::string name(row.name);
    if (row.argument.empty()) {
      command.add_flag_callback(
          name, [this, name] { arguments_.flags_[name] = true; }, std::string(row.help));
      return;
    }
    CLI::Option* option = command.add_option_function<std::string>(
        name, [this, name](const std::string& value) { arguments_.values_[name] = value; },
        std::string(row.help));
    option->type_name(std::string(row.argument))->default_str(std::string(row.initial));
    if (!row.values.empty()) {
      option->check(CLI::IsMember(std::vector<std::string>(row.values.begin(), row.values.end())));
    }
  }

  void addOperand(CLI::App& command, const OperandRow& row) {
    CLI::Option* operand = command.add_option_function<std::vector<std::string>>(
        std::string(row.name),
        [this](const std::vector<std::string>& values) {
          arguments_.operands_.insert(arguments_.operands_.end(), values.begin(), values.end());
        },
        std::string(row.help));
    operand->type_name("")->required(row.required);
    if (!row.many) operand->expected(1);
  }

  CLI::App app_{"Shows what SDP bodies (RFC 4566) say to a SIP call-control engine.", "sdpneg"};
  Arguments arguments_;
};

namespace {

int usage(Streams streams, const std::string& mistake) {
  writeProblem(streams.err, "", {{}, mistake});
  streams.err.write("Try 'sdpneg --help' for more.\n");
  return exitUsage;
}

/// The uses that the help does not name: those of the completion script and of the build.
bool runInternal(const std::vector<std::string>& arguments, Output& out) {
  if (arguments.empty()) return false;
  if (arguments.front() == "--complete") {
    out.write(completions({arguments.begin() + 1, arguments.end()}));
    return true;
  }
  if (arguments.front() != "--manual-commands") return false;
  out.write(manualCommands());
  return true;
}

}  // namespace

int runCommandLine(std::vector<std::string> arguments, Streams streams) {
  if (runInternal(arguments, streams.out)) return exitSuccess;
  CommandLine commandLine;
  try {
    const CommandRow& command = commandLine.parse(std::move(arguments));
    return command.run(commandLine.arguments(), streams);
  } catch (const CLI::CallForHelp&) {
    streams.out.write(commandLine.help());
  } catch (const CLI::CallForVersion& version) {
    streams.out.write(std::string(version.what()) + "\n");
  } catch (const CLI::ParseError& mistake) {
    return usage(streams, mistake.what());
  }
  return exitSuccess;
}

}  // namespace tool
