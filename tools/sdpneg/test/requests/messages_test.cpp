#include <gtest/gtest.h>

#include "bodies.h"
#include "rewriteCases.h"

// What the program says where something is wrong, and what it offers instead.

namespace {

using namespace rewriting;

const std::string audio(bodies::audioCall);

struct Mistake {
  std::vector<std::string> words;
  std::string said;
  std::string help = "sdpneg --help";
};

void expectMistake(const Mistake& each) {
  const Outcome outcome = runSdpneg(each.words, {.input = audio});
  EXPECT_EQ(outcome.err, "sdpneg: " + each.said + "\nTry '" + each.help + "' for more.\n");
  EXPECT_EQ(outcome.out, "");
  EXPECT_EQ(outcome.status, 64);
}

TEST(UnknownCommand, IsToldTheNearest) {
  const Mistake mistakes[] = {
      {{"inspct"}, "there is no command 'inspct'; did you mean 'inspect'?"},
      {{"rewriet", "renew-origin"}, "there is no command 'rewriet'; did you mean 'rewrite'?"},
      {{"version", "a", "b"}, "there is no command 'version'; did you mean 'version-increased'?"},
      {{"re"}, "there is no command 're'"},
      {{"elephant"}, "there is no command 'elephant'"},
      {{std::string(100000, 'x')}, "there is no command '" + std::string(100000, 'x') + "'"},
      {{"remove-ice", "call.sdp"},
       "there is no command 'remove-ice'; it is a request: 'sdpneg rewrite remove-ice'"}};
  for (const Mistake& each : mistakes) expectMistake(each);
}

TEST(UnknownRequest, IsToldTheNearest) {
  const std::string list = "'sdpneg requests' lists them";
  const std::string help = "sdpneg rewrite --help";
  const Mistake mistakes[] = {
      {{"rewrite", "mdoe"}, "there is no request 'mdoe'; did you mean 'mode'? " + list, help},
      {{"rewrite", "incrase-version"},
       "there is no request 'incrase-version'; did you mean 'increase-version'? " + list,
       help},
      {{"rewrite", "renew-origin", "--", "double"},
       "there is no request 'double'; did you mean 'double-mlines'? " + list,
       help},
      {{"rewrite", "restrict"}, "there is no request 'restrict'; " + list, help},
      {{"rewrite", "elephant"}, "there is no request 'elephant'; " + list, help}};
  for (const Mistake& each : mistakes) expectMistake(each);
}

TEST(Hint, NamesTheHelpOfTheCommand) {
  const std::string help = " --help";
  for (const std::vector<std::string>& words : {std::vector<std::string>{"inspect", "--nothing"},
                                                {"requests", "x"},
                                                {"compare", "a"},
                                                {"pack", "a"}}) {
    const Outcome outcome = runSdpneg(words, {.input = audio});
    EXPECT_TRUE(outcome.err.ends_with("\nTry 'sdpneg " + words.front() + help + "' for more.\n"))
        << outcome.err;
    EXPECT_EQ(outcome.status, 64);
  }
}

TEST(UnknownCodec, IsToldThoseThatAre) {
  const std::string video =
      "; known are H263, H264, MPEG4, Ce1B, JPEG, nv, H261, MPV, MP2T, H263-1998, H263-2000, VP8, H224\n";
  const std::string err = runRewrite({"restrict-video", "FOO"}, audio).err;
  EXPECT_EQ(err.substr(0, err.find('\n') + 1),
            "sdpneg: CODECS of restrict-video is names of video codecs between commas, not 'FOO'" + video);
  for (const char* request : {"restrict-audio", "reorder-audio", "prefer-audio"}) {
    const Outcome outcome = runRewrite({request, "FOO"}, audio);
    EXPECT_NE(outcome.err.find(", not 'FOO'; known are PCMA, PCMA@56, PCMU, "), std::string::npos)
        << outcome.err;
    EXPECT_NE(outcome.err.find(", COMFORT_NOISE, OPUS\n"), std::string::npos) << outcome.err;
  }
  // The names of traces are none that rtpmap lines have.
  const Outcome dummy = runRewrite({"dummy", "ack", "192.0.2.1", "0", "hold", "FOO", "-"}, audio);
  EXPECT_NE(dummy.err.find("G7221/32000@48, OPUS\n"), std::string::npos) << dummy.err;
}

/// A capture file's first bytes, filled up to a size.
std::string capture(std::string begin, std::size_t size) {
  begin.resize(size, '\0');
  return begin;
}

TEST(CaptureFile, IsToldAsOne) {
  const struct {
    std::string bytes;
    const char* told;
  } files[] = {
      {capture("\xD4\xC3\xB2\xA1\x02", 24), "pcap): 'sdpneg calls' reads it"},
      {capture("\xA1\xB2\xC3\xD4", 24), "pcap): 'sdpneg calls' reads it"},
      {capture("\x4D\x3C\xB2\xA1", 24), "pcap): 'sdpneg calls' reads it"},
      {capture("\xA1\xB2\x3C\x4D", 2000000), "pcap): 'sdpneg calls' reads it"},  // larger than inputs may be
      {capture(std::string("\n\r\r\n\x1c\0\0\0\x4D\x3C\x2B\x1A", 12), 28),
       "pcapng): 'sdpneg calls' reads it"},
      {capture(std::string("\n\r\r\n\0\0\0\x1c\x1A\x2B\x3C\x4D", 12), 28),
       "pcapng): 'sdpneg calls' reads it"},
      {capture("snoop", 16), "snoop), which is not read"}};
  const TemporaryFolder folder;
  for (const auto& each : files) {
    const std::string file = folder.write("call.pcap", each.bytes);
    const Outcome outcome = runSdpneg({"rewrite", "renew-origin", file});
    EXPECT_EQ(outcome.err, "sdpneg: " + file + ": is a capture file (" + each.told + "\n");
    EXPECT_EQ(outcome.status, 2);
  }
}

TEST(CaptureFile, IsNoMessageBehindEmptyLines) {
  const Outcome outcome = runSdpneg({"inspect"}, {.input = "\n\r\r\nSIP/2.0 200 OK\nl: 168\n\n" + audio});
  EXPECT_EQ(outcome.err, "");
  EXPECT_EQ(outcome.status, 0);
}

TEST(ContentLength, ThatIsNoneIsToldAndDoesNotMatter) {
  for (const std::string value : {"abc", "", "-5", "1 6", "168;x", "+168"}) {
    const std::string message = "SIP/2.0 200 OK\nContent-Length: " + value + "\n\n" + audio;
    const Outcome outcome = runSdpneg({"inspect"}, {.input = message});
    EXPECT_EQ(outcome.err, "sdpneg: (standard input):2:1: note: Content-Length is \"" + value +
                               "\", which is no length, and does not matter\n");
    EXPECT_NE(outcome.out.find("  stored            plain, 168 bytes\n"), std::string::npos);
    EXPECT_EQ(outcome.status, 0);
  }
}

TEST(Quotation, ShowsWhatStandsInTheBody) {
  const std::string head = "v=0\no=- 1 1 IN IP4 192.0.2.1\ns=-\nt=0 0\nm=audio ";
  const std::string begin = "sdpneg: (standard input):5:9: expected a port, found \"";
  const struct {
    std::string line;
    std::string said;
  } cases[] = {{"\x1b[2J\a 0", "\\x1B[2J\\x07 0\"\n"},
               {"?\x7f?", "?\\x7F?\"\n"},
               {"caf\xC3\xA9 \xFF", "caf\xC3\xA9 \\xFF\"\n"},
               {"a\"b", "a\"b\"\n"},
               {std::string(39, 'x') + "\x01y", std::string(39, 'x') + "\\x01\"...\n"}};
  for (const auto& each : cases) {
    EXPECT_EQ(runSdpneg({"inspect"}, {.input = head + each.line + "\n"}).err, begin + each.said);
  }
}

TEST(RefusedRequest, IsToldTheReasonOfItsOwn) {
  const std::string fax(bodies::faxCall);
  const std::string line = "m=audio 5004 RTP/AVP 0\n";
  const std::string session = "v=0\no=- 1 1 IN IP4 192.0.2.1\ns=-\n";
  const std::string head = session + "c=IN IP4 192.0.2.1\nt=0 0\n";
  std::string many = head;
  for (int i = 0; i < 25; ++i) many += line;
  // A new o-line takes the room of the old one, or some digits of the time of day less.
  const std::string own =
      replaced(replaced(audio, "ann 17 18", "ZEV 123456789 123456789"), ".10\n", ".10\r\n");
  const std::string room =
      "sdpReplaceMode(): Not enough room to add a=inactive line at the session level. Exiting.";
  const Refusal refusals[] = {
      {"preconditions",
       {"add-preconditions", "curr:qos:e2e:none"},
       fax,
       1,
       "add-preconditions is refused: No audio <mline> found.\n"},
      {"preconditionsWithoutRoom",
       {"add-preconditions", "curr:qos:e2e:none"},
       full(audio),
       1,
       "add-preconditions is refused: The new sdpLength is larger than allowedSdpSize.\n"},
      {"mLines",
       {"restore-secure", "1"},
       many,
       1,
       "restore-secure is refused: what comes of it has more than the 25 m-lines that are read\n"},
      {"dummy", {"dummy", "answer", "192.0.2.10", "0"}, full(own), 1, "dummy is refused: " + room + "\n"},
      // That the o-line was changed before is none of the reasons.
      {"dummyOfSeveralPorts",
       {"dummy", "answer", "192.0.2.10", "0"},
       head + "m=audio 5004/2 RTP/AVP 0\n",
       1,
       "dummy is refused: The port of an m-line cannot be read.\n"},
      // A key was made before the line that cannot be used; that is not why.
      {"dummyOfUnreadableKeys",
       {"dummy", "answer", "192.0.2.10", "5000"},
       session +
           "c=IN IP4 192.0.2.1\nt=0 0\nm=audio 5004 RTP/SAVP 0\na=crypto:1 AES_CM_128_HMAC_SHA1_80 inline:" +
           "PS1uQCVeeCFCanVmcjkpPywjNWhcYD0mXXtxaVBR\na=crypto:\n",
       1,
       "dummy is refused: A crypto attribute has no tag, no suite or no line end.\n"},
      // The c-line is copied over 20 of the next m-line's characters: what is left of that is no line of the given body.
      {"unreadableText",
       {"remove-video"},
       session + "t=0 0\nm=video 5006 RTP/AVP 99\nm=audio 5004 RTP/AVP 0\nc=IN IP4 192.0.2.1\n",
       1,
       "remove-video is refused: what comes of it cannot be read: line 7, column 2: expected an equals sign "
       "behind the letter\n"}};
  for (const Refusal& each : refusals) {
    SCOPED_TRACE(each.name);
    expectRefusal(each);
  }
}

}  // namespace
