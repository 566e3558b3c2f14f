#ifndef B2BUA_OPTION_FILES_H
#define B2BUA_OPTION_FILES_H

#include <CLI/CLI.hpp>
#include <string>

namespace b2bua {

// Options that stand in files: the rules of a policy as lines, all of them as TOML. What the command line has, or a file
// that was read before, stays. Each throws CLI::ParseError, "FILE:LINE:COLUMN: " in front of what is wrong.

/// @param rules  the options that the file may have, by their names without hyphens
void readPolicyFile(CLI::App& rules, const std::string& file);

/// @param app  those that are numbers have the type kNumber
void readConfigFile(CLI::App& app, const std::string& file);

inline constexpr const char* kNumber = "NUMBER";

/// One of the words that an option was given is wrong.
struct WordError : CLI::ValidationError {
  /// @param word    its number
  /// @param offset  of what is wrong in it
  WordError(const std::string& option, const std::string& text, std::size_t wordNumber,
            std::size_t offsetInIt = 0)
      : ValidationError("--" + option, text), word(wordNumber), offset(offsetInIt) {}

  std::size_t word;
  std::size_t offset;
};

}  // namespace b2bua

#endif
