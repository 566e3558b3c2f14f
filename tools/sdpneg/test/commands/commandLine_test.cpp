#include <gtest/gtest.h>

#include <map>
#include <set>
#include <sstream>

#include "bodies.h"
#include "process.h"
#include "testFiles.h"

namespace {

bool has(const std::string& text, std::string_view piece) { return text.find(piece) != std::string::npos; }

TEST(CommandLine, GivesHelp) {
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

/// Lines of two columns: what stands in front of the first two blanks in a row, and behind them.
std::map<std::string, std::string> columns(const std::string& list, std::set<std::size_t>& seconds) {
  std::map<std::string, std::string> rows;
  std::istringstream lines(list);
  for (std::string line; std::getline(lines, line);) {
    const std::size_t gap = line.find("  ");
    const std::size_t second = line.find_first_not_of(' ', gap);
    rows[line.substr(0, gap)] = line.substr(second);
    seconds.insert(second);
  }
  return rows;
}

TEST(CommandLine, ListsTheRequests) {
  const Outcome outcome = runSdpneg({"requests"});
  EXPECT_EQ(outcome.status, 0);
  std::set<std::size_t> seconds;
  auto rows = columns(outcome.out, seconds);
  EXPECT_EQ(seconds.size(), 1U);  // they stand below one another
  EXPECT_EQ(rows["set-version N"], "Set the session version of the o-line.");
  EXPECT_EQ(rows["modify-origin ID VERSION [IP]"],
            "Write a new o-line; without an address, with the unspecified one.");
  EXPECT_EQ(rows["restrict-audio CODECS [kept|given]"],
            "Keep these audio codecs, in the body's order or the given one.");
  EXPECT_EQ(rows["mode sendonly|recvonly|inactive [audio|video]"],
            "Restrict the direction of the session and its media.");
  EXPECT_EQ(rows["port-off MEDIA"], "Set port 0; with video, for application too.");
  EXPECT_EQ(rows["remove-preconditions"], "Remove the precondition lines.");
  EXPECT_EQ(rows["remove-plain"], "Remove the RTP/AVP media.");
  EXPECT_EQ(rows["keep-codecs LIST [MEDIA]"],
            "Keep the codecs of a LIST, and what serves them; sections without go to port 0.");
  EXPECT_EQ(rows["direction sendrecv|sendonly|recvonly|inactive [MEDIA]"], "Give sections a direction.");
  EXPECT_EQ(rows["canonical"], "Write the form on which all readers agree, or refuse what has none.");
  EXPECT_EQ(rows["dummy answer|ack|recvonly-ack IP PORT [hold|active] [CODECS]"],
            "Turn a received body into one that stands for the own, on hold unless active.");
}

TEST(CommandLine, HelpOfRewriteListsTheRequests) {
  const Outcome help = runSdpneg({"rewrite", "--help"});
  EXPECT_TRUE(has(help.out, "\nRequests:\n" + runSdpneg({"requests"}).out));
  EXPECT_TRUE(
      has(help.out,
          "Usage: sdpneg rewrite [OPTIONS] REQUEST [ARGUMENT...] [-- REQUEST [ARGUMENT...]]... [FILE]\n"));
  EXPECT_EQ(runSdpneg({"rewrite", "mode", "--help"}).out, help.out);
}

TEST(CommandLine, GivesTheVersion) {
  const Outcome outcome = runSdpneg({"--version"});
  EXPECT_EQ(outcome.out, "sdpneg " SDPNEG_VERSION "\n");
  EXPECT_EQ(outcome.status, 0);
}

TEST(CommandLine, RefusesWhatItDoesNotKnow) {
  const std::vector<std::vector<std::string>> wrong = {
      {}, {"nothing"}, {"inspect", "--nothing"}, {"inspect", "--color=pink"}, {"inspect", "--color"}};
  for (const auto& arguments : wrong) {
    const Outcome outcome = runSdpneg(arguments, {.input = std::string(bodies::audioCall)});
    EXPECT_EQ(outcome.status, 64);
    EXPECT_EQ(outcome.out, "");
    EXPECT_TRUE(outcome.err.starts_with("sdpneg: ")) << outcome.err;
    const std::string help = arguments.size() > 1 ? "sdpneg inspect --help" : "sdpneg --help";
    EXPECT_TRUE(outcome.err.ends_with("\nTry '" + help + "' for more.\n")) << outcome.err;
  }
}

TEST(CommandLine, TakesOddNamesForFiles) {
  const Outcome command = runSdpneg({"inspect", "inspect"});
  EXPECT_EQ(command.err, "sdpneg: inspect: cannot be read: No such file or directory\n");
  const Outcome option = runSdpneg({"inspect", "--", "--json"});
  EXPECT_EQ(option.err, "sdpneg: --json: cannot be read: No such file or directory\n");
}

TEST(Completion, FollowsTheCommandTable) {
  EXPECT_EQ(
      runSdpneg({"--complete"}).out,
      "inspect\nsections\nrewrite\nrequests\ncreate\ncompare\nanswer\ncheck-answer\ncalls\nupdate-answer\nversion-increased\nalign\npack\nunpack\n--help\n--version\n");
  EXPECT_EQ(runSdpneg({"--complete", "pack"}).out, "--output\n--help\n<file>\n");
  EXPECT_EQ(runSdpneg({"--complete", "pack", "-o"}).out, "<file>\n");
  EXPECT_EQ(runSdpneg({"--complete", "inspect"}).out, "--json\n--trace\n--color\n--help\n<file>\n");
  EXPECT_EQ(runSdpneg({"--complete", "check-answer"}).out, "--json\n--help\n<file>\n");
  EXPECT_EQ(runSdpneg({"--complete", "sections"}).out, "--json\n--color\n--help\n<file>\n");
  EXPECT_EQ(runSdpneg({"--complete", "inspect", "--color"}).out, "auto\nalways\nnever\n");
  EXPECT_EQ(runSdpneg({"--complete", "inspect", "--color", "="}).out, "auto\nalways\nnever\n");
  EXPECT_EQ(runSdpneg({"--complete", "requests"}).out, "--operations\n--help\n");
  EXPECT_EQ(runSdpneg({"--complete", "align"}).out, "--trace\n--help\n<file>\n");
  EXPECT_EQ(runSdpneg({"--complete", "answer"}).out,
            "--local\n--prefer\n--single\n--setup\n--previous\n--help\n<file>\n");
  EXPECT_EQ(runSdpneg({"--complete", "answer", "--prefer"}).out, "local\noffer\n");
  EXPECT_EQ(runSdpneg({"--complete", "nothing"}).out, "");
}

/// The first words of the list of requests, one a line.
std::string requestNames() {
  std::string names;
  std::istringstream list(runSdpneg({"requests"}).out);
  for (std::string line; std::getline(list, line);) names += line.substr(0, line.find(' ')) + "\n";
  return names;
}

TEST(Completion, FollowsTheRequestTable) {
  EXPECT_TRUE(has(requestNames(), "set-version\nincrease-version\n"));
  const std::string options = "--diff\n--in-place\n--verbose\n--trace\n--color\n--help\n";
  const std::string names = requestNames();
  const struct {
    std::vector<std::string> words;
    std::string offered;
  } cases[] = {{{}, options + names},
               {{"--diff"}, options + names},
               {{"--color"}, "auto\nalways\nnever\n"},
               {{"--color", "never"}, options + names},
               {{"set-version"}, options},
               {{"set-version", "1"}, options + "--\n<file>\n"},
               {{"restrict-audio", "PCMU"}, options + "kept\ngiven\n--\n<file>\n"},
               {{"mode"}, options + "sendonly\nrecvonly\ninactive\n"},
               {{"mode", "inactive"}, options + "audio\nvideo\n--\n<file>\n"},
               {{"copy-origin"}, options + "<file>\n"},
               {{"match-mlines", "a.sdp"}, options + "media\ntransport\nkeep\n--\n<file>\n"},
               {{"change-security", "best-effort2"},
                options + "none\nplain\nsecure\nboth\nbest-effort1\nbest-effort2\nunknown\n"},
               {{"renew-origin", "--"}, options + names},
               {{"renew-origin", "--", "silence"}, options + "on\noff\n"},
               {{"keep-codecs", "PCMU"},
                options + "audio\nvideo\ntext\napplication\nmessage\nimage\nall\n--\n<file>\n"},
               {{"direction"}, options + "sendrecv\nsendonly\nrecvonly\ninactive\n"},
               {{"anchor", "192.0.2.1"}, options},
               {{"nothing"}, ""}};
  for (const auto& each : cases) {
    std::vector<std::string> arguments = {"--complete", "rewrite"};
    arguments.insert(arguments.end(), each.words.begin(), each.words.end());
    EXPECT_EQ(runSdpneg(arguments).out, each.offered) << testing::PrintToString(each.words);
  }
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

TEST(Completion, WorksInBash) {
  EXPECT_EQ(offered("sdpneg ins", 1), "inspect\n");
  EXPECT_EQ(offered("sdpneg inspect --j", 2), "--json\n");
  EXPECT_EQ(offered("sdpneg inspect off", 2), "offer.sdp\n");
  EXPECT_EQ(offered("sdpneg inspect --color = al", 4), "always\n");
  EXPECT_EQ(offered("sdpneg inspect --color =", 3), "auto always never\n");
  EXPECT_EQ(offered("sdpneg rewrite mode in", 3), "inactive\n");
  EXPECT_EQ(offered("sdpneg rewrite renew-origin off", 3), "offer.sdp\n");
}

TEST(ManualPage, HoldsTheCommandTable) {
  const std::string file = SDPNEG_MANUAL;
  if (file.empty()) GTEST_SKIP() << "there is no page where the program does not run";
  const std::string page = readBytes(file);
  EXPECT_TRUE(page.starts_with(".TH SDPNEG 1 \"\" \"sdpneg " SDPNEG_VERSION "\""));
  EXPECT_TRUE(has(page, ".SS \"sdpneg inspect [OPTION...] [FILE...]\"\n"));
  EXPECT_TRUE(has(page, "\\fB\\-\\-color\\fR=\\fIWHEN\\fR\n"));
  EXPECT_TRUE(has(
      page, "WHEN is \\fBauto\\fR, \\fBalways\\fR or \\fBnever\\fR; without the option, \\fBauto\\fR.\n"));
  EXPECT_TRUE(has(page, ".B 64\n"));
  EXPECT_TRUE(has(
      page,
      ".SS \"sdpneg rewrite [OPTION...] REQUEST [ARGUMENT...] [\\-\\- REQUEST [ARGUMENT...]]... [FILE]\"\n"));
  EXPECT_TRUE(has(page,
                  ".TP\n\\fBset\\-version N\\fR\nSet the session version of the o\\-line.\n"
                  "\\fIN\\fR is a whole number from 0 to 9223372036854775807.\n"));
  EXPECT_TRUE(has(page, ".TP\n\\fBsilence on|off\\fR\n"));
  EXPECT_TRUE(has(
      page,
      ".TP\n\\fBset\\-profile PROFILE [MEDIA]\\fR\n"
      "Give RTP sections a profile, and take out the keys that do not go with it.\n"
      "\\fIPROFILE\\fR is a profile of RTP: RTP/AVP, RTP/AVPF, RTP/SAVP, RTP/SAVPF, UDP/TLS/RTP/SAVP or UDP/TLS/RTP/SAVPF.\n"
      "\\fIMEDIA\\fR is a section's number, mid=VALUE, or one of these words: audio, video, text, "
      "application, message, image or all.\n"));
  EXPECT_TRUE(has(page, ".SS \"sdpneg answer [OPTION...] \\-\\-local=FILE OFFER\"\n"));
  EXPECT_TRUE(has(page, "\nROLE is \\fBpassive\\fR.\n"));
  EXPECT_TRUE(has(page, "\\fB\\-o\\fR, \\fB\\-\\-output\\fR=\\fIOUT\\fR\n"));
}

}  // namespace
