#include <gtest/gtest.h>

#include "bodies.h"
#include "process.h"
#include "sections/richBody.h"

namespace {

const std::string richTable =
    "  section  mid    media        address            port  profile            security  direction  rtcp-mux  bundle  codecs\n"
    "  1        a      audio        2001:db8::7/3      9/2   UDP/TLS/RTP/SAVPF  dtls      sendonly   yes       "
    "0       opus, PCMU, red, telephone-event, 96\n"
    "  2        v      video        relay.example.com  0     RTP/AVP            osrtp     recvonly   -         0       rtx\n"
    "  3        unreadable m-line, line 41\n"
    "  4        d\\xFF  application  relay.example.com  0     UDP/DTLS/SCTP      dtls      recvonly   -         "
    "-       webrtc-datachannel\n";

TEST(SectionsTable, HasALineForEachSection) {
  const Outcome outcome = runSdpneg({"sections"}, {.input = richBody});
  EXPECT_EQ(outcome.out, "(standard input)\n" + richTable);
  EXPECT_EQ(outcome.err, "");
  EXPECT_EQ(outcome.status, 0);
}

TEST(SectionsTable, NamesEachCodecOnce) {
  const Outcome outcome = runSdpneg({"sections"}, {.input = "m=audio 9 RTP/AVP 111 63 9 0 8 13 110 126\n"
                                                            "a=rtpmap:111 opus/48000/2\n"
                                                            "a=rtpmap:63 red/48000/2\n"
                                                            "a=rtpmap:110 telephone-event/48000\n"
                                                            "a=rtpmap:126 telephone-event/8000\n"});
  EXPECT_EQ(outcome.out,
            "(standard input)\n"
            "  section  mid  media  address  port  profile  security  direction  rtcp-mux  bundle  codecs\n"
            "  1        -    audio  -        9     RTP/AVP  plain     sendrecv   -         -       opus, "
            "red, G722, PCMU, PCMA, CN, telephone-event\n");
}

TEST(SectionsTable, ShowsSeveralInputs) {
  const TemporaryFolder folder;
  const std::string text = folder.write("a.txt", "hello\n");
  const std::string bare = folder.write("b.txt", "SIP/2.0 200 OK\r\n\r\n");
  const Outcome outcome = runSdpneg({"sections", text, bare});
  EXPECT_EQ(outcome.out, text + "\n  no sections\n\n" + bare + "\n  the SIP message has no body\n");
  EXPECT_EQ(outcome.err, "sdpneg: " + bare + ":3:1: the SIP message has no body\n");
  EXPECT_EQ(outcome.status, 2);
}

TEST(SectionsTable, IsColouredOnRequest) {
  const std::string body = "m=audio 0 RTP/SAVP 0\nm=audio\nm=audio 9 RTP/SAVP 0\na=crypto:1 X inline:AAAA\n";
  const Outcome outcome = runSdpneg({"sections", "--color=always"}, {.input = body});
  const auto in = [](const char* colour, const std::string& text) { return colour + text + "\x1b[0m"; };
  EXPECT_TRUE(
      outcome.out.starts_with(in("\x1b[1m", "(standard input)") + "\n  " + in("\x1b[36m", "section") + "  "))
      << outcome.out;
  for (const std::string& piece : {"  1        -    audio  -        " + in("\x1b[33m", "0") +
                                       "     RTP/SAVP  " + in("\x1b[31m", "keyless") + "   sendrecv",
                                   "  2        " + in("\x1b[31m", "unreadable m-line, line 2") + "\n",
                                   "  9     RTP/SAVP  " + in("\x1b[32m", "sdes") + "      sendrecv"}) {
    EXPECT_NE(outcome.out.find(piece), std::string::npos) << piece << outcome.out;
  }
  EXPECT_EQ(runSdpneg({"sections"}, {.input = body}).out.find('\x1b'), std::string::npos);
  const Surroundings terminal = {.input = body, .environment = {{"NO_COLOR", "1"}}, .outputToTerminal = true};
  EXPECT_EQ(runSdpneg({"sections"}, terminal).out.find('\x1b'), std::string::npos);
}

TEST(SectionsTable, FollowsWhatAnObjectRefuses) {
  const std::string browserTable =
      "  section  mid  media  address  port  profile            security  direction  rtcp-mux  bundle  codecs\n"
      "  1        -    audio  0.0.0.0  9     UDP/TLS/RTP/SAVPF  dtls      sendrecv   -         -       opus, PCMU\n";
  const Outcome refused = runSdpneg({"inspect"}, {.input = std::string(bodies::browserOffer)});
  EXPECT_EQ(refused.status, 2);
  EXPECT_TRUE(refused.out.ends_with("  111 opus/48000/2, 0\n\n" + browserTable)) << refused.out;
  const Outcome undecodable = runSdpneg({"inspect"}, {.input = richBody});
  EXPECT_TRUE(undecodable.out.ends_with("\n\n" + richTable)) << undecodable.out;
}

TEST(SectionsTable, FollowsWhatAnObjectDoesNotHoldWhole) {
  std::string body = replaced(std::string(bodies::audioCall), "a=ptime:20\n", "");
  for (int i = 0; i < 191; ++i) body += "a=x\n";
  const std::string heading = "  section  mid  media";
  EXPECT_NE(runSdpneg({"inspect"}, {.input = body}).out.find(heading), std::string::npos);
  EXPECT_EQ(runSdpneg({"inspect"}, {.input = std::string(bodies::audioCall)}).out.find(heading),
            std::string::npos);
  std::string many = replaced(std::string(bodies::audioCall), "a=ptime:20\n", "");
  for (int i = 0; i < 25; ++i) many += "m=video 49172 RTP/AVP 97\na=rtpmap:97 H264/90000\n";
  const Outcome outcome =
      runSdpneg({"inspect"}, {.input = many + "m=video 9 RTP/AVP 98\na=rtpmap:98 AV1/90000\n"});
  EXPECT_NE(
      outcome.out.find(
          "\n  27       -    video  192.0.2.10  9      RTP/AVP  plain     sendrecv   -         -       AV1\n"),
      std::string::npos)
      << outcome.out;
}

}  // namespace
