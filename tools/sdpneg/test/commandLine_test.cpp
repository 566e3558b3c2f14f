#include <gtest/gtest.h>

#include "bodies.h"
#include "process.h"
#include "testFiles.h"

namespace {

bool has(const std::string& text, std::string_view piece) { return text.find(piece) != std::string::npos; }

TEST(CommandLine, givesHelp) {
  const Outcome program = runSdpneg({"--help"});
  EXPECT_EQ(program.status, 0);
  EXPECT_EQ(program.err, "");
  EXPECT_TRUE(has(program.out, "inspect                     Show what SDP bodies say\n"));
  EXPECT_TRUE(has(program.out, "Exit status: 0 success;"));
  const Outcome command = runSdpneg({"inspect", "--help"});
  EXPECT_EQ(command.status, 0);
  for (const char* piece :
       {"sdpneg inspect [OPTIONS] [FILE...]", "--json", "--trace", "--color WHEN:{auto,always,never}"}) {
    EXPECT_TRUE(has(command.out, piece)) << piece << command.out;
  }
}

TEST(CommandLine, givesTheVersion) {
  const Outcome outcome = runSdpneg({"--version"});
  EXPECT_EQ(outcome.out, "sdpneg " SDPNEG_VERSION "\n");
  EXPECT_EQ(outcome.status, 0);
}

TEST(CommandLine, refusesWhatItDoesNotKnow) {
  const std::vector<std::vector<std::string>> wrong = {
      {}, {"nothing"}, {"inspect", "--nothing"}, {"inspect", "--color=pink"}, {"inspect", "--color"}};
  for (const auto& arguments : wrong) {
    const Outcome outcome = runSdpneg(arguments, {.input = std::string(bodies::audioCall)});
    EXPECT_EQ(outcome.status, 64);
    EXPECT_EQ(outcome.out, "");
    EXPECT_TRUE(outcome.err.starts_with("sdpneg: ")) << outcome.err;
    EXPECT_TRUE(outcome.err.ends_with("\nTry 'sdpneg --help' for more.\n"));
  }
}

TEST(CommandLine, takesOddNamesForFiles) {
  const Outcome command = runSdpneg({"inspect", "inspect"});
  EXPECT_EQ(command.err, "sdpneg: inspect: cannot be read: No such file or directory\n");
  const Outcome option = runSdpneg({"inspect", "--", "--json"});
  EXPECT_EQ(option.err, "sdpneg: --json: cannot be read: No such file or directory\n");
}

TEST(Completion, followsTheCommandTable) {
  EXPECT_EQ(runSdpneg({"--complete"}).out, "inspect\n--help\n--version\n");
  EXPECT_EQ(runSdpneg({"--complete", "inspect"}).out, "--json\n--trace\n--color\n--help\n<file>\n");
  EXPECT_EQ(runSdpneg({"--complete", "inspect", "--color"}).out, "auto\nalways\nnever\n");
  EXPECT_EQ(runSdpneg({"--complete", "inspect", "--color", "="}).out, "auto\nalways\nnever\n");
  EXPECT_EQ(runSdpneg({"--complete", "nothing"}).out, "");
}

/// What bash offers for a line that ends at the cursor, its words as bash splits them.
std::string offered(const std::string& words, int cursor) {
  const TemporaryFolder folder;
  folder.write("offer.sdp", "");
  const std::string script = "cd '" + folder.path() +
                             "'; source '" SDPNEG_SOURCE_DIR "/completion/sdpneg.bash'; " + "COMP_WORDS=(" +
                             words + "); COMP_CWORD=" + std::to_string(cursor) +
                             "; _sdpneg '" SDPNEG_PROGRAM "'; echo \"${COMPREPLY[*]}\" > reply";
  const std::string command = "bash -c '" + replaced(script, "'", "'\\''") + "'";
  EXPECT_EQ(std::system(command.c_str()), 0);
  return readBytes(folder.path("reply"));
}

TEST(Completion, worksInBash) {
  EXPECT_EQ(offered("sdpneg ins", 1), "inspect\n");
  EXPECT_EQ(offered("sdpneg inspect --j", 2), "--json\n");
  EXPECT_EQ(offered("sdpneg inspect off", 2), "offer.sdp\n");
  EXPECT_EQ(offered("sdpneg inspect --color = al", 4), "always\n");
  EXPECT_EQ(offered("sdpneg inspect --color =", 3), "auto always never\n");
}

TEST(ManualPage, holdsTheCommandTable) {
  const std::string file = SDPNEG_MANUAL;
  if (file.empty()) GTEST_SKIP() << "there is no page where the program does not run";
  const std::string page = readBytes(file);
  EXPECT_TRUE(page.starts_with(".TH SDPNEG 1 \"\" \"sdpneg " SDPNEG_VERSION "\""));
  EXPECT_TRUE(has(page, ".SS \"sdpneg inspect [OPTION...] [FILE...]\"\n"));
  EXPECT_TRUE(has(page, "\\fB\\-\\-color\\fR=\\fIWHEN\\fR\n"));
  EXPECT_TRUE(has(
      page, "WHEN is \\fBauto\\fR, \\fBalways\\fR or \\fBnever\\fR; without the option, \\fBauto\\fR.\n"));
  EXPECT_TRUE(has(page, ".B 64\n"));
}

}  // namespace
