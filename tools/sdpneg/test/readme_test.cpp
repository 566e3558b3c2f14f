#include <gtest/gtest.h>

#include <sstream>

#include "process.h"
#include "testFiles.h"

// The requests that the README shows are carried out.

namespace {

const std::string sources = SDPNEG_SOURCE_DIR "/../..";

/// The command lines between backquotes that begin with the program's name.
std::vector<std::string> commandsOf(const std::string& text) {
  const std::string begin = "`sdpneg rewrite ";
  std::vector<std::string> commands;
  for (std::size_t at = text.find(begin); at != std::string::npos; at = text.find(begin, at + 1)) {
    const std::size_t word = at + std::string("`sdpneg ").size();
    commands.push_back(text.substr(word, text.find('`', word) - word));
  }
  return commands;
}

/// The words of a command line, with the sample bodies by their paths.
std::vector<std::string> argumentsOf(const std::string& command) {
  std::vector<std::string> arguments;
  std::istringstream words(command);
  for (std::string word; words >> word;) {
    const bool isBody = word.ends_with(".sdp");
    arguments.push_back(isBody ? sources + "/examples/bodies/" + word : word);
  }
  return arguments;
}

TEST(Readme, showsRequestsThatChangeTheirBodies) {
  const std::vector<std::string> commands = commandsOf(readBytes(sources + "/README.md"));
  EXPECT_GE(commands.size(), 9U);
  for (const std::string& command : commands) {
    const std::vector<std::string> arguments = argumentsOf(command);
    const Outcome outcome = runSdpneg(arguments);
    EXPECT_EQ(outcome.status, 0) << command << "\n" << outcome.err;
    EXPECT_NE(outcome.out, readBytes(arguments.back())) << command;
  }
}

}  // namespace
