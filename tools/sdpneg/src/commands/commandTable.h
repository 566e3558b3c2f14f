#ifndef SDPNEG_COMMAND_TABLE_H
#define SDPNEG_COMMAND_TABLE_H

#include <map>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "output/streams.h"

// The one table of what the program can be asked for. Parsing, help, completion and the manual page are made
// from it.

namespace tool {

struct OptionRow {
  std::string_view name;                     ///< "--color"
  std::string_view argument;                 ///< "WHEN"; empty for an option without one
  std::span<const std::string_view> values;  ///< what the argument may be; empty for anything
  std::string_view initial;                  ///< the argument when the option is not given
  std::string_view help;
  std::string_view shortName = {};  ///< "-o", where there is one
  bool required = false;            ///< must be given
  bool isMany = false;              ///< may be given several times
};

struct OperandRow {
  std::string_view name;  ///< "FILE"
  std::string_view help;
  bool isFile;    ///< a file or folder
  bool required;  ///< must be given
  bool many;      ///< may be given several times
};

/// What a command line says to a command.
class Arguments {
 public:
  bool has(std::string_view option) const { return flags_.contains(option); }
  /// The argument of an option, as given or as the table has it.
  std::string_view value(std::string_view option) const;
  /// The arguments of an option that may be given several times, in their order.
  std::vector<std::string> values(std::string_view option) const;
  const std::vector<std::string>& operands() const { return operands_; }

 private:
  friend class CommandLine;

  std::map<std::string, bool, std::less<>> flags_;
  std::map<std::string, std::string, std::less<>> values_;
  std::map<std::string, std::vector<std::string>, std::less<>> manyValues_;
  std::vector<std::string> operands_;
};

struct CommandRow {
  std::string_view name;
  std::string_view help;     ///< one line
  std::string_view details;  ///< whole sentences
  std::span<const OptionRow> options;
  std::span<const OperandRow> operands;  ///< only the last may be given several times
  /// @return the exit status, see exitStatus.h
  int (*run)(const Arguments& arguments, Streams streams);
  /// Where the operands are requests (requestTable.h): how they are written. Such a command's options may stand
  /// among them.
  std::string_view requestUsage = {};
};

/// What a command throws when its command line is wrong in a way that the table does not tell.
struct UsageError {
  std::string mistake;
};

/// All commands in the order of the help.
std::span<const CommandRow> commandTable();

}  // namespace tool

#endif
