#ifndef B2BUA_OPTION_FILES_H
#define B2BUA_OPTION_FILES_H

#include <string>

#include <CLI/CLI.hpp>

namespace b2bua {

// Options that stand in files: the rules of a policy as lines, all of them as TOML. What the command line has, or a file
// that was read before, stays. Each throws CLI::ParseError, "FILE:LINE:COLUMN: " in front of what is wrong.

/// @param rules  the options that the file may have, by their names without hyphens
void readPolicyFile(CLI::App& rules, const std::string& file);

void readConfigFile(CLI::App& app, const std::string& file);

/// One of the words that an option was given is wrong.
class WordError : public CLI::ValidationError {
 public:
  /// @param word    its number
  /// @param offset  of what is wrong in it
  WordError(const std::string& option, const std::string& text, std::size_t word, std::size_t offset = 0)
      : ValidationError("--" + option, text), word_(word), offset_(offset) {}

  std::size_t word() const { return word_; }
  std::size_t offset() const { return offset_; }

 private:
  std::size_t word_;
  std::size_t offset_;
};

}  // namespace b2bua

#endif
