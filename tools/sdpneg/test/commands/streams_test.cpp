#include <gtest/gtest.h>

#include "bodies.h"
#include "process.h"

namespace {

const std::string body(bodies::audioCall);
constexpr const char* escape = "\x1b[";

TEST(StandardInput, IsReadWithoutOperandAndForADash) {
  const Outcome without = runSdpneg({"inspect"}, {.input = body});
  const Outcome dash = runSdpneg({"inspect", "-"}, {.input = body});
  EXPECT_EQ(without.status, 0);
  EXPECT_EQ(without.out, dash.out);
  EXPECT_TRUE(dash.out.starts_with("(standard input)\n  origin "));
}

TEST(Trace, IsTheLibrarysAndGoesToStandardError) {
  const std::string plain = runSdpneg({"inspect"}, {.input = body}).out;
  const Outcome outcome = runSdpneg({"inspect", "--trace"}, {.input = body});
  EXPECT_EQ(outcome.out, plain);
  EXPECT_TRUE(
      outcome.err.starts_with("SDP_NEGOTIATOR_DETAIL:Entering sdpParse() method: SDP length is 168\n"));
  EXPECT_NE(outcome.err.find("SDP_NEGOTIATOR_DETAIL:Exiting sdpParse() method\n"), std::string::npos);
  EXPECT_EQ(outcome.status, 0);
}

TEST(Trace, OfSeveralInputsNamesThem) {
  const TemporaryFolder folder;
  const std::string one = folder.write("1.sdp", body);
  const std::string two = folder.write("2.sdp", "v=0\n");
  const Outcome outcome = runSdpneg({"inspect", "--trace", one, two});
  EXPECT_TRUE(outcome.err.starts_with("==> " + one + " <==\nSDP_NEGOTIATOR_DETAIL:Entering"));
  EXPECT_NE(outcome.err.find("\n==> " + two +
                             " <==\nSDP_NEGOTIATOR_DETAIL:Entering sdpParse() method: SDP length is 4\n"),
            std::string::npos);
}

TEST(Trace, OfARefusedBodyHoldsItsParseOnce) {
  const Outcome outcome = runSdpneg({"inspect", "--trace"}, {.input = std::string(bodies::browserOffer)});
  const std::string line = "SDP_NEGOTIATOR_ERROR:Invalid port number found in m=audio: 9\n";
  const std::size_t first = outcome.err.find(line);
  ASSERT_NE(first, std::string::npos);
  EXPECT_EQ(outcome.err.find(line, first + 1), std::string::npos);
}

TEST(Trace, IsNotWrittenUnasked) {
  const Outcome outcome =
      runSdpneg({"inspect"}, {.input = body, .environment = {{"KVRTT", "SDP_NEGOTIATOR=INFO"}}});
  EXPECT_EQ(outcome.err, "");
}

TEST(ClosedPipe, EndsTheProgramQuietly) {
  const TemporaryFolder folder;
  for (int i = 0; i < 400; ++i) folder.write(std::to_string(i) + ".sdp", body);  // more than a pipe holds
  for (const char* form : {"--color=never", "--json"}) {
    const Outcome outcome = runSdpneg({"inspect", form, folder.path()}, {.readOneLine = true});
    EXPECT_EQ(outcome.err, "");
    EXPECT_EQ(outcome.status, 0);
  }
}

TEST(FullDisk, IsAnErrorOfItsOwn) {
  const Outcome outcome = runSdpneg({"inspect"}, {.input = body, .outputFile = "/dev/full"});
  EXPECT_EQ(outcome.err, "sdpneg: standard output cannot be written: No space left on device\n");
  EXPECT_EQ(outcome.status, 74);
}

bool isColoured(const std::string& text) { return text.find(escape) != std::string::npos; }

TEST(Colours, AreForATerminal) {
  EXPECT_TRUE(isColoured(runSdpneg({"inspect"}, {.input = body, .outputToTerminal = true}).out));
  EXPECT_FALSE(isColoured(runSdpneg({"inspect"}, {.input = body}).out));
  EXPECT_FALSE(isColoured(runSdpneg({"inspect", "--color=auto"}, {.input = body}).out));
}

TEST(Colours, CanBeAskedForAndTurnedOff) {
  EXPECT_TRUE(isColoured(runSdpneg({"inspect", "--color=always"}, {.input = body}).out));
  EXPECT_TRUE(isColoured(runSdpneg({"inspect", "--color", "always"}, {.input = body}).out));
  EXPECT_FALSE(
      isColoured(runSdpneg({"inspect", "--color=never"}, {.input = body, .outputToTerminal = true}).out));
  EXPECT_FALSE(isColoured(runSdpneg({"inspect", "--json", "--color=always"}, {.input = body}).out));
}

TEST(Colours, FollowNoColor) {
  const auto run = [](const char* option, const char* value) {
    return isColoured(
        runSdpneg({"inspect", option},
                  {.input = body, .environment = {{"NO_COLOR", value}}, .outputToTerminal = true})
            .out);
  };
  EXPECT_FALSE(run("--color=auto", "1"));
  EXPECT_TRUE(run("--color=auto", ""));  // set but empty does not count
  EXPECT_TRUE(run("--color=always", "1"));
}

TEST(Colours, AreNotForADumbTerminal) {
  const Surroundings surroundings{.input = body, .environment = {{"TERM", "dumb"}}, .outputToTerminal = true};
  EXPECT_FALSE(isColoured(runSdpneg({"inspect"}, surroundings).out));
}

TEST(Colours, ChangeNothingElse) {
  std::string out = runSdpneg({"inspect", "--color=always"}, {.input = body}).out;
  for (const char* code : {"\x1b[0m", "\x1b[1m", "\x1b[31m", "\x1b[32m", "\x1b[33m", "\x1b[36m"}) {
    out = replaced(out, code, "");
  }
  EXPECT_EQ(out, runSdpneg({"inspect"}, {.input = body}).out);
}

class ProgressBar : public testing::Test {
 protected:
  void fill(int count) const {
    for (int i = 0; i < count; ++i) folder.write(std::to_string(i) + ".sdp", body);
  }

  TemporaryFolder folder;
};

TEST_F(ProgressBar, IsShownOnATerminalAndRemoved) {
  fill(60);
  const Outcome outcome = runSdpneg({"inspect", folder.path()}, {.errorsToTerminal = true});
  EXPECT_NE(outcome.err.find("\r[........................................] 1/60"), std::string::npos);
  EXPECT_TRUE(outcome.err.ends_with(" \r"));
  EXPECT_EQ(outcome.out, runSdpneg({"inspect", folder.path()}).out);
}

TEST_F(ProgressBar, IsNotShownForFewInputs) {
  fill(49);
  EXPECT_EQ(runSdpneg({"inspect", folder.path()}, {.errorsToTerminal = true}).err, "");
}

TEST_F(ProgressBar, IsNotShownWithoutATerminal) {
  fill(60);
  EXPECT_EQ(runSdpneg({"inspect", folder.path()}).err, "");
  const Surroundings dumb{.environment = {{"TERM", "dumb"}}, .errorsToTerminal = true};
  EXPECT_EQ(runSdpneg({"inspect", folder.path()}, dumb).err, "");
}

TEST_F(ProgressBar, MakesRoomForMessages) {
  fill(60);
  folder.write("5.sdp", "hello\n");
  const Outcome outcome = runSdpneg({"inspect", folder.path()}, {.errorsToTerminal = true});
  EXPECT_NE(outcome.err.find(" \rsdpneg: " + folder.path("5.sdp") + ":1:1: expected"), std::string::npos);
}

}  // namespace
