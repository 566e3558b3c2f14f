#include <gtest/gtest.h>

#include "bodies.h"
#include "process.h"

namespace {

struct Case {
  const char* name;
  std::string_view body;
  std::string_view table;
};

std::ostream& operator<<(std::ostream& out, const Case& each) { return out << each.name; }

class InspectTable : public testing::TestWithParam<Case> {};

TEST_P(InspectTable, showsTheWholeBody) {
  const Outcome outcome = runSdpneg({"inspect"}, {.input = std::string(GetParam().body)});
  EXPECT_EQ(outcome.out, "(standard input)\n" + std::string(GetParam().table));
  EXPECT_EQ(outcome.err, "");
  EXPECT_EQ(outcome.status, 0);
}

const Case cases[] = {
    {"audioCall", bodies::audioCall,
     "  origin            o=ann 17 18 IN IP4 192.0.2.10\n"
     "  address           192.0.2.10 (IPv4)\n"
     "  port              49170\n"
     "  media             audio\n"
     "  audio codecs      PCMA (20 ms), PCMU (20 ms), telephone-event (20 ms)\n"
     "  direction         sendrecv\n"
     "  security          not secure\n"
     "  best effort       no: plain RTP only\n"
     "  ICE               none\n"
     "  hold              no\n"
     "  bandwidth         80\n"
     "  stored            plain, 168 bytes\n"
     "  description       complete\n"
     "\n"
     "  m-line  line  media  port   transport  direction  address  bandwidth  label  formats\n"
     "  1       7     audio  49170  RTP/AVP    -          -        -          -      8 PCMA/8000, 0, 101 "
     "telephone-event/8000\n"},
    {"secureCallOnHold", bodies::secureCall,
     "  origin            o=- 1 1 IN IP6 2001:db8::17\n"
     "  address           2001:db8::17 (IPv6)\n"
     "  port              40000\n"
     "  media             audio, video\n"
     "  audio codecs      G722\n"
     "  direction         sendonly\n"
     "  video codecs      H264\n"
     "  video direction   recvonly\n"
     "  H.264 level       3.1\n"
     "  video bandwidth   1400000\n"
     "  security          secure, video secure, SDES\n"
     "  best effort       no: secure RTP only\n"
     "  ICE               none\n"
     "  hold              yes\n"
     "  listed media      video, label cam, recvonly, secure, not IP4, bandwidth 1400000, H264 level 3.1\n"
     "  stored            plain, 387 bytes\n"
     "  description       complete\n"
     "\n"
     "  m-line  line  media  port   transport  direction  address  bandwidth  label  formats\n"
     "  1       6     audio  40000  RTP/SAVP   sendonly   -        -          -      9\n"
     "  2       9     video  40002  RTP/SAVP   recvonly   -        1400000    cam    97 H264/90000\n"},
    {"faxCall", bodies::faxCall,
     "  origin            o=fax 1 2 IN IP4 198.51.100.7\n"
     "  address           198.51.100.7 (IPv4)\n"
     "  port              30010\n"
     "  media             image\n"
     "  audio codecs      T38_IMAGE\n"
     "  direction         sendrecv\n"
     "  T.38              at most 14400 bit/s\n"
     "  security          not secure\n"
     "  best effort       unknown: neither RTP/AVP nor RTP/SAVP\n"
     "  ICE               none\n"
     "  hold              no\n"
     "  stored            plain, 112 bytes\n"
     "  description       complete\n"
     "\n"
     "  m-line  line  media  port   transport  direction  address  bandwidth  label  formats\n"
     "  1       6     image  30010  udptl      -          -        -          -      t38\n"},
    {"bodyWithoutMedia", "v=0\ns=-\nt=0 0\n",
     "  origin            none\n"
     "  address           none\n"
     "  port              none\n"
     "  media             none\n"
     "  audio codecs      none\n"
     "  direction         sendrecv\n"
     "  gain control      4\n"
     "  security          not secure\n"
     "  best effort       unknown: neither RTP/AVP nor RTP/SAVP\n"
     "  ICE               none\n"
     "  hold              no\n"
     "  stored            plain, 14 bytes\n"
     "  description       complete\n"}};

INSTANTIATE_TEST_SUITE_P(Bodies, InspectTable, testing::ValuesIn(cases),
                         [](const auto& each) { return std::string(each.param.name); });

TEST(InspectTableRows, tellIceAndFeatures) {
  const std::string body =
      "v=0\no=- 1 1 IN IP4 192.0.2.1\ns=-\nc=IN IP4 192.0.2.1\nt=0 0\n"
      "m=audio 5004 RTP/AVP 0\n"
      "a=ice-ufrag:x\na=fingerprint:sha-1 AB\na=key-mgmt:mikey AQAF\na=silenceSupp:off - - - -\na=ecan:on "
      "-\n"
      "a=candidate:1 1 UDP 1 192.0.2.1 5004 typ host\n";
  const Outcome outcome = runSdpneg({"inspect"}, {.input = body});
  EXPECT_NE(outcome.out.find("  ICE               full, a candidate matches address and port\n"),
            std::string::npos);
  EXPECT_NE(outcome.out.find("  security          secure, MIKEY, DTLS fingerprint\n"), std::string::npos);
  EXPECT_NE(outcome.out.find("  silence suppr.    off\n"), std::string::npos);
  EXPECT_NE(outcome.out.find("  echo cancellation on\n"), std::string::npos);
}

TEST(InspectTableRows, continueLongLists) {
  const std::string body =
      "v=0\no=- 1 1 IN IP4 192.0.2.1\ns=-\nc=IN IP4 192.0.2.1\nt=0 0\n"
      "m=audio 5004 RTP/AVP 0 8 96 97 98\n"
      "a=rtpmap:96 telephone-event/8000\na=rtpmap:97 telephone-event/16000\na=rtpmap:98 G722/8000\n";
  const Outcome outcome = runSdpneg({"inspect"}, {.input = body});
  EXPECT_TRUE(outcome.out.ends_with(
      "  m-line  line  media  port  transport  direction  address  bandwidth  label  formats\n"
      "  1       6     audio  5004  RTP/AVP    -          -        -          -      0, 8, 96 "
      "telephone-event/8000,\n"
      "                                                                              97 "
      "telephone-event/16000, 98 G722/8000\n"))
      << outcome.out;
}

TEST(InspectTableRows, tellADeflatedText) {
  std::string body(bodies::audioCall);
  while (body.size() < 2560) body += "a=note:more of the same\n";
  const Outcome outcome = runSdpneg({"inspect"}, {.input = body});
  EXPECT_EQ(outcome.status, 0);
  const std::string expected = " bytes for " + std::to_string(body.size()) + " characters\n";
  EXPECT_NE(outcome.out.find("  stored            deflated, "), std::string::npos);
  EXPECT_NE(outcome.out.find(expected), std::string::npos);
}

TEST(InspectTableRows, tellWhetherADescriptionHoldsAllAttributes) {
  constexpr int capacity = 192;
  const std::string complete = "  description       complete\n";
  const std::string incomplete = "  description       incomplete: some of the text is left out\n";
  std::string body =
      "v=0\no=- 1 2 IN IP4 192.0.2.1\ns=-\nc=IN IP4 192.0.2.1\nt=0 0\nm=audio 5004 RTP/AVP 0\n";
  for (int i = 0; i + 1 < capacity; ++i) body += "a=x\n";
  for (const std::string& expected : {complete, complete, incomplete}) {  // one under, at, and one over
    const Outcome outcome = runSdpneg({"inspect"}, {.input = body});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_NE(outcome.out.find(expected), std::string::npos) << outcome.out;
    body += "a=x\n";
  }
}

TEST(InspectTableRows, nameTheCodecsOfTheFirstVideoInUse) {
  const std::string unused = "m=video 0 RTP/AVP 34\nm=video 49172 RTP/AVP 34\na=Inactive\n";
  const auto inspected = [&](const std::string& video) {
    return runSdpneg({"inspect"}, {.input = std::string(bodies::audioCall) + unused + video}).out;
  };
  const std::string mapped = inspected("m=video 49174 RTP/AVP 31 120 97 34\na=rtpmap:97 H264/90000\n");
  EXPECT_NE(mapped.find("  video codecs      H261, H264, H263\n"), std::string::npos) << mapped;
  const std::string nine = inspected("m=video 49174 RTP/AVP 31 34 31 34 31 34 31 34 31\n");
  EXPECT_NE(nine.find("  video codecs      H261, H263, H261, H263, H261, H263, H261, H263\n"),
            std::string::npos)
      << nine;
  const std::string none = inspected("");
  EXPECT_EQ(none.find("video codecs"), std::string::npos) << none;
}

TEST(InspectTableRows, nameTheCodecBehindManyAttributes) {
  std::string body(bodies::audioCall);
  for (int i = 0; i < 100; ++i) body += "a=x\n";
  body += "m=video 49172 RTP/AVP 97\n";
  for (int i = 0; i < 100; ++i) body += "a=x\n";
  const Outcome outcome = runSdpneg({"inspect"}, {.input = body + "a=rtpmap:97 H264/90000\n"});
  EXPECT_NE(outcome.out.find("  video codecs      H264\n"), std::string::npos) << outcome.out;
  EXPECT_NE(outcome.out.find(" 97 H264/90000\n"), std::string::npos) << outcome.out;
}

TEST(InspectTableRows, escapeWhatControlsATerminal) {
  const std::string body =
      "v=0\no=\x1b[31m\xc2\x9b 1 2 IN IP4 192.0.2.1\ns=-\nc=IN IP4 192.0.2.1\nt=0 0\n"
      "m=audio 5004 RTP/AVP \x1b]0;x\x07 \xe2\x80\xae \xff 0\na=label:\x9b\x08gr\xc3\xbc\xc3\x9f\n";
  const Outcome outcome = runSdpneg({"inspect", "--trace"}, {.input = body});
  EXPECT_EQ(outcome.status, 0);
  EXPECT_NE(outcome.out.find("o=\\x1B[31m\\xC2\\x9B 1 2 IN IP4"), std::string::npos);
  EXPECT_NE(outcome.out.find("\\x1B]0;x\\x07, \\xE2\\x80\\xAE, \\xFF, 0"), std::string::npos);
  EXPECT_NE(outcome.out.find("\\x9B\\x08gr\xc3\xbc\xc3\x9f"), std::string::npos);
  for (const char c : outcome.out + outcome.err) {
    EXPECT_TRUE(c == '\n' || static_cast<unsigned char>(c) >= 0x20) << static_cast<int>(c);
  }
}

}  // namespace
