#include <gtest/gtest.h>

#include <cstdlib>
#include <regex>
#include <sstream>

#include "process.h"
#include "testFiles.h"

// The requests that the README shows are carried out, and examples give what is shown.

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

TEST(Readme, ShowsRequestsThatChangeTheirBodies) {
  const std::vector<std::string> commands = commandsOf(readBytes(sources + "/README.md"));
  EXPECT_GE(commands.size(), 9U);
  for (const std::string& command : commands) {
    const std::vector<std::string> arguments = argumentsOf(command);
    const Outcome outcome = runSdpneg(arguments);
    EXPECT_EQ(outcome.status, 0) << command << "\n" << outcome.err;
    EXPECT_NE(outcome.out, readBytes(arguments.back())) << command;
  }
}

/// A command line of an example with what is shown below it.
struct Example {
  std::string command;
  std::string shown;
};

/// The indented lines of a page that begin with "$ sdpneg ", each with the indented lines that follow it.
std::vector<Example> examplesOf(const std::string& page) {
  const std::string indent = "    ";
  const std::string prompt = indent + "$ ";
  std::vector<Example> examples;
  bool inside = false;
  std::istringstream lines(page);
  for (std::string line; std::getline(lines, line);) {
    if (line.starts_with(prompt)) {
      inside = line.starts_with(prompt + "sdpneg ");
      if (inside) examples.push_back({line.substr(prompt.size()), {}});
    } else if (!line.empty() && !line.starts_with(indent)) {
      inside = false;
    } else if (inside) {
      examples.back().shown += line.substr(std::min(line.size(), indent.size())) + "\n";
    }
  }
  for (Example& each : examples) each.shown.erase(each.shown.find_last_not_of('\n') + 1);
  return examples;
}

/// The text without what is new each time, CRs and line feeds at its end.
std::string comparable(std::string text) {
  text = std::regex_replace(replaced(std::move(text), "\r", ""), std::regex("o=ZEV [0-9]+ [0-9]+ "),
                            "o=ZEV TIME ");
  return text.substr(0, text.find_last_not_of('\n') + 1);
}

/// Runs the examples of a page one after the other, and compares what they show: standard output, or standard error
/// where that has nothing. One that is shown without what it gives only has to succeed.
/// @param workingFolder with the sample bodies, as the page has it
void expectExamples(const std::string& page, const std::string& workingFolder, std::size_t least) {
  const TemporaryFolder folder;
  const std::string work = folder.path(workingFolder);
  std::filesystem::create_directories(folder.path("examples"));
  for (const char* samples : {"examples/bodies", "examples/calls"})
    std::filesystem::copy(sources + "/" + samples, folder.path(samples));
  const std::vector<Example> examples = examplesOf(readBytes(sources + page));
  EXPECT_GE(examples.size(), least);
  for (const Example& each : examples) {
    const std::string script = folder.write(
        "script", "cd '" + work + "'\nsdpneg() { '" SDPNEG_PROGRAM "' \"$@\"; }\n" + each.command + "\n");
    const std::string out = folder.path("out");
    const std::string err = folder.path("err");
    const std::string run = "sh '" + script + "' >'" + out + "' 2>'" + err + "' </dev/null";
    const int status = std::system(run.c_str());
    const std::string written = readBytes(out);
    if (each.shown.empty()) {
      EXPECT_EQ(status, 0) << each.command;
      continue;
    }
    EXPECT_EQ(comparable(written.empty() ? readBytes(err) : written), comparable(each.shown)) << each.command;
  }
}

TEST(Readme, ShowsWhatItsExamplesGive) { expectExamples("/README.md", ".", 2); }

TEST(ToolPage, ShowsWhatItsExamplesGive) { expectExamples("/docs/tool.md", "examples/bodies", 20); }

TEST(CallsPage, ShowsWhatItsExamplesGive) { expectExamples("/docs/calls.md", "examples/calls", 3); }

}  // namespace
