#include <gtest/gtest.h>
#include <sys/stat.h>

#include "bodies.h"
#include "process.h"

namespace {

const std::string head = "v=0\no=- 1 1 IN IP4 192.0.2.1\ns=-\nc=IN IP4 192.0.2.1\nt=0 0\n";

std::string repeated(std::string_view text, int times) {
  std::string out;
  for (int i = 0; i < times; ++i) out += text;
  return out;
}

/// Letters without a pattern that deflate could use.
std::string noise(std::size_t length) {
  std::string out;
  unsigned int state = 12345;
  while (out.size() < length) {
    state = state * 1664525U + 1013904223U;
    out += static_cast<char>('!' + (state >> 24U) % 90U);
  }
  return out;
}

struct Case {
  const char* name;
  std::string bytes;
  std::string line;  ///< on standard error, behind the file's name
};

std::ostream& operator<<(std::ostream& out, const Case& each) { return out << each.name; }

class BadInput : public testing::TestWithParam<Case> {};

TEST_P(BadInput, IsSaidInOneLineAndTheOthersAreShown) {
  const TemporaryFolder folder;
  const std::string bad = folder.write("bad.sdp", GetParam().bytes);
  const std::string good = folder.write("good.sdp", bodies::audioCall);
  const Outcome outcome = runSdpneg({"inspect", bad, good});
  EXPECT_EQ(outcome.err, "sdpneg: " + bad + ":" + GetParam().line + "\n");
  EXPECT_EQ(outcome.status, 2);
  EXPECT_NE(outcome.out.find(good + "\n  origin            o=ann 17 18 IN IP4 192.0.2.10\n"),
            std::string::npos);
}

const Case cases[] = {
    {"empty", "", "1:1: there is no text"},
    {"noSdp", "hello\n", "1:1: expected a first line \"v=\", found \"hello\""},
    {"lineWithoutEquals", head + "m=audio 5004 RTP/AVP 0\nabc\n",
     "7:2: expected an equals sign behind the letter, found \"bc\""},
    {"portThatIsNoNumber", head + "m=audio http RTP/AVP 0\n",
     "6:9: expected a port, found \"http RTP/AVP 0\""},
    {"controlCharacters", "v=0\n\x1b[2J\n",
     "2:1: expected a line of a letter, an equals sign and a value, found \"\\x1B[2J\""},
    {"nul", head + "m=audio 5004 RTP/AVP 0\na=fmtp" + std::string(1, '\0') + ":0 x=1\n",
     "7:7: a NUL byte ends the text; 8 bytes are not read"},
    {"nulInWhatIsNoSdp", head + "m=audio" + std::string(1, '\0') + " 5004 RTP/AVP 0\n",
     "6:8: expected a port, found the end of the text; a NUL byte ends the text at line 6, column 8"},
    {"smallPort", head + "m=audio 1023 RTP/AVP 0\n",
     "6:9: the port of m-line 1 (audio), 1023, is below 1024"},
    {"largePort", head + "m=audio 65536 RTP/AVP 0\n",
     "6:9: the port of m-line 1 (audio), 65536, is above 65535"},
    {"hugePort", head + "m=audio 4294967296 RTP/AVP 0\n",
     "6:9: the port of m-line 1 (audio), 4294967296, is above 65535"},
    {"portOfLaterAudio", head + "m=audio 0 RTP/AVP 0\nm=video 9 RTP/AVP 31\nm=audio 80 RTP/AVP 0\n",
     "8:9: the port of m-line 3 (audio), 80, is below 1024"},
    {"portOfVideoWithoutAudio", head + "m=video 9 RTP/AVP 31\na=inactive\nm=video  9 RTP/AVP 31\n",
     "8:10: the port of m-line 2 (video), 9, is below 1024"},
    {"portOfImage", head + "m=text 9 RTP/AVP 98\nm=image 80 udptl t38\n",
     "7:9: the port of m-line 2 (image), 80, is below 1024"},
    {"typeOfSessionAddress",
     replaced(head, "c=IN IP4 192.0.2.1", "c=IN IP4 call.example") + "m=audio 80 RTP/AVP 0\n",
     "4:10: the session's c-line has the type IP4, but \"call.example\" is no IPv4 address"},
    {"typeOfSessionAddress6", replaced(head, "c=IN IP4", "c=IN ip6") + "m=audio 5004 RTP/AVP 0\n",
     "4:10: the session's c-line has the type ip6, but \"192.0.2.1\" is no IPv6 address"},
    {"addressOfMedia", head + "m=audio 5004 RTP/AVP 0\nc=IN IP4 call.example\n",
     "7:10: the c-line of m-line 1 (audio) names \"call.example\", which is no IP address"},
    {"inheritedAddress",
     replaced(head, "c=IN IP4 192.0.2.1", "c=IN X call.example") +
         "m=audio 0 RTP/AVP 0\nm=audio 5004 RTP/AVP 0\n",
     "4:8: the session's c-line, which m-line 2 (audio) has its address from, names \"call.example\", which is no IP address"},
    {"tooManyMedia", head + repeated("m=audio 5004 RTP/AVP 0\n", 27),
     "31:3: the body has 27 m-lines, and at most 25 are read"},
    {"tooLong", head + "a=x:" + std::string(20480 - head.size() - 5, 'x') + "\ny=1\n",
     "7:1: the body is longer than 20480 characters"},
    {"doesNotDeflate", head + "a=x:" + noise(5000) + "\n",
     "1:1: the text cannot be stored: it does not deflate into 2560 bytes"},
    // An error that does not end the parse is not taken for the reason.
    {"doesNotDeflateAfterAnError", head + "m=audio 5004 RTP/AVP 0\na=ptime:abc\na=x:" + noise(5000) + "\n",
     "1:1: the text cannot be stored: it does not deflate into 2560 bytes"},
    {"carriageReturnsOnly", replaced(head, "\n", "\r") + "m=audio 9 RTP/AVP 0\r",
     "1:4: expected CR LF or LF at the line's end, found \"\\x0Do=- 1 1 IN IP4 192.0.2.1\\x0Ds=-\\x0Dc=IN IP4 1\"..."},
    {"aLineBehindACarriageReturn", head + "i=x\ra=crypto:1 AES\nm=audio 5004 RTP/AVP 0\n",
     "6:4: expected CR LF or LF at the line's end; it is not shown, since it may have keys"},
    {"noEqualsSignInALineWithKeys", head + "a crypto:1 AES inline:c2VjcmV0\n",
     "6:2: expected an equals sign behind the letter; it is not shown, since it may have keys"},
    {"tooLarge", std::string(1024 * 1024 + 1, 'v'), " is longer than 1048576 bytes"},
};

INSTANTIATE_TEST_SUITE_P(Kinds, BadInput, testing::ValuesIn(cases),
                         [](const auto& each) { return std::string(each.param.name); });

TEST(RefusedBody, IsShownAsATableOfItsMedia) {
  const Outcome outcome = runSdpneg({"inspect"}, {.input = std::string(bodies::browserOffer)});
  EXPECT_EQ(outcome.status, 2);
  EXPECT_EQ(outcome.err, "sdpneg: (standard input):5:9: the port of m-line 1 (audio), 9, is below 1024\n");
  EXPECT_EQ(
      outcome.out,
      "(standard input)\n"
      "  result            refused\n"
      "  problem           the port of m-line 1 (audio), 9, is below 1024\n"
      "  description       complete\n"
      "\n"
      "  m-line  line  media  port  transport          direction  address  bandwidth  label  formats\n"
      "  1       5     audio  9     UDP/TLS/RTP/SAVPF  sendrecv   0.0.0.0  -          -      111 opus/48000/2, 0\n"
      "\n"
      "  section  mid  media  address  port  profile            security  direction  rtcp-mux  bundle  codecs\n"
      "  1        -    audio  0.0.0.0  9     UDP/TLS/RTP/SAVPF  dtls      sendrecv   -         -       opus, PCMU\n");
}

TEST(RefusedBody, TellsHowManyMediaAreNotShown) {
  const Outcome outcome = runSdpneg({"inspect"}, {.input = head + repeated("m=audio 5004 RTP/AVP 0\n", 27)});
  EXPECT_NE(outcome.out.find("\n  25      30    audio"), std::string::npos);
  const std::size_t sections = outcome.out.find("\n  and 2 more m-lines\n\n  section ");
  ASSERT_NE(sections, std::string::npos);
  EXPECT_GT(outcome.out.find("\n  26 "), sections);
}

TEST(BodyThatIsTooLongForTheAnalysis, HasItsSectionsShown) {
  const std::string body =
      head + "m=audio 9 RTP/AVP 8\na=x:" + std::string(std::size_t{1024} * 1024, 'x') + "\n";
  const Outcome outcome = runSdpneg({"inspect"}, {.input = body});
  EXPECT_EQ(outcome.status, 2);
  EXPECT_EQ(outcome.err, "sdpneg: (standard input): is longer than 1048576 bytes\n");
  EXPECT_EQ(outcome.out,
            "(standard input)\n"
            "  result            unreadable\n"
            "  problem           is longer than 1048576 bytes\n"
            "\n"
            "  section  mid  media  address    port  profile  security  direction  rtcp-mux  bundle  codecs\n"
            "  1        -    audio  192.0.2.1  9     RTP/AVP  plain     sendrecv   -         -       PCMA\n");
}

TEST(BodyThatIsTooLongForTheAnalysis, IsRefusedByRequestsOfTheObject) {
  const std::string body =
      head + "m=audio 9 RTP/AVP 8\na=x:" + std::string(std::size_t{1024} * 1024, 'x') + "\n";
  const Outcome outcome = runSdpneg({"rewrite", "increase-version"}, {.input = body});
  EXPECT_EQ(outcome.status, 2);
  EXPECT_EQ(outcome.err, "sdpneg: (standard input): is longer than 1048576 bytes\n");
  EXPECT_EQ(outcome.out, "");
}

TEST(UndecodableBody, HasABlockWithTheReason) {
  const Outcome outcome = runSdpneg({"inspect"}, {.input = "hello\n"});
  EXPECT_EQ(outcome.out,
            "(standard input)\n"
            "  result            undecodable\n"
            "  problem           expected a first line \"v=\", found \"hello\"\n");
}

TEST(BodyWithANul, IsShownUpToIt) {
  const std::string body = std::string(bodies::audioCall) + std::string(1, '\0') + "a=sendonly\n";
  const Outcome outcome = runSdpneg({"inspect"}, {.input = body});
  EXPECT_EQ(outcome.status, 2);
  EXPECT_EQ(outcome.err, "sdpneg: (standard input):11:1: a NUL byte ends the text; 12 bytes are not read\n");
  EXPECT_NE(outcome.out.find("  port              49170\n"), std::string::npos);
  EXPECT_NE(outcome.out.find("  direction         sendrecv\n"), std::string::npos);
}

TEST(File, ThatIsMissingIsNamed) {
  const TemporaryFolder folder;
  const Outcome outcome = runSdpneg({"inspect", folder.path("none.sdp")});
  EXPECT_EQ(outcome.status, 2);
  EXPECT_EQ(outcome.err,
            "sdpneg: " + folder.path("none.sdp") + ": cannot be read: No such file or directory\n");
}

TEST(File, WithoutANameIsToldSo) {
  const Outcome outcome = runSdpneg({"inspect", ""});
  EXPECT_EQ(outcome.status, 2);
  EXPECT_EQ(outcome.err, "sdpneg: an empty word names no file\n");
}

TEST(File, WithoutAnEndIsRefused) {
  const Outcome outcome = runSdpneg({"inspect", "/dev/zero"});
  EXPECT_EQ(outcome.status, 2);
  EXPECT_EQ(outcome.err, "sdpneg: /dev/zero: is longer than 67108864 bytes\n");
}

TEST(File, WithAnEscapeInItsNameIsNamedSafely) {
  const Outcome outcome = runSdpneg({"inspect", "\x1b[2J"});
  EXPECT_EQ(outcome.err, "sdpneg: \\x1B[2J: cannot be read: No such file or directory\n");
}

TEST(Folder, GivesItsBodiesInOrderAndCounts) {
  const TemporaryFolder folder;
  const std::string one = folder.write("b/one.sdp", bodies::faxCall);
  const std::string two = folder.write("a.sdp", bodies::audioCall);
  const std::string three = folder.write("b/c/three.sdp", bodies::browserOffer);
  folder.write("notes.txt", "no body");
  std::filesystem::create_directory_symlink(folder.path(), folder.path("b/loop"));
  mkfifo(folder.path("pipe.sdp").c_str(), 0600);  // nobody writes to it
  const Outcome outcome = runSdpneg({"inspect", folder.path()});
  EXPECT_EQ(outcome.status, 2);
  EXPECT_EQ(outcome.err, "sdpneg: " + three + ":5:9: the port of m-line 1 (audio), 9, is below 1024\n");
  const std::size_t first = outcome.out.find(two + "\n");
  const std::size_t second = outcome.out.find("\n\n" + three + "\n");
  const std::size_t third = outcome.out.find("\n\n" + one + "\n");
  EXPECT_EQ(first, 0U);
  EXPECT_LT(second, third);
  EXPECT_NE(third, std::string::npos);
  EXPECT_TRUE(outcome.out.ends_with("\n\n3 inputs: 2 parsed, 1 refused, 0 undecodable, 0 unreadable\n"));
}

TEST(Folder, WithoutBodiesIsAProblem) {
  const TemporaryFolder folder;
  folder.write("notes.txt", "no body");
  const Outcome outcome = runSdpneg({"inspect", folder.path()});
  EXPECT_EQ(outcome.status, 2);
  EXPECT_EQ(outcome.err, "sdpneg: " + folder.path() + ": holds no file *.sdp\n");
  EXPECT_TRUE(outcome.out.ends_with("1 input: 0 parsed, 0 refused, 0 undecodable, 1 unreadable\n"));
}

TEST(File, GivenByNameMayHaveAnyEnding) {
  const TemporaryFolder folder;
  const std::string file = folder.write("offer.txt", bodies::audioCall);
  const Outcome outcome = runSdpneg({"inspect", file, file});
  EXPECT_EQ(outcome.status, 0);
  EXPECT_TRUE(outcome.out.ends_with("\n\n2 inputs: 2 parsed, 0 refused, 0 undecodable, 0 unreadable\n"));
}

}  // namespace
