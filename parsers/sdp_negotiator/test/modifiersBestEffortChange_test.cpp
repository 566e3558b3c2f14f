#include "modifiersTestSupport.h"
#include "traceCapture.h"

// From a best-effort offer with two m-lines per medium to one with one m-line, or to a secure-only one.

namespace {

const std::string start = "v=0\r\n";
const std::string crypto = "a=crypto:1 AES_CM_128_HMAC_SHA1_80 inline:a\r\n";
const std::string audioPlain = "m=audio 4 RTP/AVP 0\r\na=a\r\n";
const std::string audioSecure = "m=audio 4 RTP/SAVP 0\r\n" + crypto;
const std::string videoPlain = "m=video 8 RTP/AVP 31\r\n";
const std::string videoSecure = "m=video 9 RTP/SAVP 31\r\n" + crypto;

const TraceLine ports = {2, 2, "sdpChangeSrtpType() compare ports for media = audio port_1=4,  port_2=4"};

TraceLine entering(int from, int to) {
  return {2, 2,
          "Entering sdpChangeSrtpType() method. oldSdpType=[" + std::to_string(from) + "] newSdpType=[" +
              std::to_string(to) + "]"};
}
TraceLine marked(int audio, int video, int application) {
  return {2, 2,
          "sdpChangeSrtpType() sameAudioPorts =" + std::to_string(audio) + ", sameVideoPorts=" +
              std::to_string(video) + ", sameApplicationPorts=" + std::to_string(application) + " "};
}
TraceLine textOf(const std::string& sdp) { return {2, 2, "sdpChangeSrtpType() sdp_buffer = [" + sdp + "] "}; }
TraceLine recordOf(const std::string& codes) {
  return {2, 2, "sdpChangeSrtpType() mline = [" + codes + "] "};
}

struct Change {
  const char* what;
  std::string before;
  std::string after;
  std::string codes;
  unsigned short status = 0;
};

void expectChange(const Change& each, eSecurityType to) {
  SCOPED_TRACE(each.what);
  SdpBuffer buffer(each.before);
  char removed[25] = {};
  EXPECT_EQ(sdpModifications::sdpChangeSdpType(buffer.data(), BE_SRTP_2m_LINE, to, removed, 7), each.status);
  buffer.expectText(each.after);
  EXPECT_EQ(std::string(removed, strnlen(removed, sizeof removed)), each.codes);
}

TEST(ToOneMLine, TheMediaWhosePortsAreEqualBecomePlain) {
  const auto pairOf = [](const std::string& media, const std::string& plain, const std::string& secure) {
    return "m=" + media + " " + plain + " RTP/AVP 0\r\nm=" + media + " " + secure + " RTP/SAVP 0\r\n" +
           crypto;
  };
  const auto oneOf = [](const std::string& media, const std::string& port, const std::string& transport) {
    return "m=" + media + " " + port + " " + transport + " 0\r\n" + crypto;
  };
  const Change cases[] = {
      {"equal ports", start + audioPlain + audioSecure, start + oneOf("audio", "4", "RTP/AVP"), "\x01"},
      {"secure first", start + audioSecure + audioPlain, start + oneOf("audio", "4", "RTP/AVP"), "\x02"},
      {"other ports", start + pairOf("audio", "4", "6"), start + oneOf("audio", "6", "RTP/SAVP"), "\x01"},
      {"ports that are equal as numbers only", start + pairOf("audio", "4", "04"),
       start + oneOf("audio", "04", "RTP/SAVP"), "\x01"},
      {"ports 0", start + pairOf("audio", "0", "0"), start + oneOf("audio", "0", "RTP/SAVP"), "\x01"},
      {"ports 00", start + pairOf("audio", "00", "00"), start + oneOf("audio", "00", "RTP/AVP"), "\x01"},
      {"video", start + pairOf("video", "4", "4"), start + oneOf("video", "4", "RTP/AVP"), "\x1A"},
      {"application", start + pairOf("application", "4", "4"), start + oneOf("application", "4", "RTP/AVP"),
       "\x33"},
      // Image is none of the media that become plain, and leaves no code.
      {"image", start + pairOf("image", "4", "4"), start + oneOf("image", "4", "RTP/SAVP"), ""},
      {"one medium of two", start + pairOf("audio", "4", "4") + pairOf("video", "8", "9"),
       start + oneOf("audio", "4", "RTP/AVP") + oneOf("video", "9", "RTP/SAVP"), "\x01\x1C"},
      {"both", start + pairOf("audio", "4", "4") + pairOf("video", "8", "8"),
       start + oneOf("audio", "4", "RTP/AVP") + oneOf("video", "8", "RTP/AVP"), "\x01\x1C"},
      // A medium is marked as a whole.
      {"another pair of the medium", start + pairOf("audio", "4", "4") + pairOf("audio", "6", "7"),
       start + oneOf("audio", "4", "RTP/AVP") + oneOf("audio", "7", "RTP/AVP"), "\x01\x03"},
      {"feedback profiles", start + "m=audio 4 RTP/AVPF 0\r\nm=audio 4 RTP/SAVPF 0\r\n",
       start + "m=audio 4 RTP/AVP 0\r\n", "\x01"},
      {"an m-line without partner", start + audioPlain, start, "\x01"},
      // Pairs are the first and second m-line and so on, whatever they are: the ports of the second and the third
      // are not compared.
      {"m-lines out of step", start + videoSecure + pairOf("audio", "4", "4"),
       start + videoSecure + oneOf("audio", "4", "RTP/SAVP"), "\x02"},
      {"the first one's name counts",
       start + "m=audio 4 RTP/AVP 0\r\nm=video 4 RTP/SAVP 0\r\nm=audio 6 RTP/SAVP 0\r\n",
       start + "m=video 4 RTP/SAVP 0\r\nm=audio 6 RTP/AVP 0\r\n", "\x01"},
  };
  for (const Change& each : cases) expectChange(each, BE_SRTP_1m_LINE);
}

TEST(ToOneMLine, TracesItsSteps) {
  const std::string left = start + audioSecure;
  SdpBuffer buffer(start + audioPlain + audioSecure);
  char removed[25] = {};
  TraceCapture trace;
  EXPECT_EQ(sdpModifications::sdpChangeSdpType(buffer.data(), BE_SRTP_2m_LINE, BE_SRTP_1m_LINE, removed, 7),
            0);
  ASSERT_GE(trace.lines().size(), 4U);
  const Traces firstLines(trace.lines().begin(), trace.lines().begin() + 4);
  EXPECT_EQ(firstLines, (Traces{entering(5, 4), ports, marked(1, 0, 0), textOf(left)}));
  EXPECT_TRUE(trace.has(2, 2, "sdpSetMediaTransportType() method. change mediaLines=1"));
  trace.takeLines();
  SdpBuffer other(start + videoPlain + videoSecure);
  EXPECT_EQ(sdpModifications::sdpChangeSdpType(other.data(), BE_SRTP_2m_LINE, BE_SRTP_1m_LINE, removed, 7),
            0);
  EXPECT_EQ(trace.lines(), (Traces{entering(5, 4), marked(0, 0, 0)}));
}

// Equal ports are traced whatever the medium, but only some media are marked; two ports 0 are not equal ones.
TEST(ToOneMLine, TracesEqualPortsOfEveryMedium) {
  SdpBuffer buffer(start + "m=image 4 RTP/AVP 0\r\nm=image 4 RTP/SAVP 0\r\n" +
                   "m=audio 0 RTP/AVP 0\r\nm=audio 0 RTP/SAVP 0\r\n");
  TraceCapture trace;
  EXPECT_EQ(sdpModifications::sdpChangeSdpType(buffer.data(), BE_SRTP_2m_LINE, BE_SRTP_1m_LINE, nullptr, 7),
            0);
  EXPECT_EQ(trace.lines(),
            (Traces{entering(5, 4),
                    {2, 2, "sdpChangeSrtpType() compare ports for media = image port_1=4,  port_2=4"},
                    marked(0, 0, 0)}));
}

TEST(ToOneMLine, GivesTheMediaInTheOrderAudioVideoApplication) {
  std::string body = start;
  for (const std::string media : {"application", "video", "audio"}) {
    body += "m=" + media + " 4 RTP/AVP 0\r\nm=" + media + " 4 RTP/SAVP 0\r\n";
  }
  SdpBuffer buffer(body);
  TraceCapture trace;
  EXPECT_EQ(sdpModifications::sdpChangeSdpType(buffer.data(), BE_SRTP_2m_LINE, BE_SRTP_1m_LINE, nullptr, 7),
            0);
  EXPECT_TRUE(trace.has(2, 2, marked(1, 1, 1).text));
  for (const std::string name : {"[0] =[audio]", "[1] =[video]", "[2] =[application]"}) {
    EXPECT_TRUE(trace.has(2, 2, " sdpSetMediaTransportType() Step-1:Change transport for m line" + name))
        << name;
  }
}

TEST(ToSecureOnly, ThePlainSectionsGo) {
  const Change cases[] = {
      {"pairs", start + audioPlain + audioSecure + videoPlain + videoSecure,
       start + audioSecure + videoSecure, "\x01\x1C"},
      {"feedback profiles", start + "m=audio 4 RTP/AVPF 0\r\n" + audioSecure, start + audioSecure, "\x01"},
      {"no plain one", start + audioSecure, start + audioSecure, ""},
  };
  for (const Change& each : cases) expectChange(each, SECURITY_SRTP_ONLY);
}

TEST(ToSecureOnly, TracesTextAndRecord) {
  SdpBuffer buffer(start + audioPlain + audioSecure + videoPlain);
  char removed[25] = {};
  TraceCapture trace;
  EXPECT_EQ(
      sdpModifications::sdpChangeSdpType(buffer.data(), BE_SRTP_2m_LINE, SECURITY_SRTP_ONLY, removed, 7), 0);
  EXPECT_EQ(trace.takeLines(), (Traces{entering(5, 2), textOf(start + audioSecure), recordOf("\x01\x1C")}));
  // Without a record, and with one that is full and has no end.
  SdpBuffer none(start + audioPlain);
  EXPECT_EQ(sdpModifications::sdpChangeSdpType(none.data(), BE_SRTP_2m_LINE, SECURITY_SRTP_ONLY, nullptr, 7),
            0);
  none.expectText(start);
  EXPECT_EQ(trace.takeLines(), (Traces{entering(5, 2), textOf(start), recordOf("")}));
  std::string body = start;
  std::string codes;
  for (int i = 1; i <= 25; ++i) {
    body += "m=audio 4 RTP/AVP 0\r\n";
    codes += static_cast<char>(i);
  }
  SdpBuffer all(body);
  const auto full = std::make_unique<char[]>(25);
  EXPECT_EQ(
      sdpModifications::sdpChangeSdpType(all.data(), BE_SRTP_2m_LINE, SECURITY_SRTP_ONLY, full.get(), 7), 0);
  EXPECT_EQ(trace.takeLines(), (Traces{entering(5, 2), textOf(start), recordOf(codes)}));
}

TEST(ChangeSdpType, LeavesTheTextForOtherTypes) {
  const std::string body = start + audioPlain + audioSecure;
  const int types[] = {0, 1, 2, 3, 4, 5, 6, 7, -1};
  for (const int from : types) {
    for (const int to : types) {
      if (from == 5 && (to == 4 || to == 2)) continue;
      SCOPED_TRACE(std::to_string(from) + " to " + std::to_string(to));
      char removed[25] = {};
      TraceCapture trace;
      expectUntouched(
          body,
          [&](char* sdp) {
            trace.takeLines();
            return sdpModifications::sdpChangeSdpType(sdp, static_cast<eSecurityType>(from),
                                                      static_cast<eSecurityType>(to), removed, 7);
          },
          0);
      EXPECT_EQ(trace.lines(), Traces{entering(from, to)});
      EXPECT_EQ(removed[0], 0);
    }
  }
}

// The edits of a text that the codec refuses are made all the same; only the status tells.
TEST(ChangeSdpType, ReturnsTheCodecsStatus) {
  const std::string bad = "w=0\r\n";
  expectChange({"to secure only", bad + audioPlain + audioSecure, bad + audioSecure, "\x01", 1},
               SECURITY_SRTP_ONLY);
  expectChange({"to one m-line", bad + audioPlain + audioSecure, bad + audioSecure, "\x01", 1},
               BE_SRTP_1m_LINE);
  expectChange({"to another", bad + audioPlain, bad + audioPlain, "", 1}, SECURITY_RTP_ONLY);
  expectChange({"from nothing", "", "", "", 1}, BE_SRTP_1m_LINE);
  for (const eSecurityType from : {SECURITY_RTP_ONLY, SECURITY_BOTH, BE_SRTP_1m_LINE}) {
    expectUntouched(
        bad + audioPlain,
        [&](char* sdp) { return sdpModifications::sdpChangeSdpType(sdp, from, BE_SRTP_1m_LINE, nullptr, 7); },
        1);
  }
}

TEST(ChangeSdpType, ComparesTheFirstTwentyFiveMLines) {
  std::string body = start;
  std::string after = start;
  for (int i = 0; i < 24; ++i) after += "m=text 1 RTP/SAVP 0\r\n";
  body = after + "m=audio 4 RTP/AVP 0\r\nm=audio 4 RTP/SAVP 0\r\n";
  after += "m=audio 4 RTP/SAVP 0\r\n";
  expectChange({"the 25th has no partner", body, after, "\x19"}, BE_SRTP_1m_LINE);
}

TEST(ChangeSdpType, RefusesATextThatIsNullOrHasNoEnd) {
  const TraceLine unusable{4, 3,
                           "sdpChangeSdpType(): The SDP buffer is null or holds no end of text. Exiting."};
  char removed[25] = {};
  TraceCapture trace;
  EXPECT_EQ(sdpModifications::sdpChangeSdpType(nullptr, BE_SRTP_2m_LINE, BE_SRTP_1m_LINE, removed, 7), 1);
  EXPECT_EQ(trace.takeLines(), (Traces{entering(5, 4), unusable}));
  expectUntouched(
      withoutNul(start + audioPlain + audioSecure),
      [&](char* sdp) {
        trace.takeLines();
        return sdpModifications::sdpChangeSdpType(sdp, BE_SRTP_2m_LINE, SECURITY_SRTP_ONLY, removed, 7);
      },
      1);
  EXPECT_EQ(trace.takeLines(), (Traces{entering(5, 2), unusable}));
  EXPECT_EQ(removed[0], 0);
}

}  // namespace
