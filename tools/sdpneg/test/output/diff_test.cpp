#include <gtest/gtest.h>

#include <sstream>

#include "bodies.h"
#include "process.h"

namespace {

const std::string body(bodies::audioCall);

Outcome diffOf(const std::string& input, const Surroundings& given = {},
               const std::vector<std::string>& more = {}) {
  std::vector<std::string> arguments = {"rewrite", "--diff", "set-version", "19"};
  arguments.insert(arguments.end(), more.begin(), more.end());
  Surroundings surroundings = given;
  surroundings.input = input;
  return runSdpneg(arguments, surroundings);
}

TEST(Diff, IsAUnifiedOne) {
  const Outcome outcome = diffOf(body);
  EXPECT_EQ(outcome.out,
            "--- (standard input)\n"
            "+++ (standard input) (rewritten)\n"
            "@@ -1,5 +1,5 @@\n"
            " v=0\n"
            "-o=ann 17 18 IN IP4 192.0.2.10\n"
            "+o=ann 17 19 IN IP4 192.0.2.10\n"
            " s=-\n"
            " c=IN IP4 192.0.2.10\n"
            " b=AS:80\n");
  EXPECT_EQ(outcome.status, 0);
}

TEST(Diff, IsInColourOnATerminal) {
  const std::string coloured =
      "\x1b[1m--- (standard input)\x1b[0m\n"
      "\x1b[1m+++ (standard input) (rewritten)\x1b[0m\n"
      "\x1b[36m@@ -1,5 +1,5 @@\x1b[0m\n"
      " v=0\n"
      "\x1b[31m-o=ann 17 18 IN IP4 192.0.2.10\x1b[0m\n"
      "\x1b[32m+o=ann 17 19 IN IP4 192.0.2.10\x1b[0m\n"
      " s=-\n"
      " c=IN IP4 192.0.2.10\n"
      " b=AS:80\n";
  EXPECT_EQ(diffOf(body, {.outputToTerminal = true}).out, withCrLf(coloured));
  EXPECT_EQ(diffOf(body, {}, {"--color=always"}).out, coloured);
  const std::string plain = diffOf(body).out;
  EXPECT_EQ(diffOf(body, {.outputToTerminal = true}, {"--color=never"}).out, withCrLf(plain));
  EXPECT_EQ(diffOf(body, {.environment = {{"NO_COLOR", "1"}}, .outputToTerminal = true}).out,
            withCrLf(plain));
}

TEST(Diff, OfWhatStaysIsEmpty) {
  EXPECT_EQ(runSdpneg({"rewrite", "--diff", "set-version", "18"}, {.input = body}).out, "");
}

TEST(Diff, JoinsChangesThatAreNear) {
  // Six lines between two changes are shown, seven are not: the changes stand in hunks of their own.
  const auto hunks = [](int linesBetween) {
    std::string text = "v=0\no=- 1 1 IN IP4 192.0.2.1\n";
    for (int i = 0; i < linesBetween - 2; ++i) text += i == 0 ? "s=-\n" : "i=" + std::to_string(i) + "\n";
    text += "c=IN IP4 192.0.2.1\nt=0 0\nm=audio 5004 RTP/AVP 0\n";
    const Outcome outcome = runSdpneg(
        {"rewrite", "--diff", "increase-version", "--", "mode", "sendonly", "video"}, {.input = text});
    std::size_t count = 0;
    for (std::size_t at = outcome.out.find("@@ -"); at != std::string::npos;
         at = outcome.out.find("@@ -", at + 1)) {
      ++count;
    }
    return count;
  };
  EXPECT_EQ(hunks(6), 1U);
  EXPECT_EQ(hunks(7), 2U);
}

TEST(Diff, ShowsCrsWhereSomeLinesLackThem) {
  EXPECT_EQ(diffOf(withCrLf(body)).out, diffOf(body).out);
  const std::string mixed = runSdpneg({"rewrite", "--diff", "mode", "recvonly"}, {.input = body}).out;
  EXPECT_EQ(mixed,
            "--- (standard input)\n+++ (standard input) (rewritten)\n@@ -8,3 +8,4 @@\n a=rtpmap:8 PCMA/8000\n"
            " a=rtpmap:101 telephone-event/8000\n a=ptime:20\n+a=recvonly\\x0D\n");
}

TEST(Diff, ShowsThatTheLastLineHasNoEnd) {
  const std::string cut = body.substr(0, body.size() - 1);
  const std::string out = runSdpneg({"rewrite", "--diff", "silence", "on"}, {.input = cut}).out;
  EXPECT_NE(out.find("\n-a=ptime:20\n\\ No newline at end of file\n+a=ptime:20a=silenceSupp"),
            std::string::npos)
      << out;
}

TEST(Diff, KeepsControlCharactersFromTheTerminal) {
  const std::string out = diffOf(replaced(body, "s=-", "s=\x1b[2J")).out;
  EXPECT_NE(out.find("\n s=\\x1B[2J\n"), std::string::npos) << out;
}

/// A body of many short lines.
std::string longBody(int period) {
  std::string text =
      "v=0\no=- 1 1 IN IP4 192.0.2.1\ns=-\nc=IN IP4 192.0.2.1\nt=0 0\nm=audio 5004 RTP/AVP 0\n";
  for (int i = 0; text.size() < 20470; ++i)
    text += i % period == 0 ? "a=y\n" : i % 5 == 0 ? "a=z\n" : "a=x\n";
  return text;
}

/// Applies a diff without colours to the text that it was made from.
std::string patched(const std::string& text, const std::string& diff) {
  std::istringstream hunks(diff);
  std::istringstream before(text);
  std::string out;
  std::string line;
  std::string own;
  std::size_t at = 0;
  std::getline(hunks, line);  // the names
  std::getline(hunks, line);
  while (std::getline(hunks, line)) {
    if (line.starts_with("@@ -")) {
      const std::size_t begin = std::stoul(line.substr(4));
      for (; at + 1 < begin && std::getline(before, own); ++at) out += own + "\n";
      continue;
    }
    if (line[0] != '+') {
      ++at;
      if (!std::getline(before, own) || own != line.substr(1)) return "the diff does not fit at " + line;
    }
    if (line[0] != '-') out += line.substr(1) + "\n";
  }
  while (std::getline(before, own)) out += own + "\n";
  return out;
}

TEST(Diff, LeadsFromTheOneTextToTheOther) {
  const TemporaryFolder folder;
  const std::string texts[] = {longBody(2), longBody(3), body, std::string(bodies::secureCall)};
  for (const std::string& a : texts) {
    for (const std::string& b : texts) {
      const Outcome outcome = runSdpneg({"compare", folder.write("a", a), folder.write("b", b)});
      const std::size_t diff = outcome.out.find("\n--- ");
      EXPECT_EQ(diff == std::string::npos, a == b);
      if (diff == std::string::npos) continue;
      EXPECT_TRUE(patched(a, outcome.out.substr(diff + 1)) == b);
    }
  }
}

TEST(Diff, OfWhatIsTooMuchToCompareIsWhole) {
  // The first and the last header field of a long message are corrected: all that stands between is too much.
  std::string fields = "l: 168\n";
  for (int i = 0; i < 10000; ++i) fields += "X: n" + std::to_string(i) + "\n";
  fields += "Content-Length: 168\n";
  const std::string message = "SIP/2.0 200 OK\n" + fields + "\n" + body;
  const Outcome outcome = runSdpneg({"rewrite", "--diff", "mode", "recvonly"}, {.input = message});
  const std::string expected = replaced(message, ": 168\n", ": 180\n") + "a=recvonly\\x0D\n";
  EXPECT_TRUE(patched(message, outcome.out) == expected);
  EXPECT_NE(outcome.out.find("\n-X: n5000\n"), std::string::npos);
}

}  // namespace
