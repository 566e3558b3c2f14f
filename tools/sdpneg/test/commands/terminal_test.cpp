#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "bodies.h"
#include "process.h"
#include "testFiles.h"

// What a body holds does not steer the terminal that it is shown on.

namespace {

const std::string escape = "\x1b]0;title\a\x1b[2J";
const std::string c1 = "\xC2\x9B";
const std::string rightToLeft = "\xE2\x80\xAE";

/// A body with control characters in every place that may hold some, whose lines end in CR LF.
const std::string hostile =
    withCrLf("v=0\no=- 17 18 IN IP4 192.0.2.10\ns=" + escape + c1 + rightToLeft +
             "\x7f\x9b\nc=IN IP4 192.0.2.10\nt=0 0\nm=audio 49170 RTP/AVP 0\na=label:" + escape + c1 +
             "\nm=video 49172 RTP/AVP 96\na=label:" + escape + c1 + "\na=rtpmap:96 " + escape + "/90000\n");
const std::string shownTitle = "s=\\x1B]0;title\\x07\\x1B[2J\\xC2\\x9B\\xE2\\x80\\xAE\\x7F\\x9B\n";

/// What a terminal gets, without the CRs that it adds itself.
std::string onTerminal(const std::vector<std::string>& arguments) {
  const Outcome outcome = runSdpneg(arguments, {.outputToTerminal = true, .errorsToTerminal = true});
  return replaced(outcome.out + outcome.err, "\r\n", "\n");
}

bool isHarmless(const std::string& text) {
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if ((byte < 0x20 && c != '\n') || byte >= 0x7f) return false;
  }
  return true;
}

class Terminal : public testing::Test {
 protected:
  /// The name of a file with the transfer form of the body.
  std::string packed() const {
    std::string form = folder.path("form");
    EXPECT_EQ(runSdpneg({"pack", file, "-o", form}).status, 0);
    return form;
  }

  TemporaryFolder folder;
  std::string file = folder.write("hostile.sdp", hostile);
  std::string next = folder.write("next.sdp", replaced(hostile, "17 18", "17 19"));
};

TEST_F(Terminal, GetsNoControlCharactersOfABody) {
  const std::string message = folder.write(
      "invite", "INVITE sip:a SIP/2.0\nSubject: " + escape + "\nc: application/sdp\n\n" + hostile);
  const std::string bad = folder.write("bad.sdp", "v=0\n" + escape + c1 + "\n");
  const std::vector<std::string> commands[] = {
      {"inspect", "--color=never", "--trace", file},
      {"inspect", "--color=never", "--json", file},
      {"inspect", "--color=never", bad},
      {"rewrite", "--trace", "mode", "inactive", file},
      {"rewrite", "mode", "inactive", message},
      {"rewrite", "--diff", "--color=never", "mode", "inactive", message},
      {"rewrite", "restrict-audio", "G722", file},
      {"rewrite", "restrict-audio", escape, file},
      {"compare", "--color=never", file, next},
      {"update-answer", "--trace", file, file, next},
      {"align", "--trace", file, next},
      {"version-increased", "--trace", file, next},
      {"answer", "--local", file, file},
      {"answer", "--local", folder.write("other.sdp", "m=other 5000 RTP/AVP 0\n"),
       folder.write("offer.sdp", "m=" + escape + " 4000 RTP/AVP 0\n")},
      {"unpack", packed(), "-o", "-"},
      {"unpack", bad, "-o", "-"},
      {escape},
      {"inspect", "--color=never", escape}};
  for (const auto& command : commands) {
    const std::string text = onTerminal(command);
    EXPECT_NE(text, "") << testing::PrintToString(command);
    EXPECT_TRUE(isHarmless(text)) << testing::PrintToString(command) << testing::PrintToString(text);
  }
}

TEST_F(Terminal, GetsABodyInLines) {
  const std::string expected = replaced(hostile.substr(0, hostile.find("s=")), "\r\n", "\n") + shownTitle;
  const std::string shown = onTerminal({"rewrite", "set-version", "18", file});
  EXPECT_EQ(shown.substr(0, expected.size()), expected);
  EXPECT_TRUE(onTerminal({"unpack", "-o", "-", packed()}).starts_with(expected));
  EXPECT_TRUE(onTerminal({"align", file, next}).starts_with(replaced(expected, "17 18", "17 19")));
}

TEST_F(Terminal, GetsNoTransferForm) {
  const Outcome outcome = runSdpneg({"pack", file, "-o", "-"}, {.outputToTerminal = true});
  EXPECT_EQ(outcome.out, "");
  EXPECT_EQ(outcome.err,
            "sdpneg: a transfer form is not written to a terminal\nTry 'sdpneg pack --help' for more.\n");
  EXPECT_EQ(outcome.status, 64);
}

TEST_F(Terminal, IsTheOnlyOneThatGetsOtherBytes) {
  EXPECT_EQ(runSdpneg({"rewrite", "set-version", "18", file}).out, hostile);
  const std::string out = folder.write("out", "");
  runSdpneg({"rewrite", "set-version", "18", file}, {.outputFile = out});
  EXPECT_EQ(readBytes(out), hostile);
  EXPECT_EQ(runSdpneg({"unpack", packed(), "-o", "-"}).out, hostile);
  EXPECT_EQ(runSdpneg({"align", file, next}).out, replaced(hostile, "17 18", "17 19"));
}

TEST_F(Terminal, AndPipeGetTheSameJson) {
  const std::string document = runSdpneg({"inspect", "--json", file}).out;
  EXPECT_TRUE(isHarmless(document));
  EXPECT_EQ(nlohmann::json::parse(document)["bodies"][0]["description"]["mediaLines"][0]["label"],
            escape + c1);
  EXPECT_EQ(onTerminal({"inspect", "--json", file}), document);
}

}  // namespace
