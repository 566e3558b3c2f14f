#include "commands/commandLine.h"

#include <CLI/CLI.hpp>
#include <algorithm>

#include "commands/completion.h"
#include "commands/exitStatus.h"
#include "commands/manual.h"
#include "commands/nearestName.h"
#include "commands/rewriteCommand.h"
#include "requests/requestTable.h"
#include "text/search.h"

namespace tool {
namespace {

constexpr std::size_t kHelpWidth = 80;

/// A text broken into lines.
std::string wrapped(std::string_view text) {
  std::string out;
  while (text.size() > kHelpWidth) {
    const std::size_t blank = text.rfind(' ', kHelpWidth);
    if (blank == std::string_view::npos) break;
    out.append(text.substr(0, blank)).append("\n");
    text.remove_prefix(blank + 1);
  }
  return out.append(text);
}

/// Help that says how requests are written.
class RequestHelp : public CLI::Formatter {
 public:
  explicit RequestHelp(std::string_view usage) : usage_(usage) {}
  std::string make_usage(const CLI::App* /*app*/, std::string name) const override {
    return "Usage: " + name + " [OPTIONS] " + usage_ + "\n";
  }
  std::string make_footer(const CLI::App* app) const override {
    return CLI::Formatter::make_footer(app) + "\nRequests:\n" + requestList();
  }

 private:
  std::string usage_;
};

const CommandRow* commandNamed(std::string_view name) {
  const auto rows = commandTable();
  const auto found =
      std::find_if(rows.begin(), rows.end(), [&](const CommandRow& row) { return row.name == name; });
  return found != rows.end() ? &*found : nullptr;
}

/// How many of the words that begin with `word` are an option of a command with its argument; 0 for a word that
/// is none.
std::size_t optionLength(const CommandRow& command, std::string_view word) {
  if (word == "--help" || word == "-h") return 1;
  for (const OptionRow& option : command.options) {
    if (word == option.name) return option.argument.empty() ? 1 : 2;
    if (sdpneg::startsWith(word, option.name) && word[option.name.size()] == '=') return 1;
  }
  return 0;
}

/// Takes the operands out of a command line of requests, among which options may stand and words like "-5" and
/// "--" have a meaning of their own.
/// @param arguments keeps the command and its options
std::vector<std::string> takeRequests(const CommandRow& command, std::vector<std::string>& arguments) {
  std::vector<std::string> operands;
  std::vector<std::string> others{arguments.front()};
  for (std::size_t i = 1; i < arguments.size();) {
    const std::size_t length = optionLength(command, arguments[i]);
    const std::size_t next = std::min(arguments.size(), i + std::max<std::size_t>(length, 1));
    std::vector<std::string>& target = length == 0 ? operands : others;
    while (i < next) target.push_back(std::move(arguments[i++]));
  }
  arguments = std::move(others);
  return operands;
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
        "Exit status: 0 success; 1 a request was refused, or compared bodies differ; 2 something is wrong with an input;\n"
        "64 wrong usage; 70 out of memory; 74 standard output or a file cannot be written.");
    for (const CommandRow& row : commandTable()) addCommand(row);
  }

  /// @throws CLI::ParseError for help, version and every mistake
  const CommandRow& parse(std::vector<std::string> arguments) {
    const CommandRow* given = arguments.empty() ? nullptr : commandNamed(arguments.front());
    if (given != nullptr && !given->requestUsage.empty())
      arguments_.operands_ = takeRequests(*given, arguments);
    std::reverse(arguments.begin(), arguments.end());  // as CLI11 takes them
    app_.parse(std::move(arguments));
    const CommandRow* command = commandNamed(app_.get_subcommands().front()->get_name());
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
    if (row.requestUsage.empty()) {
      for (const OperandRow& operand : row.operands) addOperand(*command, operand);
    } else {
      command->formatter(std::make_shared<RequestHelp>(row.requestUsage));
    }
  }

  void addOption(CLI::App& command, const OptionRow& row) {
    const std::string name(row.name);
    if (row.argument.empty()) {
      command.add_flag_callback(
          name, [this, name] { arguments_.flags_[name] = true; }, std::string(row.help));
      return;
    }
    if (row.isMany) {
      command
          .add_option_function<std::vector<std::string>>(
              name,
              [this, name](const std::vector<std::string>& values) { arguments_.manyValues_[name] = values; },
              std::string(row.help))
          ->type_name(std::string(row.argument))
          ->allow_extra_args(false);
      return;
    }
    const std::string names = (row.shortName.empty() ? "" : std::string(row.shortName) + ",") + name;
    CLI::Option* option = command.add_option_function<std::string>(
        names, [this, name](const std::string& value) { arguments_.values_[name] = value; },
        std::string(row.help));
    option->type_name(std::string(row.argument))->default_str(std::string(row.initial));
    option->required(row.required);
    if (!row.values.empty()) {
      option->check(CLI::IsMember(std::vector<std::string>(row.values.begin(), row.values.end())));
    }
  }

  void addOperand(CLI::App& command, const OperandRow& row) {
    const std::string name(row.name);
    const std::string help(row.help);
    std::vector<std::string>& operands = arguments_.operands_;
    CLI::Option* operand =
        row.many ? command.add_option_function<std::vector<std::string>>(
                       name,
                       [&operands](const std::vector<std::string>& values) {
                         operands.insert(operands.end(), values.begin(), values.end());
                       },
                       help)
                 : command.add_option_function<std::string>(
                       name, [&operands](const std::string& value) { operands.push_back(value); }, help);
    operand->type_name("")->required(row.required);
  }

  CLI::App app_{"Shows what SDP bodies (RFC 4566) say to a SIP call-control engine, and rewrites them.",
                "sdpneg"};
  Arguments arguments_;
};

namespace {

/// @param command whose help tells more; null for that of the program
int usage(Streams streams, const std::string& mistake, const CommandRow* command) {
  writeProblem(streams.err, "", {{}, mistake});
  const std::string name = command != nullptr ? std::string(command->name) + " " : std::string();
  streams.err.write("Try 'sdpneg " + name + "--help' for more.\n");
  return exitUsage;
}

/// What is wrong with a command line whose first word should be a command and is none; empty where that is not so.
std::string commandMistake(const std::vector<std::string>& arguments) {
  if (arguments.empty() || arguments.front().starts_with('-') || commandNamed(arguments.front()) != nullptr)
    return {};
  const std::string& word = arguments.front();
  const std::string mistake = "there is no command '" + word + "'";
  if (findRequest(word) != nullptr) return mistake + "; it is a request: 'sdpneg rewrite " + word + "'";
  std::vector<std::string_view> names;
  for (const CommandRow& row : commandTable()) names.push_back(row.name);
  const std::string nearest(nearestName(word, names));
  return nearest.empty() ? mistake : mistake + "; did you mean '" + nearest + "'?";
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
  if (const std::string mistake = commandMistake(arguments); !mistake.empty()) {
    return usage(streams, mistake, nullptr);
  }
  const CommandRow* const given = arguments.empty() ? nullptr : commandNamed(arguments.front());
  CommandLine commandLine;
  try {
    const CommandRow& command = commandLine.parse(std::move(arguments));
    return command.run(commandLine.arguments(), streams);
  } catch (const CLI::CallForHelp&) {
    streams.out.write(commandLine.help());
  } catch (const CLI::CallForVersion& version) {
    streams.out.write(std::string(version.what()) + "\n");
  } catch (const CLI::ParseError& mistake) {
    return usage(streams, mistake.what(), given);
  } catch (const UsageError& wrong) {
    return usage(streams, wrong.mistake, given);
  }
  return exitSuccess;
}

}  // namespace tool
